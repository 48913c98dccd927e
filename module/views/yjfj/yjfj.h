// SPDX-License-Identifier: MIT
#pragma once
#include "common/frames/view_frame.h"

namespace holdwise {

class PortfolioList;
class StepChartPart;

/// "业绩分解": every saved portfolio's return since its purchase, split into what the risk-free rate, the market, the
/// spread and the choice of its securities gave, and the three steps of the selected one as bars. A failing statement
/// throws out of the handlers.
class TFrm_YJFJ : public TViewFrame {
 public:
  /// The shared objects must exist and live longer.
  explicit TFrm_YJFJ(QWidget* parent = nullptr);

  void DoInit_() override { ReflashData(); }
  void ReflashNowPrice() override;
  [[nodiscard]] ViewNotice Notice() const override;

 private:
  void ReflashData();

  PortfolioList* list_;
  StepChartPart* chart_;
  std::optional<double> rate_;  ///< percent; none when the table has no such rate
  ViewNotice notice_;           ///< of the parts as last computed
};

}  // namespace holdwise
