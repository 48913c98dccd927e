// SPDX-License-Identifier: MIT
#include <QLabel>
#include <QTest>
#include <algorithm>

#include "accessible_names.h"
#include "calc_fixture.h"
#include "download_settings.h"
#include "injecting_user_data.h"

namespace holdwise {
namespace {

TEST_F(CalcDialog, LooksLikeItsDesign) {
  TfrmCalc2 dialog;
  Show(dialog);
  EXPECT_EQ(dialog.size(), QSize(341, 73));
  EXPECT_EQ(dialog.ProgressBar().geometry(), QRect(16, 35, 310, 21));
  const auto* label = dialog.findChild<QLabel*>();
  ASSERT_NE(label, nullptr);
  EXPECT_EQ(label->text(), QStringLiteral("正在进行计算,请稍候....."));
  EXPECT_EQ(label->pos(), QPoint(96, 13));
  EXPECT_EQ(label->palette().color(QPalette::WindowText), host_.theme.colors.at(QStringLiteral("QM_TitleFontColor")));
  const QImage picture = dialog.grab().toImage();
  EXPECT_EQ(picture.pixelColor(2, 2), host_.theme.colors.at(QStringLiteral("Qm_BGCorlor")));
  EXPECT_TRUE(dialog.windowFlags().testFlag(Qt::WindowCloseButtonHint));
  EXPECT_FALSE(dialog.windowFlags().testFlag(Qt::WindowMinimizeButtonHint));
  EXPECT_FALSE(dialog.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
  EXPECT_TRUE(host_.debug.Lines().empty());
}

TEST_F(CalcDialog, EveryControlHasAName) {
  TfrmCalc2 dialog;
  Show(dialog);
  int named = 0;
  EXPECT_EQ(test::UnnamedControls(dialog, named).join('\n').toStdString(), "");
  EXPECT_EQ(named, 1) << "the progress";
}

TEST_F(CalcDialog, ConfiguresItsThreeDownloads) {
  const TfrmCalc2 dialog;
  for (const auto& download : {Base(), RateDown(), EstimateDown()}) {
    const auto& settings = download->Settings();
    test::ExpectQuiet(settings);
    EXPECT_TRUE(settings.isStream);
    EXPECT_EQ(settings.defaultPath, QStringLiteral("\\\\"));
    EXPECT_TRUE(download->Requests().empty());
  }
}

TEST_F(CalcDialog, AsksForOneBaseFileAtATimeAndBothReferenceFiles) {
  TfrmCalc2 dialog;
  Show(dialog);
  // 2 portfolios, 2 securities, 3 fixed.
  EXPECT_EQ(dialog.ProgressBar().maximum(), 7);
  EXPECT_EQ(dialog.ProgressBar().value(), 0);
  EXPECT_EQ(RateDown()->Requests(), std::vector<QString>{kRatesFile});
  EXPECT_EQ(EstimateDown()->Requests(), std::vector<QString>{kEstimatesFile});
  EXPECT_EQ(Base()->Requests(), std::vector<QString>{StockFile("000001")});
  FinishBase();
  EXPECT_EQ(Base()->Requests(), (std::vector<QString>{StockFile("000001"), StockFile("600000"), kIndexFile}));
  EXPECT_EQ(dialog.ProgressBar().value(), 3);
  EXPECT_TRUE(dialog.isVisible());
}

TEST_F(CalcDialog, TheLastStreamToFinishCalculates) {
  std::vector<int> order = {0, 1, 2};
  do {
    Run("update alg_commain set ISFINISHED = 0, BETA = 0 where ID < 3");
    TfrmCalc2 dialog;
    Show(dialog);
    for (const int stream : order) {
      EXPECT_TRUE(dialog.isVisible());
      EXPECT_EQ(Unfinished(), (QStringList{"1", "2"}));
      if (stream == 0) FinishBase();
      if (stream == 1) FinishRates();
      if (stream == 2) FinishEstimates();
    }
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.ProgressBar().value(), 7);
    EXPECT_EQ(Unfinished(), QStringList());
    // Portfolio 2 holds 600000 alone: cov((0.03,-0.01),(0.02,-0.02)) / var((0.02,-0.02)) = 0.0008 / 0.0008.
    EXPECT_EQ(Rows("select cast(BETA as numeric(9,6)) from alg_commain where ID = 2"), QStringList{"1"});
  } while (std::next_permutation(order.begin(), order.end()));
  EXPECT_EQ(Statistics(), (QStringList{"1|20240528", "1|20240529", "399001|20240529", "1000001|20240528",
                                       "1000001|20240529", "1600000|20240528", "1600000|20240529"}));
  EXPECT_EQ(Rows("select INTEREST from alg_rmbinterestrate"), QStringList{"1.5"});
  EXPECT_EQ(Rows("select SECUCODE,PRICE from ALG_STOCKESTIMATEVALUE"), QStringList{"600000|9.5"});
  EXPECT_TRUE(host_.debug.Lines().empty());
}

/// What the user enters goes this way, and only that counts as the user's.
class UsersLine final : public test::Injecting<UserDataServices> {
 public:
  explicit UsersLine(UserDataServices& inner) : Injecting(inner, plan), services_(inner) {}
  std::unique_ptr<UserDataSession> OpenSession() override { return services_.OpenSession(); }
  test::FailurePlan plan;

