#include <gtest/gtest.h>

#include "temp_database.h"

using namespace holdwise;
using holdwise::test::TempDatabase;

namespace {

TEST(Statements, RowsComeBackTyped) {
  TempDatabase db;
  auto& service = db.Service();
  EXPECT_EQ(service.Execute(QStringLiteral(
                "insert into alg_commain (ID,COMNAME,ZSCLOSEPRICE,MBSYL,FC,BETA,ISFINISHED,EDITDATE,SAVEFLAG)values("
                "7,'组合''一',3012.45,0,0,0,0,'2026-01-05',1)")),
            1);
  const ResultSet rows = service.Query(QStringLiteral("select * from alg_commain where SAVEFLAG = 1 order by ID desc"));
  ASSERT_EQ(rows.RowCount(), 1);
  EXPECT_EQ(rows.IntegerAt(0, rows.Column("id")), 7);
  EXPECT_EQ(rows.TextAt(0, rows.Column("comname")), QStringLiteral("组合'一"));
  EXPECT_EQ(rows.RealAt(0, rows.Column("zscloseprice")), 3012.45);
  EXPECT_TRUE(rows.IsNull(0, rows.Column("zhfg")));
}

TEST(Statements, DeleteRecordBlockRemovesHeaderAndHoldings) {
  TempDatabase db;
  auto& service = db.Service();
  service.Execute(QStringLiteral("insert into alg_commain (ID,COMNAME) values (3,'甲')"));
  service.Execute(
      QStringLiteral("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values "
                     "(gen_id(ALG_ROWID_DETAIL,1),3,1600000,100,0.5,7.25)"));
  const QString text = QStringLiteral(
                           "execute block\r\nas\r\ndeclare id int ;\r\nbegin\r\n  select ID from alg_commain where "
                           "COMNAME = '%1' into :id;\r\n  if (:id<>0) then\r\n  begin\r\n    delete from alg_commain "
                           "where id = :id;\r\n    delete from alg_comdetail where mainid = :id;\r\n  end\r\nend")
                           .arg(QStringLiteral("甲"));
  EXPECT_EQ(service.Execute(text), 1);
  EXPECT_EQ(service.Count(QStringLiteral("select Count(*) from alg_commain")), 0);
  EXPECT_EQ(service.Count(QStringLiteral("select Count(*) from alg_comdetail")), 0);
  EXPECT_EQ(service.Execute(text), 1) << "nothing to delete is no failure";
}

}  // namespace
