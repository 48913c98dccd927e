// SPDX-License-Identifier: MIT
#include "intraday/intraday_page.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QTest>
#include <QtCharts/QLineSeries>
#include <cmath>

#include "accessible_names.h"
#include "market_data_fixture.h"
#include "recording_bus.h"

namespace holdwise {
namespace {

constexpr int kStock = 1600000;

class IntradayPageTest : public MarketDataTest {
 protected:
  void SetUp() override {
    Load();
    recorder_ = std::make_unique<TickRecorder>(bus_, data_, clock_, log_, QString());
    recorder_->Start();
    page_ = std::make_unique<IntradayPage>(data_, theme_, *recorder_);
    page_->resize(1000, 600);
  }
  void Show(const QString& code) {
    data_.SetCurrentCode(code);
    page_->show();
    page_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(page_.get()));
    QTest::qWait(20);
  }
  /// The service says a price of 600000 at a time, with what was traded so far unless that is unknown.
  void Say(std::uint32_t time, std::int64_t price, std::int64_t volume = Tick::kUnknown,
           std::int64_t amount = Tick::kUnknown) {
    TDFieldSet entry = PriceOf(price);
    if (volume >= 0) entry.Set("Volume", volume);
    if (amount >= 0) entry.Set("Amount", Decimal{amount, 2});
    bus_.Answer("600000", entry, time);
    data_.ApplyQuotes({{kStock, {static_cast<double>(price) / 100, 8.2}}});
    QTest::qWait(100);
    QApplication::processEvents();  // what is due by now, however late the wait came back
  }
  [[nodiscard]] QString Text(const char* name) const {
    return page_->findChild<QLabel*>(QString::fromUtf8(name))->text();
  }
  [[nodiscard]] QColor ColorOf(const char* name) const {
    return page_->findChild<QLabel*>(QString::fromUtf8(name))->palette().color(QPalette::WindowText);
  }
  [[nodiscard]] IntradayChart& Chart() const { return *page_->findChild<IntradayChart*>(); }
  [[nodiscard]] QList<QPointF> Line(const char* name) const {
    for (QAbstractSeries* series : Chart().chart()->series()) {
      if (series->name() != QString::fromUtf8(name)) continue;
      return qobject_cast<QLineSeries*>(series)->points();
    }
    ADD_FAILURE() << "no series " << name;
    return {};
  }
  [[nodiscard]] QColor Theme(const char* key) const { return theme_.Colors().ColorOf(QString::fromLatin1(key)); }
  /// Points of the chart's picture in that colour, in a part of it.
  [[nodiscard]] int PointsOf(const QColor& color, const QRectF& part) const {
    const QImage picture = Chart().viewport()->grab().toImage();
    const QRect inside = part.toRect().intersected(picture.rect());
    int points = 0;
    for (int y = inside.top(); y <= inside.bottom(); ++y)
      for (int x = inside.left(); x <= inside.right(); ++x)
        if (picture.pixelColor(x, y) == color) ++points;
    return points;
  }
  void MoveTo(int second) const {
    const ChartLayout& places = Chart().Places();
    QTest::mouseMove(Chart().viewport(), QPoint(static_cast<int>(std::ceil(places.Axis().XOf(second))), 100));
  }

