// SPDX-License-Identifier: MIT
#pragma once
#include <QStringList>
#include <QWidget>
#include <vector>

namespace holdwise {

class TStringGrid;

/// A part that views are put together from. The view hands on what concerns all parts; the catalogue asks the view,
/// which asks its parts. User-interface thread only.
class FramePart : public QWidget {
 public:
  using QWidget::QWidget;

  /// Re-reads everything the part takes from the host's theme.
  virtual void ApplyTheme() = 0;
  /// Lays the part out for its present size.
  virtual void Fit() {}

  /// The part's grids, in the order they are shown.
  [[nodiscard]] virtual std::vector<const TStringGrid*> Grids() const { return {}; }
  /// Ids of the portfolios that can be selected in this part, in the order they are listed.
  [[nodiscard]] virtual QStringList PortfolioIds() const { return {}; }
  /// Selects the portfolio as a click on its row does; false when it is not listed here.
  virtual bool SelectPortfolio(const QString& portfolioId);
  /// The next time its portfolios are read, the one that is selected stays so, unless the list has changed.
  virtual void KeepSelection() {}
  /// Name of the grid that shows what the selected portfolio holds; empty when this part has none.
  [[nodiscard]] virtual QString HoldingsGridName() const { return {}; }
};

}  // namespace holdwise
