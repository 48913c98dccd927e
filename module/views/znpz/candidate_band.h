// SPDX-License-Identifier: MIT
#pragma once
#include <functional>

#include "common/frames/cell_buttons.h"
#include "common/frames/frame_part.h"
#include "common/frames/portfolio_list.h"

class QSplitter;

namespace holdwise {

class HoldingsPanel;
class TitleStrip;

/// The lower band of the smart allocation: the candidates with the picture that saves one, a splitter, and what the
/// selected one holds. User-interface thread only.
class CandidateBand : public FramePart {
 public:
  explicit CandidateBand(QWidget* parent);

  /// The picture of a row, or F4 in the list.
  std::function<void(int row)> OnSave;

  [[nodiscard]] PortfolioList& Candidates() const { return *candidates_; }
  [[nodiscard]] HoldingsPanel& Holdings() const { return *holdings_; }
  /// Replaces the caption over the candidates.
  void SetCaption(const QString& caption);

  void ApplyTheme() override;
  void Fit() override;
  [[nodiscard]] std::vector<const TStringGrid*> Grids() const override;
  /// Numbers of the candidates in the list, from 1.
  [[nodiscard]] QStringList PortfolioIds() const override;
  bool SelectPortfolio(const QString& portfolioId) override;
  [[nodiscard]] QString HoldingsGridName() const override;
  [[nodiscard]] QVariantMap Place() const override;
  void PutPlace(const QVariantMap& place) override;

 private:
  QSplitter* Splitter1;
  QWidget* left_;
  TitleStrip* title_;
  PortfolioList* candidates_;
  HoldingsPanel* holdings_;
  CellButtons save_;
};

}  // namespace holdwise
