// SPDX-License-Identifier: MIT
#pragma once
#include <QStringList>
#include <functional>

#include "common/frames/column_table.h"
#include "common/frames/frame_part.h"
#include "common/grid/string_grid.h"
#include "holdwise/packet/result_set.h"

namespace holdwise {

class CellButtons;
class HeaderStrip;
class ListFilter;
class TotalsStrip;

/// For an empty list of saved portfolios: that there is none, and how to begin, or how those that wait in the editor
/// get here. Reads how many do; a failing statement throws.
[[nodiscard]] QString NoSavedPortfolios();

/// A grid of portfolios with its header strip and, above a long list, a box that filters it by name: reads them from
/// the database, keeps one selected and says which. A failing statement throws out of the calls. Without a statement
/// whoever owns the list fills its grid and does not call ReflashData. User-interface thread only.
class PortfolioList : public FramePart {
 public:
  static constexpr int kHeight = 201;  ///< of the whole part above holdings, until the user drags its edge; pixels
  struct Design {
    QString unit;       ///< named in the debug log
    QString statement;  ///< selects the portfolios that are listed; may be empty
    ColumnTable columns;
    int keyColumn = 0;                   ///< the portfolio's id
    std::function<QString()> emptyText;  ///< what is shown while no portfolio is listed, asked when that is so
    int nameColumn = 0;
  };

  PortfolioList(const Design& design, QWidget* parent);

  [[nodiscard]] TStringGrid& Grid() const { return *grid_; }

  /// The list is about to be filled anew: whatever follows it empties itself.
  std::function<void()> OnClear;
  /// Fills the emptied grid: one row a portfolio.
  std::function<void(const ResultSet& portfolios)> OnFill;
  /// Another row became current, or has to be shown again; -1 when no portfolio is listed.
  std::function<void(int row)> OnShow;
  /// Hint for the cell under the mouse, instead of the whole of a text that is cut off; empty for none. A remark of the
  /// grid on the cell goes before it.
  TStringGrid::Hint OnHint;

  /// The user presses Delete, or Enter, on a portfolio.
  std::function<void(int row)> OnDelete;
  std::function<void(int row)> OnEnter;
  /// The same for any other key without Shift, Ctrl and their like.
  std::function<void(int key, int row)> OnKey;
  /// Adds to the context menu of a portfolio's row.
  std::function<void(QMenu& menu, int row)> OnMenu;

  /// Puts a strip for sums under the grid.
  TotalsStrip& AddTotals(const QStringList& titles);

  /// Other captions over the shown columns, as HeaderStrip takes them.
  void SetTitles(const QStringList& titles);
  /// Width of the strip with the captions, pixels.
  [[nodiscard]] int TitleWidth() const;

  /// Pictures that act as buttons in one column; they live longer than the list's events.
  void SetButtons(CellButtons& buttons);

  /// Reads the portfolios again and shows the first, or after KeepSelection the one that was selected, while the same
  /// portfolios are listed in the same order. Nothing has changed when the statement fails.
  void ReflashData();
  /// Selects a row as a click on it does; the filter goes when it hides it. False when there is no such row.
  bool SelectRow(int row);
  /// Shows a row, also when it is the current one.
  void Reload(int row);

  void ApplyTheme() override;
  void Fit() override;
  [[nodiscard]] std::vector<const TStringGrid*> Grids() const override { return {grid_}; }
  [[nodiscard]] QStringList PortfolioIds() const override;
  bool SelectPortfolio(const QString& portfolioId) override;
  [[nodiscard]] int BlankBelow() const override;
  void KeepSelection() override;
  [[nodiscard]] QVariantMap Place() const override;
  void PutPlace(const QVariantMap& place) override;
  /// What Tab visits, in this order: the box above the list, and the grid where it is visited at all.
  [[nodiscard]] std::vector<QWidget*> TabStops() const;

 private:
  void Show(int row);
  void KeyDown(int key, Qt::KeyboardModifiers modifiers);
  /// The portfolios by id and name, in their order.
  [[nodiscard]] QStringList Listing() const;
  void ShowFilter();
  /// Shows the rows that the filter admits. False when the current row is none of them.
  bool ApplyFilter();
  void FilterChanged();
  void MouseMove(const QPoint& position);

  QString statement_;
  int keyColumn_;
  int nameColumn_;
  std::function<QString()> emptyText_;
  ListFilter* filter_;
  TStringGrid* grid_;
  HeaderStrip* header_;
  CellButtons* buttons_ = nullptr;
  TotalsStrip* totals_ = nullptr;
  bool isForcedReload_ = false;
  QStringList kept_;  ///< the list whose selection is kept; empty: none
};

}  // namespace holdwise
