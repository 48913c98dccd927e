// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "holdings/csv_portfolios.h"
#include "holdwise/sdk/codenum.h"
#include "holdwise/sdk/database.h"
#include "holdwise/sdk/datacenter.h"

namespace holdwise {

/// Either `problems` is empty and everything was written, or nothing was written (also when `cancelled`).
struct ImportResult {
  int portfolios = 0;
  int holdings = 0;
  bool cancelled = false;
  std::vector<ImportProblem> problems;  ///< ascending by line
  QStringList warnings;                 ///< stocks without a price
  QString understood;                   ///< a statement: ImportPreview::text, for who was neither asked nor told
};

/// What an import would write, before anything is written.
struct ImportPreview {
  QString text;       ///< portfolios, rows, columns, what is left out, total cost; lines of Chinese
  QString name;       ///< of the one portfolio of a file that names none, free to choose; else empty
  int strangers = 0;  ///< rows that are left out with consent only: funds, bonds, codes of other markets
};
/// A person's answer to it.
struct ImportChoice {
  QString name;
  bool skipStrangers = false;
};

/// What is wanted of an import.
struct ImportOptions {
  QString fileName;            ///< names the portfolio of a file that names none
  QString name;                ///< the same; empty: after the file. A file with names refuses it
  bool skipStrangers = false;  ///< leave out rows that are no A-shares of the market, instead of refusing the file
  /// Asked once, when nothing else keeps the import from happening; none: give it up. May let the event loop run.
  /// Unset: nobody is there to be asked.
  std::function<std::optional<ImportChoice>(const ImportPreview&)> ask;
  /// Told ImportPreview::text of a statement before anything is written, when nobody is asked. Unset: it stands in the
  /// result.
  std::function<void(const QString&)> tell{};
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

/// Imports portfolios from a CSV text (UTF-8 or GB18030, separated by commas, tabs or semicolons): a heading row naming
/// the columns name, code, quantity and price in any order (also in Chinese: 组合名称, 股票代码, 数量(股), 买入价(元)),
/// then one row a holding; the rows of a portfolio need not stand together. Without a column of names all is one
/// portfolio. An optional column date (买入日期) is the day of purchase, the same for all rows of a portfolio: a
/// trading day not after the market's date of which the data have the index's close. It becomes the portfolio's date
/// and that close its index level; without one they are the market's date and present level. Each becomes a saved
/// portfolio of 1 to 500 holdings with weights by cost and unfinished figures, which are the plug-in's to calculate. A
/// broker's statement of holdings comes in as one portfolio; rows of quantity 0 are left out. Rows that are no A-shares
/// of the market are left out with consent; without it they are problems. A file of all portfolios, as 导出组合 and the
/// backups write it, comes in with everything that is in it under new numbers, also portfolios that were not saved and
/// those of other sizes. Everything is written in one transaction. A file that breaks a rule is reported line by line
/// in the result. A failing statement or commit throws the database's Error after the roll-back; Error(Refused) when
/// the data centre has no date or no level of index 1; Error(Busy) when a transaction is already open. User-interface
/// thread.
[[nodiscard]] ImportResult ImportPortfolios(const QByteArray& csv, const ImportServices& services,
                                            const ImportProgress& progress = {}, const ImportOptions& options = {});
/// The same from a file, whose name is that of the options; one that cannot be read is a problem of line 0.
[[nodiscard]] ImportResult ImportPortfoliosFromFile(const QString& path, const ImportServices& services,
                                                    const ImportProgress& progress = {},
                                                    const ImportOptions& options = {});

/// Why a new portfolio cannot have the name: it breaks a rule, or another one has it. Empty when it can.
[[nodiscard]] QString NewNameProblem(UserDataServices& database, const QString& name);

}  // namespace holdwise
