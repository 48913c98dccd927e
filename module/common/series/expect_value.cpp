// SPDX-License-Identifier: MIT
#include "common/series/expect_value.h"

#include <QScopeGuard>
#include <QStringView>
#include <optional>
#include <utility>

#include "common/host/codes.h"
#include "common/host/host_access.h"
#include "common/series/all_stock_data.h"
#include "common/series/holding_rows.h"
#include "common/series/shared_objects.h"
#include "common/series/stress_arithmetic.h"
#include "common/store/database.h"
#include "common/store/statements.h"
#include "holdwise/packet/code_numbers.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

double CloseOf(const TNameValueList& closes, QStringView sixDigits) {
  const QString text = closes.ValueOf(sixDigits);
  const auto close = ParseReal(text);
  if (close) return *close;
  const QString code = sixDigits.toString();
  const QString security = ModuleHost().CodeNums().NameOf(code) + QLatin1Char('(') + code + QLatin1Char(')');
  throw Error(ErrorCategory::Refused,
              text.isEmpty() ? QStringLiteral("%1没有昨收盘价").arg(security).toStdString()
                             : QStringLiteral("%1的昨收盘价不是数：“%2”").arg(security, text).toStdString());
}

/// Sets the value of a name whose place in the list is known, or appends it and remembers the place.
void Put(TNameValueList& list, int& place, const QString& name, const QString& value) {
  if (place >= 0) {
    list.SetValueAt(place, value);
    return;
  }
  list.Set(name, value);
  place = list.Count() - 1;
}

double NumberOf(const Value& value) {
  if (value.isNull) return 0;
  return value.type == ColumnType::Real ? value.real : RealOr(value.ToText());
}

}  // namespace

/// One pass over the holdings. What it finds out it writes at once, so it stays however the pass ends.
class TExpectValue::Recomputation {
 public:
  explicit Recomputation(TExpectValue& owner) : owner_(owner) {
    ++owner_.pass_;
    TakeInputs();
    for (Lists* lists : {&owner_.stocks_, &owner_.groups_}) {
      for (auto* list : {&lists->prices, &lists->changes, &lists->profits}) {
        // A list that somebody still reads stays as it is.
        if (list->use_count() > 1) *list = std::make_shared<TNameValueList>(**list);
      }
    }
  }

  /// False as soon as the move would wipe out a holding.
  bool Run(const ResultSet& holdings) {
    const int idColumn = holdings.Column("MAINID");
    const int codeColumn = holdings.Column("SECUCODE");
    const int weightColumn = holdings.Column("PZBL");
    const int quantityColumn = holdings.Column("PZSL");
    const int buyColumn = holdings.Column("BUYPRICE");
    const auto written = qScopeGuard([this] { WriteProfits(); });
    for (int row = 0; row < holdings.RowCount(); ++row) {
      Stock& stock = StockOf(holdings.IntegerAt(row, codeColumn));
      if (stock.pass != owner_.pass_ && !WorkOut(stock, SixDigitCode(holdings, row, codeColumn).View())) return false;
      const stress::Holding holding{NumberAt(holdings, row, quantityColumn), NumberAt(holdings, row, buyColumn),
                                    NumberAt(holdings, row, weightColumn)};
      const double profit = stress::ExpectedProfit(holding, stock.change, stock.close);
      OpenGroup(row == 0, holdings.IntegerAt(row, idColumn));
      NoteProfit(stock, profit);
      totals_.Add(holding, stock.change, stock.price, profit);
      if (!stock.hasBeta) withoutBeta_.emplace_back(groupId_, stock.code);
    }
    if (!holdings.IsEmpty()) CloseGroup();
    NoteBasis();
    return true;
  }

 private:
  void TakeInputs() {
    const TTextGrid* grid = g_AllStockData ? &g_AllStockData->GetCurStringGrid() : nullptr;
    const int revision = grid == nullptr ? 0 : grid->Revision();
    TNameValueSnapshot closes = PreviousCloses();
    if (closes == owner_.closes_ && grid == owner_.grid_ && revision == owner_.gridRevision_) return;
    owner_.closes_ = std::move(closes);
    owner_.grid_ = grid;
    owner_.gridRevision_ = revision;
    ++owner_.inputs_;
  }

  Stock& StockOf(std::int64_t code) {
    int place = owner_.stockPlaces_.value(code, -1);
    if (place < 0) {
      place = static_cast<int>(owner_.knownStocks_.size());
      owner_.knownStocks_.push_back({.code = QString::number(code)});
      owner_.stockPlaces_.insert(code, place);
    }
    return owner_.knownStocks_[static_cast<std::size_t>(place)];
  }

