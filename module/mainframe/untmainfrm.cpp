// SPDX-License-Identifier: MIT
#include "mainframe/untmainfrm.h"

#include <QApplication>
#include <QPointer>
#include <QScopeGuard>
#include <QShortcut>
#include <QStackedLayout>
#include <QVBoxLayout>
#include <algorithm>
#include <chrono>
#include <utility>

#include "calc/download_trigger.h"
#include "calc/untcalc2.h"
#include "common/host/event_guard.h"
#include "common/host/font.h"
#include "common/host/host_access.h"
#include "common/series/all_stock_data.h"
#include "common/series/expect_value.h"
#include "common/series/missing_prices.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "common/store/exchange_files.h"
#include "common/store/statements.h"
#include "mainframe/view_table.h"
#include "pane_keys.h"
#include "text_link.h"
#include "views/znstocklist/znstocklist.h"

namespace holdwise {
namespace {

using namespace std::chrono_literals;

constexpr int kTreeWidth = 174;
constexpr int kSplitterWidth = 10;
constexpr int kTreeMargin = 5;
constexpr int kLinkMargin = 14;
constexpr auto kPricePeriod = 3000ms;
constexpr auto kRecalcDelay = 1000ms;

/// A node the table does not know rests on saved portfolios.
RestsOn RestOf(int frameId) {
  const TNodeData* node = FindNode(frameId);
  return node == nullptr ? RestsOn::Saved : node->restsOn;
}

bool IsLive(int frameId) {
  const TNodeData* node = FindNode(frameId);
  return node != nullptr && node->isLive;
}

TFigureBasis BasisOf(int frameId) {
  const TNodeData* node = FindNode(frameId);
  return node == nullptr ? TFigureBasis() : node->basis;
}

/// With what is awaited while it may still come.
ViewNotice WholeNotice(const TViewFrame& frame) {
  ViewNotice notice = frame.Notice();
  if (!CalculationProblem().isEmpty()) return notice;
  for (const QString& line : notice.awaited.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) notice.Add(line);
  return notice;
}

QString Unit() {
  return QStringLiteral("untmainfrm");
}

}  // namespace

bool IsLoadDataFromFile = false;

TMainFrm::TMainFrm(QWidget* parent) : QWidget(parent) {
  BuildPanels();
  BuildTimers();
  auto undo = qScopeGuard([] {
    FreeSharedObjects();
    FDBServer = nullptr;
  });
  FDBServer = &ModuleHost().UserData();
  IsLoadDataFromFile = LoadZHFile();
  tree_->BuildTree(Nodes, static_cast<int>(Nodes.size()) - 1);
  MakeSkin();
  CreateSharedObjects();
  connect(g_Timer.get(), &QTimer::timeout, this,
          [this] { GuardEvent(Unit(), QStringLiteral("g_TimerOnTimer"), [this] { g_TimerOnTimer(); }); });
  QTreeWidgetItem* top = tree_->topLevelItem(0);
  tree_->GoTo(top);
  connect(tree_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* node) {
    GuardEvent(Unit(), QStringLiteral("dxTLChangeNode"), [&] { dxTLChangeNode(node); });
  });
  // A view that does not open leaves the other ones.
  GuardEvent(Unit(), QStringLiteral("dxTLChangeNode"), [&] { dxTLChangeNode(top); });
  undo.dismiss();
}

TMainFrm::~TMainFrm() {
  tree_->disconnect(this);
  Form_Stock.reset();  // the host may leave while it is open
  FCurFrame = nullptr;
  for (TViewFrame* frame : FFrameList) {
    frame->setParent(nullptr);
    delete frame;
  }
  FFrameList.clear();
  FreeSharedObjects();
  SaveZHFile();
  FDBServer = nullptr;
}

