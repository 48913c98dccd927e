// SPDX-License-Identifier: MIT
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

TEST_F(QuotesWatcherTest, QuotesOfAnotherDateAreNotTaken) {
  folder_.WriteMarket(20240530, false);
  folder_.WriteQuotes({Row("1600000,9.07,8.2")});
  ASSERT_TRUE(QTest::qWaitFor([&] { return !log_.Lines().empty(); }, 30000));
  EXPECT_TRUE(log_.Lines()[0].contains(QStringLiteral("2024-05-30"))) << log_.Lines()[0].toStdString();
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

/// A whole data folder that can be removed, renamed and put back.
class WatchedFolder : public MarketDataTest {
 protected:
  void SetUp() override {
    place_ = base_.filePath(QStringLiteral("市场/data"));
    Put(8.15);
    data_.Load(place_);
    watcher_ = std::make_unique<QuotesWatcher>(data_, log_);
    QObject::connect(watcher_.get(), &QuotesWatcher::Reloaded, [this] { problem_.clear(); });
    QObject::connect(watcher_.get(), &QuotesWatcher::Refused, [this](const QString& text) { problem_ = text; });
    QObject::connect(watcher_.get(), &QuotesWatcher::FolderChanged, [this] { ++folderChanges_; });
  }
  /// Makes the folder, complete, with the Bank's price.
  void Put(double price) {
    folder_.WriteQuotes({{QStringLiteral("1600000"), QString::number(price), QStringLiteral("8.2")}});
    CopyFiles(folder_.Path(), place_);
    ASSERT_TRUE(QDir().mkpath(place_ + QStringLiteral("/QMTL/TZZH/Day250/股票")));
  }
  [[nodiscard]] bool SeesPrice(double price) {
    return QTest::qWaitFor([&] { return data_.StockNowData(1600000).currentPrice == price && problem_.isEmpty(); },
                           30000);
  }
  [[nodiscard]] bool SaysThatItIsGone() {
    return QTest::qWaitFor([&] { return problem_.contains(QStringLiteral("不在了")); }, 30000);
  }
  [[nodiscard]] bool SeesFolderChange() {
    const bool isSeen = QTest::qWaitFor([&] { return folderChanges_ > 0; }, 30000);
    folderChanges_ = 0;
    return isSeen;
  }
  /// Waits until changes so far have been told (a look every two seconds, half a second of quiet), then forgets them.
  void Quiet() {
    QTest::qWait(2700);
    folderChanges_ = 0;
  }

  const QTemporaryDir base_;
  QString place_;
  QString problem_;
  int folderChanges_ = 0;
  std::unique_ptr<QuotesWatcher> watcher_;
};

TEST_F(WatchedFolder, RemovedAndMadeAgainIsFollowedAgain) {
  for (const double price : {9.21, 9.22}) {
    ASSERT_TRUE(QDir(place_).removeRecursively());
    EXPECT_TRUE(SaysThatItIsGone());
    EXPECT_TRUE(problem_.contains(QStringLiteral("quotes.dat"))) << problem_.toStdString();
    EXPECT_EQ(log_.Lines().back(), problem_);
    Put(price);
    EXPECT_TRUE(SeesPrice(price)) << price;
    EXPECT_TRUE(SeesFolderChange()) << price;
    Quiet();
    folder_.WriteQuotes({{QStringLiteral("1600000"), QString::number(price + 1), QStringLiteral("8.2")}});
    ASSERT_TRUE(QFile::remove(place_ + QStringLiteral("/quotes.dat")));
    ASSERT_TRUE(QFile::copy(folder_.File(QStringLiteral("quotes.dat")), place_ + QStringLiteral("/quotes.dat")));
    EXPECT_TRUE(SeesPrice(price + 1)) << "the new folder is followed like the first";
    EXPECT_EQ(folderChanges_, 0) << "quotes alone are no change of the folder";
  }
}

TEST_F(WatchedFolder, WithItsParentRemovedAndMadeAgain) {
  ASSERT_TRUE(QDir(base_.filePath(QStringLiteral("市场"))).removeRecursively());
  EXPECT_TRUE(SaysThatItIsGone());
  Put(9.31);
  EXPECT_TRUE(SeesPrice(9.31));
  EXPECT_TRUE(SeesFolderChange());
}

TEST_F(WatchedFolder, RenamedAwayAndBack) {
  const QString away = base_.filePath(QStringLiteral("市场/away"));
  ASSERT_TRUE(QDir().rename(place_, away));
  EXPECT_TRUE(SaysThatItIsGone());
  ASSERT_TRUE(QDir().rename(away, place_));
  EXPECT_TRUE(SeesPrice(8.15)) << "the same quotes are followed again";
  // So does the folder above it.
  ASSERT_TRUE(QDir().rename(base_.filePath(QStringLiteral("市场")), base_.filePath(QStringLiteral("别处"))));
  EXPECT_TRUE(SaysThatItIsGone());
  ASSERT_TRUE(QDir().rename(base_.filePath(QStringLiteral("别处")), base_.filePath(QStringLiteral("市场"))));
  EXPECT_TRUE(SeesPrice(8.15));
}

TEST_F(WatchedFolder, AnotherOneInItsPlaceIsFollowedAndTheOldOneIsNot) {
  const QString old = base_.filePath(QStringLiteral("市场/old"));
  ASSERT_TRUE(QDir().rename(place_, old));
  Put(9.41);
  EXPECT_TRUE(SeesPrice(9.41));
  EXPECT_TRUE(SeesFolderChange());
  Quiet();
  ASSERT_TRUE(QFile::remove(old + QStringLiteral("/quotes.dat")));
  QTest::qWait(2700);
  EXPECT_EQ(problem_, QString());
  EXPECT_EQ(folderChanges_, 0);
}

TEST_F(WatchedFolder, AFileThatComesOrGoesBelowItIsToldOnceItIsQuiet) {
  const QString index = place_ + QStringLiteral("/QMTL/TZZH/Day250/指数");
  ASSERT_TRUE(QDir().mkpath(index));
  EXPECT_TRUE(SeesFolderChange());
  Quiet();
  for (int i = 0; i < 3; ++i) {
    QFile file(index + QStringLiteral("/%1.dat").arg(i));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  }
  EXPECT_TRUE(SeesFolderChange());
  Quiet();
  ASSERT_TRUE(QFile::remove(index + QStringLiteral("/1.dat")));
  EXPECT_TRUE(SeesFolderChange());
  EXPECT_EQ(problem_, QString());
}

TEST_F(WatchedFolder, QuotesThatAreGoneWhenItStartsAreSaidToo) {
  watcher_.reset();
  ASSERT_TRUE(QFile::remove(place_ + QStringLiteral("/quotes.dat")));
  QuotesWatcher watcher(data_, log_);
  QObject::connect(&watcher, &QuotesWatcher::Refused, &watcher, [this](const QString& text) { problem_ = text; });
  EXPECT_TRUE(SaysThatItIsGone());
}

}  // namespace
}  // namespace holdwise
