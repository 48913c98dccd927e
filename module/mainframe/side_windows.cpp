// SPDX-License-Identifier: MIT
#include "mainframe/side_windows.h"

#include "common/grid/string_grid.h"
#include "views/znstocklist/znstocklist.h"

namespace holdwise {
namespace {

class StockPoolWindow final : public CatalogueWindow {
 public:
  QWidget& Frame() override { return form_; }
  [[nodiscard]] std::vector<GridText> Grids() const override { return {form_.Grid().ToGridText()}; }
  [[nodiscard]] bool IsSettled() const override { return form_.IsSettled(); }

 private:
  TForm_Stock form_;
};

}  // namespace

QStringList SideWindows() {
  return {QStringLiteral("StockPool")};
}

std::unique_ptr<CatalogueWindow> MakeSideWindow(const QString& name) {
  if (!SideWindows().contains(name)) return nullptr;
  return std::make_unique<StockPoolWindow>();
}

}  // namespace holdwise
