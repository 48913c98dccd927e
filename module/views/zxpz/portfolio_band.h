// SPDX-License-Identifier: MIT
#pragma once
#include <functional>

#include "common/frames/cell_buttons.h"
#include "common/frames/frame_part.h"
#include "editor_layout.h"

class QMenu;
class QSplitter;

namespace holdwise {

class HeaderStrip;
class PortfolioList;

/// The lower band of the portfolio editor: the list of unsaved portfolios with its three pictures, a splitter, and what
/// the selected one holds. A failing statement throws out of the calls. User-interface thread only.
class PortfolioBand : public FramePart {
 public:
  explicit PortfolioBand(QWidget* parent);

  /// The pictures, and the keys that do the same in the list, work on a row.
  std::function<void(int row)> OnSave;
  std::function<void(int row)> OnDelete;
  std::function<void(int row)> OnModify;

  [[nodiscard]] TStringGrid& List() const;
  [[nodiscard]] TStringGrid& Details() const { return *details_; }
  /// Reads the list again and shows the first portfolio, or after KeepSelection the one that was selected.
  void UpdateGrid_();
  /// Selects a row as a click on it does, also one that the list's filter hides.
  void SelectRow(int row);
  /// What Tab visits here.
  [[nodiscard]] std::vector<QWidget*> TabStops() const;
  void SetTitles(const editor::Captions& captions);
  /// Width of the strip with the list's captions, pixels.
  [[nodiscard]] int TitleWidth() const;
  /// The picture that is held down looks like the others again.
  void ReleasePicture() { links_.Release(); }

  void ApplyTheme() override;
  void Fit() override;
  [[nodiscard]] std::vector<const TStringGrid*> Grids() const override;
  [[nodiscard]] QStringList PortfolioIds() const override;
  bool SelectPortfolio(const QString& portfolioId) override;
  void KeepSelection() override;
  [[nodiscard]] QString HoldingsGridName() const override;
  [[nodiscard]] QVariantMap Place() const override;
  void PutPlace(const QVariantMap& place) override;

 private:
  void BuildDetails();
  void ShowDetails(int row);
  void FillMenu(QMenu& menu, int row);

  QSplitter* Splitter1;
  PortfolioList* list_;
  QWidget* detailPanel_;
  TStringGrid* details_;
  HeaderStrip* detailHeader_;
  CellButtons links_;
};

}  // namespace holdwise
