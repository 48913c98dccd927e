// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>

#include <QTest>

#include "common/frames/frame_parts.h"
#include "common/grid/string_grid.h"
#include "view_bench.h"
#include "view_tools.h"

namespace holdwise::test {

inline QStringList List(std::initializer_list<const char*> texts) {
  QStringList list;
  for (const char* text : texts) list << QString::fromUtf8(text);
  return list;
}

inline QStringList RowOf(const TStringGrid& grid, int row) {
  QStringList cells;
  for (int column = 0; column < grid.ColCount(); ++column) cells << grid.Cells(column, row);
  return cells;
}

inline void Click(TStringGrid& grid, int column, int row) {
  const QPoint at = grid.CellRect(column, row).center();
  QTest::mouseMove(grid.viewport(), at);
  QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, at);
}

/// A view with a list of portfolios above and the holdings of the selected one below, in a main frame.
class PortfolioViewTest : public testing::Test {
 protected:
  explicit PortfolioViewTest(int node) : node_(node) {}

  /// Shows the view in a main frame of that width.
  void Open(int width = 1000) {
    bench.OpenMainFrame(width);
    ShowView();
  }
  void ShowView() {
    bench.ClickNode(node_);
    frame = bench.mainFrame->CurFrame();
    ASSERT_NE(frame, nullptr);
    portfolios = frame->findChild<TStringGrid*>(QStringLiteral("strngrd"));
    holdings = frame->findChild<TStringGrid*>(QStringLiteral("StringGrid1"));
    QTest::qWait(20);
  }
  /// Two saved portfolios, the newest with the three holdings.
  void AddTwo() {
    bench.AddPortfolio(1, QStringLiteral("稳健"), {{1600000, 200, 1, 9.5}});
    bench.AddPortfolio(2, QStringLiteral("进取"), ThreeHoldings());
  }
  void ClearPortfolios() {
    bench.database.Service().Execute(QStringLiteral("delete from alg_comdetail"));
    bench.database.Service().Execute(QStringLiteral("delete from alg_commain"));
  }
  [[nodiscard]] QString Title() const { return frame->findChild<TitleStrip*>()->Caption().text(); }
  [[nodiscard]] QColor Color(const char* key) const { return bench.host.theme.ColorOf(QString::fromLatin1(key)); }

  ViewBench bench;
  TViewFrame* frame = nullptr;
  TStringGrid* portfolios = nullptr;
  TStringGrid* holdings = nullptr;

 private:
  int node_;
};

}  // namespace holdwise::test
