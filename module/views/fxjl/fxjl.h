#pragma once
#include "common/frame_parts.h"
#include "common/grid/security_links.h"
#include "common/grid/string_grid.h"
#include "common/view_frame.h"

namespace holdwise {

/// "风险计量": every saved portfolio with its stored risk figures, and the securities of the selected one with theirs
/// against the index that is current in the index-risk object. A failing statement throws out of the handlers.
class TFrm_FXJL : public TViewFrame {
 public:
  /// The index-risk object must exist and live longer.
  explicit TFrm_FXJL(QWidget* parent = nullptr);

  /// Asks for the index-risk table where it is missing, and shows everything; the securities' figures appear when the
  /// table has come.
  void DoInit_() override;
  void msg_changeskin() override;
  void FrameResize() override;

  /// Reads the portfolio list again and shows the securities of its first row.
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
  /// Loads the securities of the portfolio in that row.
  void strngrdSelectCell(int row);
  /// The same when they are shown already.
  void Reload(int row);
  void StringGrid1MouseMove(const QPoint& position);

  QWidget* RzPanel1;
  TStringGrid* strngrd;
  HeaderStrip* RzPanel4;
  QWidget* RzPanel2;
  TitleStrip* RzPanel3;
  TStringGrid* StringGrid1;
  HeaderStrip* RzPanel5;
  SecurityLinks links_;

  bool isForcedReload_ = false;
};

}  // namespace holdwise
