// SPDX-License-Identifier: MIT
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include "fake_views.h"
#include "transfer/view_exporter.h"

namespace holdwise {
namespace {

/// A hundred portfolios that change the page as soon as they are selected; the last takes its time.
class ManyPortfolios : public FakeViews {
 public:
  explicit ManyPortfolios(QWidget& page) : page_(page) {}
  [[nodiscard]] Holdings HoldingsGrid() const override {
    Holdings holdings = FakeViews::HoldingsGrid();
    if (holdings.gridName.isEmpty()) return holdings;
    holdings.portfolioIds.clear();
    for (int id = 1; id <= 100; ++id) holdings.portfolioIds << QString::number(id);
    return holdings;
  }
  bool Show(int frameId) override {
    isSelected_ = isLast_ = false;
    return FakeViews::Show(frameId);
  }
  bool SelectPortfolio(const QString& portfolioId) override {
    page_.repaint();
    since_.start();
    isSelected_ = true;
    isLast_ = portfolioId == "100";
    return FakeViews::SelectPortfolio(portfolioId);
  }
  [[nodiscard]] bool IsSettled() const override {
    const bool isSettled = isSelected_ ? !isLast_ || since_.elapsed() > 300 : FakeViews::IsSettled();
    if (isLast_ && since_.elapsed() > 100) wasPaintedWhileWaiting = wasPaintedWhileWaiting || page_.updatesEnabled();
    return isSettled;
  }
  mutable bool wasPaintedWhileWaiting = false;

 private:
  QWidget& page_;
  QElapsedTimer since_;
  bool isSelected_ = false;
  bool isLast_ = false;
};

class PaintedPage : public QWidget {
 public:
  int paints = 0;

 protected:
  void paintEvent(QPaintEvent* /*event*/) override { ++paints; }
};

TEST(ViewExporterTest, ThePageIsPaintedNowAndThenWhileThePortfoliosAreGoneThrough) {
  const QTemporaryDir folder;
  PaintedPage page;
  page.resize(30, 20);
  page.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&page));
  ManyPortfolios views(page);
  ViewExporter exporter(views, page);
  bool isDone = false;
  exporter.OnDone = [&](const QString& problem, const QString&) { isDone = problem.isEmpty(); };
  exporter.Start(folder.path());
  QElapsedTimer lasted;
  lasted.start();
  ASSERT_TRUE(QTest::qWaitFor([&] { return isDone; }, 30000));
  EXPECT_EQ(QDir(folder.path()).entryList({"2-g_1-*.csv"}).size(), 100);
  EXPECT_TRUE(page.updatesEnabled());
  EXPECT_TRUE(views.wasPaintedWhileWaiting);
  EXPECT_GE(page.paints, 3) << "two pictures, and the page with the first portfolio";
  EXPECT_LE(page.paints, lasted.elapsed() / 100 + 10) << "not with every portfolio";
}

}  // namespace
}  // namespace holdwise
