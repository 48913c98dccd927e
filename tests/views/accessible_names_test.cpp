// SPDX-License-Identifier: MIT
// What a screen reader finds in the views.
#include "accessible_names.h"

#include <gtest/gtest.h>

#include <QApplication>

#include "mainframe/view_table.h"
#include "mainframe_fixture.h"

namespace holdwise::test {
namespace {

TEST_F(MainFrame, EveryControlOfEveryViewHasAName) {
  bench.AddPortfolio(1, QStringLiteral("甲"), ThreeHoldings());
  bench.AddPortfolio(2, QStringLiteral("乙"), ThreeHoldings(), 0);
  Open();
  bench.DeliverPrices(PricesOfThree());
  for (const TNodeData& node : Nodes) {
    if (node.make == nullptr) continue;
    bench.mainFrame->dxTL().setCurrentItem(bench.Node(node.Id));
    QApplication::processEvents();
    int named = 0;
    EXPECT_EQ(UnnamedControls(*bench.mainFrame, named).join('\n').toStdString(), "") << node.Id;
    EXPECT_GE(named, 2) << "the tree and a grid at least, of " << node.Id;
  }
}

}  // namespace
}  // namespace holdwise::test