  ThemeServices theme_{ThemeKind::Dark, log_};
  RecordingBus bus_;
  std::unique_ptr<TickRecorder> recorder_;
  std::unique_ptr<IntradayPage> page_;
};

TEST_F(IntradayPageTest, TheHeadLineHasTheSecuritysFigures) {
  Show("600000");
  EXPECT_EQ(Text("title"), QStringLiteral("600000  浦发银行"));
  Say(93000, 810, 1000, 810'000);
  Say(93100, 836, 25'000, 20'500'000);
  Say(93200, 828, 25'000, 20'500'000);
  EXPECT_EQ(Text("price"), QStringLiteral("8.28"));
  EXPECT_EQ(Text("change"), QStringLiteral("+0.08  +0.98%")) << "0.08 / 8.20";
  EXPECT_EQ(Text("今开"), QStringLiteral("8.10"));
  EXPECT_EQ(Text("最高"), QStringLiteral("8.36"));
  EXPECT_EQ(Text("最低"), QStringLiteral("8.10"));
  EXPECT_EQ(Text("昨收"), QStringLiteral("8.20"));
  EXPECT_EQ(Text("成交量"), QStringLiteral("2.50 万股"));
  EXPECT_EQ(Text("成交额"), QStringLiteral("20.50 万元"));
  EXPECT_EQ(ColorOf("price"), theme_.ColorOfChange(1));
  EXPECT_EQ(ColorOf("今开"), theme_.ColorOfChange(-1));
  EXPECT_EQ(ColorOf("昨收"), Theme("Grid_UnSelTxtColor"));
  EXPECT_TRUE(Text("notice").startsWith(QStringLiteral("2024-05-29 09:32:00 · 均价：成交额÷成交量")));
}

TEST_F(IntradayPageTest, TheLineGrowsWhileItIsShown) {
  Show("600000");
  Say(93000, 815);
  Say(93010, 818);
  EXPECT_EQ(Line("价格"), (QList<QPointF>{{0, 815}, {10, 818}}));
  Say(130001, 810);
  EXPECT_EQ(Line("价格").constLast(), QPointF(7201, 810)) << "the break takes no place";
  EXPECT_EQ(Line("昨收"), (QList<QPointF>{{0, 820}, {14400, 820}}));
  // The mean of the minutes: 8.18 from 9:30 to 11:30, that are 120, then 8.10.
  const QList<QPointF> average = Line("均价");
  ASSERT_EQ(average.size(), 2);
  EXPECT_EQ(average[0], QPointF(10, 818));
  EXPECT_EQ(average[1].x(), 7201);
  EXPECT_NEAR(average[1].y(), (120 * 818 + 810) / 121.0, 1e-9);
  Say(140000, 810);  // nothing new, but the price still holds
  EXPECT_EQ(Line("价格").constLast(), QPointF(10800, 810));
}

TEST_F(IntradayPageTest, TheAverageLineIsAmountByVolume) {
  Show("600000");
  Say(93000, 815, 500, 407'500);
  Say(93101, 836, 700, 574'700);     // 200 at 8.36
  Say(93130, 825, 1500, 1'234'700);  // 800 at 8.25
  EXPECT_EQ(Line("均价"), (QList<QPointF>{{0, 815}, {90, 1'234'700 / 1500.0}}));
}

TEST_F(IntradayPageTest, BarsAreTheVolumesOfTheMinutes) {
  Show("600000");
  Say(93000, 815, 500);
  Say(93030, 818, 900);
  Say(93101, 816, 1200);
  const std::span<const BarPlace> bars = Chart().Bars();
  ASSERT_EQ(bars.size(), 2U);
  EXPECT_FALSE(bars[0].isFall);
  EXPECT_TRUE(bars[1].isFall) << "816 after 818";
  EXPECT_DOUBLE_EQ(bars[0].rectangle.height(), 3 * bars[1].rectangle.height()) << "900 shares and 300";
}

/// In whole points: a bar is of its colour up to its edges.
TEST_F(IntradayPageTest, BarsAreCrisp) {
  Show("600000");
  Say(93000, 815, 900);
  Say(93201, 816, 1200);
  const QImage picture = Chart().viewport()->grab().toImage();
  for (const BarPlace& bar : Chart().Bars()) {
    const int middle = qRound(bar.rectangle.center().y());
    int points = 0;
    for (int x = static_cast<int>(bar.rectangle.left()); x <= bar.rectangle.right(); ++x) {
      const QColor color = picture.pixelColor(x, middle);
      if (color == theme_.ColorOfChange(1)) ++points;
      EXPECT_TRUE(color == theme_.ColorOfChange(1) || color == Theme("Qm_BGCorlor") ||
                  color == Theme("KTR_BorderColor"))
          << x << " " << color.name().toStdString();
    }
    EXPECT_EQ(points, qRound(bar.rectangle.right()) - qRound(bar.rectangle.left()));
  }
}

TEST_F(IntradayPageTest, WithoutAPriceItSaysSo) {
  Show("601001");
  EXPECT_EQ(Text("title"), QStringLiteral("601001  股票1"));
  EXPECT_EQ(Text("price"), QStringLiteral("— 无行情"));
  EXPECT_EQ(Text("change"), QString());
  EXPECT_EQ(Text("今开"), QStringLiteral("—"));
  EXPECT_TRUE(Text("notice").contains(QStringLiteral("行情里没有它的价格")));
  EXPECT_TRUE(Line("价格").isEmpty());
  EXPECT_TRUE(recorder_->IsFollowed(1601001)) << "followed from now on";
}

/// 34.50 against 34.61 is 0.32 percent, 33.60 is 2.92: the scale is 1.01 x 1.05 either way.
TEST_F(IntradayPageTest, WithoutTicksThePriceIsAPointInsideTheScale) {
  Show("600000");
  Say(101200, 815);
  data_.ApplyQuotes({{1600036, {33.60, 34.61}}});
  data_.SetCurrentCode("600036");
  EXPECT_EQ(Line("价格"), (QList<QPointF>{{2520, 3360}}));
  EXPECT_DOUBLE_EQ(Chart().Scale().reach, 101 * 1.05);
  EXPECT_TRUE(Text("notice").contains(QStringLiteral("图上是现价，从现在起记录"))) << Text("notice").toStdString();
  const ChartLayout& places = Chart().Places();
  const QRectF around(places.Axis().XOf(2520) - 4, places.YOf(3360, Chart().Scale()) - 4, 8, 8);
  EXPECT_GT(PointsOf(Theme("Grid_ClickTxtColor"), around), 15) << "a dot";
  EXPECT_TRUE(places.prices.contains(around.center()));
}

TEST_F(IntradayPageTest, TheScaleHoldsTheDaysHighAndLow) {
  Show("600000");
  TDFieldSet entry = PriceOf(815);
  entry.Set("High", Decimal{880, 2});
  entry.Set("Low", Decimal{810, 2});
  bus_.Answer("600000", entry, 101200U);
  QTest::qWait(100);
  EXPECT_DOUBLE_EQ(Chart().Scale().High(), 820 + 60 * 1.05);
}

TEST_F(IntradayPageTest, TheHintSaysWhatIsRecorded) {
  Show("600000");
  Say(93000, 815);
  EXPECT_TRUE(page_->findChild<QLabel*>("notice")->toolTip().contains(QStringLiteral("最多 300 只")));
}

TEST_F(IntradayPageTest, ALineThatBeginsLateSaysSinceWhen) {
  Show("600000");
  Say(101200, 815);
  EXPECT_TRUE(Text("notice").contains(QStringLiteral("10:12 起有记录"))) << Text("notice").toStdString();
  EXPECT_EQ(Text("今开"), QStringLiteral("—"));
  EXPECT_EQ(page_->findChild<QLabel*>("最高")->text(), QStringLiteral("8.15"));
}

TEST_F(IntradayPageTest, AnotherSecurityTakesItsPlace) {
  Show("600000");
  Say(93000, 815);
  data_.SetCurrentCode("1");
  EXPECT_EQ(Text("title"), QStringLiteral("000001  上证指数"));
  EXPECT_EQ(Text("price"), QStringLiteral("3111.02"));
  EXPECT_EQ(Line("价格"), (QList<QPointF>{{0, 311'102}})) << "its price now";
  bus_.Answer("399001", PriceOf(941'422), 93000);
  page_->SetParameter("399001");
  EXPECT_EQ(Text("title"), QStringLiteral("399001  深证成指"));
  EXPECT_EQ(Line("价格"), (QList<QPointF>{{0, 941'422}}));
  page_->SetParameter("rubbish");
  EXPECT_EQ(Text("title"), QStringLiteral("399001  深证成指"));
}

TEST_F(IntradayPageTest, EscapeReturns) {
  Show("600000");
  int returns = 0;
  page_->OnReturn = [&returns] { ++returns; };
  ASSERT_NE(QApplication::focusWidget(), nullptr);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
  EXPECT_EQ(returns, 1);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
  EXPECT_EQ(returns, 1);
}

TEST_F(IntradayPageTest, TheCrosshairFollowsTheMouse) {
  Show("600000");
  Say(93000, 815, 500, 407'500);
  Say(103001, 836, 700, 574'700);
  EXPECT_EQ(Chart().Cross(), nullptr);
  MoveTo(1800);
  ASSERT_NE(Chart().Cross(), nullptr);
  EXPECT_EQ(Chart().Cross()->price, 815) << "the last one before 10:00";
  EXPECT_TRUE(Chart().Cross()->text.contains(QStringLiteral("价 8.15  均 8.15  涨跌 -0.61%")))
      << Chart().Cross()->text.toStdString();
  MoveTo(3640);
  EXPECT_EQ(Chart().Cross()->price, 836);
  EXPECT_TRUE(Chart().Cross()->text.endsWith(QStringLiteral("量 200 股")));
  MoveTo(9000);
  EXPECT_EQ(Chart().Cross()->second, 3601) << "not into the future";
  QTest::mouseMove(Chart().viewport(), QPoint(3, 3));
  EXPECT_EQ(Chart().Cross(), nullptr);
}

/// The average at 10:00 is of what was traded until then, whatever comes.
TEST_F(IntradayPageTest, ACrosshairThatStandsShowsOneMoment) {
  Show("600000");
  Say(93000, 815, 500, 407'500);
  Say(100001, 836, 700, 574'700);
  MoveTo(9000);  // the newest second
  ASSERT_NE(Chart().Cross(), nullptr);
  ASSERT_EQ(Chart().Cross()->second, 1801);
  const QString text = Chart().Cross()->text;
  EXPECT_EQ(text, QStringLiteral("10:00:01  价 8.36  均 8.21  涨跌 +1.95%  量 200 股"));  // 5747 / 700
  Say(100030, 850, 9700, 8'224'700);
  EXPECT_EQ(Chart().Cross()->text, text);
  EXPECT_EQ(Chart().Cross()->price, 836);
}

TEST_F(IntradayPageTest, TheCrosshairIsPainted) {
  Show("600000");
  Say(93000, 815, 500, 407'500);
  Say(140001, 836, 700, 574'700);
  const ChartLayout& places = Chart().Places();
  const double x = places.Axis().XOf(7200), y = places.YOf(815, Chart().Scale());
  const QRectF column(std::round(x) - 1, places.prices.center().y(), 3, places.prices.height() / 2);
  const QRectF row(places.plot.center().x() + 20, std::round(y) - 1, 100, 3);
  const QRectF box(0, y - 8, places.plot.left() - 3, 16);
  const QColor text = Theme("Grid_UnSelTxtColor");
  const int before[] = {PointsOf(text, column), PointsOf(text, row), PointsOf(Theme("KTR_BorderColor"), box)};
  MoveTo(7200);
  ASSERT_NE(Chart().Cross(), nullptr);
  EXPECT_GT(PointsOf(text, column), before[0] + 30);
  EXPECT_GT(PointsOf(text, row), before[1] + 20);
  EXPECT_GT(PointsOf(Theme("KTR_BorderColor"), box), before[2] + 100) << "its price at the left";
}

TEST_F(IntradayPageTest, EveryControlHasAName) {
  Show("600000");
  int named = 0;
  EXPECT_EQ(test::UnnamedControls(*page_, named).join('\n').toStdString(), "");
  EXPECT_GE(named, 1) << "the picture";
  // A figure's name is the figure, its description what it is of.
  QAccessibleInterface* price = QAccessible::queryAccessibleInterface(page_->findChild<QLabel*>("price"));
  EXPECT_EQ(price->text(QAccessible::Name), QStringLiteral("8.15"));
  EXPECT_EQ(price->text(QAccessible::Description), QStringLiteral("现价"));
}

TEST_F(IntradayPageTest, TheArrowKeysMoveTheCrosshairByMinutes) {
  Show("600000");
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
  EXPECT_EQ(Chart().Cross(), nullptr) << "there is no line";
  Say(93000, 815);
  Say(103000, 836);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
  ASSERT_NE(Chart().Cross(), nullptr);
  EXPECT_EQ(Chart().Cross()->second, 3540);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
  EXPECT_EQ(Chart().Cross()->second, 3600) << "not beyond the line";
}

TEST_F(IntradayPageTest, LinesAndLabelsArePaintedInBothThemes) {
  for (const ThemeKind kind : {ThemeKind::Dark, ThemeKind::Light}) {
    theme_.SetKind(kind);
    QApplication::setPalette(theme_.WindowPalette());
    Show("600000");
    Say(kind == ThemeKind::Dark ? 93000 : 131000, kind == ThemeKind::Dark ? 815 : 830, 500);
    Say(kind == ThemeKind::Dark ? 130000 : 150000, kind == ThemeKind::Dark ? 830 : 810, 9000);
    const ChartLayout& places = Chart().Places();
    EXPECT_EQ(PointsOf(Theme("Qm_BGCorlor"), places.prices) > 10'000, true);
    EXPECT_GT(PointsOf(Theme("Grid_ClickTxtColor"), places.prices), 50) << "the price line";
    EXPECT_GT(PointsOf(kind == ThemeKind::Dark ? theme_.ColorOfChange(1) : theme_.ColorOfChange(-1), places.volumes),
              20)
        << "bars";
    const QRectF left(0, 0, places.plot.left(), places.prices.center().y() - 20);
    EXPECT_GT(PointsOf(theme_.ColorOfChange(1), left), 5) << "prices above the previous close";
    const QRectF right(places.plot.right() + 1, places.prices.center().y() + 20, places.plot.left(), 120);
    EXPECT_GT(PointsOf(theme_.ColorOfChange(-1), right), 5) << "percentages below it";
  }
}

}  // namespace
}  // namespace holdwise
