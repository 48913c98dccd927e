#pragma once
#include <QPixmap>

#include "common/frames/portfolio_frame.h"

namespace holdwise {

/// "组合表现": every saved portfolio with its live value and changes, and the holdings of the selected one with their
/// contributions. Everything is computed anew from the shared objects with every price message; the view stores
/// nothing.
class TFrm_ZHBX : public TPortfolioFrame {
 public:
  explicit TFrm_ZHBX(QWidget* parent = nullptr);

  void DoInit_() override;
  void ReflashNowPrice() override;

 protected:
  void ShowPortfolios(const ResultSet& portfolios) override;
  void ShowHoldings(int row) override;
  [[nodiscard]] QString HintAt(const TStringGrid& grid, const GridCell& cell, const QPoint& position) const override;
  void strngrdMouseMove(const QPoint& position) override;

 private:
  void ConnectGrids();
  void strngrdMouseDown(Qt::MouseButton button, const QPoint& position);
  void strngrdMouseUp(const QPoint& position);
  void strngrdDrawCell(QPainter& painter, const GridCellPaint& cell);
  void AskAndDelete(const GridCell& cell);
  [[nodiscard]] bool IsOverDeletePicture(const GridCell& cell, const QPoint& position) const;

  QPixmap img_DeleteOff_;
  QPixmap img_deleteOn_;
  QStringList closesDue_;  ///< codes of the holdings shown, until their closes are read
  int pressedRow_ = -1;
  bool isOverDelete_ = false;
  bool isBusy_ = false;
};

}  // namespace holdwise