void TMainFrm::BuildPanels() {
  splitter_ = new FrameSplitter(Qt::Horizontal, this);
  splitter_->setObjectName(QStringLiteral("Splitter1"));
  splitter_->setHandleWidth(kSplitterWidth);
  splitter_->setChildrenCollapsible(false);
  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins(0, 0, 0, 0);
  whole->addWidget(splitter_);

  RzPanel2 = new QWidget(splitter_);
  tree_ = new NavigationTree(RzPanel2);
  auto* left = new QVBoxLayout(RzPanel2);
  left->setContentsMargins(kTreeMargin, kTreeMargin, 0, 0);
  left->addWidget(tree_);

  RzPanel1 = new QWidget(splitter_);
  RzPanel3 = new TitleStrip(QString(), DesignFont(15, true), {14, 10}, RzPanel1);
  Label1 = new TextLink(QStringLiteral("智能股票池"));
  Label1->hide();
  Label1->OnClick = [] { GuardEvent(Unit(), QStringLiteral("Label1Click"), [] { Label1Click(); }); };
  auto* bar = new QHBoxLayout(RzPanel3);
  bar->setContentsMargins(0, 0, kLinkMargin, 0);
  bar->addStretch();
  bar->addWidget(Label1);
  RzPanel4 = new QWidget(RzPanel1);
  // A page may be as narrow as another one is: none of those that are not shown keeps it from that.
  RzPanel4->setMinimumSize(1, 1);
  views_ = new QStackedLayout(RzPanel4);
  failure_ = new QLabel;
  failure_->setFont(DesignFont(15));
  failure_->setAlignment(Qt::AlignCenter);
  views_->addWidget(failure_);
  auto* right = new QVBoxLayout(RzPanel1);
  right->setContentsMargins(0, 0, 0, 0);
  right->setSpacing(0);
  right->addWidget(RzPanel3);
  right->addWidget(RzPanel4, 1);

  for (const auto& [key, step] : {std::pair{QKeySequence(Qt::Key_F6), 1}, {QKeySequence(Qt::SHIFT | Qt::Key_F6), -1}})
    connect(new QShortcut(key, this), &QShortcut::activated, this, [this, step = step] { NextPane(step); });

  splitter_->setStretchFactor(0, 0);
  splitter_->setStretchFactor(1, 1);
  splitter_->setSizes({kTreeWidth, kTreeWidth});
  RzPanel2->resize(kTreeWidth, RzPanel2->height());
}

void TMainFrm::BuildTimers() {
  Timer_NowPrice.setInterval(kPricePeriod);
  connect(&Timer_NowPrice, &QTimer::timeout, this,
          [this] { GuardEvent(Unit(), QStringLiteral("Timer_NowPriceTimer"), [this] { Timer_NowPriceTimer(); }); });
  Timer_NowPrice.start();
  Timer1.setInterval(kRecalcDelay);
  connect(&Timer1, &QTimer::timeout, this,
          [this] { GuardEvent(Unit(), QStringLiteral("Timer1Timer"), [this] { Timer1Timer(); }); });
  Timer1.start();
  Timer_Reload.setInterval(0);
  connect(&Timer_Reload, &QTimer::timeout, this,
          [this] { GuardEvent(Unit(), QStringLiteral("Timer_ReloadTimer"), [this] { Timer_ReloadTimer(); }); });
}

int TMainFrm::GetFID(int nodeId) {
  return nodeId % 1000 != 0 ? nodeId : nodeId + 1;
}

void TMainFrm::dxTLChangeNode(const QTreeWidgetItem* newNode) {
  TViewFrame* previous = std::exchange(FCurFrame, nullptr);
  if (newNode == nullptr) return;
  const int frameId = GetFID(NavigationTree::IdOf(newNode));
  const TNodeData* view = FindView(frameId);
  // A node that the table does not know leaves the previous view on screen, but no longer current: intended.
  if (view == nullptr) return;
  const auto refresh = qScopeGuard([this] { ModuleHost().System().RefreshWorkArea(RzPanel4); });
  ShowView(*view, *newNode, previous);
}

QString TMainFrm::CaptionFor(const QTreeWidgetItem& node) {
  const bool isGroup = NavigationTree::IdOf(&node) % 1000 == 0;
  return NavigationTree::CaptionOf(isGroup ? node.child(0) : &node);
}

void TMainFrm::ShowFailure(const QTreeWidgetItem& node) {
  const QString caption = CaptionFor(node);
  RzPanel3->SetCaption(caption);
  RzPanel3->SetNotice({}, {});
  Label1->hide();
  failure_->setText(QStringLiteral("“%1”页面没有打开，请稍后再选一次（原因见日志）。").arg(caption));
  views_->setCurrentWidget(failure_);
}