 private:
  UserDataServices& services_;
};

TEST_F(CalcDialog, WritesNothingAsIfItWereTheUsers) {
  UsersLine line(temporary_.Service());
  Use(line);
  {
    TfrmCalc2 dialog;
    Show(dialog);
    FinishAll();
  }
  EXPECT_EQ(Unfinished(), QStringList());
  EXPECT_EQ(Statistics().size(), 7);
  EXPECT_EQ(Rows("select INTEREST from alg_rmbinterestrate"), QStringList{"1.5"});
  EXPECT_FALSE(line.plan.Calls().isEmpty());
  for (const QString& call : line.plan.Calls()) EXPECT_TRUE(call.startsWith("select")) << call.toStdString();
  Use(temporary_.Service());
}

TEST_F(CalcDialog, FilesOnDiskWorkAsWell) {
  TfrmCalc2 dialog;
  Show(dialog);
  Base()->WriteAndReceive(StockFile("000001"), BaseData({{"0", "20240528", "0.01"}}));
  Base()->WriteAndReceive(StockFile("600000"), BaseData({{"0", "20240528", "0.01"}}));
  Base()->WriteAndReceive(kIndexFile, IndexData());
  RateDown()->WriteAndReceive(kRatesFile, RateData("1.5"));
  EstimateDown()->WriteAndReceive(kEstimatesFile, EstimateData({}));
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(Unfinished(), QStringList());
}

TEST_F(CalcDialog, WithoutSecuritiesOnlyTheIndexFileIsFetched) {
  Run("delete from alg_comdetail");
  TfrmCalc2 dialog;
  Show(dialog);
  EXPECT_EQ(dialog.ProgressBar().maximum(), 5);
  EXPECT_EQ(Base()->Requests(), std::vector<QString>{kIndexFile});
  Base()->ReceiveStream(kIndexFile, IndexData());
  FinishRates();
  FinishEstimates();
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(dialog.ProgressBar().value(), 5);
}

TEST_F(CalcDialog, ABaseFileThatDoesNotComeIsSkipped) {
  for (const int code : {TDSBAsynDownFileRole::kNotFound, TDSBAsynDownFileRole::kTimedOut}) {
    Run("delete from alg_stockstatistic");
    Run("insert into alg_stockstatistic (secucode,hqtype,hqdate) values (1000001,0,20200101)");
    TfrmCalc2 dialog;
    Show(dialog);
    Base()->Fail(StockFile("000001"), code);
    EXPECT_EQ(dialog.ProgressBar().value(), 1);
    EXPECT_EQ(Base()->Pending(), std::vector<QString>{StockFile("600000")});
    Base()->Fail(StockFile("600000"), code);
    Base()->Fail(kIndexFile, code);
    EXPECT_EQ(Statistics(), QStringList{"1000001|20200101"});
    EXPECT_TRUE(dialog.isVisible());
    FinishRates();
    FinishEstimates();
    EXPECT_FALSE(dialog.isVisible());
    Run("update alg_commain set ISFINISHED = 0 where ID < 3");
  }
  EXPECT_TRUE(host_.debug.Lines().empty());
}

TEST_F(CalcDialog, AReferenceFileThatDoesNotComeClosesTheDialog) {
  for (const bool rates : {true, false}) {
    for (const int code : {TDSBAsynDownFileRole::kNotFound, TDSBAsynDownFileRole::kTimedOut}) {
      Run("delete from alg_stockstatistic");
      TfrmCalc2 dialog;
      Show(dialog);
      const auto base = Base();
      if (rates) {
        RateDown()->Fail(kRatesFile, code);
      } else {
        EstimateDown()->Fail(kEstimatesFile, code);
      }
      EXPECT_FALSE(dialog.isVisible());
      // Base data may still be arriving.
      EXPECT_TRUE(base->ReceiveStream(StockFile("000001"), BaseData({{"0", "20240528", "0.01"}})));
      if (rates) FinishEstimates();
      if (!rates) FinishRates();
      EXPECT_TRUE(base->Pending().empty());
      EXPECT_EQ(Statistics(), QStringList());
      EXPECT_EQ(Unfinished(), (QStringList{"1", "2"}));
    }
  }
  EXPECT_TRUE(host_.debug.Lines().empty());
}

TEST_F(CalcDialog, EventsThatComeTwiceAreIgnored) {
  TfrmCalc2 dialog;
  Show(dialog);
  const QByteArray first = BaseData({{"0", "20240528", "0.01"}});
  const QByteArray second = BaseData({{"0", "20240101", "0.01"}, {"0", "20240102", "0.01"}});
  Base()->ReceiveStream(StockFile("000001"), first);
  Base()->ReceiveUnasked(StockFile("000001"), second);
  EXPECT_EQ(Statistics(), QStringList{"1000001|20240528"});
  EXPECT_EQ(Base()->Requests().size(), 2U);
  FinishRates();
  RateDown()->ReceiveUnasked(kRatesFile, RateData("9"));
  EXPECT_EQ(Rows("select INTEREST from alg_rmbinterestrate"), QStringList{"1.5"});
  FinishEstimates();
  EstimateDown()->ReceiveUnasked(kEstimatesFile, EstimateData({{"000001", "2", "1"}}));
  EXPECT_EQ(Rows("select SECUCODE from ALG_STOCKESTIMATEVALUE"), QStringList{"600000"});
  EXPECT_EQ(dialog.ProgressBar().value(), 3);
  EXPECT_TRUE(dialog.isVisible());
  Base()->ReceiveStream(StockFile("600000"), first);
  Base()->ReceiveStream(kIndexFile, IndexData());
  Base()->ReceiveUnasked(kIndexFile, IndexData());
  EXPECT_EQ(Unfinished(), QStringList());
}

/// Whatever a host sends for a file that has been dealt with, of any of the three kinds.
TEST_F(CalcDialog, EventsOfEveryKindThatComeTwiceAreIgnored) {
  TfrmCalc2 dialog;
  Show(dialog);
  const auto repeat = [](const std::shared_ptr<ScriptedDownFile>& download, const QString& name) {
    download->ReceiveUnasked(name, "not even a packet");
    download->ReceiveFileUnasked(name);
    download->FailUnasked(name, TDSBAsynDownFileRole::kTimedOut);
  };
  Base()->Fail(StockFile("000001"), TDSBAsynDownFileRole::kNotFound);
  repeat(Base(), StockFile("000001"));
  repeat(Base(), kIndexFile);  // not asked for yet
  EXPECT_EQ(dialog.ProgressBar().value(), 1);
  EXPECT_EQ(Base()->Pending(), std::vector<QString>{StockFile("600000")});
  FinishRates();
  repeat(RateDown(), kRatesFile);
  FinishEstimates();
  repeat(EstimateDown(), kEstimatesFile);
  EXPECT_TRUE(dialog.isVisible()) << "a late failure of a reference file does not close it";
  EXPECT_EQ(dialog.ProgressBar().value(), 3);
  Base()->ReceiveStream(StockFile("600000"), BaseData({{"0", "20240528", "0.01"}}));
  repeat(Base(), StockFile("600000"));
  Base()->ReceiveStream(kIndexFile, IndexData());
  repeat(Base(), kIndexFile);
  EXPECT_EQ(dialog.ProgressBar().value(), 7);
  EXPECT_EQ(Unfinished(), QStringList());
  EXPECT_EQ(Statistics(), (QStringList{"1|20240528", "1|20240529", "399001|20240529", "1600000|20240528"}));
  EXPECT_TRUE(host_.debug.Lines().empty());
}

TEST_F(CalcDialog, TheUserMayCloseItAtAnyTime) {
  for (const bool byKey : {true, false}) {
    TfrmCalc2 dialog;
    Show(dialog);
    Base()->ReceiveStream(StockFile("000001"), BaseData({{"0", "20240528", "0.01"}}));
    if (byKey) {
      QTest::keyClick(&dialog, Qt::Key_Escape);
    } else {
      dialog.close();
    }
    EXPECT_FALSE(dialog.isVisible());
    Base()->ReceiveStream(StockFile("600000"), BaseData({{"0", "20240528", "0.01"}}));
    FinishRates();
    FinishEstimates();
    EXPECT_EQ(Statistics(), QStringList{"1000001|20240528"});
    EXPECT_EQ(Rows("select count(*) from alg_rmbinterestrate"), QStringList{"0"});
    EXPECT_EQ(Base()->Requests().size(), 2U);
    EXPECT_EQ(Unfinished(), (QStringList{"1", "2"}));
  }
  // The next run takes everything up again.
  TfrmCalc2 dialog;
  Show(dialog);
  FinishAll();
  EXPECT_EQ(Unfinished(), QStringList());
}

TEST_F(CalcDialog, ClosedBeforeItBeganItDoesNothing) {
  TfrmCalc2 dialog;
  dialog.show();
  dialog.close();
  QCoreApplication::processEvents();
  EXPECT_TRUE(Base()->Requests().empty());
}

TEST_F(CalcDialog, ClosingBetweenTwoPortfoliosStopsThere) {
  TfrmCalc2 dialog;
  Show(dialog);
  FinishBase();
  FinishRates();
  QTimer closing;
  QObject::connect(&closing, &QTimer::timeout, &dialog, [&] {
    if (dialog.ProgressBar().value() == 6) dialog.close();
  });
  closing.start(0);
  FinishEstimates();
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(Unfinished().size(), 1);
}

TEST_F(CalcDialog, AnEmptyRatesFileIsDoneAndChangesNothing) {
  Run("insert into alg_rmbinterestrate (ID,INTEREST) values (1,3.25)");
  TfrmCalc2 dialog;
  Show(dialog);
  RateDown()->ReceiveStream(kRatesFile, RateData(""));
  EXPECT_EQ(Rows("select INTEREST from alg_rmbinterestrate"), QStringList{"3.25"});
  EXPECT_EQ(dialog.ProgressBar().value(), 1);
  FinishBase();
  FinishEstimates();
  EXPECT_FALSE(dialog.isVisible());
}

TEST_F(CalcDialog, Day20FilesUseTheTradingDates) {
  host_.codeNums.currentDate = 20240529;
  for (int day = 29; day >= 1; --day) host_.dataCenter.tradingDates.push_back(20240500 + day);
  Run("insert into alg_stockstatistic (secucode,hqtype,hqdate) values (1000001,0,20240508)");
  Run("insert into alg_stockstatistic (secucode,hqtype,hqdate) values (1000001,0,20240509)");
  TfrmCalc2 dialog;
  Show(dialog);
  ResultSet none;
  dialog.BasicDataRecv(QStringLiteral("QMTL\\TZZH\\Day20\\股票\\000001.dat"), 0, EncodePacket(none), 1);
  // 20 trading days back from the 29th is the 9th.
  EXPECT_EQ(Statistics(), QStringList{"1000001|20240508"});
}

}  // namespace
}  // namespace holdwise
