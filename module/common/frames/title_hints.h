// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <vector>

/// What the figures of the views mean, in words for the user: the one table that the titles' hints and the page of
/// figures (docs/figures.md) are made from. Pure; any thread.
namespace holdwise {

struct TitleHint {
  QString title;
  QString meaning;
  QString formula;  ///< empty for what is not calculated
  QString basis;    ///< window, risk-free rate, reference index; empty when there is nothing to say
};

/// The titles over one grid of a view.
struct GridHints {
  QString unit;     ///< of the view
  QString grid;     ///< name of the grid
  QString caption;  ///< of the grid, for readers
  std::vector<TitleHint> titles;
};
/// The grids of one view.
struct ViewHints {
  QString caption;
  QString foreword;  ///< what all its figures share
  std::vector<GridHints> grids;
};
/// Every view that has figures, in the order of the navigation tree.
[[nodiscard]] const std::vector<ViewHints>& FigureHints();

/// What a title says under the mouse: meaning, formula and basis, a line each. Empty when the table does not know it.
[[nodiscard]] QString HintOfTitle(const QString& unit, const QString& grid, const QString& title);

}  // namespace holdwise
