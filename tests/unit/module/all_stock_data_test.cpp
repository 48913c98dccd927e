// SPDX-License-Identifier: MIT
#include "common/series/all_stock_data.h"

#include "common/series/shared_objects.h"
#include "download_settings.h"
#include "engine_fixture.h"
#include "holdwise/packet/packet_file.h"

namespace holdwise {
namespace {

const QString kShanghai = QStringLiteral("QMTL\\TZZH\\风险计量\\SH.dat");
const QString kShenzhen = QStringLiteral("QMTL\\TZZH\\风险计量\\SZ.dat");
const QString kCsi300 = QStringLiteral("QMTL\\TZZH\\风险计量\\HS.dat");

QByteArray RiskFile(const std::vector<std::vector<QString>>& rows) {
  return EncodePacket(
      TableOf({{"code", ColumnType::Text}, {"beta", ColumnType::Real}, {"alpha", ColumnType::Real}}, rows));
}

class AllStockData : public CommonTest {
 protected:
  AllStockData() {
    g_AllStockData = std::make_unique<TAllStockData>();
    role_ = host_.DownFile(QStringLiteral("FInfoAsynDownFileRole"));
    SetDeviations({{"1", "0.25"}, {"1600000", "0.0125"}});
  }
  ~AllStockData() override { g_AllStockData.reset(); }

  void SetDeviations(const std::vector<std::vector<QString>>& rows) {
    host_.fakeUserData.SetResult(
        QStringLiteral("select distinct secucode,sylbzc from alg_stockstatistic where Hqtype = 0 order by secucode"),
        TableOf({{"SECUCODE", ColumnType::Integer}, {"SYLBZC", ColumnType::Real}}, rows));
  }

