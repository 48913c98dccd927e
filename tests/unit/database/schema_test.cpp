// SPDX-License-Identifier: MIT
#include "database/schema.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include "database/database_file.h"
#include "database_texts.h"
#include "opening_support.h"

using namespace holdwise;
using namespace holdwise::test;

namespace {

TEST(Schema, NewerOneIsRefusedAndKept) {
  TempDatabase db;
  db.Service().Execute(QStringLiteral("insert into holdwise_schema values (999)"));
  db.Close();
  const Outcome outcome = OpeningFails(db.File());
  EXPECT_EQ(outcome.category, ErrorCategory::Refused);
  EXPECT_TRUE(outcome.text.contains(QStringLiteral("999")));
  EXPECT_FALSE(QFileInfo::exists(firebird::MarkerOf(db.File()))) << "closed properly";
}

TEST(Schema, EveryOlderVersionIsBroughtUpToDateWithItsRows) {
  for (std::size_t version = 0; version < firebird::SchemaFiles().size(); ++version) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("old.fdb"));
    {
      firebird::Status status;
      auto attachment = AttachTo(file, true);
      firebird::UpgradeSchema(status, *attachment, version);
      if (version > 0) {
        firebird::Transaction transaction(status, *attachment, firebird::Transaction::Mode::ChangeNoWait);
        attachment->execute(status.Get(), &transaction.Get(), 0,
                            "insert into alg_commain (ID, COMNAME, ISFINISHED) values (5, 'old', 0)", 3, nullptr,
                            nullptr, nullptr, nullptr);
        transaction.Commit();
      }
      firebird::Detach(status, attachment);
    }
    auto service = FirebirdUserData::Open(DatabaseTarget{file, {}, {}}, TempDatabase::LockFolder());
    EXPECT_EQ(service->Count(QStringLiteral("select max(version) from holdwise_schema")),
              static_cast<std::int64_t>(firebird::SchemaFiles().size()));
    EXPECT_EQ(service->Count(kCountPortfolios), version > 0 ? 1 : 0);
    service->Execute(InsertStatistic({}));
    EXPECT_EQ(service->Execute(QStringLiteral("execute procedure SP_GETBETA(1,5)")), 1);
    EXPECT_EQ(service->Count(QStringLiteral("select Count(ID) from alg_commain where isFinished = 0")), 0);
  }
}

/// Figures of a version that did not know what they lacked are made again, however new they say they are.
TEST(Schema, FiguresOfOlderVersionsAreUnfinishedAfterTheUpgrade) {
  constexpr std::size_t kLastIgnorant = 7;
  for (std::size_t version = 4; version <= kLastIgnorant; ++version) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("old.fdb"));
    {
      firebird::Status status;
      auto attachment = AttachTo(file, true);
      firebird::UpgradeSchema(status, *attachment, version);
      firebird::Transaction transaction(status, *attachment, firebird::Transaction::Mode::ChangeNoWait);
      attachment->execute(status.Get(), &transaction.Get(), 0,
                          "insert into alg_commain (ID, FC, ISFINISHED, CALCDATE) values (5, 0.25, 1, 20260105)", 3,
                          nullptr, nullptr, nullptr, nullptr);
      transaction.Commit();
      firebird::Detach(status, attachment);
    }
    auto service = FirebirdUserData::Open(DatabaseTarget{file, {}, {}}, TempDatabase::LockFolder());
    service->Execute(QStringLiteral("execute procedure INITFIRSTCALC('2026-01-05')"));
    EXPECT_EQ(service->Count(QStringLiteral("select count(*) from alg_commain where ISFINISHED = 0 and FC = 0.25")), 1)
        << version;
    service->Execute(InsertStatistic({}));
    EXPECT_EQ(service->Execute(QStringLiteral("execute procedure SP_GETBETA(1,5)")), 1);
    service->Execute(QStringLiteral("execute procedure INITFIRSTCALC('2026-01-05')"));
    EXPECT_EQ(service->Count(QStringLiteral("select count(*) from alg_commain where ISFINISHED = 1")), 1) << version;
  }
}

TEST(Schema, CutOffUpgradeGoesOn) {
  const QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("cut.fdb"));
  firebird::Status status;
  auto attachment = AttachTo(file, true);
  firebird::UpgradeSchema(status, *attachment, 1);
  {
    // What a crash leaves: statements of the next file in a transaction that never ended.
    firebird::Transaction transaction(status, *attachment, firebird::Transaction::Mode::ChangeNoWait);
    const std::vector<std::string> statements = firebird::SplitScript(firebird::SchemaFiles()[1]);
    attachment->execute(status.Get(), &transaction.Get(), 0, statements[0].c_str(), 3, nullptr, nullptr, nullptr,
                        nullptr);
    transaction.RollBack();
  }
  firebird::UpgradeSchema(status, *attachment);
  firebird::UpgradeSchema(status, *attachment);  // nothing left to do
  firebird::Detach(status, attachment);
  auto service = FirebirdUserData::Open(DatabaseTarget{file, {}, {}}, TempDatabase::LockFolder());
  EXPECT_EQ(service->Count(QStringLiteral("select count(*) from holdwise_schema")),
            static_cast<std::int64_t>(firebird::SchemaFiles().size()));
}

TEST(Schema, ScriptsAreSplitAtTheirTerminator) {
  EXPECT_EQ(firebird::SplitScript("a b;\n/* c; */ d\n;\nset term ^ ;\ne; f;^\nSET TERM ; ^\ng;\n"),
            (std::vector<std::string>{"a b", "d", "e; f;", "g"}));
  EXPECT_TRUE(firebird::SplitScript(" \n/* only */").empty());
}

}  // namespace
