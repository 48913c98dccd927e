#pragma once
#include "common/frames/frame_parts.h"
#include "common/frames/security_links.h"
#include "common/frames/view_frame.h"
#include "common/grid/string_grid.h"
#include "holdwise/packet/result_set.h"

namespace holdwise {

/// Base of the views with the saved portfolios above and what the selected one holds below: layout, theme, column
/// widths, selection and links. A view says what its grids hold and fills them. A failing statement throws out of the
/// handlers.
class TPortfolioFrame : public TViewFrame {
 public:
  void DoInit_() override { ReflashData(); }
  void msg_changeskin() override { MakeSkin(); }
  void FrameResize() override;

  /// Reads the portfolio list again and shows the holdings of its first row.
  virtual void ReflashData();

  [[nodiscard]] std::vector<const TStringGrid*> CatalogueGrids() const override { return {strngrd, StringGrid1}; }
  [[nodiscard]] ViewCatalogue::Holdings HoldingsGrid() const override;
  bool SelectPortfolio(const QString& portfolioId) override;

 protected:
  struct Design {
    QString unit;  ///< named in the debug log
    GridDesign portfolios;
    int keyColumn = 0;  ///< of the portfolio list: the portfolio's id
    GridDesign holdings;
    QString caption;  ///< above the holdings until a portfolio is shown
  };
  TPortfolioFrame(const Design& design, QWidget* parent);

  [[nodiscard]] QString UnitName() const override { return unit_; }

  /// Fills the emptied portfolio list: one row a portfolio.
  virtual void ShowPortfolios(const ResultSet& portfolios) = 0;
  /// Shows caption and holdings of the portfolio in that row; the list is not empty.
  virtual void ShowHoldings(int row) = 0;
  /// Hint for the cell under the mouse: the whole of a text that is cut off, empty for none.
  [[nodiscard]] virtual QString HintAt(const TStringGrid& grid, const GridCell& cell, const QPoint& position) const;
  /// Pointer feedback of the list.
  virtual void strngrdMouseMove(const QPoint& position);

  /// Shows the portfolio of that row; nothing when it is the current row already. An empty list has no caption.
  void strngrdSelectCell(int row);
  /// The same, also when it is the current row.
  void Reload(int row);

  QWidget* RzPanel1;
  TStringGrid* strngrd;
  HeaderStrip* RzPanel4;
  QWidget* RzPanel2;
  TitleStrip* RzPanel3;
  TStringGrid* StringGrid1;
  HeaderStrip* RzPanel5;

 private:
  void InitAppear();
  void ConnectGrids();
  void MakeSkin();
  void StringGrid1MouseMove(const QPoint& position);

  QString unit_;
  int keyColumn_;
  SecurityLinks links_;
  bool isForcedReload_ = false;
};

}  // namespace holdwise
