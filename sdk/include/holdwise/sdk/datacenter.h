// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringView>
#include <optional>
#include <vector>

#include "holdwise/packet/result_set.h"

namespace holdwise {

/// Current data of a stock or an index; prices in yuan (points for an index). A suspended one has its last close twice.
struct NowData {
  double currentPrice = 0;   ///< 0 = unknown
  double previousClose = 0;  ///< 0 = none (a first trading day) or unknown: the day has no change, not one from 0
};

/// Account figures of a stock, as the data folder gives them; every figure times 10000.
struct AccountInfo {
  double eps = 0;               ///< earnings per share, yuan x 10000
  double netAssetPerShare = 0;  ///< yuan x 10000
  double totalShares = 0;       ///< shares x 10000
};

/// Runs a statement of the local database straight into a result set.
class TLocatDBOper {
 public:
  virtual ~TLocatDBOper() = default;
  /// As Query of the host's database: all rows of the select `sql`, which stands with its literals
  /// in place, replace what `resultSet` held; no row is an empty result with its columns. Throws the same errors, and
  /// `resultSet` stays as it was then. Any thread.
  virtual void DoQuery(const QString& sql, ResultSet& resultSet) = 0;
};

/// The host's data centre. Const functions may be called from any thread and throw nothing; what is unknown is 0, empty
/// or none, as said with each.
class TDataCenter {
 public:
  virtual ~TDataCenter() = default;
  /// The market's current date as "YYYY-MM-DD"; empty while none is known.
  [[nodiscard]] virtual QString CurrentDateText() const = 0;
  /// What tells one edition of the base data (statistics, reference files) from another, also of the same date: equal
  /// for the same data, letters and digits, at most 64. Changes when the data behind the download roles are replaced.
  /// Empty while unknown.
  [[nodiscard]] virtual QString DataEdition() const = 0;
  /// Trading dates up to the current date, YYYYMMDD, most recent first; empty while none is known. Valid and unchanged
  /// as long as the host.
  [[nodiscard]] virtual const std::vector<int>& TradingDates() const = 0;
  /// Current data of the stock with that code number; all zero when unknown.
  [[nodiscard]] virtual NowData StockNowData(int codeNumber) const = 0;
  /// Current data of index 1, 399001 or 399300; all zero when unknown.
  [[nodiscard]] virtual NowData IndexNowData(int indexNumber) const = 0;
  /// Account figures; none when the data folder has none for the stock.
  [[nodiscard]] virtual std::optional<AccountInfo> StockAccountInfo(int codeNumber) const = 0;
  /// Code numbers of a named stock group ("OptionalStock" = the user's own stocks); empty when unknown.
  [[nodiscard]] virtual std::vector<int> GetGroupCodeNumList(const QString& groupName) const = 0;
  /// Is the market open at this moment, by the host's clock in Beijing time? False while no date is known; a simulated
  /// market is always open.
  [[nodiscard]] virtual bool IsOpen() const = 0;
  /// Market id used on the bus for a market type (1 Shanghai, 2 Shenzhen); 0 when unknown.
  [[nodiscard]] virtual unsigned BusMarketId(int marketType) const = 0;
  /// The way to the same database as Host::UserData; owned by the host.
  [[nodiscard]] virtual TLocatDBOper& LocalDatabase() = 0;
};

}  // namespace holdwise
