#pragma once
#include "common/frames/portfolio_frame.h"

namespace holdwise {

/// "风险计量": every saved portfolio with its stored risk figures, and the securities of the selected one with theirs
/// against the index that is current in the index-risk object.
class TFrm_FXJL : public TPortfolioFrame {
 public:
  /// The index-risk object must exist and live longer.
  explicit TFrm_FXJL(QWidget* parent = nullptr);

  /// Asks for the index-risk table where it is missing, and shows everything; the securities' figures appear when the
  /// table has come.
  void DoInit_() override;

 protected:
  void ShowPortfolios(const ResultSet& portfolios) override;
  void ShowHoldings(int row) override;
};

}  // namespace holdwise
