// SPDX-License-Identifier: MIT
#pragma once
#include <functional>

#include "common/frames/column_table.h"
#include "common/frames/frame_part.h"
#include "common/grid/string_grid.h"
#include "holdwise/packet/result_set.h"

namespace holdwise {

class CellButtons;
class HeaderStrip;

/// For an empty list of saved portfolios: that there is none, and how to begin.
[[nodiscard]] QString NoSavedPortfolios();

/// A grid of portfolios with its header strip: reads them from the database, keeps one selected and says which. A
/// failing statement throws out of the calls. Without a statement whoever owns the list fills its grid and does not
/// call ReflashData. User-interface thread only.
class PortfolioList : public FramePart {
 public:
  static constexpr int kHeight = 201;
  struct Design {
    QString unit;       ///< named in the debug log
    QString statement;  ///< selects the portfolios that are listed; may be empty
    ColumnTable columns;
    int keyColumn = 0;     ///< the portfolio's id
    QString emptyText;     ///< shown while no portfolio is listed
    int height = kHeight;  ///< of the whole part, pixels; 0: as high as its place
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

  /// Other captions over the shown columns, as HeaderStrip takes them.
  void SetTitles(const QStringList& titles);
  /// Width of the strip with the captions, pixels.
  [[nodiscard]] int TitleWidth() const;

  /// Pictures that act as buttons in one column; they live longer than the list's events.
  void SetButtons(CellButtons& buttons);

  /// Reads the portfolios again and shows the first. Nothing has changed when the statement fails.
  void ReflashData();
  /// Shows a row, also when it is the current one.
  void Reload(int row);

  void ApplyTheme() override;
  void Fit() override;
  [[nodiscard]] std::vector<const TStringGrid*> Grids() const override { return {grid_}; }
  [[nodiscard]] QStringList PortfolioIds() const override;
  bool SelectPortfolio(const QString& portfolioId) override;

 private:
  void Show(int row);
  void MouseMove(const QPoint& position);

  QString statement_;
  int keyColumn_;
  TStringGrid* grid_;
  HeaderStrip* header_;
  CellButtons* buttons_ = nullptr;
  bool isForcedReload_ = false;
};

}  // namespace holdwise
