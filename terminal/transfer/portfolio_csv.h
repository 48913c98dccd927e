// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QString>
#include <optional>
#include <vector>

#include "holdwise/sdk/codenum.h"
#include "transfer/import.h"

namespace holdwise {

/// One holding as the file has it; quantity and price are the texts of the file, checked.
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
  int rows = 0;             ///< with the bad ones
  std::vector<CsvHolding> holdings;
};

struct CsvPortfolios {
  std::vector<CsvPortfolio> portfolios;  ///< in order of their first rows
  std::vector<ImportProblem> problems;   ///< of all lines, ascending
};

inline constexpr int kMinHoldings = 2;
inline constexpr int kMaxHoldings = 10;

/// Why a name cannot be taken; empty when it can.
[[nodiscard]] QString NameProblem(const QString& name);
/// Why six digits are no stock that can be held; empty when they are.
[[nodiscard]] QString CodeProblem(const QString& code, const CodeNumServices& codes);

/// Reads and checks the whole text against the rules that need no database. Never throws for its content.
[[nodiscard]] CsvPortfolios ParsePortfolioCsv(const QByteArray& csv, const CodeNumServices& codes);

}  // namespace holdwise
