// SPDX-License-Identifier: MIT
#pragma once
#include <QStringList>
#include <vector>

#include "allocation_figures.h"
#include "allocation_files.h"
#include "common/grid/string_grid.h"

/// Between the files of the proposals and the rows of the two grids. User-interface thread; the shared objects must
/// exist.
namespace holdwise::allocation {

/// One row a candidate.
void ShowCandidates(const std::vector<Candidate>& candidates, TStringGrid& grid);

/// Yuan: the day close that was fetched, else the data centre's current price; 0 when neither is known. `code`: six
/// digits.
[[nodiscard]] double PriceOf(const QString& code);

/// What a capital buys of a candidate.
struct PartsShown {
  QStringList unaffordable;  ///< names of those of which not one lot is bought, in the file's order
  QStringList unpriced;      ///< those of them that have no price
  Rounding rounding;
  double weightSum = 0;  ///< of the weights that were asked for
};
/// One row a holding, the greatest weight first, with a remark on what is not bought. `capital`: ten-thousands of yuan,
/// above 0.
PartsShown ShowParts(const std::vector<Part>& parts, double capital, TStringGrid& grid);

/// What a row's quantity comes to, for the hint of its cells.
[[nodiscard]] QString HintOfPart(const TStringGrid& grid, int row, double capital);
/// What is said over the holdings, and what of it is wrong with the proposal.
struct PartsNotice {
  QString text;
  QString hint;
  QString problem;  ///< empty: nothing
};
/// "剩余 1234.56 元，最大误差 0.42%", unless prices are missing or the weights come to more than the whole.
[[nodiscard]] PartsNotice NoticeOf(const PartsShown& shown);

/// Names in the grid whose quantity is 0.
[[nodiscard]] QStringList UnaffordableIn(const TStringGrid& grid);

}  // namespace holdwise::allocation
