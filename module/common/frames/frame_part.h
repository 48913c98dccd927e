// SPDX-License-Identifier: MIT
#pragma once
#include <QStringList>
#include <QVariantMap>
#include <QWidget>
#include <vector>

namespace holdwise {

class TStringGrid;

/// Where the user has got to in a grid: the current row, and how far it is scrolled.
[[nodiscard]] QVariantMap PlaceIn(const TStringGrid& grid);
/// Goes back there, as far as the grid still has such rows.
void PutPlaceIn(TStringGrid& grid, const QVariantMap& place);

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
  /// Pixels at the part's bottom in which nothing stands.
  [[nodiscard]] virtual int BlankBelow() const { return 0; }
  /// The next time its portfolios are read, the one that is selected stays so, unless the list has changed.
  virtual void KeepSelection() {}
  /// What is selected, typed into a filter and scrolled to here; empty for a part that keeps none of it.
  [[nodiscard]] virtual QVariantMap Place() const { return {}; }
  /// Puts it back; what is not there any more stays as it is.
  virtual void PutPlace(const QVariantMap& /*place*/) {}
  /// Name of the grid that shows what the selected portfolio holds; empty when this part has none.
  [[nodiscard]] virtual QString HoldingsGridName() const { return {}; }
};

}  // namespace holdwise
