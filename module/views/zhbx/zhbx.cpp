// SPDX-License-Identifier: MIT
#include "views/zhbx/zhbx.h"

#include <QMenu>
#include <QPointer>

#include "common/frames/holdings_panel.h"
#include "common/frames/portfolio_list.h"
#include "common/frames/totals_strip.h"
#include "common/grid/cell_geometry.h"
#include "common/grid/operation_picture.h"
#include "common/host/event_guard.h"
#include "common/host/messages.h"
#include "common/store/database.h"
#include "common/store/portfolio_copy.h"
#include "common/store/statements.h"
#include "holdwise/packet/number_text.h"
#include "performance_layout.h"
#include "performance_rows.h"

namespace holdwise {
namespace {

const QString kUnit = QStringLiteral("Zhbx");

QStringList TotalTitles() {
  return {QStringLiteral("市值(元)"), QStringLiteral("日盈亏(元)"), QStringLiteral("总盈亏(元)"),
          QStringLiteral("收益率(%)")};
}

QString HoldingsCaption() {
  return QStringLiteral("成分股表现");
}

}  // namespace

TFrm_ZHBX::TFrm_ZHBX(QWidget* parent)
    : TViewFrame(kUnit, parent),
      list_(new PortfolioList({.unit = kUnit,
                               .statement = sql::kSavedPortfolios,
                               .columns = performance::PortfolioTable(),
                               .keyColumn = performance::kId,
                               .emptyText = NoSavedPortfolios},
                              this)),
      holdings_(new HoldingsPanel({.unit = kUnit, .columns = performance::HoldingTable(), .caption = HoldingsCaption()},
                                  this)),
      delete_(list_->Grid(), performance::kOperation,
              {{.normal = DeletePicture(false),
                .pressed = DeletePicture(true),
                .hint = {},
                .onPress = [this](int row) { AskAndDelete(row); }}}),
      listTotals_(list_->AddTotals(TotalTitles())),
      holdingTotals_(holdings_->AddTotals(TotalTitles())),
      shown_(std::make_unique<performance::ShownPortfolios>()) {
  InitAppear();
  list_->OnClear = [this] {
    *shown_ = {};
    holdings_->Clear();
    listTotals_.Show({});
    holdingTotals_.Show({});
  };
  list_->OnFill = [this](const ResultSet& portfolios) { performance::ShowPortfolios(portfolios, list_->Grid()); };
  list_->OnShow = [this](int row) { ShowHoldings(row); };
  msg_changeskin();
}

TFrm_ZHBX::~TFrm_ZHBX() = default;

void TFrm_ZHBX::InitAppear() {
  AddParts(*list_, PortfolioList::kHeight, *holdings_);
  TStringGrid& list = list_->Grid();
  TStringGrid& holdings = holdings_->Grid();
  list_->SetButtons(delete_);
  list_->OnDelete = [this](int row) { AskAndDelete(row); };
  list_->OnEnter = [&holdings](int) { holdings.setFocus(); };
  list_->OnHint = [&list](const GridCell& cell, const QPoint& position) {
    // For a name the value column is the measure, not the name's own: intended.
    return cell.column == performance::kName ? HintIn(list, cell, list.ColWidth(performance::kValue), position)
                                             : list.ClippedText(cell);
  };
  list_->OnMenu = [this](QMenu& menu, int row) {
    connect(menu.addAction(QStringLiteral("删除组合")), &QAction::triggered, this,
            [this, row] { GuardEvent(kUnit, QStringLiteral("AskAndDelete"), [&] { AskAndDelete(row); }); });
    connect(menu.addAction(QStringLiteral("复制到自选配置")), &QAction::triggered, this,
            [this, row] { GuardEvent(kUnit, QStringLiteral("CopyToEditor"), [&] { CopyToEditor(row); }); });
  };
  holdings_->OnHint = [&holdings](const GridCell& cell, const QPoint& position) {
    return cell.column == performance::kIndustry ? HintIn(holdings, cell, holdings.ColWidth(cell.column), position)
                                                 : holdings.ClippedText(cell);
  };
  holdings.OnSelectCell = [](int column, int) { return column < performance::kBuyPrice; };
}

void TFrm_ZHBX::DoInit_() {
  unfound_.clear();
  list_->ReflashData();
  SendFrameMessage(*this, FrameMessage::ReflashNowPrice);
}

ViewNotice TFrm_ZHBX::Notice() const {
  if (unfound_.isEmpty()) return {};
  return {.text = QStringLiteral("没有找到持股"),
          .hint = QStringLiteral(
                      "没有找到组合“%1”的持股，选中它时下面的持股不是它的，列表里的实时数据也不更新；数据库可能已"
                      "损坏，请看“帮助→状态”，可用“文件→恢复…”从备份找回")
                      .arg(unfound_.join(QStringLiteral("”、“"))),
          .lacking = {}};
}

void TFrm_ZHBX::Note(const QString& name, bool isFound) {
  const bool wasFound = !unfound_.contains(name);
  if (isFound == wasFound) return;
  if (isFound)
    unfound_.removeAll(name);
  else
    unfound_.append(name);
  NoticeChanged();
}

void TFrm_ZHBX::ReflashNowPrice() {
  // The list stands still, too, while the selected portfolio shows no holdings: intended. Notice says so.
  if (holdings_->Grid().IsEmpty() || list_->Grid().IsEmpty()) return;
  holdingTotals_.Show(performance::RefreshHoldings(holdings_->Grid(), closesDue_));
  listTotals_.Show(performance::RefreshPortfolios(list_->Grid(), *shown_));
}

void TFrm_ZHBX::ShowHoldings(int row) {
  if (row < 0) return holdings_->SetCaption({});
  const QString& name = list_->Grid().Cells(performance::kName, row);
  holdings_->SetCaption(name + QStringLiteral("-") + HoldingsCaption());
  const auto id = Database().Count(sql::PortfolioByName(name));
  if (id <= -1) return Note(name, false);
  const ResultSet holdings = Database().Query(sql::HoldingsOf(QString::number(id)));
  closesDue_ = performance::ShowHoldings(holdings, holdings_->Grid());
  holdingTotals_.Show({});
  Note(name, !holdings.IsEmpty());
  SendFrameMessage(*this, FrameMessage::ReflashNowPrice);
}

void TFrm_ZHBX::AskAndDelete(int row) {
  const QPointer<TFrm_ZHBX> alive(this);
  // The list may be read again while the question waits; the portfolio that was asked about is the one that goes.
  const QString name = list_->Grid().Cells(performance::kName, row);
  if (!Agrees(QStringLiteral("是否真的要删除当前组合?")) || alive.isNull()) return;
  Database().Execute(sql::DeleteRecord(name));
  LogDeletion(name);
  list_->ReflashData();
  PortfoliosChanged();
}

void TFrm_ZHBX::CopyToEditor(int row) {
  const TStringGrid& list = list_->Grid();
  const QString& name = list.Cells(performance::kName, row);
  QString text;
  try {
    const QString copy = holdwise::CopyToEditor(Database(), IntegerOr(list.Cells(performance::kId, row)));
    text = copy.isEmpty() ? QStringLiteral("组合“%1”已不存在，没有复制。").arg(name)
                          : QStringLiteral("组合“%1”已复制为“%2”，请到“自选配置”中修改。").arg(name, copy);
  } catch (const Error& error) {
    text = QStringLiteral("组合“%1”没有复制：%2").arg(name, QString::fromUtf8(error.what()));
  }
  Tell(text);
}

QString TFrm_ZHBX::HintIn(const TStringGrid& grid, const GridCell& cell, int measure, const QPoint& position) {
  const QSize text(grid.TextWidth(cell), grid.fontMetrics().height());
  const QRect box = LeftTextBox(grid.CellRect(cell.column, cell.row), text);
  return IsClipped(text.width(), measure) && box.contains(position) ? grid.Cells(cell.column, cell.row) : QString();
}

}  // namespace holdwise
