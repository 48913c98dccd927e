// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>
#include <optional>
#include <utility>
#include <vector>

/// What was read from a table of holdings, before anything of it is written. Plain values.
namespace holdwise {

/// A line of the file that keeps the import from happening, and why (Chinese). Line 0 stands for the file as a whole.
struct ImportProblem {
  int line = 0;
  QString reason;
};

/// Ascending; those of one line stay in their order.
void SortByLine(std::vector<ImportProblem>& problems);

/// One holding as the file has it; quantity and price are the texts of the file, checked, without thousands commas and
/// units.
struct CsvHolding {
  int line = 0;
  int codeNumber = 0;
  QString quantity;
  QString price;
};

/// One portfolio of the file; `line` is that of its first row.
struct CsvPortfolio {
  QString name;
  int line = 0;
  std::optional<int> date;  ///< day of purchase, YYYYMMDD, of the first row that gives none (0) or a readable one
  int rows = 0;             ///< with the bad ones and those of no A-share
  std::vector<CsvHolding> holdings;
};

/// Quantity x price, yuan.
[[nodiscard]] double CostOf(const CsvHolding& holding);
[[nodiscard]] double CostOf(const CsvPortfolio& portfolio);

/// A row that does not come in, what stands in it and why (Chinese).
struct LeftOutRow {
  int line = 0;
  QString what;
  QString reason;
};

/// How the text was understood.
struct TableShape {
  bool isStatement = false;  ///< a broker's statement, not the table of portfolios that the documents describe
  char separator = ',';
  int headingLine = 0;
  std::vector<std::pair<QString, QString>> used;  ///< heading as it stands there, what it was taken for
  QStringList unused;                             ///< headings of columns that were not read
  QString doubtfulCost;  ///< the heading of a cost that some write a share and some for the whole; empty: none
};

struct CsvPortfolios {
  std::vector<CsvPortfolio> portfolios;  ///< in order of their first rows
  std::vector<ImportProblem> problems;   ///< of all lines, ascending
  TableShape shape;
  bool isNameFree = false;            ///< the file names no portfolio: its one portfolio may be called otherwise
  std::vector<LeftOutRow> strangers;  ///< well-formed codes of no A-share of the market; left out with consent only
  std::vector<LeftOutRow> sold;       ///< rows of quantity 0
  std::vector<LeftOutRow> others;     ///< rows of a statement that are no holdings: totals, remarks
  QStringList remarks;                ///< what a person should look at (Chinese)
};

}  // namespace holdwise
