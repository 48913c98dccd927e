// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <functional>
#include <map>
#include <vector>

#include "holdwise/sdk/codenum.h"
#include "holdwise/sdk/database.h"
#include "holdwise/sdk/datacenter.h"

namespace holdwise {

/// A line of the file that keeps the import from happening, and why (Chinese). Line 0 stands for the file as a whole.
struct ImportProblem {
  int line = 0;
  QString reason;
};

/// Either `problems` is empty and everything was written, or nothing was written (also when `cancelled`).
struct ImportResult {
  int portfolios = 0;
  int holdings = 0;
  bool cancelled = false;
  std::vector<ImportProblem> problems;  ///< ascending by line
  QStringList warnings;                 ///< stocks without a price
};

/// What an import works with; all must outlive the call.
struct ImportServices {
  UserDataServices& database;
  const CodeNumServices& codes;
  const TDataCenter& dataCentre;
  /// Closes of index 1 by date, as the market's data have them. Asked for once, when the file names days of purchase;
  /// an Error it throws is the file's problem, as a whole.
  std::function<std::map<int, double>()> indexCloses;
};

/// Told before every portfolio and once at the end; `done` grows from 0 to `total`. May let the event loop run, in
/// which nobody may use the database. False gives the import up.
using ImportProgress = std::function<bool(int done, int total)>;

/// Imports portfolios from a CSV text (UTF-8 or GB18030): a heading row naming the columns name, code, quantity and
/// price in any order (also in Chinese: 组合名称, 股票代码, 数量(股), 买入价(元)), then one row a holding; the rows of
/// a portfolio need not stand together. An optional column date (买入日期) is the day of purchase, the same for all
/// rows of a portfolio: a trading day not after the market's date of which the data have the index's close. It becomes
/// the portfolio's date and that close its index level; without one they are the market's date and present level. Each
/// becomes a saved portfolio of 2 to 10 holdings with weights by cost and unfinished figures, which are the plug-in's
/// to calculate. A file of all portfolios, as 导出组合 and the backups write it, comes in with everything that is in it
/// under new numbers, also portfolios that were not saved and those of other sizes. Everything is written in one
/// transaction. A file that breaks a rule is reported line by line in the result. A failing statement or commit throws
/// the database's Error after the roll-back; Error(Refused) when the data centre has no date or no level of index 1;
/// Error(Busy) when a transaction is already open. User-interface thread.
[[nodiscard]] ImportResult ImportPortfolios(const QByteArray& csv, const ImportServices& services,
                                            const ImportProgress& progress = {});
/// The same from a file; one that cannot be read is a problem of line 0.
[[nodiscard]] ImportResult ImportPortfoliosFromFile(const QString& path, const ImportServices& services,
                                                    const ImportProgress& progress = {});

}  // namespace holdwise