void TMainFrm::ShowView(const TNodeData& view, const QTreeWidgetItem& node, TViewFrame* previous) {
  const auto cached = std::find_if(FFrameList.begin(), FFrameList.end(),
                                   [&](const TViewFrame* frame) { return frame->Tag() == view.Id; });
  if (cached != FFrameList.end()) {
    FCurFrame = *cached;
  } else {
    try {
      FCurFrame = view.make().release();
    } catch (...) {
      ShowFailure(node);
      throw;
    }
    FCurFrame->SetTag(view.Id);
    FCurFrame->OnNoticeChanged = [this, frame = FCurFrame] {
      if (frame == FCurFrame) ShowNotice(false);
    };
    FCurFrame->OnPortfoliosChanged = [this, frame = FCurFrame] {
      if (frame == FCurFrame) ShowNotice(true);
    };
    FCurFrame->OnDownData = [this, alive = QPointer<TMainFrm>(this)] {
      if (!DownData() && !alive.isNull()) EnableTimer1();
    };
    views_->addWidget(FCurFrame);
    FFrameList.push_back(FCurFrame);
  }
  RzPanel3->SetCaption(CaptionFor(node));
  views_->setCurrentWidget(FCurFrame);
  if (previous != nullptr && previous != FCurFrame) SendFrameMessage(*previous, FrameMessage::Hidden);
  SendInit();
  Label1->setVisible(view.restsOn == RestsOn::Nothing);
  if (view.restsOn != RestsOn::Nothing) EnableTimer1();
}

void TMainFrm::SendInitAlone() {
  arePricesShown_ = g_NowPrice->HasPrices() && g_NowPrice->IsDataReady();
  SendFrameMessage(*FCurFrame, FrameMessage::Init);
}

void TMainFrm::SendInit() {
  SendInitAlone();
  ShowNotice(true);
}

void TMainFrm::ShowNotice(bool readAgain) {
  const RestsOn restsOn = FCurFrame == nullptr ? RestsOn::Nothing : RestOf(FCurFrame->Tag());
  if (restsOn == RestsOn::Nothing) return RzPanel3->SetNotice({}, {});
  const TFigureBasis basis = BasisOf(FCurFrame->Tag());
  const PortfolioSet set = restsOn == RestsOn::Saved ? PortfolioSet::Saved : PortfolioSet::Unsaved;
  if (readAgain) incomplete_ = PortfoliosLackingStoredInputs(basis, Database(), set);
  const PricesUsed shown = arePricesShown_ ? basis.prices : PricesUsed::None;
  const ViewNotice own = WholeNotice(*FCurFrame);
  auto all = Together(WithThoseLackingPrices(incomplete_, shown, Database()), own.lacking);
  const QString problem = CalculationProblem();
  const QStringList uncalculated = problem.isEmpty() ? QStringList() : TakeUncalculated(all);
  QStringList texts{own.text, NoticeOf(all)};
  QStringList hints{own.hint, HintOf(all)};
  if (!uncalculated.isEmpty()) {
    texts.prepend(QStringLiteral("%1 个组合没有计算").arg(uncalculated.size()));
    hints = QStringList{problem, UncalculatedLine(uncalculated)} + hints;
  }
  if (!ExchangeProblem().isEmpty()) {
    texts.prepend(QStringLiteral("退出时保存的组合没有读入"));
    hints.prepend(ExchangeProblem());
  }
  texts.removeAll(QString());
  hints.removeAll(QString());
  RzPanel3->SetNotice(texts.join(QStringLiteral("；")), hints.join(QLatin1Char('\n')));
}

void TMainFrm::EnableTimer1() {
  // A timer that runs already keeps its time.
  if (!Timer1.isActive()) Timer1.start();
}

void TMainFrm::InitProc() {
  g_NowPrice->SetDataReady(true);
  g_NowPrice->SetIsGetNowPrice(true);
  Timer_NowPrice.start();
  if (!std::exchange(isReloadDue_, false) || FCurFrame == nullptr) return;
  SendInit();
  if (RestOf(FCurFrame->Tag()) != RestsOn::Nothing) EnableTimer1();
}

void TMainFrm::FinalProc() {
  Timer_NowPrice.stop();
  g_NowPrice->CancelSubscription();
}

void TMainFrm::Timer1Timer() {
  Timer1.stop();
  const int frameId = GetFID(NavigationTree::IdOf(tree_->currentItem()));
  const RestsOn restsOn = RestOf(frameId);
  if (restsOn == RestsOn::Nothing) return;
  if (Database().Count(sql::kCountPortfolios) <= 0) return;
  const QString& relevant = restsOn == RestsOn::Unsaved ? sql::kCountUnsavedPortfolios : sql::kCountSavedPortfolios;
  if (Database().Count(relevant) == 0) return;
  const QPointer<TMainFrm> alive(this);
  const bool isDone = DownData();
  if (!alive) return;  // the host may have left the module while the dialog was open
  if (!isDone) return EnableTimer1();
  ReCalc();
  if (FCurFrame == nullptr) return;
  FCurFrame->KeepSelection();
  SendInit();
}

