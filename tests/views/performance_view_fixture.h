// SPDX-License-Identifier: MIT
#pragma once
#include "portfolio_view_fixture.h"
#include "views/zhbx/performance_layout.h"

namespace holdwise::test {

class PerformanceView : public PortfolioViewTest {
 protected:
  PerformanceView() : PortfolioViewTest(2001) {}
  /// Two portfolios with prices.
  void OpenWithTwo(int width = 1000) {
    AddTwo();
    Open(width);
    bench.DeliverPrices(PricesOfThree());
    Refresh();
  }
  void Refresh() { SendFrameMessage(*frame, FrameMessage::ReflashNowPrice); }
};

}  // namespace holdwise::test
