// SPDX-License-Identifier: MIT
#include "database/statements/statement_advice.h"

#include <gtest/gtest.h>

#include "database_texts.h"
#include "temp_database.h"

using namespace holdwise;
using namespace holdwise::test;
using firebird::AdvisedStatements;

namespace {

const QString kOfOne = QStringLiteral("select A from T where B in (select C from U where D = 1) and E >= 20240520");
const QString kOfOneEqual = QStringLiteral("select T.A from U join T on T.B = U.C where U.D = 1 and T.E >= 20240520");
constexpr const char* kShape = "select A from T where B in (select C from U where D = ?) and E >= ?";
constexpr const char* kEqualShape = "select T.A from U join T on T.B = U.C where U.D = ? and T.E >= ?";

TEST(AdvisedStatements, EveryStatementOfTheShapeIsMeant) {
  AdvisedStatements advised;
  EXPECT_EQ(advised.FormToPrepare(kShape), kShape);
  advised.Take({{.statement = kOfOne, .equalForm = kOfOneEqual}});
  EXPECT_EQ(advised.FormToPrepare(kShape), kEqualShape);
  EXPECT_FALSE(advised.MayBeKept(kShape));
}

TEST(AdvisedStatements, OthersStayAsTheyAre) {
  AdvisedStatements advised;
  advised.Take({{.statement = kOfOne, .equalForm = kOfOneEqual, .mayBeKept = true}});
  EXPECT_TRUE(advised.MayBeKept(kShape));
  for (const char* other :
       {"", "select A from T", "select A from T where B in (select C from U where D = ?) and E >= ? ",
        "select A from T where B in (select C from U where D = ?) and E <= ?",
        "select a from T where B in (select C from U where D = ?) and E >= ?",
        "select A from T where B in (select C from U where D = 1) and E >= ?"}) {
    EXPECT_EQ(advised.FormToPrepare(other), other);
    EXPECT_FALSE(advised.MayBeKept(other)) << other;
  }
}

TEST(AdvisedStatements, AdviceAddsUpAndTheLatestCounts) {
  AdvisedStatements advised;
  advised.Take({{.statement = kOfOne, .equalForm = kOfOneEqual}});
  advised.Take({{.statement = kIds, .mayBeKept = true}});
  EXPECT_EQ(advised.FormToPrepare(kShape), kEqualShape);
  EXPECT_TRUE(advised.MayBeKept(kIds.toStdString()));
  advised.Take({{.statement = kOfOne, .mayBeKept = true}});
  EXPECT_EQ(advised.FormToPrepare(kShape), kShape);
  EXPECT_TRUE(advised.MayBeKept(kShape));
}

TEST(AdvisedStatements, UnfitAdviceIsRefusedWhole) {
  const auto with = [](const char* form) { return StatementAdvice{kOfOne, QString::fromUtf8(form), false}; };
  const StatementAdvice unfit[] = {
      with("select T.A from U join T on T.B = U.C where U.D = 1"),
      with("select T.A from U join T on T.B = U.C where T.E >= 20240520 and U.D = 1"),
      with("select T.A from U join T on T.B = U.C where U.D = 2 and T.E >= 20240520"),
      with("select T.A from U join T on T.B = U.C where U.D = '1' and T.E >= 20240520"),
      with("select T.A from U join T on T.B = U.C where U.D = 1 and T.E >= 20240520 and T.F = 3"),
      with("delete from U where U.D = 1 and U.E >= 20240520"),
      {QStringLiteral("delete from T where A = 1"), {}, true},
      {QStringLiteral("execute procedure P(1)"), {}, true},
      {QString(), {}, true}};
  for (const StatementAdvice& advice : unfit) {
    AdvisedStatements advised;
    const Error error = ErrorOf([&] { advised.Take({{.statement = kIds, .mayBeKept = true}, advice}); });
    EXPECT_EQ(error.Category(), ErrorCategory::Refused);
    EXPECT_NE(std::string(error.what()).find(advice.statement.toStdString()), std::string::npos);
    EXPECT_FALSE(advised.MayBeKept(kIds.toStdString())) << "taken in part";
  }
}

/// The order of the rows tells which of the two was prepared.
class AdvisedService : public testing::Test {
 protected:
  AdvisedService() {
    for (int id = 1; id <= 3; ++id) Service().Execute(InsertPortfolio(id, QStringLiteral("组合%1").arg(id)));
  }
  FirebirdUserData& Service() { return database_.Service(); }
  std::string IdsAbove(int id) {
    const ResultSet rows = Service().Query(QStringLiteral("select ID from alg_commain where ID > %1").arg(id));
    QStringList ids;
    for (int row = 0; row < rows.RowCount(); ++row) ids.append(rows.TextAt(row, 0));
    return ids.join(QLatin1Char(',')).toStdString();
  }
  void AdviseForm(const char* form) {
    Service().Advise({{.statement = QStringLiteral("select ID from alg_commain where ID > 7"),
                       .equalForm = QString::fromUtf8(form)}});
  }

  TempDatabase database_;
};

TEST_F(AdvisedService, PreparesTheEqualFormWithTheStatementsOwnValues) {
  EXPECT_EQ(IdsAbove(1), "2,3");
  AdviseForm("select M.ID from alg_commain M where M.ID > 7 order by M.ID desc");
  EXPECT_EQ(IdsAbove(1), "3,2") << "also when it was prepared as written before";
  EXPECT_EQ(IdsAbove(0), "3,2,1");
  const auto session = Service().OpenSession();
  session->StartTransaction();
  EXPECT_EQ(session->Query(QStringLiteral("select ID from alg_commain where ID > 2")).IntegerAt(0, 0), 3);
}

TEST_F(AdvisedService, AFormThatTheEngineRefusesCostsNoAnswer) {
  AdviseForm("select M.ID from NO_SUCH_TABLE M where M.ID > 7");
  Service().Advise({{.statement = kIds, .equalForm = QStringLiteral("select NO_SUCH_COLUMN from alg_commain")}});
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(IdsAbove(1), "2,3");
    EXPECT_EQ(IdsOf(Service()), "1,2,3");
  }
}

}  // namespace
