// SPDX-License-Identifier: MIT
// The mark of a database that was not closed, at the end of who had it open.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "database/database_file.h"
#include "database_texts.h"
#include "temp_database.h"

using namespace holdwise;
using namespace holdwise::test;

namespace {

/// A database in a folder of its own below the temporary one, open.
class Closing : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(QDir().mkdir(Folder()));
    ASSERT_TRUE(QFile::copy(source_.File(), File()));
    Open();
    service_->Execute(InsertPortfolio(1, QStringLiteral("甲")));
  }
  void Open() { service_ = FirebirdUserData::Open({File(), {}, {}}, TempDatabase::LockFolder()); }
  void TakeAway() const { ASSERT_TRUE(QDir().rename(Folder(), Away())); }
  [[nodiscard]] QString Folder() const { return source_.Folder() + QStringLiteral("/work"); }
  [[nodiscard]] QString Away() const { return source_.Folder() + QStringLiteral("/away"); }
  [[nodiscard]] QString File() const { return Folder() + QStringLiteral("/holdwise.fdb"); }
  [[nodiscard]] bool IsMarked() const { return QFile::exists(firebird::MarkerOf(File())); }

  TempDatabase source_{false};
  std::unique_ptr<FirebirdUserData> service_;
};

TEST_F(Closing, TakesTheMarkAway) {
  EXPECT_TRUE(IsMarked());
  service_.reset();
  EXPECT_FALSE(IsMarked());
}

TEST_F(Closing, LeavesTheMarkOfACopyThatStandsInItsPlace) {
  TakeAway();
  ASSERT_TRUE(QDir().mkdir(Folder()));
  for (const QString& name : QDir(Away()).entryList(QDir::Files))
    ASSERT_TRUE(QFile::copy(Away() + '/' + name, Folder() + '/' + name));
  ASSERT_TRUE(IsMarked());
  service_.reset();
  EXPECT_TRUE(IsMarked());
  Open();
  EXPECT_FALSE(service_->WasClosed());
}

TEST_F(Closing, TakesTheMarkAwayWhenTheFileIsBack) {
  TakeAway();
  ASSERT_TRUE(QDir().rename(Away(), Folder()));
  service_.reset();
  EXPECT_FALSE(IsMarked());
  Open();
  EXPECT_TRUE(service_->WasClosed());
  EXPECT_EQ(service_->Count(kCountPortfolios), 1);
}

TEST_F(Closing, ANewFileIsNotTakenForTheOneThatWentAway) {
  ASSERT_TRUE(QFile::rename(File(), Away()));
  service_.reset();
  ASSERT_TRUE(IsMarked());
  Open();
  EXPECT_TRUE(service_->WasClosed());
  EXPECT_EQ(service_->Count(kCountPortfolios), 0);
}

}  // namespace
