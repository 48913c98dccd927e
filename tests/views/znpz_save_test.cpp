// SPDX-License-Identifier: MIT
// Saving a proposed portfolio, on a real database that fails where the test says so.
#include <QRegularExpression>

#include "common/grid/cell_geometry.h"
#include "znpz_fixture.h"

namespace holdwise::test {
namespace {

using namespace allocation;

class AllocationSaving : public AllocationView {
 protected:
  AllocationSaving() { bench.host.SetUserData(database); }
  ~AllocationSaving() override { bench.CloseMainFrame(); }  // it stands on `database`
  void OpenToSave() {
    OpenAll();
    calls_ = static_cast<int>(database.plan.Calls().size());
  }
  /// What has been asked of the database since, without what the shared objects read after a saving.
  [[nodiscard]] QStringList Calls() const {
    QStringList calls = database.plan.Calls().mid(calls_);
    const auto end = calls.indexOf(QRegularExpression(QStringLiteral("commit|rollback")));
    return calls.mid(0, end + 1);
  }
  [[nodiscard]] QStringList Headers() {
    return bench.database.Lines(
        "select COMNAME,ZHFG,MBSYL,FC,BETA,ZSCLOSEPRICE,ISFINISHED,EDITDATE,SAVEFLAG from alg_commain order by ID");
  }
  [[nodiscard]] QStringList Holdings() {
    return bench.database.Lines("select SecuCode,PZSL,PZBL,BUYPRICE from alg_comdetail order by ID");
  }
  [[nodiscard]] QStringList Tables() { return Headers() + Holdings(); }

  InjectingUserData database{bench.database.Service()};

