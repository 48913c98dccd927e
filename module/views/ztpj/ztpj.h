// SPDX-License-Identifier: MIT
#pragma once
#include <memory>

#include "common/frames/view_frame.h"

namespace holdwise {

class HoldingsPanel;
class PortfolioList;
namespace evaluation {
struct ShownPortfolios;
}

/// "总体评价": every saved portfolio with its live return above the one-year deposit rate and its stored Sharpe,
/// Treynor and beta, and the holdings of the selected one with theirs against the index that is current in the
/// index-risk object. A failing statement throws out of the handlers.
class TFrM_ZTPJ : public TViewFrame {
 public:
  /// The shared objects must exist and live longer.
  explicit TFrM_ZTPJ(QWidget* parent = nullptr);
  ~TFrM_ZTPJ() override;

  /// Asks for the index-risk table where it is missing, and shows everything; the securities' figures appear when the
  /// table has come.
  void DoInit_() override;
  void ReflashNowPrice() override;
  [[nodiscard]] ViewNotice Notice() const override;

 private:
  void ReflashData();
  void ShowHoldings(int row);

  PortfolioList* list_;
  HoldingsPanel* holdings_;
  std::optional<double> rate_;                          ///< percent; none when the table has no such rate
  std::vector<IncompletePortfolio> withoutReturn_;      ///< as last computed
  std::unique_ptr<evaluation::ShownPortfolios> shown_;  ///< of the list; empty when it has just been read
};

}  // namespace holdwise
