// SPDX-License-Identifier: MIT
#include "window/main_window.h"

#include <QActionGroup>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QStatusBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <initializer_list>
#include <utility>

#include "address_bar.h"
#include "holdwise/packet/number_text.h"
#include "status_sign.h"
#include "window/dialogs.h"
#include "window/help_dialogs.h"

namespace holdwise {
namespace {

constexpr QSize kFirstSize{1280, 800};
constexpr QSize kWindowBorders{16, 48};
constexpr int kIndices = 3;
constexpr int kNarrowestQuotes = 150;
constexpr int kTellMilliseconds = 8000;
constexpr int kLongMilliseconds = 60'000;

QLabel* AddStatus(QStatusBar& bar) {
  auto* label = new QLabel(&bar);
  label->setTextFormat(Qt::PlainText);
  label->setContentsMargins(6, 0, 6, 0);
  bar.addPermanentWidget(label);
  return label;
}

/// A text for a tool tip, as it stands.
QString PlainHint(const QString& text) {
  return text.toHtmlEscaped().replace(QLatin1Char('\n'), QStringLiteral("<br>"));
}

/// Shown while there are lines, which are its story; `text` has a place for their number.
void ShowSign(StatusSign& sign, const QString& text, const QStringList& lines) {
  sign.setVisible(!lines.isEmpty());
  sign.SetWords(text.arg(lines.size()));
  sign.SetStory(lines.join(QLatin1Char('\n')));
}

/// The whole window is on the screen. An offscreen screen is made up, and small.
QSize FirstSize(const QScreen* screen) {
  if (screen == nullptr || QGuiApplication::platformName() == QLatin1String("offscreen")) return kFirstSize;
  return kFirstSize.boundedTo(screen->availableSize() - kWindowBorders);
}

}  // namespace

MainWindow::MainWindow(const ThemeServices& theme, WindowActions actions)
    : theme_(theme), actions_(std::move(actions)) {
  auto* centre = new QWidget(this);
  bar_ = new AddressBar(theme_, centre);
  area_ = new WorkArea(centre);
  auto* layout = new QVBoxLayout(centre);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(bar_);
  layout->addWidget(area_, 1);
  setCentralWidget(centre);
  bar_->OnChosen = [this](const QString& name) { actions_.goTo(name); };
  BuildMenus();
  BuildStatusBar();
  SetSimulated(false);
  SetDemo(false);
  SetPortfolioActionsEnabled(false);
  resize(FirstSize(screen()));
  area_->setFocusPolicy(Qt::ClickFocus);
  area_->setAccessibleName(QStringLiteral("工作区"));
  area_->setFocus();  // else the address bar would show itself focused from the start
}

void MainWindow::BuildMenus() {
  QMenu* file = menuBar()->addMenu(QStringLiteral("文件(&F)"));
  // An action of a group that is turned off stays so, whatever it is told itself.
  portfolioActions_ = new QActionGroup(this);
  portfolioActions_->addAction(file->addAction(QStringLiteral("导入组合(&I)…"), QKeySequence(QStringLiteral("Ctrl+O")),
                                               this, [this] { actions_.importPortfolios(); }));
  portfolioActions_->addAction(file->addAction(QStringLiteral("导出(&E)…"), QKeySequence(QStringLiteral("Ctrl+S")),
                                               this, [this] { actions_.exportViews(); }));
  file->addSeparator();
  file->addAction(QStringLiteral("导出组合(&P)…"), this, [this] { actions_.exportPortfolios(); });
  file->addAction(QStringLiteral("恢复(&R)…"), this, [this] { actions_.restorePortfolios(); });
  file->addSeparator();
  file->addAction(QStringLiteral("选择数据目录(&O)…"), this, [this] { actions_.chooseDataFolder(); });
  switchDemo_ = file->addAction(QString(), this, [this] { actions_.switchDemo(); });
  file->addSeparator();
  quit_ = file->addAction(QStringLiteral("退出(&X)"), QKeySequence(QStringLiteral("Ctrl+Q")), this, [this] {
    if (MayLeave(false)) close();
  });

  QMenu* view = BuildViewMenu();

  QMenu* help = menuBar()->addMenu(QStringLiteral("帮助(&H)"));
  help->addAction(QStringLiteral("键盘(&K)…"), QKeySequence(Qt::Key_F1), this, [this] { ShowKeys(this); });
  help->addAction(QStringLiteral("状态(&S)…"), this, [this] { actions_.showHealth(); });
  help->addAction(QStringLiteral("关于(&A)…"), this, [this] { actions_.showAbout(); });
  menus_ = {file, view, help};
}

QMenu* MainWindow::BuildViewMenu() {
  QMenu* view = menuBar()->addMenu(QStringLiteral("视图(&V)"));
  // A menu of choices one of which is marked; each carries its value.
  const auto addChoices = [&](const QString& title, const auto& act, const auto& choices) {
    QMenu* menu = view->addMenu(title);
    auto* group = new QActionGroup(this);
    for (const auto& [text, value] : choices) {
      QAction* action = group->addAction(menu->addAction(text, this, [act, value = value] { act(value); }));
      action->setCheckable(true);
      action->setData(static_cast<int>(value));
    }
    return group;
  };
  themes_ = addChoices(
      QStringLiteral("主题(&T)"), [this](ThemeKind kind) { actions_.setTheme(kind); },
      std::vector{std::pair{QStringLiteral("深色(&D)"), ThemeKind::Dark},
                  std::pair{QStringLiteral("浅色(&L)"), ThemeKind::Light}});
  riseFalls_ = addChoices(
      QStringLiteral("涨跌颜色(&C)"), [this](RiseFall choice) { actions_.setRiseFall(choice); },
      std::vector{std::pair{QStringLiteral("红涨绿跌(&R)"), RiseFall::RedRises},
                  std::pair{QStringLiteral("绿涨红跌(&G)"), RiseFall::GreenRises},
                  std::pair{QStringLiteral("不着色(&N)"), RiseFall::Plain}});
  addressMenu_ = view->addMenu(QStringLiteral("地址(&A)"));
  addressGroup_ = new QActionGroup(this);
  return view;
}

void MainWindow::BuildStatusBar() {
  statusBar()->setSizeGripEnabled(false);
  ongoing_ = AddStatus(*statusBar());
  ongoing_->setObjectName(QStringLiteral("ongoing"));
  ongoing_->hide();
  progress_ = new QProgressBar(this);
  progress_->setMaximumWidth(200);
  progress_->setAccessibleName(QStringLiteral("进度"));
  progress_->hide();
  statusBar()->addPermanentWidget(progress_);
  newDay_ = new QPushButton(this);
  newDay_->setObjectName(QStringLiteral("newDay"));
  newDay_->setFocusPolicy(Qt::NoFocus);
  newDay_->hide();
  connect(newDay_, &QPushButton::clicked, this, [this] { actions_.takeNewDay(); });
  statusBar()->addPermanentWidget(newDay_);
  cancel_ = new QPushButton(QStringLiteral("取消"), this);
  cancel_->setFocusPolicy(Qt::NoFocus);
  cancel_->hide();
  statusBar()->addPermanentWidget(cancel_);
  quotesProblem_ = AddSign(QStringLiteral("quotesProblem"));
  quotesProblem_->SetWords(QStringLiteral("行情没有更新"));
  dataNotices_ = AddSign(QStringLiteral("dataNotices"));
  health_ = AddSign(QStringLiteral("health"));
  for (StatusSign* sign : {quotesProblem_, dataNotices_, health_}) sign->hide();
  incomplete_ = new QToolButton(this);
  incomplete_->setObjectName(QStringLiteral("incomplete"));
  incomplete_->setAutoRaise(true);
  incomplete_->setToolTip(QStringLiteral("单击列出是哪些、缺什么"));
  incomplete_->hide();
  connect(incomplete_, &QToolButton::clicked, this,
          [this] { ShowReport(this, QStringLiteral("不完整的数据"), incompleteLines_.join(QLatin1Char('\n'))); });
  statusBar()->addPermanentWidget(incomplete_);
  for (int index = 0; index < kIndices; ++index) {
    indices_.push_back(AddStatus(*statusBar()));
    indices_.back()->setObjectName(QStringLiteral("index%1").arg(index));
    indices_.back()->setTextFormat(Qt::RichText);
  }
  quotes_ = AddSign(QStringLiteral("quotes"));
  quotes_->SetAsked(false);
  quotes_->hide();
  quotes_->setMinimumWidth(kNarrowestQuotes);  // a long reason gives way to the other signs
}

bool MainWindow::focusNextPrevChild(bool next) {
  // A page comes into the window later than the bar, and so behind it.
  for (QWidget* sign : std::initializer_list<QWidget*>{quotesProblem_, dataNotices_, health_, incomplete_, quotes_}) {
    QWidget* last = previousInFocusChain();
    // Only one that takes the keys can stand before another.
    while (last != this && last->focusPolicy() == Qt::NoFocus) last = last->previousInFocusChain();
    if (last != this && last != sign) setTabOrder(last, sign);
  }
  return QMainWindow::focusNextPrevChild(next);
}

StatusSign* MainWindow::AddSign(const QString& name) {
  auto* sign = new StatusSign(name, this);
  statusBar()->addPermanentWidget(sign);
  connect(sign, &QToolButton::clicked, this, [this] { actions_.showHealth(); });
  return sign;
}

void MainWindow::SetAddresses(const QStringList& addresses, const QStringList& listed) {
  bar_->SetNames(listed);
  addressMenu_->clear();
  for (const QString& name : addresses) {
    QAction* action = addressMenu_->addAction(name, this, [this, name] { actions_.goTo(name); });
    action->setCheckable(true);
    addressGroup_->addAction(action);
  }
}

void MainWindow::SetCurrentAddress(const QString& name) {
  bar_->SetCurrent(name);
  const QList<QAction*> actions = addressMenu_->actions();
  for (QAction* action : actions) action->setChecked(action->text() == name);
}

void MainWindow::SetPortfolioActionsEnabled(bool isEnabled) {
  portfolioActions_->setEnabled(isEnabled);
}

void MainWindow::SetOngoing(const QString& text, const QString& hint) {
  const bool isOngoing = !text.isEmpty();
  ongoing_->setText(text);
  ongoing_->setToolTip(PlainHint(hint));
  ongoing_->setVisible(isOngoing);
  cancel_->setVisible(isOngoing);
  for (const QMenu* menu : menus_)
    for (QAction* action : menu->actions()) action->setEnabled(action == quit_ || !isOngoing);
  newDay_->setEnabled(!isOngoing);
  for (StatusSign* sign : {quotesProblem_, dataNotices_, health_}) sign->setEnabled(!isOngoing);
}

void MainWindow::ShowTheme() {
  const auto mark = [](const QActionGroup& choices, int value) {
    const QList<QAction*> actions = choices.actions();
    for (QAction* action : actions) action->setChecked(action->data().toInt() == value);
  };
  mark(*themes_, static_cast<int>(theme_.Kind()));
  mark(*riseFalls_, static_cast<int>(theme_.RiseFallColors()));
  ShowIndices();
  for (StatusSign* sign : {health_, quotesProblem_}) sign->SetAmber(true, theme_);
  quotes_->SetAmber(quotes_->IsAmber(), theme_);
  bar_->update();
}

void MainWindow::SetSimulated(bool isSimulated) {
  setWindowTitle(isSimulated ? QStringLiteral("Holdwise — 模拟行情") : QStringLiteral("Holdwise"));
}

void MainWindow::SetDemo(bool isDemo) {
  switchDemo_->setText(isDemo ? QStringLiteral("回到自己的数据(&B)") : QStringLiteral("试用模拟行情(&D)"));
}

void MainWindow::SetQuotes(const QString& text, const QString& reason) {
  constexpr int kWidestReason = 320;
  const QString shown = quotes_->fontMetrics().elidedText(reason, Qt::ElideRight, kWidestReason);
  quotes_->SetWords(reason.isEmpty() ? text : text + QStringLiteral("：") + shown);
  quotes_->SetStory(reason);
  quotes_->show();
  if (quotes_->IsAmber() == !reason.isEmpty()) return;
  quotes_->SetAsked(!reason.isEmpty());
  quotes_->SetAmber(!reason.isEmpty(), theme_);
}

void MainWindow::SetIndices(const std::vector<IndexLevel>& levels) {
  levels_ = levels;
  ShowIndices();
}

void MainWindow::ShowIndices() {
  for (std::size_t index = 0; index < indices_.size() && index < levels_.size(); ++index) {
    const IndexLevel& one = levels_[index];
    QLabel& label = *indices_[index];
    if (!(one.level > 0)) {
      label.setText(one.name + QStringLiteral(" —"));
      continue;
    }
    const double percent = one.previousClose > 0 ? (one.level / one.previousClose - 1) * 100 : 0;
    const QString change = (percent > 0 ? QStringLiteral("+") : QString()) + FormatFixed(percent, 2);
    label.setText(QStringLiteral("%1 %2 <span style='color:%3'>%4%</span>")
                      .arg(one.name, FormatFixed(one.level, 2), theme_.ColorOfChange(percent).name(), change));
  }
}

void MainWindow::SetIncomplete(const QStringList& lines) {
  incompleteLines_ = lines;
  incomplete_->setVisible(!lines.isEmpty());
  incomplete_->setText(QStringLiteral("%1 项数据不完整").arg(lines.size()));
}

void MainWindow::SetQuotesProblem(const QString& text) {
  quotesProblem_->setVisible(!text.isEmpty());
  quotesProblem_->SetStory(text);
}

void MainWindow::OfferNewDay(const QString& text, const QString& hint) {
  newDay_->setText(text);
  newDay_->setToolTip(hint);
  newDay_->setVisible(!text.isEmpty());
}

void MainWindow::SetDataNotices(const QStringList& notices) {
  ShowSign(*dataNotices_, QStringLiteral("数据有%1处未采用"), notices);
}

void MainWindow::SetHealthProblems(const QStringList& problems) {
  ShowSign(*health_, QStringLiteral("%1处需要注意"), problems);
}

void MainWindow::Tell(const QString& text) {
  statusBar()->showMessage(text, kTellMilliseconds);
}

void MainWindow::TellOngoing(const QString& text) {
  if (!text.isEmpty()) return statusBar()->showMessage(ongoingText_ = text);
  if (statusBar()->currentMessage() == ongoingText_) statusBar()->clearMessage();
}

void MainWindow::TellFailure(const QString& text) {
  const bool saysSo = text.contains(QStringLiteral("未完成"));
  statusBar()->showMessage(saysSo ? text : QStringLiteral("没有完成：%1").arg(text), kLongMilliseconds);
}

void MainWindow::TellOutcome(const QString& text) {
  statusBar()->showMessage(text, kLongMilliseconds);
}

void MainWindow::ShowProgress(int done, int total) {
  progress_->setVisible(total > 0);
  cancel_->setVisible(total > 0);
  if (total <= 0) return;
  progress_->setRange(0, total);
  progress_->setValue(done);
  if (isVisible()) statusBar()->repaint();
}

bool MainWindow::MayLeave(bool isAgreed) const {
  const auto mayClose = MayClose;  // while it asks, it may be exchanged
  return (!mayClose || mayClose(isAgreed)) && (isAgreed || !actions_.mayClose || actions_.mayClose());
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->setAccepted(MayLeave(!event->spontaneous()));
}

}  // namespace holdwise