 private:
  int calls_ = 0;
};

const QString kQuestion = QStringLiteral("是否保存当前智能配置组合?");

TEST_F(AllocationSaving, TheShownCandidateIsStoredAsItStands) {
  OpenToSave();
  PressSave(0);
  EXPECT_EQ(Boxes(), std::vector<Call>({{kQuestion, "提示", 1, 128}}));
  // 12.35 percent are stored as 0.12.
  EXPECT_EQ(Headers(), QStringList("稳健型20240603_5_1 稳健型 0.12 0.000121 0.75 3111.02 0 2024-05-29 1"));
  EXPECT_EQ(Holdings(), QStringList({"1000001 31200 0.75 12", "1600000 12500 0.25 10"}));
  EXPECT_EQ(Notice().text(), "已保存");
  EXPECT_TRUE(Notice().toolTip().contains("稳健型20240603_5_1"));
}

TEST_F(AllocationSaving, TheStatementsStandAsTheyAreAsked) {
  OpenToSave();
  PressSave(0);
  const QString id = bench.database.Lines("select ID from alg_commain").front();
  EXPECT_EQ(
      Calls(),
      QStringList(
          {"start", "select count(COMNAME) from alg_commain where COMNAME='稳健型20240603_5_1'",
           "select gen_id(ALG_ROWID_MAIN,1) from rdb$database",
           "insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values (gen_id(ALG_ROWID_DETAIL,1)," +
               id + ",1000001,31200,0.75,12.00)",
           "insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values (gen_id(ALG_ROWID_DETAIL,1)," +
               id + ",1600000,12500,0.25,10.00)",
           "insert into alg_commain (ID,ZHFG,MBSYL,FC,BETA,ZSCLOSEPRICE,ISFINISHED,EDITDATE,COMNAME,SAVEFLAG)values(" +
               id + ",'稳健型',0.12,0.000121,0.750000,3111.02,0,'2024-05-29','稳健型20240603_5_1',1)",
           "commit"}));
}

TEST_F(AllocationSaving, EveryExceptionLeavesNothingAndIsLoggedAndSaid) {
  OpenToSave();
  constexpr int kCalls = 7;  // start, name, id, two holdings, header, commit
  for (int number = 0; number < kCalls; ++number) {
    database.plan.FailCall(number);
    PressSave(0);
    EXPECT_TRUE(database.plan.HasFailed()) << number;
    EXPECT_EQ(Tables(), QStringList()) << number;
    EXPECT_FALSE(database.InTransaction()) << number;
    EXPECT_TRUE(LastLog().contains("->Znpz->strngrd 发生错误!错误信息:injected failure")) << LastLog().toStdString();
    EXPECT_EQ(Notice().text(), "没有保存") << number;
  }
  EXPECT_EQ(Boxes().size(), static_cast<std::size_t>(kCalls)) << "the question only";
  database.plan.FailCall(kCalls);
  PressSave(0);
  EXPECT_EQ(Headers().size(), 1);
}

TEST_F(AllocationSaving, EveryRefusedInsertionIsTakenBack) {
  for (const int number : {3, 4, 5}) {
    if (frame == nullptr) OpenToSave();
    database.plan.FailCall(number, FailurePlan::Kind::Refuses);
    PressSave(0);
    EXPECT_TRUE(database.plan.HasFailed()) << number;
    EXPECT_EQ(Tables(), QStringList()) << number;
    EXPECT_FALSE(database.InTransaction()) << number;
    const QStringList calls = database.plan.Calls();
    EXPECT_TRUE(calls[calls.size() - 2].startsWith("delete from alg_comdetail where MAINID = ")) << number;
    EXPECT_EQ(calls.last(), "commit");
    EXPECT_EQ(Notice().text(), "没有保存");
  }
  PressSave(0);
  EXPECT_EQ(Headers().size(), 1) << "the view stays usable";
  EXPECT_EQ(bench.database.Lines("select gen_id(ALG_ROWID_MAIN,0) from rdb$database").front(),
            bench.database.Lines("select ID from alg_commain").front())
      << "values of the generator are not given back";
}

TEST_F(AllocationSaving, TheSameCandidateTwiceOnADayIsRefused) {
  OpenToSave();
  PressSave(0);
  const QStringList before = Tables();
  PressSave(0);
  ASSERT_EQ(Boxes().size(), 3U);
  EXPECT_EQ(Boxes()[2], (Call{"组合表现已经存在该组合", "提示", 0, 128}));
  EXPECT_EQ(Tables(), before);
  EXPECT_FALSE(database.InTransaction());
  bench.host.clock.now = QDateTime(QDate(2024, 6, 4), QTime(10, 0));
  PressSave(0);
  EXPECT_EQ(Headers().size(), 2) << "another day, another name";
}

TEST_F(AllocationSaving, ANoIsANo) {
  OpenToSave();
  bench.host.messageBoxes.answers = {2};
  PressSave(0);
  EXPECT_EQ(Boxes().size(), 1U);
  EXPECT_EQ(Calls(), QStringList());
}

TEST_F(AllocationSaving, ACandidateThatCannotBeBoughtIsNotSaved) {
  files[kRemote + "zh_2.dat"] = TwoCandidates();
  files[kRemote + "zh_5_1.dat"] = CompositionFile({{"600519", 0.6}, {"000002", 0.3}, {"300750", 0.1}});
  OpenToSave();
  Apply("5");
  PressSave(0);
  // No colon, unlike the message when the holdings come.
  EXPECT_EQ(Boxes(), std::vector<Call>({{"您的资金量无法配置当前组合\"贵州茅台\",\"已退市\"", "投资组合", 0, 128}}));
  EXPECT_EQ(Tables(), QStringList());
}

TEST_F(AllocationSaving, BeforeTheHoldingsHaveComeNothingIsAsked) {
  OpenAll();
  PressSave(1);  // selects the row, whose holdings are asked for
  EXPECT_TRUE(Boxes().empty());
  PressSave(1);
  EXPECT_TRUE(Boxes().empty());
  Serve();
  PressSave(1);
  EXPECT_EQ(Headers(), QStringList("进取型20240603_5_2 进取型 0.2 0.000456 1.25 3111.02 0 2024-05-29 1"));
}

TEST_F(AllocationSaving, OnlyTheLeftButtonOnThePictureSaves) {
  OpenAll();
  const QRect cell = portfolios->CellRect(kOperation, 0);
  const QRect picture = PictureBox(cell, QSize(20, 20));
  QTest::mouseMove(portfolios->viewport(), picture.center());
  EXPECT_EQ(portfolios->viewport()->cursor().shape(), Qt::PointingHandCursor);
  QTest::mouseClick(portfolios->viewport(), Qt::RightButton, {}, picture.center());
  EXPECT_TRUE(Boxes().empty());
  const QPoint beside(cell.left() + 2, cell.center().y());
  QTest::mouseMove(portfolios->viewport(), beside);
  QTest::mouseClick(portfolios->viewport(), Qt::LeftButton, {}, beside);
  EXPECT_TRUE(Boxes().empty());
  QTest::mouseMove(portfolios->viewport(), picture.center());
  QTest::mouseClick(portfolios->viewport(), Qt::LeftButton, {}, picture.center());
  EXPECT_EQ(Boxes().size(), 1U);
}

TEST_F(AllocationSaving, ThePressedPictureShowsUntilTheAnswer) {
  OpenAll();
  const auto colorOf = [this] {
    return portfolios->viewport()->grab().toImage().pixelColor(portfolios->CellRect(kOperation, 0).center());
  };
  EXPECT_EQ(colorOf(), Color("Qm_SaveBgPic"));
  QColor whileAsked;
  bench.host.messageBoxes.whileAsking = [&] { whileAsked = colorOf(); };
  bench.host.messageBoxes.answers = {2};
  PressSave(0);
  EXPECT_EQ(whileAsked, Color("Qm_SaveMovePic"));
  EXPECT_EQ(colorOf(), Color("Qm_SaveBgPic"));
  bench.host.theme.Switch();
  bench.mainFrame->MakeSkin();
  EXPECT_EQ(colorOf(), Color("Qm_SaveBgPic")) << "in the other theme";
}

TEST_F(AllocationSaving, FFourSavesTheCurrentRow) {
  OpenAll();
  portfolios->setFocus();
  QTest::keyClick(portfolios, Qt::Key_F4, Qt::ControlModifier);
  EXPECT_TRUE(Boxes().empty());
  QTest::keyClick(portfolios, Qt::Key_F4);
  EXPECT_EQ(Headers().size(), 1);
}

TEST_F(AllocationSaving, AStyleWithAQuoteBreaksItsStatementAndWritesNothing) {
  files[kRemote + "zh_5.dat"] = CandidateList({{"it's", 0.1, 0.1, 1, "zh_5_1.dat"}});
  OpenToSave();
  PressSave(0);
  EXPECT_EQ(Tables(), QStringList());
  EXPECT_FALSE(database.InTransaction());
  EXPECT_EQ(Notice().text(), "没有保存");
}

TEST_F(AllocationSaving, AnEmptyStyleIsABlank) {
  files[kRemote + "zh_5.dat"] = CandidateList({{"", 0.1, 0.1, 1, "zh_5_1.dat"}});
  OpenToSave();
  PressSave(0);
  EXPECT_EQ(bench.database.Lines("select char_length(ZHFG),COMNAME from alg_commain"), QStringList("1 20240603_5_1"));
}

TEST_F(AllocationSaving, TheViewMayGoWhileItAsks) {
  OpenToSave();
  bench.host.messageBoxes.whileAsking = [this] { bench.CloseMainFrame(); };
  const QPoint at = portfolios->CellRect(kOperation, 0).center();
  QTest::mouseMove(portfolios->viewport(), at);
  QTest::mousePress(portfolios->viewport(), Qt::LeftButton, {}, at);
  EXPECT_EQ(bench.mainFrame, nullptr);
  EXPECT_EQ(Tables(), QStringList());
}

TEST_F(AllocationSaving, HoldingsThatChangeWhileItAsksAreNotSaved) {
  OpenToSave();
  bench.host.messageBoxes.whileAsking = [this] {
    bench.host.messageBoxes.whileAsking = nullptr;
    portfolios->SelectCell(0, 1);
  };
  PressSave(0);
  EXPECT_EQ(Tables(), QStringList());
}

TEST_F(AllocationSaving, OtherDataThatComeWhileItAsksAreNotSaved) {
  OpenToSave();
  for (const bool isAnswered : {true, false}) {
    bench.host.messageBoxes.whileAsking = [this, isAnswered] {
      bench.host.messageBoxes.whileAsking = nullptr;
      Configure();
      if (isAnswered) Serve();
    };
    PressSave(0);
    EXPECT_EQ(Tables(), QStringList()) << isAnswered;
    Serve();
  }
  PressSave(0);
  EXPECT_NE(Tables(), QStringList());
}

}  // namespace
}  // namespace holdwise::test
