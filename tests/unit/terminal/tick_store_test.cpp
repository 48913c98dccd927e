// SPDX-License-Identifier: MIT
#include "intraday/tick_store.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <memory>

#include "file_size_limit.h"
#include "intraday/trading_day.h"

namespace holdwise {
namespace {

const QString kDay = QStringLiteral("2024-05-29");
constexpr int kStock = 1600000, kOther = 1000001;

class TickStoreTest : public testing::Test {
 protected:
  TickStoreTest() { Open(); }
  void Open(const QString& day = kDay) {
    store_.reset();
    store_ = std::make_unique<TickStore>(Path(), day);
  }
  [[nodiscard]] QString Path() const { return folder_.filePath(QStringLiteral("ticks.dat")); }
  [[nodiscard]] qint64 Size() const { return QFile(Path()).size(); }
  void Spoil(qint64 place, qint64 newSize = -1) const {
    QFile file(Path());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    if (newSize >= 0) {
      ASSERT_TRUE(file.resize(newSize));
    }
    if (place < 0) return;
    ASSERT_TRUE(file.seek(place));
    ASSERT_EQ(file.write("\x5a"), 1);
  }
  [[nodiscard]] std::vector<int> SecondsOf(int codeNumber) const {
    std::vector<int> seconds;
    for (const Tick& tick : store_->Of(codeNumber)) seconds.push_back(tick.second);
    return seconds;
  }
  /// Ten ticks of one stock, ten seconds apart.
  void AddTen() {
    for (int tick = 0; tick < 10; ++tick) EXPECT_TRUE(store_->Add(kStock, {tick * 10, 1000 + tick}));
  }

