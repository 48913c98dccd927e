// SPDX-License-Identifier: MIT
#include "view_catalogue.h"

#include "calc/download_trigger.h"
#include "calc/untcalc2.h"
#include "common/grid/string_grid.h"
#include "common/series/all_stock_data.h"
#include "common/series/missing_prices.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "common/store/exchange_files.h"
#include "common/store/incomplete_portfolios.h"
#include "common/store/statements.h"
#include "mainframe/side_windows.h"
#include "mainframe/view_table.h"

namespace holdwise {
namespace {

const QString kNoView = QStringLiteral("没有打开的页面。");

}  // namespace

TViewFrame* HoldwiseViewCatalogue::CurFrame() const {
  return mainFrame_.isNull() ? nullptr : mainFrame_->CurFrame();
}

std::vector<ViewCatalogue::View> HoldwiseViewCatalogue::List() const {
  std::vector<View> views;
  if (mainFrame_.isNull()) return views;
  for (const TNodeData& node : Nodes) {
    if (FindView(node.Id) != nullptr) views.push_back({node.Id, node.Text});
  }
  return views;
}

bool HoldwiseViewCatalogue::Show(int frameId) {
  if (mainFrame_.isNull() || FindView(frameId) == nullptr) return false;
  QTreeWidgetItem* node = mainFrame_->dxTL().FindId(frameId);
  if (node == nullptr) return false;
  mainFrame_->dxTL().GoTo(node);
  return true;
}

int HoldwiseViewCatalogue::Current() const {
  const TViewFrame* frame = CurFrame();
  return frame == nullptr ? 0 : frame->Tag();
}

bool HoldwiseViewCatalogue::IsSettled() const {
  return !isDownloadPending_ && !mainFrame_.isNull() && mainFrame_->IsSettled();
}

int HoldwiseViewCatalogue::Progress() const {
  return frmCalc2 ? frmCalc2->ProgressBar().value() : 0;
}

QString HoldwiseViewCatalogue::Shortcoming() const {
  if (mainFrame_.isNull()) return {};
  if (!ExchangeProblem().isEmpty()) return ExchangeProblem();
  const std::int64_t count = Database().Count(sql::kCountUnfinishedSaved);
  if (count > 0) {
    const QString problem = CalculationProblem();
    return QStringLiteral("%1 个组合的风险数据没有算完，所示的不是最新数值（%2）。")
        .arg(QString::number(count), problem.isEmpty() ? QStringLiteral("原因见日志") : problem);
  }
  if (g_AllStockData->LacksCurrentTable() && Database().Count(sql::kCountSavedPortfolios) > 0) {
    return QStringLiteral("风险文件%1，成分股的风险系数没有显示，压力测试按 0 计算（原因见日志）。")
        .arg(g_AllStockData->IsCurrentFileOfOtherEdition() ? QStringLiteral("是随另一份数据生成的")
                                                           : QStringLiteral("没有取得"));
  }
  return {};
}

QStringList HoldwiseViewCatalogue::Incomplete() const {
  if (mainFrame_.isNull()) return {};
  auto lacking =
      WithThoseLackingPrices(PortfoliosLackingStoredInputs(kWholeBasis, Database()), kWholeBasis.prices, Database());
  lacking = Together(std::move(lacking), PortfoliosLackingStoredInputs(kWholeBasis, Database(), PortfolioSet::Unsaved));
  QStringList lines = mainFrame_->NoticesOfViews(lacking);
  // The file that stopped the calculation is the shortcoming.
  if (!CalculationProblem().isEmpty()) lines << UncalculatedLine(TakeUncalculated(lacking));
  lines.removeAll(QString());
  return lines + LinesOf(lacking);
}

QWidget* HoldwiseViewCatalogue::Frame() const {
  return CurFrame();
}

std::vector<GridText> HoldwiseViewCatalogue::Grids() const {
  std::vector<GridText> texts;
  const TViewFrame* frame = CurFrame();
  if (frame == nullptr) return texts;
  for (const TStringGrid* grid : frame->CatalogueGrids()) texts.push_back(grid->ToGridText());
  return texts;
}

ViewCatalogue::Holdings HoldwiseViewCatalogue::HoldingsGrid() const {
  const TViewFrame* frame = CurFrame();
  return frame == nullptr ? Holdings{} : frame->HoldingsGrid();
}

bool HoldwiseViewCatalogue::SelectPortfolio(const QString& portfolioId) {
  TViewFrame* frame = CurFrame();
  return frame != nullptr && frame->SelectPortfolio(portfolioId);
}

QByteArray HoldwiseViewCatalogue::Place() const {
  const TViewFrame* frame = CurFrame();
  return frame == nullptr ? QByteArray() : frame->Place();
}

void HoldwiseViewCatalogue::PutPlace(const QByteArray& place) {
  if (TViewFrame* frame = CurFrame(); frame != nullptr) frame->PutPlace(place);
}

std::vector<ViewCatalogue::Input> HoldwiseViewCatalogue::Inputs() const {
  const TViewFrame* frame = CurFrame();
  return frame == nullptr ? std::vector<Input>{} : frame->Inputs();
}

QString HoldwiseViewCatalogue::SetInput(const QString& name, const QString& value) {
  TViewFrame* frame = CurFrame();
  return frame == nullptr ? kNoView : frame->SetInput(name, value);
}

QString HoldwiseViewCatalogue::PutInput(const QString& name, const QString& value) {
  TViewFrame* frame = CurFrame();
  return frame == nullptr ? kNoView : frame->PutInput(name, value);
}

QStringList HoldwiseViewCatalogue::Windows() const {
  return mainFrame_.isNull() ? QStringList() : SideWindows();
}

std::unique_ptr<CatalogueWindow> HoldwiseViewCatalogue::MakeWindow(const QString& name) {
  return mainFrame_.isNull() ? nullptr : MakeSideWindow(name);
}

void HoldwiseViewCatalogue::DataChanged() {
  if (!mainFrame_.isNull()) mainFrame_->DataChanged();
}

QStringList HoldwiseViewCatalogue::Unstored() const {
  QStringList lines;
  if (mainFrame_.isNull()) return lines;
  for (const TViewFrame* frame : mainFrame_->FrameList()) lines << frame->Unstored();
  lines.removeAll(QString());
  return lines;
}

}  // namespace holdwise
