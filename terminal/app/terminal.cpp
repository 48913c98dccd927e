// SPDX-License-Identifier: MIT
#include "terminal.h"

#include <QApplication>
#include <QSocketNotifier>
#include <QThread>
#include <QTimer>
#include <chrono>
#include <exception>
#include <utility>

#include "pages/notice_page.h"
#include "process/print.h"
#include "process/signal_guard.h"
#include "process/start_trace.h"

namespace holdwise {
namespace {

constexpr std::chrono::milliseconds kLatestGoOn{500};

QString TextOf(const std::exception& error) {
  return QString::fromUtf8(error.what());
}

}  // namespace

Terminal::Terminal(Options options, DatabaseOpener openDatabase)
    : process_(std::move(options)),
      database_(
          [this, open = std::move(openDatabase)] {
            OpenedDatabase opened = open();
            look_ = std::move(opened.look);
            return std::move(opened.database);
          },
          [this](const QString& text) { guard_.DamageMet(text); }),
      market_(std::make_unique<MarketSide>(process_, database_)),
      window_(process_, Actions()),
      data_(process_, database_, window_, Targets()),
      guard_(process_, database_, window_, look_),
      dayChange_({process_, window_, market_, pages_}) {
  dayChange_.isBusy = [this] { return commands_ == nullptr || !commands_->IsIdle(); };
  dayChange_.take = [this] { ChangeDay(); };
  window_.OnThemeChanged = [this] {
    if (pages_ != nullptr) pages_->ChangeColorTheme();
  };
  window_.Window().Area().OnFirstPaint = [this] {
    TraceFirstPaint();
    GoOn();
  };
}

Terminal::~Terminal() = default;

WindowActions Terminal::Actions() {
  WindowActions actions;
  actions.importPortfolios = [this] { commands_->ImportFromMenu(); };
  actions.exportViews = [this] { commands_->ExportFromMenu(); };
  actions.showHealth = [this] { health_->Show(); };
  actions.showAbout = [this] { window_.ShowAbout(pages_ == nullptr ? QString() : pages_->PluginNames()); };
  actions.exportPortfolios = [this] { commands_->ExportPortfoliosFromMenu(); };
  actions.restorePortfolios = [this] { commands_->RestoreFromMenu(); };
  actions.setTheme = [this](ThemeKind kind) { window_.SetTheme(kind); };
  actions.setRiseFall = [this](RiseFall choice) { window_.SetRiseFall(choice); };
  actions.takeNewDay = [this] { dayChange_.TakeAsked(); };
  actions.chooseDataFolder = [this] { data_.ChooseFolder(); };
  actions.switchDemo = [this] { data_.SwitchDemo(); };
  actions.mayClose = [this] { return MayLose(QStringLiteral("退出")); };
  actions.goTo = [this](const QString& address) { (void)pages_->GoTo(address, QString()); };
  return actions;
}

DataTargets Terminal::Targets() {
  DataTargets targets;
  targets.tryAgain = [this] { TryAgain(); };
  targets.openFolder = [this](const QString& folder) { OpenFolder(folder); };
  targets.mayLeave = [this] { return MayLose(QStringLiteral("换数据")); };
  targets.leave = [] { QCoreApplication::exit(0); };
  targets.busyWith = [this] {
    return commands_ == nullptr || commands_->IsIdle() ? QString() : QStringLiteral("终端正在执行别的命令");
  };
  targets.isDisturbing = [this] { return IsDisturbing(); };
  return targets;
}

bool Terminal::IsDisturbing() const {
  // Below a nested event loop somebody stands on the pages.
  return commands_ == nullptr || !commands_->IsIdle() || QThread::currentThread()->loopLevel() > 1 ||
         QApplication::activeModalWidget() != nullptr || QApplication::activePopupWidget() != nullptr;
}

bool Terminal::MayLose(const QString& what) {
  const QStringList unstored = pages_ == nullptr ? QStringList() : pages_->Unstored();
  if (unstored.isEmpty()) return true;
  using Box = MessageBoxService;
  const QString question =
      QStringLiteral("%1，%2后就没有了。\n现在%2吗?").arg(unstored.join(QStringLiteral("，")), what);
  return window_.Messages().Vex_MessageBox(question, QStringLiteral("询问"), Box::kOkAndCancel, Box::kQuestion) ==
         Box::kOk;
}

int Terminal::Run() {
  const Options& asked = process_.Asked();
  QSocketNotifier signalNotifier(signal_guard::Descriptor(), QSocketNotifier::Read);
  QObject::connect(&signalNotifier, &QSocketNotifier::activated, &signalNotifier, [&asked, &signalNotifier] {
    signalNotifier.setEnabled(false);
    // A batch that is cut short has not done what it was asked for.
    if (asked.IsBatch())
      PrintError(asked.command.exportFolder.isEmpty() ? QStringLiteral("收到结束信号，命令没有完成。")
                                                      : QStringLiteral("收到结束信号，导出没有完成。"));
    QCoreApplication::exit(asked.IsBatch() ? 1 : 0);
  });
  // The engine is still opening its file; everything that can do without it comes first.
  isReady_ = OpenPages();
  if (!isReady_ && asked.IsBatch() && asked.command.NeedsViews()) return 1;
  window_.Prepare();
  if (!guard_.Open()) return 1;
  look_ = {};
  if (signal_guard::Requested()) return asked.IsBatch() ? 1 : 0;
  backups_ = std::make_unique<Backups>(process_, database_, window_);
  health_ = std::make_unique<HealthSide>(process_, window_, guard_, market_, pages_);
  health_->backupProblem = [this] { return backups_->Service().State().problem; };
  commands_ = std::make_unique<Commands>(
      CommandParts{process_, database_, window_, *health_, *backups_, market_, pages_, guard_});
  window_.FollowPlaces([this] { commands_->ExportPortfoliosFromMenu(); });
  if (const QString& address = asked.command.address; isReady_ && !address.isEmpty() && !pages_->HasAddress(address)) {
    PrintError(QStringLiteral("holdwise-terminal：没有地址“%1”。").arg(address));
    return CommandRunner::kUnknownAddressExitCode;
  }
  // Shown first: the window system gets to work while the page is made. Nothing is painted before the event loop runs.
  window_.Window().show();
  if (pages_ != nullptr) EnterFirstPage();
  if (!isReady_ && asked.IsBatch()) commands_->RunFirst();
  // A minimised window paints nothing.
  QTimer::singleShot(kLatestGoOn, &window_.Window(), [this] { GoOn(); });
  const int exitCode = QApplication::exec();
  const bool isRemembered = isReady_ && !asked.IsBatch() && window_.PlaceProblem().isEmpty();
  if (isRemembered) pages_->RememberPage(process_.Settings());
  return exitCode;
}

bool Terminal::OpenPages() {
  try {
    market_->Open();
    pages_ = std::make_unique<PageSide>(process_, database_, *market_, window_);
  } catch (const std::exception& error) {
    market_.reset();
    const QString title = QStringLiteral("没有可用的行情数据");
    if (process_.Asked().IsBatch() && !process_.Asked().command.NeedsViews())
      process_.Log().WriteLog(title + QStringLiteral("：") + TextOf(error));
    else
      window_.ShowObstacle({title, TextOf(error), DataFolderCommands(process_.Asked().dataFolder),
                            [this] { TryAgain(); }, data_.Choices(), data_.Advice()});
    return false;
  }
  window_.ShowMarket(market_->Data(), market_->Connection());
  MarketConnection& connection = market_->Connection();
  QObject::connect(&connection, &MarketConnection::DataFolderChanged, &connection, [this] {
    if (pages_ != nullptr) pages_->DataFolderChanged();
  });
  dayChange_.Follow();
  if (!pages_->LoadPlugins()) {
    AddPluginObstacle();
    return false;
  }
  window_.ClearObstacle();
  return true;
}

void Terminal::AddPluginObstacle() {
  const QString others = pages_->PluginNames();
  const QString usable = others.isEmpty() ? QString() : QStringLiteral("和插件“%1”").arg(others);
  const QString text = QStringLiteral(
                           "%1\n\n请重新安装终端，它的插件应在目录“%2”中；然后按“重新检查”。"
                           "在那之前没有投资组合页面，分时走势%3照常可用。")
                           .arg(pages_->Problems().join(QLatin1Char('\n')), PluginLoader::Folder(), usable);
  pages_->AddObstacle(
      window_.MakeObstacle({others.isEmpty() ? QStringLiteral("没有可用的插件") : QStringLiteral("没有投资组合插件"),
                            text,
                            QString(),
                            [this] { TryAgain(); },
                            {},
                            {}}));
}

void Terminal::TryAgain() {
  pages_.reset();
  market_ = std::make_unique<MarketSide>(process_, database_);
  ShowPages();
}

void Terminal::ShowPages() {
  isReady_ = OpenPages();
  if (pages_ == nullptr) return;
  data_.GiveUpMaking();
  EnterFirstPage();
  GoOn();
}

void Terminal::OpenFolder(const QString& folder) {
  auto next = std::make_unique<MarketSide>(process_, database_, folder);
  next->Open();
  if (!MayLose(QStringLiteral("换数据"))) return;
  const bool isNamed = !process_.Asked().command.dataFolder.isEmpty();
  process_.UseDataFolder(folder);
  Exchange(std::move(next));
  const QString text = QStringLiteral("已换到数据目录“%1”").arg(folder);
  process_.Log().WriteLog(text);
  const QString later = isNamed ? QStringLiteral("；这次启动指定了 --data，以后不带 --data 启动才用它") : QString();
  window_.Window().TellOutcome(text + later);
}

void Terminal::ChangeDay() {
  auto next = std::make_unique<MarketSide>(process_, database_);
  next->Open();
  const MarketData& data = next->Data();
  if (data.CurrentDate() <= market_->Data().CurrentDate()) {
    throw Error(
        ErrorCategory::Refused,
        QStringLiteral("数据文件夹“%1”现在是日期%2的数据").arg(data.Folder(), data.CurrentDateText()).toStdString());
  }
  Exchange(std::move(next));
}

void Terminal::Exchange(std::unique_ptr<MarketSide> next) {
  if (pages_ == nullptr) {
    market_ = std::move(next);
    return ShowPages();
  }
  const PagePlace place = PlaceOf(*pages_, market_->Data());
  if (!process_.Asked().IsBatch()) pages_->RememberPage(process_.Settings());
  pages_.reset();
  market_ = std::move(next);
  isReady_ = OpenPages();
  if (!isReady_) {
    if (pages_ != nullptr) EnterFirstPage();
    return GoOn();
  }
  try {
    ReturnTo(place, *pages_, market_->Data());
  } catch (const std::exception& error) {
    process_.Log().WriteLog(QStringLiteral("换上行情后没有完全回到原处：%1").arg(TextOf(error)));
  }
  GoOn();
}

void Terminal::EnterFirstPage() {
  if (!isReady_) return (void)pages_->GoToObstacle();
  const Options& asked = process_.Asked();
  const bool isGiven = !asked.command.address.isEmpty() || !asked.command.parameter.isEmpty();
  const bool isFree = !isGiven && !asked.IsBatch() && !guard_.IsLeftToExchangeFiles();
  if (isFree && pages_->GoToRemembered(process_.Settings())) return;
  (void)pages_->GoTo(asked.command.address, asked.command.parameter);
}

void Terminal::GoOn() {
  if (pages_ == nullptr) return;
  market_->Connection().Connect();
  if (isReady_ && !std::exchange(hasGoneOn_, true)) commands_->RunFirst();
}

}  // namespace holdwise
