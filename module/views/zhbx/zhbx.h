#pragma once
#include <QPixmap>

#include "common/frame_parts.h"
#include "common/grid/security_links.h"
#include "common/grid/string_grid.h"
#include "common/view_frame.h"

namespace holdwise {

/// "组合表现": every saved portfolio with its live value and changes, and the holdings of the selected one with their
/// contributions. Everything is computed anew from the shared objects with every price message; the view stores
/// nothing. A failing statement throws out of the handlers.
class TFrm_ZHBX : public TViewFrame {
 public:
  explicit TFrm_ZHBX(QWidget* parent = nullptr);

  void DoInit_() override;
  void msg_changeskin() override;
  void ReflashNowPrice() override;
  void FrameResize() override;

  /// Reads the portfolio list again and selects its first row.
  void ReflashData();

  [[nodiscard]] std::vector<const TStringGrid*> CatalogueGrids() const override { return {strngrd, StringGrid1}; }
  [[nodiscard]] ViewCatalogue::Holdings HoldingsGrid() const override;
  bool SelectPortfolio(const QString& portfolioId) override;

 protected:
  [[nodiscard]] QString UnitName() const override;

 private:
  void InitAppear();
  void ConnectGrids();
  void MakeSkin();
  /// Loads the holdings of the portfolio in that row.
  void strngrdSelectCell(int row);
  void strngrdMouseDown(Qt::MouseButton button, const QPoint& position);
  void strngrdMouseMove(const QPoint& position);
  void strngrdMouseUp(const QPoint& position);
  void strngrdDrawCell(QPainter& painter, const GridCellPaint& cell);
  void StringGrid1MouseMove(const QPoint& position);
  void AskAndDelete(const GridCell& cell);
  [[nodiscard]] bool IsOverDeletePicture(const GridCell& cell, const QPoint& position) const;

  QWidget* RzPanel1;
  TStringGrid* strngrd;
  HeaderStrip* RzPanel4;
  QWidget* RzPanel2;
  TitleStrip* RzPanel3;
  TStringGrid* StringGrid1;
  HeaderStrip* RzPanel5;
  SecurityLinks links_;

  QPixmap img_DeleteOff_;
  QPixmap img_deleteOn_;
  int pressedRow_ = -1;
  bool isForcedReload_ = false;
  bool isOverDelete_ = false;
  bool isBusy_ = false;
};

}  // namespace holdwise