  std::shared_ptr<ScriptedDownFile> role_;
};

TEST_F(AllStockData, ConfiguresItsDownloads) {
  test::ExpectFileDownload(role_->Settings(), QStringLiteral("FInfoAsynDownFileRole"));
  EXPECT_TRUE(role_->Requests().empty());
  EXPECT_EQ(g_AllStockData->GetCurStringGrid().RowCount(), 0);
}

TEST_F(AllStockData, AsksForTheFileOfAnEmptyTableOnly) {
  g_AllStockData->Set_SHZS();
  g_AllStockData->Set_SZZS();
  g_AllStockData->Set_HSZS();
  EXPECT_EQ(role_->Requests(), (std::vector<QString>{kShanghai, kShenzhen, kCsi300}));
  role_->WriteAndReceive(kCsi300, RiskFile({{"600000", "1.2", "0.01"}, {"000001", "0.8", ""}}));
  g_AllStockData->Set_HSZS();
  EXPECT_EQ(role_->Requests().size(), 3U);

  const TTextGrid& grid = g_AllStockData->GetCurStringGrid();
  ASSERT_EQ(grid.RowCount(), 2);
  ASSERT_EQ(grid.ColCount(), 3);
  EXPECT_EQ(grid.Cells(0, 0), QStringLiteral("600000"));
  EXPECT_EQ(grid.Cells(1, 0), QStringLiteral("1.2"));
  EXPECT_EQ(grid.Cells(2, 1), QString());
  EXPECT_EQ(grid.RowOf(QStringLiteral("000001")), 1);
  EXPECT_EQ(grid.RowOf(QStringLiteral("000002")), -1);
  for (const auto& [column, row] : {std::pair{3, 0}, {-1, 0}, {0, 2}, {0, -1}}) {
    EXPECT_EQ(grid.Cells(column, row), QString());
  }
}

TEST_F(AllStockData, TablesOfAnotherEditionAreForgottenAndTheCurrentOneIsAskedForAgain) {
  host_.dataCenter.dataEdition = QStringLiteral("a");
  g_AllStockData->Set_SZZS();
  role_->WriteAndReceive(kShenzhen, RiskFile({{"600000", "2", "0"}}));
  g_AllStockData->Set_SHZS();
  role_->WriteAndReceive(kShanghai, RiskFile({{"600000", "1", "0"}}));
  g_AllStockData->ForgetOtherEdition();
  EXPECT_EQ(role_->Requests().size(), 2U) << "the edition is the same";
  EXPECT_EQ(g_AllStockData->GetCurStringGrid().RowCount(), 1);

  host_.dataCenter.dataEdition = QStringLiteral("b");
  g_AllStockData->ForgetOtherEdition();
  EXPECT_EQ(g_AllStockData->GetCurStringGrid().RowCount(), 0);
  EXPECT_EQ(role_->Requests(), (std::vector<QString>{kShenzhen, kShanghai, kShanghai}));
  role_->WriteAndReceive(kShanghai, RiskFile({{"600000", "1.5", "0"}}));
  EXPECT_EQ(g_AllStockData->GetCurStringGrid().Cells(1, 0), QStringLiteral("1.5"));
  g_AllStockData->Set_SZZS();
  EXPECT_EQ(role_->Requests().back(), kShenzhen);
  g_AllStockData->ForgetOtherEdition();
  EXPECT_EQ(role_->Requests().size(), 4U);
}

TEST_F(AllStockData, TheFirstRowOfACodeIsFound) {
  g_AllStockData->Set_SHZS();
  role_->WriteAndReceive(kShanghai, RiskFile({{"600000", "1", "0"}, {"600000", "2", "0"}}));
  EXPECT_EQ(g_AllStockData->GetCurStringGrid().RowOf(QStringLiteral("600000")), 0);
}

TEST_F(AllStockData, AFailedDownloadIsAskedForAgain) {
  g_AllStockData->Set_SHZS();
  EXPECT_TRUE(g_AllStockData->IsDownloading());
  role_->Fail(kShanghai, TDSBAsynDownFileRole::kTimedOut);
  EXPECT_FALSE(g_AllStockData->IsDownloading());
  EXPECT_EQ(g_AllStockData->GetCurStringGrid().RowCount(), 0);
  g_AllStockData->Set_SHZS();
  EXPECT_EQ(role_->Requests(), (std::vector<QString>{kShanghai, kShanghai}));
}

TEST_F(AllStockData, ATableAskedForInVainIsLacking) {
  EXPECT_FALSE(g_AllStockData->LacksCurrentTable()) << "nobody wants it";
  g_AllStockData->Set_SHZS();
  EXPECT_FALSE(g_AllStockData->LacksCurrentTable()) << "on its way";
  role_->Fail(kShanghai, TDSBAsynDownFileRole::kNotFound);
  EXPECT_TRUE(g_AllStockData->LacksCurrentTable());
  g_AllStockData->Set_SHZS();
  role_->WriteAndReceive(kShanghai, "rubbish");
  EXPECT_TRUE(g_AllStockData->LacksCurrentTable());
  g_AllStockData->Set_SHZS();
  role_->WriteAndReceive(kShanghai, RiskFile({}));
  EXPECT_FALSE(g_AllStockData->LacksCurrentTable()) << "empty, but here";
  g_AllStockData->Set_SZZS();
  role_->Fail(kShenzhen, TDSBAsynDownFileRole::kNotFound);
  EXPECT_TRUE(g_AllStockData->LacksCurrentTable());
  g_AllStockData->Set_SHZS();
  role_->WriteAndReceive(kShanghai, RiskFile({{"600000", "1", "0"}}));
  EXPECT_FALSE(g_AllStockData->LacksCurrentTable());
}

TEST_F(AllStockData, AFileOfAnotherEditionIsNotTaken) {
  const auto file = [](const char* edition) {
    ResultSet table = DecodePacket(RiskFile({{"600000", "1.2", "0.01"}, {"000001", "0.8", "0"}}));
    const int column = table.AddColumn("edition", ColumnType::Text);
    if (*edition != '\0') table.SetText(0, column, edition);
    return EncodePacket(table);
  };
  host_.dataCenter.dataEdition = QStringLiteral("a1");
  g_AllStockData->Set_SHZS();
  role_->WriteAndReceive(kShanghai, file("b2"));
  EXPECT_TRUE(g_AllStockData->LacksCurrentTable());
  EXPECT_TRUE(g_AllStockData->IsCurrentFileOfOtherEdition());
  EXPECT_EQ(g_AllStockData->GetCurStringGrid().RowCount(), 0);
  ASSERT_EQ(host_.debug.Lines().size(), 1U);
  EXPECT_TRUE(host_.debug.Lines()[0].contains(QStringLiteral("SH.dat")));
  EXPECT_TRUE(host_.debug.Lines()[0].contains(QStringLiteral("是随另一份数据生成的")));
  for (const char* good : {"a1", ""}) {
    g_AllStockData->Set_SHZS();
    role_->WriteAndReceive(kShanghai, file(good));
    EXPECT_FALSE(g_AllStockData->LacksCurrentTable()) << good;
    EXPECT_FALSE(g_AllStockData->IsCurrentFileOfOtherEdition()) << good;
    EXPECT_EQ(g_AllStockData->GetCurStringGrid().RowCount(), 2) << good;
    host_.dataCenter.dataEdition += QStringLiteral("x");
    g_AllStockData->ForgetOtherEdition();
    role_->Fail(kShanghai, TDSBAsynDownFileRole::kNotFound);
  }
  host_.dataCenter.dataEdition = QString();
  g_AllStockData->Set_SHZS();
  role_->WriteAndReceive(kShanghai, file("b2"));
  EXPECT_FALSE(g_AllStockData->LacksCurrentTable()) << "what is not known is not compared";
}

TEST_F(AllStockData, DeviationsThatCouldNotBeReadAreReadAgain) {
  const QString statement =
      QStringLiteral("select distinct secucode,sylbzc from alg_stockstatistic where Hqtype = 0 order by secucode");
  for (int time = 0; time < 2; ++time) {
    host_.fakeUserData.FailNext(statement, Error(ErrorCategory::Busy, "locked"));
    EXPECT_THROW((void)g_AllStockData->GetBZCStringList(), Error);
    EXPECT_EQ(LinesOf(g_AllStockData->GetBZCStringList()), (QStringList{"1=0.25", "1600000=0.0125"}));
    g_AllStockData->SetIsNeedUpdate(true);
  }
}

TEST_F(AllStockData, ALateFileFillsTheTableOfItsOwnIndex) {
  g_AllStockData->Set_SHZS();
  g_AllStockData->Set_SZZS();
  role_->WriteAndReceive(kShanghai, RiskFile({{"600000", "1.5", "0"}}));
  EXPECT_EQ(g_AllStockData->GetCurStringGrid().RowCount(), 0);
  g_AllStockData->Set_SHZS();
  EXPECT_EQ(g_AllStockData->GetCurStringGrid().Cells(1, 0), QStringLiteral("1.5"));
  EXPECT_EQ(role_->Pending(), std::vector<QString>{kShenzhen});
}

TEST_F(AllStockData, TheCurrentTableIsAskedForOnceUntilItIsThere) {
  g_AllStockData->RequestCurrentTable();
  g_AllStockData->RequestCurrentTable();
  EXPECT_EQ(role_->Requests(), std::vector<QString>{kShanghai});
  role_->Fail(kShanghai, TDSBAsynDownFileRole::kTimedOut);
  g_AllStockData->RequestCurrentTable();
  EXPECT_EQ(role_->Requests(), (std::vector<QString>{kShanghai, kShanghai}));
  role_->WriteAndReceive(kShanghai, RiskFile({{"600000", "1.5", "0"}}));
  g_AllStockData->RequestCurrentTable();
  EXPECT_EQ(role_->Requests().size(), 2U);
  g_AllStockData->Set_HSZS();
  g_AllStockData->RequestCurrentTable();
  EXPECT_EQ(role_->Pending(), std::vector<QString>{kCsi300});
}

TEST_F(AllStockData, TellsOfEveryTableThatArrives) {
  int arrived = 0;
  QObject::connect(g_AllStockData.get(), &TAllStockData::TableArrived, [&] {
    ++arrived;
    EXPECT_EQ(g_AllStockData->GetCurStringGrid().Cells(1, 0), QStringLiteral("1.5"));
  });
  g_AllStockData->Set_SHZS();
  EXPECT_EQ(arrived, 0);
  role_->Fail(kShanghai, TDSBAsynDownFileRole::kTimedOut);
  g_AllStockData->Set_SHZS();
  role_->WriteAndReceive(kShanghai, "damaged");
  EXPECT_EQ(arrived, 0);
  g_AllStockData->Set_SHZS();
  role_->WriteAndReceive(kShanghai, RiskFile({{"600000", "1.5", "0"}}));
  EXPECT_EQ(arrived, 1);
}

TEST_F(AllStockData, ADamagedFileChangesNothing) {
  g_AllStockData->Set_SHZS();
  g_AllStockData->Set_SHZS();
  const QByteArray good = RiskFile({{"600000", "1.5", "0"}});
  role_->WriteAndReceive(kShanghai, good);
  EXPECT_EQ(g_AllStockData->GetBZCStringList()->Count(), 2);
  role_->WriteAndReceive(kShanghai, good.left(good.size() - 3));
  EXPECT_EQ(g_AllStockData->GetCurStringGrid().Cells(1, 0), QStringLiteral("1.5"));
  EXPECT_EQ(g_AllStockData->GetBZCStringList()->Count(), 2);
  EXPECT_FALSE(g_AllStockData->IsDownloading());
  ASSERT_EQ(host_.debug.Lines().size(), 1U);
  EXPECT_TRUE(host_.debug.Lines()[0].startsWith(QStringLiteral("Holdwise.bpl->Untcommon->ReceiveFile")));
}

TEST_F(AllStockData, DeviationsAreReadLazily) {
  EXPECT_EQ(Queries(sql::kDeviations).size(), 0U);
  EXPECT_EQ(LinesOf(g_AllStockData->GetBZCStringList()), (QStringList{"1=0.25", "1600000=0.0125"}));
  SetDeviations({{"1", "0.5"}});
  EXPECT_EQ(g_AllStockData->GetBZCStringList()->ValueOf(u"1"), QStringLiteral("0.25"));
  g_AllStockData->SetIsNeedUpdate(true);
  EXPECT_EQ(Queries(sql::kDeviations).size(), 1U);
  // Names that are gone keep their values.
  EXPECT_EQ(LinesOf(g_AllStockData->GetBZCStringList()), (QStringList{"1=0.5", "1600000=0.0125"}));
  EXPECT_EQ(LinesOf(g_AllStockData->GetBZCStringList()).size(), 2);
  EXPECT_EQ(Queries(sql::kDeviations).size(), 2U);
  g_AllStockData->SetIsGetBZCStringList(false);
  EXPECT_EQ(g_AllStockData->GetBZCStringList()->Count(), 2);
  EXPECT_EQ(Queries(sql::kDeviations).size(), 3U);
}

TEST_F(AllStockData, AnArrivingFileEmptiesTheDeviationsUntilTheirNextReading) {
  EXPECT_EQ(g_AllStockData->GetBZCStringList()->Count(), 2);
  g_AllStockData->Set_SHZS();
  role_->WriteAndReceive(kShanghai, RiskFile({{"600000", "1.5", "0"}}));
  EXPECT_EQ(g_AllStockData->GetBZCStringList()->Count(), 0);
  ReCalc();
  EXPECT_EQ(g_AllStockData->GetBZCStringList()->Count(), 2);
}

TEST_F(AllStockData, NothingComesAfterItsEnd) {
  g_AllStockData->Set_SHZS();
  g_AllStockData.reset();
  EXPECT_FALSE(role_->WriteAndReceive(kShanghai, RiskFile({{"600000", "1.5", "0"}})));
}

}  // namespace
}  // namespace holdwise
