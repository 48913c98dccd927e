// SPDX-License-Identifier: MIT
#include "views/znpz/znpz.h"

#include <QFile>
#include <QPointer>
#include <QPushButton>
#include <QThread>
#include <utility>

#include "allocation_files.h"
#include "allocation_layout.h"
#include "allocation_rows.h"
#include "candidate_band.h"
#include "capital_band.h"
#include "capital_slider.h"
#include "common/frames/entry_bar.h"
#include "common/frames/holdings_panel.h"
#include "common/helpers/edition.h"
#include "common/host/download_role.h"
#include "common/host/event_guard.h"
#include "common/host/host_access.h"
#include "common/host/messages.h"
#include "common/host/remote_files.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "holdwise/packet/number_text.h"
#include "holdwise/packet/table_limits.h"
#include "proposal_writer.h"
#include "stock_count.h"

namespace holdwise {
namespace {

using namespace allocation;

const QString kUnit = QStringLiteral("Znpz");
const QString kShortfall = QStringLiteral("投资组合");  ///< the caption of what the capital does not suffice for
const QString kUpdateData = QStringLiteral("请更新数据目录，再按“配 置”。");
const QString kAskAgain = QStringLiteral("请再按“配 置”。");
const QString kStartAgain = QStringLiteral("请重新启动终端；仍然如此时，请重新生成数据目录。");
constexpr unsigned long kPause = 100;  // ms
/// A remote name without its folder.
QString PlainName(const QString& fileName) {
  return fileName.section(QLatin1Char('\\'), -1);
}

QString ReasonOf(int errorCode) {
  switch (errorCode) {
    case TDSBAsynDownFileRole::kNotFound:
      return QStringLiteral("没有找到");
    case TDSBAsynDownFileRole::kTimedOut:
      return QStringLiteral("等待超时");
    case TDSBAsynDownFileRole::kUnwritable:
      return QStringLiteral("不能写入工作目录");
    default:
      return QStringLiteral("不能读取");
  }
}

}  // namespace

TFrm_ZNPZ::TFrm_ZNPZ(QWidget* parent)
    : TViewFrame(kUnit, parent), upper_(new CapitalBand(this)), lower_(new CandidateBand(this)) {
  InitAppear();
  BuildDownloads();
  msg_changeskin();
  RequestPool();
  ReflashData();
}

TFrm_ZNPZ::~TFrm_ZNPZ() = default;

void TFrm_ZNPZ::InitAppear() {
  AddPart(*upper_, false);
  AddPart(*lower_, true);
  upper_->OnConfigure = [this] {
    isAsked_ = true;
    Label1Click();
  };
  upper_->OnCaption = [this](double capital) {
    if (capital <= 0) return QStringLiteral("请输入资金量");
    const int count = KnownStockCount(capital);
    const QString amount = QStringLiteral("%1 万元").arg(ShortestText(capital));
    return count == 0 ? amount : QStringLiteral("%1：%2 只股票").arg(amount).arg(count);
  };
  lower_->Candidates().OnShow = [this](int row) { strngrdSelectCell(row); };
  lower_->OnSave = [this](int row) { SaveProposal(row); };
  TStringGrid& parts = lower_->Holdings().Grid();
  lower_->Holdings().OnHint = [this, &parts](const GridCell& cell, const QPoint& /*position*/) {
    const bool isOfRounding = cell.column == kQuantity || cell.column == kWeight;
    return isOfRounding && !parts.IsEmpty() ? HintOfPart(parts, cell.row, capital_) : parts.ClippedText(cell);
  };
  setTabOrder(upper_->btnSetting, &lower_->Candidates().Grid());
}

void TFrm_ZNPZ::BuildDownloads() {
  role1_ = MakeFileDownload(QStringLiteral("InfoAsynDownFileRole1"));
  role2_ = MakeFileDownload(QStringLiteral("InfoAsynDownFileRole2"));
  role1_->OnReciveAFile = [this](const QString& name, int) {
    Handle(QStringLiteral("InfoAsynDownFileRole1ReciveAFile"), name, {}, &TFrm_ZNPZ::InfoAsynDownFileRole1ReciveAFile);
  };
  role2_->OnReciveAFile = [this](const QString& name, int) {
    Handle(QStringLiteral("InfoAsynDownFileRole2ReciveAFile"), name, {}, &TFrm_ZNPZ::InfoAsynDownFileRole2ReciveAFile);
  };
  role2_->OnReciveStearm = [this](const QString& name, int, const QByteArray& content) {
    Handle(QStringLiteral("InfoAsynDownFileRole2ReciveStearm"), name, content,
           &TFrm_ZNPZ::InfoAsynDownFileRole2ReciveStearm);
  };
  role1_->OnReciveAFileFail = [this](const QString& name, int code) { FileFailed(name, code); };
  // The data centre's prices stand in for the pool's.
  role2_->OnReciveAFileFail = [this](const QString& name, int code) { FileFailed(name, code); };
}

void TFrm_ZNPZ::RequestPool() {
  edition_ = ModuleHost().DataCenter().DataEdition();
  ++pending_;
  role2_->Request(remote_files::kStockPool);
}

void TFrm_ZNPZ::DoInit_() {
  const bool isOther = edition_ != ModuleHost().DataCenter().DataEdition();
  if (pending_ > 0 || (!isOther && listProblem_.isEmpty())) return;
  if (isOther) {
    g_StockClosePrice->Forget();
    RequestPool();
  }
  ReflashData();
}

int TFrm_ZNPZ::CalcFileNum(double capital) {
  isTableDamaged_ = false;
  try {
    const QString path = role1_->LocalPath(remote_files::kCapitalTable);
    usesFixedTable_ = !QFile::exists(path);
    if (!usesFixedTable_ && capitalTable_.isEmpty()) {
      const ResultSet table = ReadAllocationFile(path);
      // One that an earlier start has left, of other data: that of these data is still on its way.
      usesFixedTable_ = NamesOtherEdition(table, ModuleHost().DataCenter().DataEdition());
      if (!usesFixedTable_) capitalTable_ = CapitalTableIn(table);
    }
    return KnownStockCount(capital);
  } catch (...) {
    isTableDamaged_ = true;
    // The unit is spelled so in this line: intended.
    LogCurrentException(QStringLiteral("ZNZP"), QStringLiteral("CalcFileNum"));
  }
  return 0;
}

int TFrm_ZNPZ::KnownStockCount(double capital) const {
  return usesFixedTable_ ? FixedStockCount(capital) : StockCountBy(capitalTable_, capital);
}

void TFrm_ZNPZ::Label1Click() {
  capitalText_ = upper_->Edit1->text();
  capital_ = RealOr(capitalText_);
  problems_.clear();
  listProblem_.clear();
  awaitedList_.clear();
  awaitedComposition_.clear();
  isFileReceived_ = false;
  ++request_;
  TStringGrid& candidates = lower_->Candidates().Grid();
  ClearStrnGrd(candidates);
  if (capital_ <= 0) {
    ClearHoldings({});
    stockCount_ = 0;
    candidates.SetEmptyText(QStringLiteral("请输入资金量（万元），再按“配 置”"));
  } else {
    stockCount_ = CalcFileNum(capital_);
    candidates.SetEmptyText(QStringLiteral("正在取得候选组合…"));
    awaitedList_ = CandidateListFile(stockCount_);
    ++pending_;
    role1_->Request(awaitedList_);
  }
  ShowCaption();
  upper_->Slider->update();
}

void TFrm_ZNPZ::ShowCaption() {
  lower_->SetCaption(
      stockCount_ == 0 ? QStringLiteral("候选组合")
                       : QStringLiteral("候选组合（%1 万元，%2 只股票）").arg(ShortestText(capital_)).arg(stockCount_));
}

void TFrm_ZNPZ::strngrdSelectCell(int row) {
  if (row < 0) return;
  ClearHoldings(QStringLiteral("正在取得成分股…"));
  ++request_;
  const QString& name = lower_->Candidates().Grid().Cells(kFileName, row);
  awaitedComposition_ = remote_files::kFolder + name;
  awaitedRow_ = row;
  if (const QString problem = ProblemOfFileName(name); !problem.isEmpty()) {
    LogFailure(kUnit, QStringLiteral("strngrdSelectCell"), problem);
    return ShowMissing(awaitedComposition_, problem, kUpdateData);
  }
  ++pending_;
  role1_->Request(awaitedComposition_);
}

void TFrm_ZNPZ::Handle(const QString& routine, const QString& fileName, const QByteArray& content, Handler handler) {
  const QPointer<TFrm_ZNPZ> alive(this);
  const bool isDone = GuardEvent(kUnit, routine, [&] { (this->*handler)(fileName, content); });
  if (alive.isNull()) return;
  if (pending_ > 0) --pending_;
  if (!isDone)
    ShowMissing(fileName, QStringLiteral("文件 %1 不能读取（原因见日志）").arg(PlainName(fileName)), kUpdateData);
}

void TFrm_ZNPZ::FileFailed(const QString& fileName, int errorCode) {
  if (pending_ > 0) --pending_;
  ShowMissing(fileName, QStringLiteral("没有取得文件 %1（%2）").arg(PlainName(fileName), ReasonOf(errorCode)),
              kUpdateData);
}

void TFrm_ZNPZ::ShowMissing(const QString& fileName, const QString& problem, const QString& advice) {
  if (fileName == awaitedList_) {
    awaitedList_.clear();
    listProblem_ = problem;
    if (stockCount_ == 0) listProblem_ = QStringLiteral("资金量表 ZNPZ.dat 没有给出这个资金量的股票数");
    if (isTableDamaged_) listProblem_ = QStringLiteral("资金量表 ZNPZ.dat 不能读取（原因见日志）");
    lower_->Candidates().Grid().SetEmptyText(QStringLiteral("没有候选组合：%1。\n%2").arg(listProblem_, advice));
    ClearHoldings({});
  } else if (fileName == awaitedComposition_) {
    awaitedComposition_.clear();
    AddProblem(awaitedRow_, problem);
    ClearHoldings(QStringLiteral("没有成分股：%1。\n%2").arg(problem, advice));
  }
}

void TFrm_ZNPZ::ClearHoldings(const QString& emptyText) {
  HoldingsPanel& holdings = lower_->Holdings();
  holdings.Clear();
  holdings.SetNotice({}, {});
  holdings.Grid().SetEmptyText(emptyText);
  isFileReceived_ = false;
}

void TFrm_ZNPZ::AddProblem(int row, const QString& problem) {
  const QString line =
      QStringLiteral("智能配置的组合 %1：%2").arg(lower_->Candidates().Grid().Cells(kNumber, row), problem);
  if (!problems_.contains(line)) problems_ << line;
}

// A list or a composition that something else has been asked for since is not shown: holdings of another candidate
// would be saved with the selected one.
void TFrm_ZNPZ::InfoAsynDownFileRole1ReciveAFile(const QString& fileName, const QByteArray& /*content*/) {
  const bool isLoaded = fileName.contains(QLatin1Char('_'));
  const bool isComposition = isLoaded && IsComposition(fileName);
  if (isLoaded && fileName != (isComposition ? awaitedComposition_ : awaitedList_)) return;
  const auto read = isComposition ? &ReadAllocationFile : &ReadCandidateList;
  if (isLoaded) ClientDataSet1 = read(role1_->LocalPath(fileName));
  // Its weights and limits follow from other prices than those that are shown.
  if (isLoaded && NamesOtherEdition(ClientDataSet1, ModuleHost().DataCenter().DataEdition()))
    return ShowMissing(fileName, QStringLiteral("文件 %1 是随另一份数据生成的").arg(PlainName(fileName)), kStartAgain);
  if (isComposition && ProposalsOf(ClientDataSet1) != proposals_)
    return ShowMissing(fileName, QStringLiteral("候选组合已经重新生成"), kAskAgain);
  // A name without "_" is not loaded, and the list is filled from what was: intended.
  isComposition ? ReciveComposition() : ReciveCandidates();
}

void TFrm_ZNPZ::ReciveCandidates() {
  const std::vector<Candidate> candidates = CandidatesIn(ClientDataSet1);
  awaitedList_.clear();
  proposals_ = ProposalsOf(ClientDataSet1);
  PortfolioList& list = lower_->Candidates();
  TStringGrid& grid = list.Grid();
  ShowCandidates(candidates, grid);
  if (candidates.empty()) {
    grid.SetEmptyText(QStringLiteral("这个资金量没有候选组合，请换一个资金量，再按“配 置”"));
    return ClearHoldings({});
  }
  isFirstComposition_ = true;
  QThread::msleep(kPause);  // on the interface thread: intended
  // A list that stood already may have another row current.
  grid.Row() == 0 ? list.Reload(0) : static_cast<void>(grid.SelectCell(0, 0));
}

void TFrm_ZNPZ::ReciveComposition() {
  const QPointer<TFrm_ZNPZ> alive(this);
  const std::vector<Part> parts = PartsIn(ClientDataSet1);
  if (parts.empty()) return ShowMissing(awaitedComposition_, QStringLiteral("这个候选组合没有成分股"), kUpdateData);
  const QString file = std::exchange(awaitedComposition_, {});
  HoldingsPanel& holdings = lower_->Holdings();
  const PartsShown shown = ShowParts(parts, capital_, holdings.Grid());
  const TStringGrid& candidates = lower_->Candidates().Grid();
  const PartsNotice notice = NoticeOf(shown);
  holdings.SetNotice(notice.text, notice.hint);
  if (!notice.problem.isEmpty()) AddProblem(awaitedRow_, notice.problem);
  const bool tells = !shown.unaffordable.isEmpty() && !candidates.IsEmpty() && !isFirstComposition_;
  isFirstComposition_ = false;
  if (tells) {
    Tell(QStringLiteral("您的资金量无法配置当前组合:") + ShortfallText(shown.unaffordable), kShortfall);
    if (alive.isNull()) return;
  }
  // While the box was open another candidate may have been asked for.
  isFileReceived_ = awaitedComposition_.isEmpty() && !candidates.IsEmpty() &&
                    file == remote_files::kFolder + candidates.Cells(kFileName, candidates.Row());
}

void TFrm_ZNPZ::InfoAsynDownFileRole2ReciveAFile(const QString& fileName, const QByteArray& /*content*/) {
  CtrlReciveFile2(fileName, {}, 0);
}

void TFrm_ZNPZ::InfoAsynDownFileRole2ReciveStearm(const QString& fileName, const QByteArray& content) {
  CtrlReciveFile2(fileName, content, 1);
}

void TFrm_ZNPZ::CtrlReciveFile2(const QString& fileName, const QByteArray& stream, int mode) {
  ClientDataSet1 = ReadReceived(*role2_, fileName, stream, mode, kSecuritiesLimits);
  QStringList codes = CodesIn(ClientDataSet1);
  g_StockClosePrice->GetDayClosePriceStrList(codes);
  ReflashData();
}

bool TFrm_ZNPZ::IsUnaffordable() {
  const QStringList names = UnaffordableIn(lower_->Holdings().Grid());
  if (names.isEmpty()) return false;
  Tell(QStringLiteral("您的资金量无法配置当前组合") + ShortfallText(names), kShortfall);
  return true;
}

void TFrm_ZNPZ::SaveProposal(int row) {
  if (!isFileReceived_ || IsUnaffordable()) return;
  const QPointer<TFrm_ZNPZ> alive(this);
  const int asked = request_;
  const bool isAgreed = AgreesToNotice(QStringLiteral("是否保存当前智能配置组合?"));
  if (alive.isNull() || !isAgreed) return;
  // Other data may have come meanwhile, and with them other candidates and holdings.
  if (asked != request_)
    return lower_->Holdings().SetNotice(QStringLiteral("没有保存"),
                                        QStringLiteral("候选组合在询问时更新了，请看过再保存。"));
  Store(row);
}

void TFrm_ZNPZ::Store(int row) {
  const QPointer<TFrm_ZNPZ> alive(this);
  const TStringGrid& list = lower_->Candidates().Grid();
  const TStringGrid& parts = lower_->Holdings().Grid();
  Proposal proposal{list.Cells(kNumber, row),
                    list.Cells(kStyle, row),
                    list.Cells(kTarget, row),
                    list.Cells(kVariance, row),
                    list.Cells(kBeta, row),
                    stockCount_,
                    ModuleHost().Clock().Now().date(),
                    FormatFixed(ModuleHost().DataCenter().IndexNowData(1).currentPrice, 2),
                    ModuleHost().DataCenter().CurrentDateText(),
                    {}};
  for (int part = 0; part < parts.RowCount(); ++part) {
    proposal.holdings.push_back({parts.Cells(kCode, part), parts.Cells(kQuantity, part), parts.Cells(kWeight, part),
                                 parts.Cells(kPrice, part)});
  }
  const auto say = [this](const QString& text, const QString& hint) { lower_->Holdings().SetNotice(text, hint); };
  const auto failed = [&] {
    say(QStringLiteral("没有保存"), QStringLiteral("数据库没有保存这个组合（原因见日志），请稍后再试。"));
  };
  SaveResult result = SaveResult::Failed;
  try {
    result = Save(Database(), proposal);
  } catch (...) {
    failed();
    throw;
  }
  if (result == SaveResult::Failed) return failed();
  if (result == SaveResult::NameTaken) return Tell(QStringLiteral("组合表现已经存在该组合"));
  say(QStringLiteral("已保存"),
      QStringLiteral("已保存为“%1”，可在“组合表现”中查看。")
          .arg(PortfolioName(proposal.style, proposal.today, proposal.stockCount, proposal.number)));
  g_NowPrice->SetIsGetNowPrice(true);
  ReCalc();
}

ViewNotice TFrm_ZNPZ::Notice() const {
  ViewNotice notice;
  if (isAsked_ && !listProblem_.isEmpty()) notice.Add(QStringLiteral("智能配置没有候选组合：") + listProblem_);
  for (const QString& problem : problems_) notice.Add(problem);
  return notice;
}

std::vector<ViewCatalogue::Input> TFrm_ZNPZ::Inputs() const {
  return {{upper_->Edit1->objectName(), upper_->Edit1->text(), QStringLiteral("资金量(万元)"), capitalText_}};
}

QString TFrm_ZNPZ::SetInput(const QString& name, const QString& value) {
  if (name != upper_->Edit1->objectName()) return TViewFrame::SetInput(name, value);
  if (!IsCapital(value))
    return QStringLiteral("资金量要是大于 0、小于 100000 的数（万元），例如 50 或 12.5，不能是“%1”。").arg(value);
  upper_->Edit1->setText(value);
  isAsked_ = true;
  Label1Click();
  return {};
}

}  // namespace holdwise
