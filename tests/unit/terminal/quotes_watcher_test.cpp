#include "datacentre/quotes_watcher.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include "holdwise/packet/packet_file.h"
#include "market_data_fixture.h"

namespace holdwise {
namespace {

class QuotesWatcherTest : public MarketDataTest {
 protected:
  void SetUp() override {
    Load();
    watcher_ = std::make_unique<QuotesWatcher>(data_, log_);
    spy_ = std::make_unique<QSignalSpy>(watcher_.get(), &QuotesWatcher::Reloaded);
  }
  bool SeesPrice(double price) {
    return QTest::qWaitFor([&] { return data_.StockNowData(1600000).currentPrice == price; }, 30000);
  }
  std::unique_ptr<QuotesWatcher> watcher_;
  std::unique_ptr<QSignalSpy> spy_;
};

TEST_F(QuotesWatcherTest, FollowsReplacementsAndRewrites) {
  folder_.WriteQuotes({Row("1600000,9.01,8.2")});
  EXPECT_TRUE(SeesPrice(9.01));
  EXPECT_EQ(data_.StockNowData(1600036).currentPrice, 34.5);  // no news of it
  folder_.WriteQuotes({Row("1600000,9.02,8.2")});             // the second replacement is seen too
  EXPECT_TRUE(SeesPrice(9.02));
  const QByteArray bytes = EncodePacket(MakeTable(MarketFolder::kQuoteHeadings, {Row("1600000,9.03,8.2")}));
  folder_.WriteBytes(QStringLiteral("quotes.dat"), bytes);  // in place
  EXPECT_TRUE(SeesPrice(9.03));
  EXPECT_GE(spy_->count(), 3);
}

TEST_F(QuotesWatcherTest, SurvivesRemoval) {
  ASSERT_TRUE(QFile::remove(folder_.File(QStringLiteral("quotes.dat"))));
  QTest::qWait(300);
  EXPECT_EQ(data_.StockNowData(1600000).currentPrice, 8.15);
  EXPECT_EQ(spy_->count(), 0);
  folder_.WriteQuotes({Row("1600000,9.04,8.2")});
  EXPECT_TRUE(SeesPrice(9.04));
}

TEST_F(QuotesWatcherTest, MalformedReplacementIsLoggedAndIgnored) {
  folder_.WriteQuotes({Row("1600000,9.05,8.2"), Row("1600036,-1,8.2")});
  ASSERT_TRUE(QTest::qWaitFor([&] { return !log_.Lines().empty(); }, 30000));
  EXPECT_TRUE(log_.Lines()[0].contains(QStringLiteral("quotes.dat"))) << log_.Lines()[0].toStdString();
  EXPECT_EQ(data_.StockNowData(1600000).currentPrice, 8.15);
  EXPECT_EQ(spy_->count(), 0);
  folder_.WriteBytes(QStringLiteral("quotes.dat"), "rubbish");
  ASSERT_TRUE(QTest::qWaitFor([&] { return log_.Lines().size() >= 2; }, 30000));
  EXPECT_EQ(data_.StockNowData(1600000).currentPrice, 8.15);
  folder_.WriteQuotes({Row("1600000,9.06,8.2")});
  EXPECT_TRUE(SeesPrice(9.06));
}

TEST_F(QuotesWatcherTest, QuotesOfAnotherDateWaitForARestart) {
  folder_.WriteMarket(20240530, false);
  folder_.WriteQuotes({Row("1600000,9.07,8.2")});
  ASSERT_TRUE(QTest::qWaitFor([&] { return !log_.Lines().empty(); }, 30000));
  EXPECT_TRUE(log_.Lines()[0].contains(QStringLiteral("20240530"))) << log_.Lines()[0].toStdString();
  EXPECT_EQ(data_.StockNowData(1600000).currentPrice, 8.15);
}

void CopyFiles(const QString& from, const QString& to) {
  ASSERT_TRUE(QDir().mkpath(to));
  for (const QString& name : QDir(from).entryList(QDir::Files)) {
    ASSERT_TRUE(QFile::copy(from + QLatin1Char('/') + name, to + QLatin1Char('/') + name));
  }
}

TEST_F(MarketDataTest, FollowsAFolderThatIsReplacedAsAWhole) {
  const QTemporaryDir base;
  const QString place = base.filePath(QStringLiteral("data"));
  CopyFiles(folder_.Path(), place);
  data_.Load(place);
  QuotesWatcher watcher(data_, log_);
  for (const char* price : {"9.11", "9.12"}) {
    folder_.WriteQuotes({{QStringLiteral("1600000"), QString::fromLatin1(price), QStringLiteral("8.2")}});
    CopyFiles(folder_.Path(), base.filePath(QStringLiteral("new")));
    ASSERT_TRUE(QDir().rename(place, base.filePath(QStringLiteral("old"))));
    ASSERT_TRUE(QDir().rename(base.filePath(QStringLiteral("new")), place));
    ASSERT_TRUE(QDir(base.filePath(QStringLiteral("old"))).removeRecursively());
    const double expected = QString::fromLatin1(price).toDouble();
    EXPECT_TRUE(QTest::qWaitFor([&] { return data_.StockNowData(1600000).currentPrice == expected; }, 30000)) << price;
  }
}

}  // namespace
}  // namespace holdwise