  /// Once a security and pass, however many portfolios hold it. False when the move would wipe it out.
  bool WorkOut(Stock& stock, QStringView sixDigits) {
    const bool isKnown = stock.inputs == owner_.inputs_;
    if (!isKnown) {
      const auto beta = owner_.grid_ == nullptr ? std::nullopt : BetaOf(*owner_.grid_, sixDigits);
      stock.hasBeta = beta.has_value();
      stock.beta = beta.value_or(0);
    }
    stock.change = stress::ExpectedChange(stock.beta, owner_.move_);
    if (stress::IsWipedOut(stock.change)) return false;
    Put(*owner_.stocks_.changes, stock.changeAt, stock.code, FormatFixed(stock.change * 100, 2));
    if (!isKnown) stock.close = CloseOf(*owner_.closes_, sixDigits);
    stock.inputs = owner_.inputs_;
    stock.price = stress::ExpectedPrice(stock.change, stock.close);
    Put(*owner_.stocks_.prices, stock.priceAt, stock.code, FormatFixed(stock.price, 2));
    stock.pass = owner_.pass_;
    return true;
  }

  /// The last holding of a security counts: only its text is made.
  void NoteProfit(Stock& stock, double profit) {
    stock.profit = profit;
    stock.lastHolder = groupId_;
    stock.isShared = std::exchange(stock.profitPass, owner_.pass_) == owner_.pass_;
    if (stock.isShared) return;
    withProfit_.push_back(static_cast<int>(&stock - owner_.knownStocks_.data()));
  }

  void WriteProfits() {
    for (const int place : withProfit_) {
      Stock& stock = owner_.knownStocks_[static_cast<std::size_t>(place)];
      Put(*owner_.stocks_.profits, stock.profitAt, stock.code, FormatFixed(stock.profit, 2));
    }
  }

  void OpenGroup(bool isFirst, std::int64_t id) {
    if (!isFirst && id == groupId_) return;
    if (!isFirst) CloseGroup();
    groupId_ = id;
    totals_ = {};
  }

  void CloseGroup() {
    const QString id = QString::number(groupId_);
    owner_.groups_.prices->Set(id, FormatFixed(totals_.value, 2));
    owner_.groups_.changes->Set(id, FormatFixed(totals_.change * 100, 2));
    owner_.groups_.profits->Set(id, ShortestText(totals_.profit));
  }

  void NoteBasis() {
    TExpectBasis basis;
    if (g_AllStockData) basis.index = static_cast<TIndexType>(g_AllStockData->CurrentType());
    basis.move = owner_.move_;
    basis.hasTable = owner_.grid_ != nullptr && owner_.grid_->RowCount() > 0;
    if (basis.hasTable) {
      for (const auto& [portfolio, code] : withoutBeta_)
        basis.withoutBeta[QString::number(portfolio)].append(GetCodeCNum(code));
    }
    for (const int place : withProfit_) {
      const Stock& stock = owner_.knownStocks_[static_cast<std::size_t>(place)];
      if (stock.isShared) basis.sharedProfits.insert(stock.code, QString::number(stock.lastHolder));
    }
    owner_.basis_ = std::move(basis);
  }

  TExpectValue& owner_;
  std::vector<int> withProfit_;  ///< places of the securities worked out in this pass, in the order of the holdings
  std::int64_t groupId_ = 0;
  stress::Totals totals_;
  std::vector<std::pair<std::int64_t, QString>> withoutBeta_;  ///< portfolio and code of the holdings
};

TExpectValue::TExpectValue() {
  for (Lists* lists : {&stocks_, &groups_}) {
    *lists = {std::make_shared<TNameValueList>(), std::make_shared<TNameValueList>(),
              std::make_shared<TNameValueList>()};
  }
}

void TExpectValue::SetExpectAdd(double move) {
  const double former = move_;
  move_ = move;
  isValid_ = true;
  const ResultSet holdings = Database().Query(sql::kSavedHoldings);
  isWhole_ = false;
  isWhole_ = Recomputation(*this).Run(holdings);
  if (isWhole_) return;
  move_ = former;
  isValid_ = false;
}

double TExpectValue::GetIndexClosePriceAdd(TIndexType type) {
  double& change = indexChanges_[static_cast<std::size_t>(type)];
  if (change != 0) return change;
  const int index = kIndexNumbers[static_cast<std::size_t>(type)];
  const double close = NumberOf(Database().Scalar(sql::IndexCloses(index)));
  const double old = NumberOf(Database().Scalar(sql::IndexOldCloses(index)));
  change = stress::IndexChange(close, old);
  return change;
}

void TExpectValue::SetIsNeedUpdate(bool flag) {
  if (!flag) return;
  SetExpectAdd(move_);
  indexChanges_ = {};
}

}  // namespace holdwise
