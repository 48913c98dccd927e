// SPDX-License-Identifier: MIT
#include "parts/window_side.h"

#include <QApplication>
#include <QDialog>
#include <QFontMetrics>
#include <QTimer>
#include <QVBoxLayout>
#include <utility>

#include "parts/quote_status.h"
#include "process/print.h"
#include "window/dialogs.h"
#include "window/help_dialogs.h"
#include "window/window_place.h"

namespace holdwise {
namespace {

const QString kThemeSetting = QStringLiteral("theme");
const QString kRiseFallSetting = QStringLiteral("riseFall");
const QString kGeometrySetting = QStringLiteral("geometry");

/// The command line's colours, which are remembered, else the remembered ones.
ThemeKind FirstTheme(ProcessParts& process) {
  const std::optional<ThemeKind> asked = process.Asked().command.theme;
  if (!asked) return ThemeKindFromName(process.Settings().value(kThemeSetting).toString()).value_or(ThemeKind::Dark);
  process.Settings().setValue(kThemeSetting, ThemeKindName(*asked));
  return *asked;
}

/// The same theme, in whose colours widgets are made from now on.
const ThemeServices& Applied(const ThemeServices& theme) {
  QApplication::setPalette(theme.WindowPalette());
  return theme;
}

}  // namespace

WindowSide::WindowSide(ProcessParts& process, WindowActions actions)
    : process_(process), theme_(FirstTheme(process), process.Log()), window_(Applied(theme_), std::move(actions)) {
  const QString riseFall = process_.Settings().value(kRiseFallSetting).toString();
  theme_.SetRiseFall(RiseFallFromName(riseFall).value_or(RiseFall::RedRises));
  theme_.OnChanged = [this] { ApplyTheme(); };
  if (!process_.Asked().IsBatch()) {
    RestorePlace(window_, process_.Settings().value(kGeometrySetting).toByteArray());
    splitters_.emplace(process_.Settings());
    KeepDialogFoldersIn(&process_.Settings());
    if (!process_.SettingsProblem().isEmpty()) window_.TellFailure(process_.SettingsProblem());
  }
  window_.ShowTheme();
  process_.Log().WriteLog(
      QStringLiteral("工作目录 %1；数据目录 %2；数据库 %3")
          .arg(process_.Asked().workFolder, process_.Asked().dataFolder, process_.Asked().database));
  messageBoxes_.SetWindow(&window_);
  process_.Log().SetFailureListener([this](const QString& text) {
    PrintError(text);
    QMetaObject::invokeMethod(
        &window_, [this, text] { window_.TellFailure(text); }, Qt::QueuedConnection);
  });
  process_.Log().SetOutcomeListener([this](const QString& text) {
    QMetaObject::invokeMethod(
        &window_, [this, text] { window_.TellOutcome(text); }, Qt::QueuedConnection);
  });
  process_.Log().SetOngoingListener([this](const QString& text) {
    QMetaObject::invokeMethod(
        &window_, [this, text] { window_.TellOngoing(text); }, Qt::QueuedConnection);
  });
}

WindowSide::~WindowSide() {
  KeepDialogFoldersIn(nullptr);
  process_.Log().SetFailureListener({});
  process_.Log().SetOutcomeListener({});
  process_.Log().SetOngoingListener({});
  if (places_ && !places_->Problem().isEmpty()) return;  // settings would make the folder anew
  if (!process_.Asked().IsBatch()) process_.Settings().setValue(kGeometrySetting, window_.saveGeometry());
}

MessageBoxService& WindowSide::Messages() {
  if (process_.Asked().IsBatch()) return printedMessages_;
  return messageBoxes_;
}

void WindowSide::SetTheme(ThemeKind kind) {
  process_.Settings().setValue(kThemeSetting, ThemeKindName(kind));
  process_.Settings().sync();
  theme_.SetKind(kind);
}

void WindowSide::SetRiseFall(RiseFall choice) {
  process_.Settings().setValue(kRiseFallSetting, RiseFallName(choice));
  process_.Settings().sync();
  theme_.SetRiseFall(choice);
}

void WindowSide::ApplyTheme() {
  Applied(theme_);
  window_.ShowTheme();
  if (OnThemeChanged) OnThemeChanged();
}

void WindowSide::Prepare() {
  window_.winId();  // makes the window, though it stays hidden
  QFont titles = QApplication::font();
  titles.setBold(true);
  (void)QFontMetrics(titles).horizontalAdvance(window_.windowTitle());  // reads the bold font's file
}

void WindowSide::ShowAbout(const QString& plugins) {
  const Options& asked = process_.Asked();
  holdwise::ShowAbout(&window_, {{QStringLiteral("插件"), plugins},
                                 {QStringLiteral("Qt"), QString::fromLatin1(qVersion())},
                                 {QStringLiteral("数据目录"), asked.dataFolder},
                                 {QStringLiteral("消息总线"), QStringLiteral("进程内，") + bus_},
                                 {QStringLiteral("数据库"), asked.database},
                                 {QStringLiteral("工作目录"), asked.workFolder},
                                 {QStringLiteral("设置"), process_.Settings().fileName()},
                                 {QStringLiteral("日志"), asked.workFolder + QStringLiteral("/log/terminal.log")},
                                 {QStringLiteral("备份"), asked.workFolder + QStringLiteral("/backups")}});
}

void WindowSide::Raise() {
  if (process_.Asked().IsBatch()) return;
  if (window_.isMinimized()) window_.showNormal();
  window_.raise();
  window_.activateWindow();
}

std::unique_ptr<QWidget> WindowSide::MakeObstacle(Obstacle obstacle) {
  obstacle_.reset();
  const auto& [title, text, commands, tryAgain, choices, hint] = obstacle;
  process_.Log().WriteLog(title + QStringLiteral("：") + text);
  const QString how = commands.isEmpty()
                          ? QString()
                          : QStringLiteral("\n\n下面两条命令生成一份模拟行情；自己的日线数据也用第二条命令转换。");
  PrintError(title + QStringLiteral("：") + text + how +
             (commands.isEmpty() ? QString() : QLatin1Char('\n') + commands));
  if (process_.Asked().IsBatch()) return nullptr;
  QString advice = text;
  if (!hint.isEmpty()) advice += QStringLiteral("\n\n") + hint;
  advice += how + QStringLiteral("\n\n已保存的组合不受影响，仍在数据库“%1”里。").arg(process_.Asked().database);
  if (std::exchange(obstacleTitle_, title) == title) {
    const QString time = process_.Clock().Now().toString(QStringLiteral("HH:mm:ss"));
    advice += QStringLiteral("\n\n%1 又检查了一次，还是不能用。").arg(time);
    window_.Tell(QStringLiteral("又检查了一次：%1。").arg(title));
  }
  NoticeChoice again{QStringLiteral("重新检查(&R)"), [this, act = tryAgain] {
                       // Leaves the button's own handler first: what follows removes the page.
                       QTimer::singleShot(0, &window_, act);
                     }};
  obstacle.choices.push_back(std::move(again));
  return std::make_unique<NoticePage>(title, advice, commands, std::move(obstacle.choices));
}

void WindowSide::ShowObstacle(Obstacle obstacle) {
  obstacle_ = MakeObstacle(std::move(obstacle));
  if (obstacle_ != nullptr) window_.Area().ShowFrame(obstacle_.get());
}

int WindowSide::Choose(const QString& title, const QString& text, const QStringList& choices) {
  process_.Log().WriteLog(title + QStringLiteral("：") + text);
  PrintError(title + QStringLiteral("：") + text);
  if (process_.Asked().IsBatch()) return kNothingChosen;
  window_.show();
  // A dialog and not a page of the window: nothing else may be used until it is answered.
  QDialog dialog(&window_);
  dialog.setWindowTitle(title);
  int chosen = kNothingChosen;
  std::vector<NoticeChoice> buttons;
  buttons.reserve(static_cast<std::size_t>(choices.size()));
  for (int number = 0; number < choices.size(); ++number) {
    buttons.push_back({choices[number], [&dialog, &chosen, number] {
                         chosen = number;
                         dialog.accept();
                       }});
  }
  auto* layout = new QVBoxLayout(&dialog);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(new NoticePage(title, text, QString(), std::move(buttons)));
  dialog.exec();
  return chosen;
}

void WindowSide::ClearObstacle() {
  obstacle_.reset();
  if (!std::exchange(obstacleTitle_, QString()).isEmpty()) window_.Tell({});  // what it has said last
}

void WindowSide::ShowMarket(const MarketData& data, MarketConnection& connection) {
  window_.SetSimulated(data.IsSimulated());
  window_.SetQuotesProblem({});
  window_.SetDataNotices(data.Notices());
  // It follows this connection and goes with it.
  (new QuoteStatus(data, connection, process_.Clock(), window_))->setParent(&connection);
  QObject::connect(&connection.Bus(), &MessageBus::ConnectionStateChanged, &window_,
                   [this](MessageBus::State state) { ShowBus(state == MessageBus::State::Connected); });
  QObject::connect(&connection, &MarketConnection::QuotesChanged, &window_,
                   [this](const QString& problem) { window_.SetQuotesProblem(problem); });
}

void WindowSide::ShowBus(bool isConnected) {
  bus_ = isConnected ? QStringLiteral("已连接") : QStringLiteral("没有连接");
  process_.Log().WriteLog(QStringLiteral("消息总线%1").arg(bus_));
}

void WindowSide::FollowPlaces(std::function<void()> saveElsewhere) {
  places_.emplace(process_.Asked().workFolder, process_.Asked().database);
  places_->OnGone = [this, save = std::move(saveElsewhere)](const QString& text) {
    process_.Log().WriteLog(text);
    PrintError(text);
    window_.TellFailure(text);
    if (process_.Asked().IsBatch()) return;
    notice_ = std::make_unique<UrgentNotice>(&window_, QStringLiteral("数据的位置不在了"), text,
                                             QStringLiteral("另存全部组合(&S)…"), save);
    notice_->show();
    notice_->raise();
  };
  places_->OnBack = [this] {
    const QString text = QStringLiteral("工作目录和数据库文件又在原处了。");
    process_.Log().WriteLog(text);
    notice_.reset();
    window_.Tell(text);
  };
  places_->Start();
}

}  // namespace holdwise
