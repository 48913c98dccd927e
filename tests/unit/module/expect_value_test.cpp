// SPDX-License-Identifier: MIT
#include "common/series/expect_value.h"

#include "common/series/shared_objects.h"
#include "engine_fixture.h"
#include "holdwise/packet/packet_file.h"

namespace holdwise {
namespace {

const QString kShanghai = QStringLiteral("QMTL\\TZZH\\风险计量\\SH.dat");
const QString kSavedHoldings = QStringLiteral(
    "select * from alg_comdetail where MainID in (select ID from alg_commain where SAVEFLAG = 1) order by MainID");

class ExpectValue : public CommonTest {
 protected:
  ExpectValue() {
    g_AllStockData = std::make_unique<TAllStockData>();
    g_ExpectValue = std::make_unique<TExpectValue>();
    host_.fakeUserData.SetResult(sql::kPortfolioCosts,
                                 TableOf({{"MAINID", ColumnType::Integer}, {"SUM_VALUE", ColumnType::Real}}, {}));
    SetBetas({{"600000", "1"}, {"000001", "0.5"}});
    // Previous closes: 600000 10.00, 000001 11.25, 300750 190.50.
    SetRows({{"1", "1600000", "100", "0.6", "9.5"},
             {"1", "1000001", "200", "0.4", "12"},
             {"2", "1300750", "10", "0.25", "180.5"},
             {"2", "1600000", "30", "0.75", "10"}});
  }
  ~ExpectValue() override {
    g_ExpectValue.reset();
    g_AllStockData.reset();
  }

