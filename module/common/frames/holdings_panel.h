// SPDX-License-Identifier: MIT
#pragma once
#include <functional>

#include "common/frames/column_table.h"
#include "common/frames/frame_part.h"
#include "common/frames/security_links.h"
#include "common/grid/string_grid.h"

namespace holdwise {

class HeaderStrip;
class TitleStrip;
class TotalsStrip;

/// What the selected portfolio holds: a title strip, a header strip and a grid whose code and name texts open the
/// security, as Enter and the context menu do for the row. The view fills the grid. User-interface thread only.
class HoldingsPanel : public FramePart {
 public:
  struct Design {
    QString unit;  ///< named in the debug log
    ColumnTable columns;
    QString caption;  ///< until a portfolio is shown
  };
  HoldingsPanel(const Design& design, QWidget* parent);

  [[nodiscard]] TStringGrid& Grid() const { return *grid_; }
  /// Puts a strip for sums under the grid.
  TotalsStrip& AddTotals(const QStringList& titles);
  /// Other captions over the shown columns, as HeaderStrip takes them.
  void SetTitles(const QStringList& titles);
  /// Replaces the caption of the title strip; empty for none.
  void SetCaption(const QString& caption);
  /// A line about the holdings in the title strip, with the whole story under the mouse; empty for none.
  void SetNotice(const QString& text, const QString& hint);
  /// Empties the grid; the caption stays.
  void Clear();

  /// Hint for the cell under the mouse, instead of the whole of a text that is cut off; empty for none. A remark of the
  /// grid on the cell goes before it.
  TStringGrid::Hint OnHint;

  void ApplyTheme() override;
  void Fit() override;
  [[nodiscard]] std::vector<const TStringGrid*> Grids() const override { return {grid_}; }
  [[nodiscard]] QString HoldingsGridName() const override;
  [[nodiscard]] QVariantMap Place() const override { return PlaceIn(*grid_); }
  void PutPlace(const QVariantMap& place) override { PutPlaceIn(*grid_, place); }

 private:
  void MouseMove(const QPoint& position);
  void OpenRow();

  TitleStrip* title_;
  TStringGrid* grid_;
  HeaderStrip* header_;
  SecurityLinks links_;
  int codeColumn_;
  TotalsStrip* totals_ = nullptr;
};

}  // namespace holdwise
