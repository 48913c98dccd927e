// SPDX-License-Identifier: MIT
#pragma once
#include "common/frames/view_frame.h"

namespace holdwise {

class HoldingsPanel;
class PortfolioList;

/// "风险计量": every saved portfolio with its stored risk figures, and the securities of the selected one with theirs
/// against the index that is current in the index-risk object. A failing statement throws out of the handlers.
class TFrm_FXJL : public TViewFrame {
 public:
  /// The index-risk object must exist and live longer.
  explicit TFrm_FXJL(QWidget* parent = nullptr);

  /// Asks for the index-risk table where it is missing, and shows everything; the securities' figures appear when the
  /// table has come.
  void DoInit_() override;
  [[nodiscard]] ViewNotice Notice() const override;

 private:
  void ShowHoldings(int row);

  PortfolioList* list_;
  HoldingsPanel* holdings_;
};

}  // namespace holdwise