  void SetBetas(const std::vector<std::vector<QString>>& rows) {
    g_AllStockData->Set_SHZS();
    host_.DownFile(QStringLiteral("FInfoAsynDownFileRole"))
        ->WriteAndReceive(kShanghai,
                          EncodePacket(TableOf({{"code", ColumnType::Text}, {"beta", ColumnType::Text}}, rows)));
  }
  /// Saved holdings: portfolio, code, quantity, weight, buy price.
  void SetRows(const std::vector<std::vector<QString>>& rows) {
    const ResultSet table = TableOf({{"MAINID", ColumnType::Integer},
                                     {"SECUCODE", ColumnType::Integer},
                                     {"PZSL", ColumnType::Integer},
                                     {"PZBL", ColumnType::Real},
                                     {"BUYPRICE", ColumnType::Real}},
                                    rows);
    host_.fakeUserData.SetResult(kSavedHoldings, table);
    host_.fakeUserData.SetResult(sql::kHoldingsForPreviousCloses, table);
    FreshUserValue();
  }
  static void FreshUserValue() {
    g_UserValue.reset();
    g_UserValue = std::make_unique<TUserValue>();
  }
  void SetIndex(const char* field, int index, const char* value) {
    host_.fakeUserData.SetResult(
        QStringLiteral("select %1 from ALG_STOCKSTATISTIC  where (SECUCODE=%2) and (HqType = 0) order by HQDATE desc")
            .arg(QLatin1String(field), QString::number(index)),
        TableOf({{"V", ColumnType::Real}}, {{QString::fromLatin1(value)}}));
  }
};

TEST_F(ExpectValue, NothingIsKnownBeforeTheFirstMove) {
  EXPECT_FALSE(g_ExpectValue->IsValid());
  EXPECT_EQ(g_ExpectValue->GetExpectAdd(), 0);
  EXPECT_EQ(g_ExpectValue->GetStockPriceStringList()->Count(), 0);
}

TEST_F(ExpectValue, WithoutAMovePricesStayAtThePreviousClose) {
  g_ExpectValue->SetExpectAdd(0);
  EXPECT_TRUE(g_ExpectValue->IsValid());
  EXPECT_EQ(LinesOf(g_ExpectValue->GetStockPriceStringList()),
            (QStringList{"1600000=10.00", "1000001=11.25", "1300750=190.50"}));
  EXPECT_EQ(LinesOf(g_ExpectValue->GetStockAddStringList()),
            (QStringList{"1600000=0.00", "1000001=0.00", "1300750=0.00"}));
  EXPECT_EQ(LinesOf(g_ExpectValue->GetGroupAddStringList()), (QStringList{"1=0.00", "2=0.00"}));
}

/// By hand for x = 0.2. 600000: beta 1, +20 %, 12.00. 000001: beta 0.5, +10 %, 12.375. 300750 is not in the table:
/// 190.5.
TEST_F(ExpectValue, AMoveScalesByBeta) {
  g_ExpectValue->SetExpectAdd(0.2);
  EXPECT_TRUE(g_ExpectValue->IsValid());
  EXPECT_EQ(g_ExpectValue->GetExpectAdd(), 0.2);
  // 12.375 is exact in binary, so it rounds away from zero.
  EXPECT_EQ(LinesOf(g_ExpectValue->GetStockPriceStringList()),
            (QStringList{"1600000=12.00", "1000001=12.38", "1300750=190.50"}));
  EXPECT_EQ(LinesOf(g_ExpectValue->GetStockAddStringList()),
            (QStringList{"1600000=20.00", "1000001=10.00", "1300750=0.00"}));
  // (10-10)x30 + 10x0.2x30 = 60 (the last holding of 600000 counts); (11.25-12)x200 + 11.25x0.1x200 = -150+225;
  // (190.5-180.5)x10.
  EXPECT_EQ(LinesOf(g_ExpectValue->GetStockProfitStringList()),
            (QStringList{"1600000=60.00", "1000001=75.00", "1300750=100.00"}));
  // 100x12 + 200x12.375; 10x190.5 + 30x12.
  EXPECT_EQ(LinesOf(g_ExpectValue->GetGroupValueStringList()), (QStringList{"1=3675.00", "2=2265.00"}));
  // 0.2x0.6 + 0.1x0.4; 0.2x0.75.
  EXPECT_EQ(LinesOf(g_ExpectValue->GetGroupAddStringList()), (QStringList{"1=16.00", "2=15.00"}));
  // (10-9.5)x100 + 200 + 75; 100 + 60. No decimals are forced on a whole number.
  EXPECT_EQ(LinesOf(g_ExpectValue->GetGroupProfitStringList()), (QStringList{"1=325", "2=160"}));
}

TEST_F(ExpectValue, AMoveThatWipesOutAHoldingIsRefused) {
  g_ExpectValue->SetExpectAdd(-0.5);
  EXPECT_TRUE(g_ExpectValue->IsValid());
  EXPECT_EQ(g_ExpectValue->GetStockPriceStringList()->ValueOf(u"1600000"), QStringLiteral("5.00"));
  const QStringList groups = LinesOf(g_ExpectValue->GetGroupValueStringList());
  g_ExpectValue->SetExpectAdd(-1);
  EXPECT_FALSE(g_ExpectValue->IsValid());
  EXPECT_EQ(g_ExpectValue->GetExpectAdd(), -0.5);
  EXPECT_EQ(LinesOf(g_ExpectValue->GetGroupValueStringList()), groups);
  g_ExpectValue->SetExpectAdd(g_ExpectValue->GetExpectAdd());
  EXPECT_TRUE(g_ExpectValue->IsValid());
}

TEST_F(ExpectValue, ARefusedMoveKeepsWhatWasWrittenSoFar) {
  g_AllStockData->SetZS_TYPE(SZ_T);
  host_.DownFile(QStringLiteral("FInfoAsynDownFileRole"))
      ->WriteAndReceive(QStringLiteral("QMTL\\TZZH\\风险计量\\SZ.dat"),
                        EncodePacket(TableOf({{"code", ColumnType::Text}, {"beta", ColumnType::Real}},
                                             {{"600000", "0.5"}, {"300750", "2"}})));
  g_ExpectValue->SetExpectAdd(0);
  g_ExpectValue->SetExpectAdd(-0.5);
  EXPECT_FALSE(g_ExpectValue->IsValid());
  EXPECT_EQ(g_ExpectValue->GetExpectAdd(), 0);
  // 10 x (1 - 0.25); 300750 would be wiped out and keeps the text of the former move; portfolio 1 was not stored yet
  // when portfolio 2's first holding was refused.
  EXPECT_EQ(LinesOf(g_ExpectValue->GetStockPriceStringList()),
            (QStringList{"1600000=7.50", "1000001=11.25", "1300750=190.50"}));
  EXPECT_EQ(g_ExpectValue->GetGroupValueStringList()->ValueOf(u"1"), QStringLiteral("3250.00"));
}

TEST_F(ExpectValue, AHoldingWithoutPreviousCloseIsAConversionError) {
  host_.fakeUserData.SetResult(
      sql::kHoldingsForPreviousCloses,
      TableOf({{"MAINID", ColumnType::Integer}, {"SECUCODE", ColumnType::Integer}, {"PZSL", ColumnType::Integer}},
              {{"1", "1600000", "100"}}));
  FreshUserValue();
  EXPECT_THROW(g_ExpectValue->SetExpectAdd(0.2), Error);
  EXPECT_EQ(LinesOf(g_ExpectValue->GetStockPriceStringList()), QStringList{"1600000=12.00"});
  // The change of the failing holding comes before its price.
  EXPECT_EQ(LinesOf(g_ExpectValue->GetStockAddStringList()), (QStringList{"1600000=20.00", "1000001=10.00"}));
  EXPECT_EQ(g_ExpectValue->GetGroupValueStringList()->Count(), 0);
}

/// By the table above: 300750 has no beta; 600000 is in both portfolios, last in portfolio 2.
TEST_F(ExpectValue, SaysWhatItsListsRestOn) {
  g_ExpectValue->SetExpectAdd(0.2);
  EXPECT_TRUE(g_ExpectValue->IsWhole());
  const TExpectBasis& basis = g_ExpectValue->Basis();
  EXPECT_EQ(basis.index, IT_ShangHai);
  EXPECT_EQ(basis.move, 0.2);
  EXPECT_TRUE(basis.hasTable);
  EXPECT_EQ(basis.withoutBeta, (TMissingCodes{{"2", {"300750"}}}));
  EXPECT_EQ(basis.sharedProfits, (QHash<QString, QString>{{"1600000", "2"}}));
  g_ExpectValue->SetExpectAdd(-1);
  EXPECT_FALSE(g_ExpectValue->IsWhole()) << "refused";
  EXPECT_EQ(g_ExpectValue->Basis().move, 0.2);
  g_AllStockData->Set_SZZS();
  g_ExpectValue->SetExpectAdd(0.1);
  EXPECT_EQ(g_ExpectValue->Basis().index, IT_ShenZhen);
  EXPECT_FALSE(g_ExpectValue->Basis().hasTable);
  EXPECT_TRUE(g_ExpectValue->Basis().withoutBeta.isEmpty()) << "nothing can be said of single holdings";
}

TEST_F(ExpectValue, AFailedComputationIsNotWhole) {
  g_ExpectValue->SetExpectAdd(0.2);
  AddStock("600001", 1, 20, 15);
  const ResultSet newer = TableOf({{"MAINID", ColumnType::Integer},
                                   {"SECUCODE", ColumnType::Integer},
                                   {"PZSL", ColumnType::Integer},
                                   {"PZBL", ColumnType::Real},
                                   {"BUYPRICE", ColumnType::Real}},
                                  {{"1", "1600000", "100", "0.5", "9.5"}, {"1", "1600001", "100", "0.5", "9.5"}});
  host_.fakeUserData.SetResult(kSavedHoldings, newer);
  EXPECT_THROW(g_ExpectValue->SetExpectAdd(0.1), Error);
  EXPECT_FALSE(g_ExpectValue->IsWhole());
  EXPECT_EQ(g_ExpectValue->Basis().move, 0.2);
}

TEST_F(ExpectValue, ABetaThatIsNoNumberCountsAsNothing) {
  g_AllStockData->SetZS_TYPE(HS_T);
  host_.DownFile(QStringLiteral("FInfoAsynDownFileRole"))
      ->WriteAndReceive(
          QStringLiteral("QMTL\\TZZH\\风险计量\\HS.dat"),
          EncodePacket(TableOf({{"code", ColumnType::Text}, {"beta", ColumnType::Text}}, {{"600000", "--"}})));
  g_ExpectValue->SetExpectAdd(0.2);
  EXPECT_EQ(g_ExpectValue->GetStockPriceStringList()->ValueOf(u"1600000"), QStringLiteral("10.00"));
}

TEST_F(ExpectValue, WithoutSavedPortfoliosNothingIsStored) {
  SetRows({});
  g_ExpectValue->SetExpectAdd(0.1);
  EXPECT_TRUE(g_ExpectValue->IsValid());
  EXPECT_EQ(g_ExpectValue->GetGroupValueStringList()->Count(), 0);
}

TEST_F(ExpectValue, IndexChangesAreRememberedUntilAnUpdate) {
  const std::vector<std::pair<TIndexType, int>> indices = {
      {IT_ShangHai, 1}, {IT_ShenZhen, 399001}, {IT_HuShen, 399300}};
  for (const auto& [type, number] : indices) {
    SetIndex("ClosePrice", number, "3300");
    SetIndex("OldClosePrice", number, "3000");
    EXPECT_EQ(g_ExpectValue->GetIndexClosePriceAdd(type), (3300.0 - 3000.0) / 3000.0);
    SetIndex("ClosePrice", number, "2700");
    EXPECT_EQ(g_ExpectValue->GetIndexClosePriceAdd(type), (3300.0 - 3000.0) / 3000.0);
  }
  g_ExpectValue->SetIsNeedUpdate(false);
  EXPECT_GT(g_ExpectValue->GetIndexClosePriceAdd(IT_ShangHai), 0);
  g_ExpectValue->SetIsNeedUpdate(true);
  for (const auto& [type, number] : indices) {
    EXPECT_EQ(g_ExpectValue->GetIndexClosePriceAdd(type), (2700.0 - 3000.0) / 3000.0);
  }
}

TEST_F(ExpectValue, AnIndexChangeOfNothingIsReadAgain) {
  SetIndex("ClosePrice", 1, "3000");
  SetIndex("OldClosePrice", 1, "3000");
  EXPECT_EQ(g_ExpectValue->GetIndexClosePriceAdd(IT_ShangHai), 0);
  SetIndex("ClosePrice", 1, "3030");
  EXPECT_EQ(g_ExpectValue->GetIndexClosePriceAdd(IT_ShangHai), 0.01);
}

TEST_F(ExpectValue, AnIndexWithoutAPreviousCloseHasNoChange) {
  for (const char* old : {"0", "", "-5"}) {
    SetIndex("ClosePrice", 1, "3000");
    SetIndex("OldClosePrice", 1, old);
    EXPECT_EQ(g_ExpectValue->GetIndexClosePriceAdd(IT_ShangHai), 0);
  }
}

/// The same closes, but the file of the current index has come once more.
TEST_F(ExpectValue, NewBetasCountAtTheNextMove) {
  g_ExpectValue->SetExpectAdd(0.2);
  g_AllStockData->Set_SZZS();
  g_AllStockData->Set_SZZS();
  const auto download = host_.DownFile(QStringLiteral("FInfoAsynDownFileRole"));
  const QString file = QStringLiteral("QMTL\\TZZH\\风险计量\\SZ.dat");
  const auto betas = [](const char* beta) {
    return EncodePacket(TableOf({{"code", ColumnType::Text}, {"beta", ColumnType::Text}}, {{"600000", beta}}));
  };
  download->WriteAndReceive(file, betas("0.5"));
  g_ExpectValue->SetExpectAdd(0.2);
  EXPECT_EQ(g_ExpectValue->GetStockPriceStringList()->ValueOf(u"1600000"), QStringLiteral("11.00"));
  download->WriteAndReceive(file, betas("2"));
  g_ExpectValue->SetExpectAdd(0.2);
  EXPECT_EQ(g_ExpectValue->GetStockPriceStringList()->ValueOf(u"1600000"), QStringLiteral("14.00"));
}

/// The previous closes are read again first, the stress test rests on them.
TEST_F(ExpectValue, RecalculatingUsesThePreviousClosesOfNow) {
  g_ExpectValue->SetExpectAdd(0.2);
  AddStock("600000", 1, 20, 15);
  ReCalc();
  // 15 x 1.2
  EXPECT_EQ(g_ExpectValue->GetStockPriceStringList()->ValueOf(u"1600000"), QStringLiteral("18.00"));
}

TEST_F(ExpectValue, RecalculatingTwiceIsAsOnce) {
  g_ExpectValue->SetExpectAdd(0.2);
  ReCalc();
  const QStringList once = LinesOf(g_ExpectValue->GetGroupProfitStringList());
  const auto queries = Queries(kSavedHoldings).size();
  ReCalc();
  EXPECT_EQ(LinesOf(g_ExpectValue->GetGroupProfitStringList()), once);
  EXPECT_EQ(Queries(kSavedHoldings).size(), queries + 1);
  EXPECT_EQ(once, (QStringList{"1=325", "2=160"}));
}

}  // namespace
}  // namespace holdwise