void TMainFrm::Timer_NowPriceTimer() {
  Timer_NowPrice.stop();
  const auto restart = qScopeGuard([this] { Timer_NowPrice.start(); });
  if (!g_NowPrice->IsDataReady()) return;
  if (FCurFrame == nullptr || !IsLive(FCurFrame->Tag())) return;
  arePricesShown_ = g_NowPrice->HasPrices();
  g_NowPrice->ReGetNowPrice();
  SendFrameMessage(*FCurFrame, FrameMessage::ReflashNowPrice);
  ShowNotice(false);
}

void TMainFrm::g_TimerOnTimer() {
  g_Timer->stop();
  ModuleHost().Addresses().GotoAddress(QStringLiteral("分时走势"), QString());
}

void TMainFrm::Label1Click() {
  if (!Form_Stock) Form_Stock = std::make_unique<TForm_Stock>();
  Form_Stock->ShowModal();
  Form_Stock.reset();
}

void TMainFrm::Button1Click() {
  ModuleHost().Addresses().GotoAddress(QStringLiteral("工具条"), QStringLiteral("基金"));
}

QStringList TMainFrm::NoticesOfViews(std::vector<IncompletePortfolio>& lacking) const {
  QStringList lines;
  for (const TViewFrame* frame : FFrameList) {
    const ViewNotice notice = WholeNotice(*frame);
    lacking = Together(std::move(lacking), notice.lacking);
    lines << notice.hint.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
  }
  lines.removeDuplicates();
  return lines;
}

bool TMainFrm::IsSettled() const {
  if (Timer1.isActive() || Timer_Reload.isActive() || frmCalc2 || g_AllStockData->IsDownloading()) return false;
  if (FCurFrame == nullptr) return true;
  // Only a live view asks for prices again when they did not come.
  return FCurFrame->IsSettled() && (!IsLive(FCurFrame->Tag()) || (arePricesShown_ && g_NowPrice->HasPrices()));
}

void TMainFrm::DataChanged() {
  RetryIncomplete();
  g_AllStockData->ForgetOtherEdition();
  // Nobody looks while the address is left; entering it again makes up for it.
  isReloadDue_ = !Timer_NowPrice.isActive();
  if (isReloadDue_) return ReCalc();
  ForgetSeries();
  reload_ = Reload::Series;
  Timer_Reload.start();
}

void TMainFrm::Timer_ReloadTimer() {
  // What fails leaves the rest to come all the same.
  const Reload now = reload_;
  reload_ = now == Reload::Series ? Reload::View : Reload::Notice;
  switch (now) {
    case Reload::Series:
      return ReCalc();
    case Reload::View:
      isReloadDue_ = !Timer_NowPrice.isActive();  // the address has been left since
      if (isReloadDue_) return Timer_Reload.stop();
      g_NowPrice->ReGetNowPrice();
      if (FCurFrame == nullptr) return;
      FCurFrame->KeepSelection();
      return SendInitAlone();
    case Reload::Notice:
      Timer_Reload.stop();
      if (FCurFrame == nullptr) return;
      if (RestOf(FCurFrame->Tag()) != RestsOn::Nothing) EnableTimer1();
      return ShowNotice(true);
  }
}

void TMainFrm::NextPane(int step) {
  std::vector<QWidget*> panes{tree_};
  if (FCurFrame != nullptr && views_->currentWidget() == FCurFrame) {
    const std::vector<QWidget*> ofView = FCurFrame->Panes();
    panes.insert(panes.end(), ofView.begin(), ofView.end());
  }
  FocusNextPane(std::move(panes), step);
}

void TMainFrm::MakeSkin() {
  const IColorSet2& colors = ModuleHost().ColorTheme().Colors();
  themeColors_ = ReadGridColors(colors);
  const QColor background = colors.ColorOf(theme::kBackground);
  const QColor titleFont = colors.ColorOf(theme::kTitleFont);
  tree_->SetColors({background, titleFont, themeColors_.unselectedText, colors.ColorOf(theme::kTreeLine),
                    themeColors_.selectedRow, themeColors_.selectedText, themeColors_.focusFrame});
  for (TViewFrame* frame : FFrameList) SendFrameMessage(*frame, FrameMessage::ChangeSkin);
  if (Form_Stock) Form_Stock->MakeSkin();
  for (QWidget* panel : {RzPanel1, RzPanel2, static_cast<QWidget*>(RzPanel3), RzPanel4, static_cast<QWidget*>(this)}) {
    SetPanelColor(*panel, background);
  }
  SetTextColor(*failure_, titleFont);
  RzPanel3->ApplyTheme();
  // The link takes the colour of the title.
  SetTextColor(*Label1, colors.ColorOf(theme::kSectionBigText));
}

}  // namespace holdwise
