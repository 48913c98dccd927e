// SPDX-License-Identifier: MIT
#pragma once
#include <QPointer>

#include "holdwise/sdk/catalogue.h"
#include "mainframe/untmainfrm.h"

namespace holdwise {

/// The catalogue of the address item's main frame. Before the first enter, and after the main frame has gone, it is
/// empty and has nothing to show.
class HoldwiseViewCatalogue final : public ViewCatalogue {
 public:
  void SetMainFrame(TMainFrm* mainFrame) { mainFrame_ = mainFrame; }
  /// The item's own download has been asked for (answered).
  void SetDownloadPending(bool pending) { isDownloadPending_ = pending; }

  [[nodiscard]] std::vector<View> List() const override;
  bool Show(int frameId) override;
  [[nodiscard]] int Current() const override;
  [[nodiscard]] bool IsSettled() const override;
  [[nodiscard]] int Progress() const override;
  [[nodiscard]] QString Shortcoming() const override;
  [[nodiscard]] QStringList Incomplete() const override;
  [[nodiscard]] QWidget* Frame() const override;
  [[nodiscard]] std::vector<GridText> Grids() const override;
  [[nodiscard]] Holdings HoldingsGrid() const override;
  bool SelectPortfolio(const QString& portfolioId) override;
  [[nodiscard]] QByteArray Place() const override;
  void PutPlace(const QByteArray& place) override;
  [[nodiscard]] std::vector<Input> Inputs() const override;
  QString SetInput(const QString& name, const QString& value) override;
  QString PutInput(const QString& name, const QString& value) override;
  [[nodiscard]] QStringList Windows() const override;
  [[nodiscard]] std::unique_ptr<CatalogueWindow> MakeWindow(const QString& name) override;
  void DataChanged() override;
  [[nodiscard]] QStringList Unstored() const override;

 private:
  [[nodiscard]] TViewFrame* CurFrame() const;

  QPointer<TMainFrm> mainFrame_;
  bool isDownloadPending_ = false;
};

}  // namespace holdwise