  QTemporaryDir folder_;
  std::unique_ptr<TickStore> store_;
};

TEST_F(TickStoreTest, ADaySurvivesARestart) {
  const std::vector<Tick> ticks{
      {0, 1000, 500, 500'000, true}, {30, 1010, 800, 803'000}, {14400, 995, 9'000'000'000, -1}};
  for (const Tick& tick : ticks) EXPECT_TRUE(store_->Add(kStock, tick));
  EXPECT_TRUE(store_->Add(kOther, {60, 300'000'00}));
  Open();
  EXPECT_EQ(store_->Of(kStock), ticks);
  EXPECT_EQ(store_->Of(kOther), (std::vector<Tick>{{60, 300'000'00}}));
  EXPECT_EQ(store_->CodeNumbers(), (std::vector<int>{kOther, kStock}));
  EXPECT_TRUE(store_->Add(kOther, {120, 300'000'01}));
  Open();
  EXPECT_EQ(SecondsOf(kOther), (std::vector<int>{60, 120}));
  EXPECT_TRUE(store_->Problem().isEmpty());
  EXPECT_EQ(QFile::permissions(Path()) & (QFile::ReadOther | QFile::ReadGroup), QFile::Permissions());
}

/// A process that is killed has not flushed.
TEST_F(TickStoreTest, OnlyTheLastTickOfASecurityWaitsForTheFlush) {
  AddTen();
  TickStore other(Path(), kDay);
  EXPECT_EQ(other.Of(kStock).size(), 9U);
  store_->Flush();
  TickStore third(Path(), kDay);
  EXPECT_EQ(third.Of(kStock), store_->Of(kStock));
}

TEST_F(TickStoreTest, AnotherDayBeginsEmptyAndReplacesTheFile) {
  AddTen();
  Open(QStringLiteral("2024-05-30"));
  EXPECT_TRUE(store_->CodeNumbers().empty());
  EXPECT_TRUE(store_->Add(kOther, {0, 7}));
  Open(QStringLiteral("2024-05-30"));
  EXPECT_EQ(store_->CodeNumbers(), (std::vector<int>{kOther}));
  Open(kDay);
  EXPECT_TRUE(store_->CodeNumbers().empty());
}

TEST_F(TickStoreTest, ATornEndCostsItsTickOnly) {
  AddTen();
  store_->Flush();
  const qint64 whole = Size();
  store_.reset();
  Spoil(-1, whole - 5);
  Open();
  EXPECT_EQ(store_->Of(kStock).size(), 9U);
  EXPECT_TRUE(store_->Add(kStock, {200, 42}));
  Open();
  EXPECT_EQ(SecondsOf(kStock), (std::vector<int>{0, 10, 20, 30, 40, 50, 60, 70, 80, 200}));
  EXPECT_EQ(Size(), whole);
}

TEST_F(TickStoreTest, EveryByteOfARowIsGuarded) {
  AddTen();
  store_.reset();
  const qint64 whole = Size();
  const qint64 row = (whole - 24) / 10;
  ASSERT_EQ(whole, 24 + 10 * row) << "a mark and a digest, then the rows";
  QFile original(Path());
  ASSERT_TRUE(original.open(QIODevice::ReadOnly));
  const QByteArray bytes = original.readAll();
  for (qint64 place = 24 + 4 * row; place < 24 + 5 * row; ++place) {
    Spoil(place);
    Open();
    EXPECT_EQ(SecondsOf(kStock), (std::vector<int>{0, 10, 20, 30, 50, 60, 70, 80, 90})) << place;
    store_.reset();
    QFile file(Path());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
  }
}

TEST_F(TickStoreTest, RubbishIsAnEmptyDay) {
  store_.reset();
  for (const QByteArray& rubbish : {QByteArray(), QByteArray("HWTICKS1"), QByteArray(100'000, '\0'), QByteArray("x")}) {
    QFile file(Path());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(rubbish), rubbish.size());
    file.close();
    Open();
    EXPECT_TRUE(store_->CodeNumbers().empty());
    EXPECT_TRUE(store_->Add(kStock, {0, 5}));
    Open();
    EXPECT_EQ(SecondsOf(kStock), (std::vector<int>{0}));
    store_.reset();
  }
}

TEST_F(TickStoreTest, TakesWhatIsNewAndCanBe) {
  EXPECT_TRUE(store_->Add(kStock, {30, 1000, 100}));
  EXPECT_FALSE(store_->Add(kStock, {60, 1000, 100})) << "nothing new";
  EXPECT_TRUE(store_->Add(kStock, {60, 1000, 200})) << "traded at the same price";
  EXPECT_FALSE(store_->Add(kStock, {50, 1001, 300})) << "earlier";
  for (const Tick& bad : {Tick{-1, 5}, Tick{kDaySeconds + 1, 5}, Tick{70, 0}, Tick{70, -3}, Tick{70, 1LL << 32}})
    EXPECT_FALSE(store_->Add(kStock, bad));
  EXPECT_EQ(SecondsOf(kStock), (std::vector<int>{30, 60}));
}

TEST_F(TickStoreTest, KeepsTheLastTickOfThreeSeconds) {
  for (const int second : {30, 31, 32, 33, 34}) EXPECT_TRUE(store_->Add(kStock, {second, 1000 + second}));
  EXPECT_EQ(store_->Of(kStock), (std::vector<Tick>{{32, 1032}, {34, 1034}}));
  store_->Flush();
  EXPECT_TRUE(store_->Add(kStock, {35, 1035}));
  Open();
  EXPECT_EQ(store_->Of(kStock), (std::vector<Tick>{{32, 1032}, {35, 1035}}));
}

TEST_F(TickStoreTest, IsBounded) {
  for (int place = 0; place < static_cast<int>(TickStore::kMostSecurities); ++place)
    EXPECT_TRUE(store_->Add(1'600'000 + place, {0, 1}));
  EXPECT_FALSE(store_->Add(kOther, {0, 1}));
  EXPECT_TRUE(store_->Add(1'600'000, {60, 2})) << "those that are there go on";
  EXPECT_EQ(store_->CodeNumbers().size(), TickStore::kMostSecurities);
}

TEST_F(TickStoreTest, ADayThatIsSetBackForgetsWhatCameAfter) {
  AddTen();
  EXPECT_TRUE(store_->Add(kOther, {80, 5}));
  store_->DropAfter(45);
  EXPECT_EQ(SecondsOf(kStock), (std::vector<int>{0, 10, 20, 30, 40}));
  EXPECT_EQ(store_->CodeNumbers(), (std::vector<int>{kStock}));
  EXPECT_TRUE(store_->Add(kStock, {50, 999}));
  Open();
  EXPECT_EQ(SecondsOf(kStock), (std::vector<int>{0, 10, 20, 30, 40, 50}));
  EXPECT_EQ(store_->Of(kStock).back().price, 999);
}

TEST_F(TickStoreTest, AFileThatCannotBeWrittenIsSaidAndTheDayGoesOnInMemory) {
  store_ = std::make_unique<TickStore>(folder_.filePath(QStringLiteral("gone/ticks.dat")), kDay);
  AddTen();
  EXPECT_EQ(store_->Of(kStock).size(), 10U);
  EXPECT_TRUE(store_->Problem().contains(QStringLiteral("没有保存")));
  EXPECT_FALSE(QFile::exists(folder_.filePath(QStringLiteral("gone"))));
  TickStore inMemory(QString(), kDay);
  EXPECT_TRUE(inMemory.Add(kStock, {0, 5}));
  EXPECT_TRUE(inMemory.Problem().isEmpty());
}

TEST_F(TickStoreTest, UnknownSecuritiesTakeNoPlace) {
  for (int place = 0; place < static_cast<int>(TickStore::kMostSecurities); ++place)
    EXPECT_TRUE(store_->Add(1'600'001 + place, {0, 1}));
  store_.reset();
  store_ = std::make_unique<TickStore>(Path(), kDay, [](int codeNumber) { return codeNumber == 1'600'007; });
  EXPECT_EQ(store_->CodeNumbers(), std::vector<int>{1'600'007});
  EXPECT_TRUE(store_->Add(kOther, {0, 1}));
}

TEST_F(TickStoreTest, AForgottenSecurityFreesItsPlace) {
  AddTen();
  for (int place = 1; place < static_cast<int>(TickStore::kMostSecurities); ++place)
    EXPECT_TRUE(store_->Add(1'600'000 + place, {0, 1}));
  store_->Flush();
  store_->Forget(kStock);
  EXPECT_TRUE(store_->Of(kStock).empty());
  EXPECT_TRUE(store_->Add(kOther, {0, 1}));
  Open();
  EXPECT_TRUE(store_->Of(kStock).empty()) << "after a restart too";
  EXPECT_EQ(SecondsOf(kOther), std::vector<int>{0});
  EXPECT_EQ(store_->CodeNumbers().size(), TickStore::kMostSecurities);
  store_->Forget(1'600'001);
  EXPECT_TRUE(store_->Add(kStock, {300, 7}));
  Open();
  EXPECT_EQ(SecondsOf(kStock), std::vector<int>{300}) << "of the first time nothing is left";
}

TEST_F(TickStoreTest, AWriteThatFailedIsTriedAgainAndLosesNothing) {
  AddTen();
  store_->Flush();
  {
    const test::FileSizeLimit limit(static_cast<rlim_t>(Size() + 10));  // no whole row more
    for (int tick = 10; tick < 13; ++tick) EXPECT_TRUE(store_->Add(kStock, {tick * 10, 1000 + tick}));
    EXPECT_FALSE(store_->Problem().isEmpty());
    store_->Flush();
    EXPECT_FALSE(store_->Problem().isEmpty());
    TickStore other(Path(), kDay);
    EXPECT_EQ(other.Of(kStock).size(), 10U) << "what was there is whole";
  }
  EXPECT_TRUE(store_->Add(kStock, {130, 1013}));
  EXPECT_FALSE(store_->Problem().isEmpty()) << "not with every tick";
  store_->Flush();
  EXPECT_TRUE(store_->Problem().isEmpty());
  TickStore other(Path(), kDay);
  EXPECT_EQ(other.Of(kStock), store_->Of(kStock));
  EXPECT_EQ(other.Of(kStock).size(), 14U);
}

TEST_F(TickStoreTest, AFolderThatComesBackGetsTheWholeDay) {
  const QString path = folder_.filePath(QStringLiteral("gone/ticks.dat"));
  store_ = std::make_unique<TickStore>(path, kDay);
  AddTen();
  store_->DropAfter(45);
  ASSERT_TRUE(QDir(folder_.path()).mkdir(QStringLiteral("gone")));
  store_->Flush();
  EXPECT_TRUE(store_->Problem().isEmpty());
  TickStore other(path, kDay);
  EXPECT_EQ(other.Of(kStock), store_->Of(kStock));
  EXPECT_EQ(other.Of(kStock).size(), 5U);
}

}  // namespace
}  // namespace holdwise
