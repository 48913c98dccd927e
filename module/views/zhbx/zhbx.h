// SPDX-License-Identifier: MIT
#pragma once
#include <QStringList>
#include <memory>

#include "common/frames/cell_buttons.h"
#include "common/frames/view_frame.h"

namespace holdwise {

class HoldingsPanel;
class PortfolioList;
class TotalsStrip;
namespace performance {
struct ShownPortfolios;
}

/// "组合表现": every saved portfolio with its live value and changes, and the holdings of the selected one with their
/// contributions; under both, their sums. Everything is computed anew from the shared objects with every price message;
/// the view stores nothing. A failing statement throws out of the handlers.
class TFrm_ZHBX : public TViewFrame {
 public:
  explicit TFrm_ZHBX(QWidget* parent = nullptr);
  ~TFrm_ZHBX() override;

  void DoInit_() override;
  void ReflashNowPrice() override;
  [[nodiscard]] ViewNotice Notice() const override;

 private:
  void InitAppear();
  void ShowHoldings(int row);
  /// Whether the portfolio's holdings were there when it was shown.
  void Note(const QString& name, bool isFound);
  void AskAndDelete(int row);
  /// Makes an unsaved copy for the editor, and says what it is called.
  void CopyToEditor(int row);
  [[nodiscard]] static QString HintIn(const TStringGrid& grid, const GridCell& cell, int measure,
                                      const QPoint& position);

  PortfolioList* list_;
  HoldingsPanel* holdings_;
  CellButtons delete_;
  TotalsStrip& listTotals_;
  TotalsStrip& holdingTotals_;
  QStringList unfound_;                                  ///< portfolios shown without holdings, by name
  std::unique_ptr<performance::ShownPortfolios> shown_;  ///< of the list; empty when it has just been read
  QStringList closesDue_;                                ///< codes of the holdings shown, until their closes are read
};

}  // namespace holdwise
