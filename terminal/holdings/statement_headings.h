// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>
#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

/// What brokers call the columns of a statement of holdings. Pure.
namespace holdwise {

enum class StatementColumn { Portfolio, Code, Name, Quantity, Cost, Market, Date };
inline constexpr std::size_t kStatementColumns = 7;

/// What a column is called in messages.
[[nodiscard]] QString TitleOf(StatementColumn column);

/// The words that are known for it, the preferred ones first.
[[nodiscard]] QStringList WordsOf(StatementColumn column);

/// Which fields of a heading row stand for what.
struct StatementHeading {
  struct Place {
    std::size_t field = 0;
    std::size_t rank = 0;  ///< of its word among those of the column; lower is preferred, equal is the same word
  };
  std::array<std::vector<Place>, kStatementColumns> places;  ///< the preferred one first
  std::vector<QString> headings;                             ///< of all fields, as they stand there
  bool hasStatementWord = false;                             ///< one that the table of the documents has not
  bool isCostDoubtful = false;  ///< the preferred cost is a word that some brokers use for the whole position
  QString tradeWord;            ///< a heading that only a list of trades or orders has; empty: none
  QString marginWord;           ///< a heading that tells of 融资 or 融券; empty: none

  [[nodiscard]] const std::vector<Place>& Of(StatementColumn column) const {
    return places[static_cast<std::size_t>(column)];
  }
  [[nodiscard]] bool Has(StatementColumn column) const { return !Of(column).empty(); }
  /// Code, quantity and cost are there, and nothing of trades.
  [[nodiscard]] bool IsWhole() const;
  /// How many different columns are there.
  [[nodiscard]] int Count() const;
};

/// What the words of the documents' table that no broker writes for it mean: 价格 as the cost, 日期 as the day of
/// purchase.
enum class OwnWords { Unknown, Known };

[[nodiscard]] StatementHeading ReadStatementHeading(const std::vector<std::string_view>& fields,
                                                    OwnWords ownWords = OwnWords::Unknown);

}  // namespace holdwise
