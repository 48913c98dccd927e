#pragma once
#include <QStringList>
#include <vector>

/// Columns of the performance view's two grids.
namespace holdwise::performance {

/// The portfolio list.
enum PortfolioColumn : int {
  kName,
  kCreated,
  kValue,
  kDayChange,
  kWeekChange,
  kMonthChange,
  kGain,
  kGainRate,
  kOperation,  ///< the delete picture, no text
  kId,         ///< key, hidden
  kPortfolioColumns
};

/// The holdings of the selected portfolio.
enum HoldingColumn : int {
  kCode,
  kSecurityName,
  kIndustry,
  kPrice,
  kChange,
  kQuantity,
  kWeight,
  kDayContribution,
  kWeekContribution,
  kMonthContribution,
  kHoldingGain,
  kHoldingGainRate,
  kBuyPrice,  ///< hidden, like the next two
  kWeekClose,
  kMonthClose,
  kHoldingColumns
};

/// Titles of the shown columns.
[[nodiscard]] QStringList PortfolioTitles();
[[nodiscard]] QStringList HoldingTitles();

/// Widths of all columns for a client width, pixels; hidden columns 0. They add up to the client width except for the
/// fixed additions of single columns. Narrow clients give negative widths.
[[nodiscard]] std::vector<int> PortfolioWidths(int clientWidth);
[[nodiscard]] std::vector<int> HoldingWidths(int clientWidth);

}  // namespace holdwise::performance
