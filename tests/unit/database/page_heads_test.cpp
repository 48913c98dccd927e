// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>

#include "database/database_file.h"
#include "database_texts.h"
#include "opening_support.h"

using namespace holdwise;
using namespace holdwise::test;

namespace {

constexpr qint64 kPage = 4096;

/// A closed database, of which some bytes are written over.
class PageHeads : public testing::Test {
 protected:
  void SetUp() override {
    for (int id = 1; id <= 500; ++id)
      database_.Service().Execute(InsertPortfolio(id, QStringLiteral("组合%1").arg(id)));
    database_.Close();
    pages_ = QFileInfo(database_.File()).size() / kPage;
  }
  void Overwrite(qint64 at, const QByteArray& bytes) const {
    QFile file(database_.File());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.seek(at));
    ASSERT_EQ(file.write(bytes), bytes.size());
  }
  [[nodiscard]] QString Problem() const { return firebird::HeaderProblem(database_.File()); }

  TempDatabase database_;
  qint64 pages_ = 0;
};

TEST_F(PageHeads, OfASoundDatabaseAreSound) {
  ASSERT_GT(pages_, 300);
  EXPECT_EQ(Problem(), QString());
}

TEST_F(PageHeads, NoiseOverThemIsFoundWithoutTheEngine) {
  Overwrite((pages_ / 2) * kPage - 100, QByteArray(200, '\xB7'));
  EXPECT_EQ(Problem(), QStringLiteral("第%1页的内容有误").arg(pages_ / 2));
  EXPECT_EQ(OpeningFails(database_.File()).category, ErrorCategory::Corrupt);
}

TEST_F(PageHeads, APageOfAnotherPlaceIsFound) {
  QFile file(database_.File());
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  ASSERT_TRUE(file.seek(3 * kPage));
  Overwrite(5 * kPage, file.read(kPage));
  EXPECT_EQ(Problem(), QStringLiteral("第5页的内容有误"));
}

TEST_F(PageHeads, PagesThatWereNeverWrittenAreNone) {
  Overwrite(pages_ * kPage, QByteArray(8 * kPage, '\0'));
  EXPECT_EQ(Problem(), QString());
  EXPECT_EQ(database_.Open().Count(kCountPortfolios), 500);
}

}  // namespace
