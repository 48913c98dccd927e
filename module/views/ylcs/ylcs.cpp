// SPDX-License-Identifier: MIT
#include "views/ylcs/ylcs.h"

#include <QComboBox>
#include <QLabel>
#include <QPointer>
#include <QRegularExpressionValidator>
#include <QSet>
#include <algorithm>
#include <utility>

#include "common/frames/entry_bar.h"
#include "common/frames/holdings_panel.h"
#include "common/frames/portfolio_list.h"
#include "common/host/event_guard.h"
#include "common/host/messages.h"
#include "common/series/missing_prices.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "common/store/statements.h"
#include "holdwise/packet/number_text.h"
#include "stress_bound.h"
#include "stress_figures.h"
#include "stress_layout.h"
#include "stress_rows.h"

namespace holdwise {
namespace {

const QString kUnit = QStringLiteral("Ylcs");
const QString kRefused = QStringLiteral("涨跌幅超出界限值，请重新输入!");
constexpr int kEntryWidth = 80;

QString FailureText(const char* reason) {
  return QStringLiteral("没有算出预期值：%1。等数据更新后请再按“确 定”。").arg(QString::fromUtf8(reason));
}

}  // namespace

TFrm_YLCS::TFrm_YLCS(QWidget* parent)
    : TViewFrame(kUnit, parent),
      bar_(new EntryBar(kUnit, this)),
      list_(new PortfolioList({.unit = kUnit,
                               .statement = sql::kSavedPortfolios,
                               .columns = stress::PortfolioTable(),
                               .keyColumn = stress::kId,
                               .emptyText = NoSavedPortfolios},
                              this)),
      holdings_(new HoldingsPanel(
          {.unit = kUnit, .columns = stress::HoldingTable(), .caption = QStringLiteral("成分股预期表现")}, this)),
      scenario_(std::make_unique<stress::Scenario>()) {
  InitAppear();
  msg_changeskin();
  Label4Click();
}

TFrm_YLCS::~TFrm_YLCS() = default;

void TFrm_YLCS::InitAppear() {
  const auto onIndex = [this](int place) { ComboBox11Change(place); };
  ComboBox11 = &bar_->AddChoice(QStringLiteral("ComboBox11"), IndexNames(), onIndex);
  bar_->AddLabel(QStringLiteral("预期涨跌幅"));
  Edit1 = &bar_->AddEntry(QStringLiteral("Edit1"), QStringLiteral("20"), kEntryWidth);
  bar_->AddLabel(QStringLiteral("%"));
  bar_->AddButton(QStringLiteral("btnOK"), QStringLiteral("确 定"), [this] { Label3Click(); });
  bar_->AddButton(QStringLiteral("btnCancel"), QStringLiteral("还 原"), [this] { Label4Click(); });
  ComboBox1 = &bar_->AddChoice(QStringLiteral("ComboBox1"), IndexNames(), onIndex);
  shown_ = &bar_->AddLabel({});
  Edit1->setMaxLength(stress::kMostCharacters);
  // What is pasted or dropped comes past the key filter.
  Edit1->setValidator(new QRegularExpressionValidator(QRegularExpression(stress::kMoveCharacters), Edit1));
  Edit1->OnKeyPress = [this](QChar key) { return Edit1KeyPress(key); };
  connect(Edit1, &QLineEdit::textEdited, this, [this] { isEdited_ = true; });
  AddPart(*bar_, false);
  AddParts(*list_, PortfolioList::kHeight, *holdings_);
  list_->OnEnter = [this](int) { holdings_->Grid().setFocus(); };
  list_->OnClear = [this] { holdings_->Clear(); };
  list_->OnFill = [this](const ResultSet& portfolios) {
    stress::ShowPortfolios(portfolios, *scenario_, list_->Grid());
  };
  list_->OnShow = [this](int row) { ShowHoldings(row); };
  holdings_->OnHint = [this](const GridCell& cell, const QPoint& /*position*/) { return HintOf(cell); };
  connect(g_AllStockData.get(), &TAllStockData::TableArrived, this,
          [this] { GuardEvent(kUnit, QStringLiteral("TableCame"), [this] { TableCame(); }); });
  connect(g_AllStockData.get(), &TAllStockData::TableFailed, this,
          [this] { GuardEvent(kUnit, QStringLiteral("NoticeChanged"), [this] { NoticeChanged(); }); });
}

void TFrm_YLCS::DoInit_() {
  if (!isEdited_) return Label4Click();
  g_AllStockData->RequestCurrentTable();
  ReflashData();
}

void TFrm_YLCS::ComboBox11Change(int place) {
  ComboBox11->setCurrentIndex(place);
  ComboBox1->setCurrentIndex(place);
  g_AllStockData->SetZS_TYPE(static_cast<TZS_TYPE>(place));
  isEdited_ = false;
  Edit1->setText(stress::PercentText(0));
  bound_.clear();
  NoticeChanged();
}

void TFrm_YLCS::Label3Click() {
  const QString problem = Apply();
  if (problem.isEmpty()) return;
  const QPointer<TFrm_YLCS> alive(this);
  Tell(problem);
  if (!alive.isNull()) TakeBack();
}

void TFrm_YLCS::Label4Click() {
  takenBack_.clear();
  ComboBox11Change(ComboBox11->currentIndex());
  Compute(0);
  ReflashData();
}

bool TFrm_YLCS::Edit1KeyPress(QChar key) {
  if (key == u'\r') {
    Label3Click();
    return true;
  }
  const bool isTaken = key == u'\b' || key == u'-' || key == u'.' || (key >= u'0' && key <= u'9');
  isEdited_ = isEdited_ || isTaken;
  return isTaken;
}

void TFrm_YLCS::ReflashData() {
  if (g_ExpectValue->IsWhole()) *scenario_ = stress::PresentScenario();
  list_->ReflashData();
  shown_->setText(QStringLiteral("所示：") + stress::ScenarioText(scenario_->basis.index, scenario_->basis.move));
  NoticeChanged();
}

void TFrm_YLCS::ShowHoldings(int row) {
  sharedProfits_.clear();
  if (row >= 0) {
    const QString id = QString::number(IntegerOr(list_->Grid().Cells(stress::kId, row)));
    sharedProfits_ = stress::ShowHoldings(Database().Query(sql::HoldingsOf(id)), id, *scenario_, holdings_->Grid());
  }
  NoteSharedProfits();
}

void TFrm_YLCS::NoteSharedProfits() {
  QStringList hints;
  QSet<QString> heldTwice;
  qsizetype foreign = 0;
  for (const auto& shared : sharedProfits_) {
    hints << HintOf({stress::kProfit, shared.row});
    if (shared.isOwn)
      heldTwice.insert(holdings_->Grid().Cells(stress::kCode, shared.row));
    else
      ++foreign;
  }
  hints.removeDuplicates();
  QStringList texts;
  if (foreign > 0) texts << QStringLiteral("%1 只股票的预期损益是其他组合的持仓的").arg(foreign);
  if (!heldTwice.isEmpty())
    texts << QStringLiteral("%1 只股票有多笔持仓，只算出其中一笔的预期损益").arg(heldTwice.size());
  holdings_->SetNotice(texts.join(QStringLiteral("；")), hints.join(QLatin1Char('\n')));
}

QString TFrm_YLCS::HintOf(const GridCell& cell) const {
  const auto shared =
      std::find_if(sharedProfits_.begin(), sharedProfits_.end(), [&](const auto& one) { return one.row == cell.row; });
  if (cell.column != stress::kProfit || shared == sharedProfits_.end()) return holdings_->Grid().ClippedText(cell);
  const QString& security = holdings_->Grid().Cells(stress::kSecurityName, cell.row);
  if (shared->isOwn) return QStringLiteral("%1：本组合有多笔持仓，所示预期损益只是其中一笔的").arg(security);
  const TStringGrid& list = list_->Grid();
  QString portfolio;
  for (int row = 0; row < list.RowCount(); ++row)
    if (list.Cells(stress::kId, row) == shared->portfolioId) portfolio = list.Cells(stress::kName, row);
  return QStringLiteral("%1：所示预期损益属于组合“%2”中的持仓").arg(security, portfolio);
}

void TFrm_YLCS::Compute(double move) {
  failure_.clear();
  try {
    g_ExpectValue->SetExpectAdd(move);
  } catch (const Error& error) {
    if (error.Category() != ErrorCategory::Refused) throw;
    failure_ = FailureText(error.what());
  }
}

QString TFrm_YLCS::BoundTextOf(double move) {
  const auto bound = stress::BoundOf(move, Database());
  return bound ? stress::BoundText(*bound, IndexNames()[g_AllStockData->CurrentType()]) : QString();
}

QString TFrm_YLCS::Apply() {
  takenBack_.clear();
  bound_.clear();
  const double move = stress::MoveOf(Edit1->text());
  Compute(move);
  if (failure_.isEmpty() && g_ExpectValue->IsValid()) {
    ReflashData();
    return {};
  }
  if (failure_.isEmpty()) bound_ = BoundTextOf(move);
  NoticeChanged();
  return failure_.isEmpty() ? kRefused : failure_;
}

void TFrm_YLCS::TakeBack() {
  if (!failure_.isEmpty()) return;  // the move is in force, it waits for the data
  Edit1->setText(stress::PercentText(g_ExpectValue->GetExpectAdd()));
  Compute(stress::MoveOf(Edit1->text()));
  Edit1->setFocus();
  Edit1->selectAll();
  NoticeChanged();
}

// What was applied before the table had come was computed without betas. Another index's figures wait until they are
// applied.
void TFrm_YLCS::TableCame() {
  if (static_cast<int>(g_ExpectValue->Basis().index) != static_cast<int>(g_AllStockData->CurrentType()))
    return NoticeChanged();
  const double move = g_ExpectValue->GetExpectAdd();
  Compute(move);
  if (failure_.isEmpty() && !g_ExpectValue->IsValid()) {
    Edit1->setText(stress::PercentText(0));
    Compute(0);
    takenBack_ = QStringLiteral("按刚取得的贝塔系数，%1% 超出界限值，已还原为 0，请重新输入。%2。")
                     .arg(stress::PercentText(move), BoundTextOf(move));
  }
  const QString selected = list_->Grid().Cells(stress::kId, list_->Grid().Row());
  ReflashData();
  list_->SelectPortfolio(selected);
}

ViewNotice TFrm_YLCS::Notice() const {
  ViewNotice notice;
  if (list_->Grid().IsEmpty()) return notice;
  notice.lacking = PortfoliosLackingStressInputs(Database());
  const TExpectBasis& shown = scenario_->basis;
  const int chosen = ComboBox11->currentIndex();
  if (!g_ExpectValue->IsWhole()) {
    notice.text = QStringLiteral("预期值没有更新");
    notice.hint = failure_.isEmpty()
                      ? QStringLiteral("所示仍是先前的数值：现在的涨跌幅超出界限值，请重新输入后按“确 定”。") + bound_
                      : failure_;
  } else if (!takenBack_.isEmpty()) {
    notice.text = QStringLiteral("预期涨跌幅已还原");
    notice.hint = takenBack_;
  } else if (g_AllStockData->LacksCurrentTable() && (shown.hasTable || shown.move == 0) && shown.index != chosen) {
    notice.text = QStringLiteral("没有取得%1的风险文件").arg(IndexNames()[chosen]);
    notice.hint =
        notice.text + QStringLiteral("，所示仍是%1的数值。数据恢复后请再选一次。").arg(IndexNames()[shown.index]);
  } else if (g_AllStockData->LacksCurrentTable() && shown.index == chosen) {
    const QString& index = IndexNames()[chosen];
    notice.text = QStringLiteral("没有取得%1的风险文件").arg(index);
    notice.hint = QStringLiteral(
                      "成分股相对%1的贝塔系数都按 0 计算，预期值不随指数变动。数据恢复后会自动重算，也可以再选一次%1。")
                      .arg(index);
  } else if (!shown.hasTable && shown.move != 0) {
    const QString& index = IndexNames()[shown.index];
    notice.text = QStringLiteral("所示数值没有计入贝塔系数");
    notice.hint =
        QStringLiteral("计算时还没有取得%1的风险文件。取得后会自动重算；换了参考指数时请再按“确 定”。").arg(index);
  } else {
    notice.text = bound_;  // the figures lack nothing
  }
  return notice;
}

std::vector<ViewCatalogue::Input> TFrm_YLCS::Inputs() const {
  const TExpectBasis& shown = scenario_->basis;
  const QStringList& numbers = stress::IndexNumbers();
  return {
      {ComboBox11->objectName(), numbers[ComboBox11->currentIndex()], QStringLiteral("参考指数"), numbers[shown.index]},
      {Edit1->objectName(), Edit1->text(), QStringLiteral("预期涨跌幅(%)"), stress::PercentText(shown.move)}};
}

QString TFrm_YLCS::PutInput(const QString& name, const QString& value) {
  if (name == ComboBox11->objectName()) {
    const auto place = static_cast<int>(stress::IndexNumbers().indexOf(value));
    if (place < 0) return QStringLiteral("参考指数只能是 1、399001 或 399300，不能是“%1”。").arg(value);
    ComboBox11Change(place);
  } else if (name == Edit1->objectName()) {
    Edit1->setText(value);
  } else {
    return TViewFrame::PutInput(name, value);
  }
  isEdited_ = true;
  return {};
}

QString TFrm_YLCS::SetInput(const QString& name, const QString& value) {
  if (name == Edit1->objectName() && !stress::IsMove(value))
    return QStringLiteral("预期涨跌幅要是百分数，例如 -10 或 5.5，不能是“%1”。").arg(value);
  if (QString refused = PutInput(name, value); !refused.isEmpty()) return refused;
  // Choosing an index by itself leaves nothing typed.
  isEdited_ = name == Edit1->objectName();
  const QString problem = Apply();
  if (problem.isEmpty()) return {};
  // It is told here, not on a page whose user has typed nothing.
  const QString more = bound_.isEmpty() ? QString() : QStringLiteral("（%1）").arg(std::exchange(bound_, {}));
  TakeBack();
  return problem + more;
}

}  // namespace holdwise
