// SPDX-License-Identifier: MIT
#pragma once
#include <QHash>
#include <QString>
#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "common/helpers/name_value_list.h"
#include "common/helpers/text_grid.h"
#include "common/series/holding_rows.h"

namespace holdwise {

/// The same three indices in the same order as TZS_TYPE.
enum TIndexType { IT_ShangHai, IT_ShenZhen, IT_HuShen };

/// What the lists of the stress test rest on.
struct TExpectBasis {
  TIndexType index = IT_ShangHai;  ///< whose betas
  double move = 0;                 ///< a fraction
  bool hasTable = false;           ///< the index's risk table was there; without it every beta counted as 0
  TMissingCodes withoutBeta;       ///< holdings whose beta the table lacks: it counted as 0; empty without a table
  /// Codes (as the lists have them) of securities that several holdings are of, and the id of the portfolio that the
  /// last of these holdings, whose profit is in the list, belongs to.
  QHash<QString, QString> sharedProfits;
};

/// What an assumed move of the index does to every holding and every saved portfolio (the stress test), with the betas
/// of g_AllStockData's current table, and the latest daily change of each index. User-interface thread only. Lists are
/// added to, never emptied: names that are no longer present keep their values. A failing query throws to the caller.
class TExpectValue {
 public:
  TExpectValue();

  /// Sets the assumed move (a fraction: 0.1 = +10 %) and computes all lists for it. A move that would wipe out a
  /// holding (1 + beta x move not positive) is refused: the former move stays, IsValid() is false and the lists keep
  /// what was written up to that holding. A security that is not in the table has beta 0. A holding without a previous
  /// close in g_UserValue is a conversion error, Error(Refused), which leaves the new move in force and the lists with
  /// what was written up to there.
  void SetExpectAdd(double move);
  [[nodiscard]] double GetExpectAdd() const noexcept { return move_; }
  /// Was the last move accepted?
  [[nodiscard]] bool IsValid() const noexcept { return isValid_; }

  /// Did the last computation reach its end? If not (refused, failed), the lists are partly of another move.
  [[nodiscard]] bool IsWhole() const noexcept { return isWhole_; }
  /// Of the last computation that reached its end.
  [[nodiscard]] const TExpectBasis& Basis() const noexcept { return basis_; }

  /// Names: security codes as the database gives them; values "0.00": expected price in yuan, expected change in
  /// percent, expected profit in yuan (over the whole holding; of several holdings of a security the last one).
  [[nodiscard]] TNameValueSnapshot GetStockPriceStringList() const { return stocks_.prices; }
  [[nodiscard]] TNameValueSnapshot GetStockAddStringList() const { return stocks_.changes; }
  [[nodiscard]] TNameValueSnapshot GetStockProfitStringList() const { return stocks_.profits; }
  /// Names: portfolio ids; values: expected value in yuan "0.00", expected change in percent "0.00", expected profit in
  /// yuan, shortest decimal text.
  [[nodiscard]] TNameValueSnapshot GetGroupValueStringList() const { return groups_.prices; }
  [[nodiscard]] TNameValueSnapshot GetGroupAddStringList() const { return groups_.changes; }
  [[nodiscard]] TNameValueSnapshot GetGroupProfitStringList() const { return groups_.profits; }

  /// Latest daily change of an index as a fraction, read from the database once; 0 when there is no close before the
  /// latest. A change of exactly 0 is read again on every call.
  [[nodiscard]] double GetIndexClosePriceAdd(TIndexType type);

  /// True: computes everything again at once with the move in force, then forgets the changes of the indices.
  void SetIsNeedUpdate(bool flag);

 private:
  struct Lists {
    std::shared_ptr<TNameValueList> prices;
    std::shared_ptr<TNameValueList> changes;
    std::shared_ptr<TNameValueList> profits;
  };
  /// A security met so far: what was looked up for it, and where it stands in the lists.
  struct Stock {
    QString code;
    int pass = 0;    ///< the recomputation that worked it out last
    int inputs = 0;  ///< the closes and the risk table that beta and close are from
    double beta = 0;
    bool hasBeta = false;  ///< the table has one
    double close = 0;      ///< previous close, yuan
    double change = 0;     ///< beta x move, a fraction
    double price = 0;      ///< expected price, yuan
    double profit = 0;     ///< of its last holding, yuan
    int profitPass = 0;
    bool isShared = false;        ///< more than one holding in this pass
    std::int64_t lastHolder = 0;  ///< portfolio of its last holding
    int changeAt = -1;
    int priceAt = -1;
    int profitAt = -1;
  };
  class Recomputation;

  double move_ = 0;
  bool isValid_ = false;
  bool isWhole_ = false;
  TExpectBasis basis_;
  Lists stocks_;
  Lists groups_;
  /// Kept from one recomputation to the next: as long as closes and risk table are the same, a new move needs no
  /// look-up by name.
  std::vector<Stock> knownStocks_;
  QHash<std::int64_t, int> stockPlaces_;  ///< by code
  TNameValueSnapshot closes_;
  const TTextGrid* grid_ = nullptr;
  int gridRevision_ = 0;
  int inputs_ = 0;  ///< counts the changes of these three
  int pass_ = 0;
  std::array<double, 3> indexChanges_ = {};
};

}  // namespace holdwise
