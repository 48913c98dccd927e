// SPDX-License-Identifier: MIT
// Files that are damaged or missing, and statements that fail.
#include "calc_fixture.h"
#include "holdwise/packet/table_limits.h"

namespace holdwise {
namespace {

TEST_F(CalcDialog, ADamagedEstimateFileClosesTheDialog) {
  Run("insert into ALG_STOCKESTIMATEVALUE (ID,SECUCODE,CTIME,PRICE) values (1,'000009',19910101,5)");
  for (const QByteArray& content :
       {EstimateData({{"600000", "1", "9.5"}}).chopped(4), EstimateData({{"600000", "1", "9.5元"}})}) {
    TfrmCalc2 dialog;
    Show(dialog);
    FinishBase();
    FinishRates();
    EstimateDown()->ReceiveStream(kEstimatesFile, content);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.ProgressBar().value(), 4);
    EXPECT_EQ(Rows("select SECUCODE,PRICE from ALG_STOCKESTIMATEVALUE"), QStringList{"000009|5"});
    EXPECT_EQ(Unfinished(), (QStringList{"1", "2"}));
  }
  EXPECT_EQ(LogLinesWith(kEstimatesFile), 2);
  EXPECT_EQ(LogLinesWith(QStringLiteral("PRICE")), 1);
}

TEST_F(CalcDialog, ADamagedBaseFileIsLoggedAndPassedOver) {
  Run("insert into alg_stockstatistic (secucode,hqtype,hqdate) values (1000001,0,20200101)");
  TfrmCalc2 dialog;
  Show(dialog);
  Base()->ReceiveStream(StockFile("000001"), BaseData({{"0", "20240528", "0.01"}}).chopped(4));
  EXPECT_EQ(Statistics(), QStringList{"1000001|20200101"});
  EXPECT_EQ(Base()->Pending(), std::vector<QString>{StockFile("600000")});
  EXPECT_EQ(dialog.ProgressBar().value(), 1);
  EXPECT_EQ(LogLinesWith(StockFile("000001")), 1);
  // The local copy is missing.
  Base()->ReceiveFile(StockFile("600000"));
  EXPECT_EQ(LogLinesWith(StockFile("600000")), 1);
  EXPECT_EQ(Base()->Pending(), std::vector<QString>{kIndexFile});
}

TEST_F(CalcDialog, ABadValueRollsItsFileBackAndTheRestGoesOn) {
  Run("insert into alg_stockstatistic (secucode,hqtype,hqdate) values (1000001,0,20200101)");
  TfrmCalc2 dialog;
  Show(dialog);
  ResultSet bad = DecodePacket(BaseData({{"0", "20240528", "0.01"}}));
  bad.AddColumn("unused", ColumnType::Text);
  ResultSet texts;
  for (int column = 0; column < bad.ColumnCount(); ++column) texts.AddColumn(bad.ColumnName(column), ColumnType::Text);
  texts.AppendRow();
  texts.SetText(0, texts.Column("hqtype"), "0");
  texts.SetText(0, texts.Column("sylbzc"), "0.1);delete from alg_commain");
  Base()->ReceiveStream(StockFile("000001"), EncodePacket(texts));
  EXPECT_EQ(Statistics(), QStringList{"1000001|20200101"});
  ASSERT_EQ(host_.debug.Lines().size(), 1U);
  EXPECT_TRUE(host_.debug.Lines()[0].contains(StockFile("000001")));
  EXPECT_TRUE(host_.debug.Lines()[0].contains(QStringLiteral("sylbzc")));
  Base()->ReceiveStream(StockFile("600000"), BaseData({{"0", "20240528", "0.01"}}));
  EXPECT_EQ(Statistics(), (QStringList{"1000001|20200101", "1600000|20240528"}));
}

TEST_F(CalcDialog, ADamagedReferenceFileClosesTheDialog) {
  Run("insert into alg_rmbinterestrate (ID,INTEREST) values (1,3.25)");
  TfrmCalc2 dialog;
  Show(dialog);
  FinishBase();
  RateDown()->ReceiveStream(kRatesFile, RateData("2").chopped(4));
  EXPECT_FALSE(dialog.isVisible());
  FinishEstimates();
  EXPECT_EQ(dialog.ProgressBar().value(), 3);
  EXPECT_EQ(Rows("select INTEREST from alg_rmbinterestrate"), QStringList{"3.25"});
  EXPECT_EQ(LogLinesWith(kRatesFile), 1);
  EXPECT_EQ(Unfinished(), (QStringList{"1", "2"}));
}

/// A small file that unpacks to more rows than a file of its kind can have.
TEST_F(CalcDialog, AFileOfTooManyRowsIsRefused) {
  ResultSet rows = DecodePacket(BaseData({{"0", "20240528", "0.01"}}));
  while (rows.RowCount() <= kMostSeriesRows) rows.AppendRow();
  TfrmCalc2 dialog;
  Show(dialog);
  Base()->ReceiveStream(StockFile("000001"), EncodePacket(rows));
  EXPECT_EQ(Statistics(), QStringList());
  EXPECT_EQ(LogLinesWith(StockFile("000001")), 1);
  EXPECT_EQ(Base()->Pending(), std::vector<QString>{StockFile("600000")});
  ResultSet rates = DecodePacket(RateData("2"));
  while (rates.RowCount() <= kInterestRateLimits.rows) rates.AppendRow();
  RateDown()->ReceiveStream(kRatesFile, EncodePacket(rates));
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(Rows("select count(*) from alg_rmbinterestrate"), QStringList{"0"});
}

TEST_F(CalcDialog, AReferenceFileMissingOnDiskLeavesTheDialogOpen) {
  TfrmCalc2 dialog;
  Show(dialog);
  FinishBase();
  FinishEstimates();
  RateDown()->ReceiveFile(kRatesFile);
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(dialog.ProgressBar().value(), 4);
  EXPECT_TRUE(host_.debug.Lines().empty());
}

/// Every database call of a whole run fails once: what is stored stays whole, and the next run succeeds.
TEST_F(CalcDialog, EveryDatabaseCallMayFail) {
  int call = 0;
  for (bool failed = true; failed; ++call) {
    ASSERT_LT(call, 200);
    Run("update alg_commain set ISFINISHED = 0, BETA = null where ID < 3");
    Run("delete from alg_stockstatistic");
    Run("delete from alg_rmbinterestrate");
    Run("delete from ALG_STOCKESTIMATEVALUE");
    Run("insert into alg_rmbinterestrate (ID,INTEREST) values (1,3.25)");
    Run("insert into ALG_STOCKESTIMATEVALUE (ID,SECUCODE,CTIME,PRICE) values (1,'000009',19910101,5)");
    {
      TfrmCalc2 dialog;
      Plan().FailCall(call);
      Show(dialog);
      const auto base = Base();
      for (const QString& name : {StockFile("000001"), StockFile("600000"), kIndexFile}) {
        const bool isIndex = name == kIndexFile;
        if (!base->Pending().empty()) {
          base->ReceiveStream(name, isIndex ? IndexData() : BaseData({{"0", "20240528", "0"}, {"0", "20240529", "0"}}));
        }
      }
      if (!RateDown()->Pending().empty()) FinishRates();
      if (!EstimateDown()->Pending().empty()) FinishEstimates();
      failed = Plan().HasFailed();
      Plan().FailNothing();
    }
    EXPECT_FALSE(Database().InTransaction()) << call;
    for (const QString& count : Rows("select count(*) from alg_stockstatistic where secucode > 1000000 group by "
                                     "secucode")) {
      EXPECT_EQ(count, QStringLiteral("2")) << call;
    }
    // Each reference table is the old one or the new one.
    const QString rates = Rows("select INTEREST from alg_rmbinterestrate").join(',');
    EXPECT_TRUE(rates == "3.25" || rates == "1.5") << call << rates.toStdString();
    const QString estimates = Rows("select SECUCODE,PRICE from ALG_STOCKESTIMATEVALUE").join(',');
    EXPECT_TRUE(estimates == "000009|5" || estimates == "600000|9.5") << call << estimates.toStdString();
    // A portfolio is finished only with figures.
    EXPECT_EQ(Rows("select count(*) from alg_commain where ID < 3 and ISFINISHED = 1 and BETA is null"),
              QStringList{"0"});
    if (failed) {
      TfrmCalc2 next;
      Run("update alg_commain set ISFINISHED = 0 where ID < 3");
      Show(next);
      FinishAll();
      EXPECT_FALSE(next.isVisible()) << call;
      EXPECT_EQ(Unfinished(), QStringList()) << call;
      EXPECT_EQ(Rows("select INTEREST from alg_rmbinterestrate"), QStringList{"1.5"}) << call;
      EXPECT_EQ(Rows("select SECUCODE from ALG_STOCKESTIMATEVALUE"), QStringList{"600000"}) << call;
    }
  }
  EXPECT_GT(call, 30);
}

}  // namespace
}  // namespace holdwise
