#include "app/read_ahead.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <functional>

#include "fake_user_data.h"

namespace holdwise {
namespace {

const QString kCodes = QStringLiteral("select distinct SECUCODE from alg_comdetail");
const QString kCount = QStringLiteral("select Count(*) from alg_comdetail");
const QString kLast = QStringLiteral("select Max(HQDate) from alg_stockstatistic");
const QString kNextId = QStringLiteral("select gen_id(ALG_ROWID_MAIN,1) from rdb$database");

class ReadAhead : public testing::Test {
 protected:
  /// A service over a database that knows four answers; `database` stays the caller's to look at.
  std::unique_ptr<ReadAheadUserData> Open(FakeUserData*& database) {
    auto made = std::make_unique<FakeUserData>();
    database = made.get();
    made->SetResult(kCodes, TableOf({{"SECUCODE", ColumnType::Integer}}, {{"1600000"}, {"1000001"}}));
    made->SetNumber(kCount, 2);
    made->SetResult(kLast, TableOf({{"MAX", ColumnType::Integer}}, {{""}}));
    made->SetNumber(kNextId, 8);
    return std::make_unique<ReadAheadUserData>(std::move(made), File());
  }
  static void AskAll(ReadAheadUserData& service) {
    EXPECT_EQ(service.Count(kCount), 2);
    EXPECT_EQ(service.Query(kCodes).IntegerAt(1, 0), 1000001);
    EXPECT_TRUE(service.Scalar(kLast).isNull);
    EXPECT_EQ(service.Count(kLast), -1);
    EXPECT_EQ(service.Count(kNextId), 8);
  }
  /// One start that asks all and ends.
  void Start() {
    FakeUserData* database = nullptr;
    const auto service = Open(database);
    AskAll(*service);
    service->EndStart();
  }
  static std::ptrdiff_t Times(const FakeUserData& database, const QString& sql) {
    const std::vector<QString> log = database.Log();
    return std::count(log.begin(), log.end(), sql);
  }
  QString File() const { return folder_.filePath(QStringLiteral("first_reads.txt")); }
  QString Content() const {
    QFile file(File());
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
  }
  QTemporaryDir folder_;
};

TEST_F(ReadAhead, TheFirstStartReadsForItselfAndWritesDownItsReads) {
  FakeUserData* database = nullptr;
  const auto service = Open(database);
  AskAll(*service);
  EXPECT_FALSE(QFile::exists(File()));
  service->EndStart();
  EXPECT_EQ(Content(), QStringList({kCount, kCodes, kLast}).join(QLatin1Char('\n')));
  EXPECT_EQ(Times(*database, kCodes), 1);
}

TEST_F(ReadAhead, TheNextStartReadsEachStatementOnceAndGivesTheSameAnswers) {
  Start();
  FakeUserData* database = nullptr;
  const auto service = Open(database);
  AskAll(*service);
  EXPECT_EQ(Times(*database, kCount), 1);
  EXPECT_EQ(Times(*database, kCodes), 1);
  EXPECT_EQ(Times(*database, kNextId), 1);  // moves a generator: never without being asked for
  EXPECT_EQ(service->Query(kCodes).RowCount(), 2);
  EXPECT_EQ(Times(*database, kCodes), 2);  // an answer is given once
}

TEST_F(ReadAhead, TheReaderHasASessionOfItsOwn) {
  Start();
  FakeUserData* database = nullptr;
  const auto service = Open(database);
  AskAll(*service);
  // What the other thread reads could otherwise fall into a transaction that begins in this one.
  EXPECT_EQ(database->SessionReads(), 3);
}

TEST_F(ReadAhead, AChangeDropsTheAnswersThatAreLeft) {
  Start();
  const std::vector<std::function<void(ReadAheadUserData&)>> changes{
      [](ReadAheadUserData& service) { service.Execute(QStringLiteral("delete from alg_comdetail")); },
      [](ReadAheadUserData& service) { service.StartTransaction(); },
      [](ReadAheadUserData& service) { (void)service.OpenSession(); }};
  for (const auto& change : changes) {
    FakeUserData* database = nullptr;
    const auto service = Open(database);
    EXPECT_EQ(service->Count(kCount), 2);
    change(*service);
    database->SetNumber(kCount, 0);
    database->SetResult(kCodes, TableOf({{"SECUCODE", ColumnType::Integer}}, {}));
    EXPECT_EQ(service->Count(kCount), 0);
    EXPECT_TRUE(service->Query(kCodes).IsEmpty());
  }
}

TEST_F(ReadAhead, AFailedReadingIsRepeatedByWhoAsks) {
  QFile file(File());
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("select nonsense\n" + kCodes.toUtf8() +
             "\ndelete from alg_comdetail\nselect gen_id(ALG_ROWID_MAIN,1) from x");
  file.close();
  FakeUserData* database = nullptr;
  const auto service = Open(database);
  EXPECT_EQ(service->Query(kCodes).RowCount(), 2);
  EXPECT_THROW((void)service->Query(QStringLiteral("select nonsense")), Error);
  service->EndStart();
  EXPECT_EQ(Times(*database, QStringLiteral("select nonsense")), 2);
  EXPECT_EQ(Times(*database, QStringLiteral("delete from alg_comdetail")), 0);
  EXPECT_EQ(Times(*database, QStringLiteral("select gen_id(ALG_ROWID_MAIN,1) from x")), 0);
}

TEST_F(ReadAhead, ReadsAfterTheStartAreNotRemembered) {
  FakeUserData* database = nullptr;
  const auto service = Open(database);
  EXPECT_EQ(service->Count(kCount), 2);
  service->EndStart();
  (void)service->Query(kCodes);
  service->EndStart();
  EXPECT_EQ(Content(), kCount);
}

TEST_F(ReadAhead, WithoutAFileNothingIsWritten) {
  auto database = std::make_unique<FakeUserData>();
  database->SetNumber(kCount, 5);
  ReadAheadUserData service(std::move(database), QString());
  EXPECT_EQ(service.Count(kCount), 5);
  service.EndStart();
  EXPECT_TRUE(QDir(folder_.path()).isEmpty());
}

TEST_F(ReadAhead, EndsWhileItReads) {
  Start();
  for (int round = 0; round < 50; ++round) {
    FakeUserData* database = nullptr;
    const auto service = Open(database);
    if (round % 2 == 0) service->EndStart();
  }
  EXPECT_EQ(Content(), QStringList({kCount, kCodes, kLast}).join(QLatin1Char('\n')));  // a start cut short says nothing
}

}  // namespace
}  // namespace holdwise
