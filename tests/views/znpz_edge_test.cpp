// SPDX-License-Identifier: MIT
// The smart allocation when files are missing, damaged, hostile or late, and when the host goes away.
#include <QTest>

#include "znpz_fixture.h"

namespace holdwise::test {
namespace {

using namespace allocation;

class AllocationEdges : public AllocationView {};

TEST_F(AllocationEdges, WithoutFilesThePageSaysWhatToDo) {
  files.clear();
  OpenAll();
  EXPECT_TRUE(portfolios->IsEmpty());
  EXPECT_EQ(EmptyText(*portfolios), "没有候选组合：没有取得文件 zh_5.dat（没有找到）。\n请更新数据目录，再按“配 置”。");
  EXPECT_TRUE(frame->IsSettled());
  EXPECT_EQ(frame->Notice().hint, QString()) << "nobody has asked for proposals yet";
  Configure();
  Serve();
  EXPECT_TRUE(frame->Notice().hint.contains("智能配置没有候选组合"));
  files[kRemote + "zh_5.dat"] = TwoCandidates();
  files[kRemote + "zh_5_1.dat"] = CompositionFile({{"600000", 1}});
  Configure();
  Serve();
  EXPECT_EQ(Parts(), QStringList("600000 浦发银行 50000 1"));
  EXPECT_EQ(frame->Notice().hint, QString());
}

TEST_F(AllocationEdges, ShownAgainItAsksAgainForWhatDidNotCome) {
  const auto kept = std::exchange(files, {});
  OpenAll();
  files = kept;
  bench.ClickNode(1002);
  bench.ClickNode(1001);
  Serve();
  EXPECT_EQ(portfolios->RowCount(), 2);
  const auto before = Asked().size();
  bench.ClickNode(1002);
  bench.ClickNode(1001);
  EXPECT_EQ(Asked().size(), before) << "it has everything";
}

TEST_F(AllocationEdges, ReplacedDataAreAskedForAgainWithNewPrices) {
  bench.host.dataCenter.dataEdition = "one";
  OpenAll();
  EXPECT_EQ(Parts().last(), "600000 浦发银行 12500 0.25");
  bench.host.codeNums.Add({"600000", "浦发银行", "银行", 1, {12.34, 10}});
  bench.host.dataCenter.dataEdition = "two";
  bench.mainFrame->DataChanged();
  ASSERT_TRUE(QTest::qWaitFor([this] { return Role(2)->Requests().size() == 2; }));
  Serve();
  EXPECT_EQ(Parts().last(), "600000 浦发银行 10100 0.25");
  EXPECT_EQ(Role(2)->Requests().size(), 2U);
}

TEST_F(AllocationEdges, ADamagedListIsLoggedAndSaid) {
  OpenAll();
  for (const QByteArray& bad : {QByteArray("no packet"), QByteArray(), PoolFile({{"600000", 1}})}) {
    files[kRemote + "zh_5.dat"] = bad;
    Configure();
    Serve();
    EXPECT_TRUE(portfolios->IsEmpty());
    EXPECT_TRUE(holdings->IsEmpty()) << "nothing of the list before";
    EXPECT_TRUE(EmptyText(*portfolios).contains("zh_5.dat 不能读取（原因见日志）"));
    EXPECT_TRUE(LastLog().startsWith("Holdwise.bpl->Znpz->InfoAsynDownFileRole1ReciveAFile 发生错误!错误信息:"));
  }
  files[kRemote + "zh_5.dat"] = TwoCandidates();
  Configure();
  Serve();
  EXPECT_EQ(portfolios->RowCount(), 2);
}

TEST_F(AllocationEdges, FilesMadeWithOtherDataAreRefused) {
  const QByteArray composition = files[kRemote + "zh_5_1.dat"];
  bench.host.dataCenter.dataEdition = "one";
  files[kRemote + "zh_5.dat"] = MadeWith("two", TwoCandidates());
  OpenAll();
  EXPECT_TRUE(portfolios->IsEmpty());
  EXPECT_EQ(EmptyText(*portfolios),
            "没有候选组合：文件 zh_5.dat 是随另一份数据生成的。\n请重新启动终端；仍然如此时，请重新生成数据目录。");
  files[kRemote + "zh_5.dat"] = MadeWith("one", TwoCandidates());
  files[kRemote + "zh_5_1.dat"] = MadeWith("two", composition);
  Configure();
  Serve();
  EXPECT_EQ(portfolios->RowCount(), 2);
  EXPECT_TRUE(holdings->IsEmpty());
  EXPECT_TRUE(EmptyText(*holdings).contains("zh_5_1.dat 是随另一份数据生成的"));
  PressSave(0);
  EXPECT_TRUE(Boxes().empty());
  files[kRemote + "zh_5_1.dat"] = MadeWith("one", composition);
  Configure();
  Serve();
  EXPECT_EQ(holdings->RowCount(), 2);
}

TEST_F(AllocationEdges, AnEmptyListHasNoCandidate) {
  files[kRemote + "zh_5.dat"] = CandidateList({});
  OpenAll();
  EXPECT_TRUE(portfolios->IsEmpty());
  EXPECT_TRUE(EmptyText(*portfolios).contains("没有候选组合"));
  EXPECT_EQ(frame->HoldingsGrid().portfolioIds, QStringList());
  EXPECT_TRUE(frame->IsSettled());
}

TEST_F(AllocationEdges, ACompositionThatDoesNotComeIsSaidAndCannotBeSaved) {
  files.erase(kRemote + "zh_5_1.dat");
  OpenAll();
  EXPECT_TRUE(holdings->IsEmpty());
  EXPECT_TRUE(EmptyText(*holdings).contains("没有取得文件 zh_5_1.dat（没有找到）"));
  EXPECT_TRUE(frame->Notice().hint.contains("智能配置的组合 1：没有取得文件 zh_5_1.dat"));
  PressSave(0);
  EXPECT_TRUE(Boxes().empty());
  Click(*portfolios, kStyle, 1);
  Serve();
  EXPECT_EQ(holdings->RowCount(), 2);
}

TEST_F(AllocationEdges, ACompositionWithoutRowsIsSaid) {
  files[kRemote + "zh_5_1.dat"] = CompositionFile({});
  OpenAll();
  EXPECT_TRUE(holdings->IsEmpty());
  EXPECT_TRUE(EmptyText(*holdings).contains("这个候选组合没有成分股"));
  EXPECT_TRUE(frame->Notice().hint.contains("智能配置的组合 1：这个候选组合没有成分股"));
  PressSave(0);
  EXPECT_TRUE(Boxes().empty());
}

TEST_F(AllocationEdges, WeightsOfMoreThanTheWholeAreSaid) {
  files[kRemote + "zh_5_1.dat"] = CompositionFile({{"600000", 1}, {"000001", 0.5}});
  OpenAll();
  EXPECT_TRUE(frame->Notice().hint.contains("智能配置的组合 1：比例之和是 150.00%，超过 100%"));
}

TEST_F(AllocationEdges, ACapitalTableWithoutRowsIsNotCalledDamaged) {
  PutFile("ZNPZ.dat", CapitalTable({}));
  OpenAll();
  Configure();
  Serve();
  EXPECT_TRUE(EmptyText(*portfolios).contains("资金量表 ZNPZ.dat 没有给出这个资金量的股票数"));
}

TEST_F(AllocationEdges, ADamagedCompositionIsLoggedAndSaid) {
  OpenAll();
  for (const QByteArray& bad : {QByteArray("no packet"), CompositionFile({{"600000", 1.5}}), TwoCandidates()}) {
    files[kRemote + "zh_5_1.dat"] = bad;
    Configure();
    Serve();
    EXPECT_TRUE(holdings->IsEmpty());
    EXPECT_TRUE(EmptyText(*holdings).contains("zh_5_1.dat 不能读取（原因见日志）"));
    PressSave(0);
    EXPECT_TRUE(Boxes().empty());
  }
}

TEST_F(AllocationEdges, AListIsNotMixedWithHoldingsOfOtherProposals) {
  const auto proposals = [](const char* text, const QByteArray& file) { return Naming("proposals", text, file); };
  const QByteArray first = files[kRemote + "zh_5_1.dat"];
  const QByteArray second = files[kRemote + "zh_5_2.dat"];
  files[kRemote + "zh_5.dat"] = proposals("one", TwoCandidates());
  files[kRemote + "zh_5_1.dat"] = proposals("one", first);
  OpenAll();
  EXPECT_EQ(holdings->RowCount(), 2);
  for (const char* made : {"two", ""}) {
    files[kRemote + "zh_5_2.dat"] = proposals(made, second);
    Click(*portfolios, kStyle, 1);
    Serve();
    EXPECT_TRUE(holdings->IsEmpty()) << made;
    EXPECT_EQ(EmptyText(*holdings), "没有成分股：候选组合已经重新生成。\n请再按“配 置”。");
    EXPECT_TRUE(frame->Notice().hint.contains("智能配置的组合 2：候选组合已经重新生成"));
    PressSave(1);
    EXPECT_TRUE(Boxes().empty());
    Click(*portfolios, kStyle, 0);
    Serve();
  }
  files[kRemote + "zh_5.dat"] = proposals("two", TwoCandidates());
  files[kRemote + "zh_5_1.dat"] = proposals("two", first);
  Configure();
  Serve();
  EXPECT_EQ(holdings->RowCount(), 2);
}

TEST_F(AllocationEdges, AHostileFileNameIsRefusedAndTheViewStaysUsable) {
  const QString nul = QStringLiteral("zh_5_1") + QChar(0) + ".dat";
  const QStringList names{"..",
                          "../../etc/zh_5_1.dat",
                          "..\\..\\zh_5_1.dat",
                          "/etc/passwd_a_b",
                          "C:\\a_b_c",
                          nul,
                          QString("_").repeated(10000),
                          "zh_5.dat",
                          "",
                          "plain"};
  std::vector<CandidateLine> lines;
  for (const QString& name : names) lines.push_back({"恶意", 0.1, 0.1, 1, name});
  lines.push_back({"稳健型", 0.1, 0.1, 1, "zh_5_1.dat"});
  files[kRemote + "zh_5.dat"] = CandidateList(lines);
  OpenAll();
  for (int row = 0; row < names.size(); ++row) {
    const auto before = bench.host.debug.Lines().size();
    // The first one is selected; it is selected again from another row.
    Click(*portfolios, kStyle, row == 0 ? 1 : row);
    if (row == 0) Click(*portfolios, kStyle, 0);
    EXPECT_GT(bench.host.debug.Lines().size(), before) << row;
    EXPECT_TRUE(LastLog().startsWith("Holdwise.bpl->Znpz->strngrdSelectCell 发生错误!错误信息:")) << row;
    EXPECT_TRUE(holdings->IsEmpty());
    EXPECT_FALSE(EmptyText(*holdings).isEmpty()) << row;
    EXPECT_TRUE(frame->Notice().hint.contains(QStringLiteral("智能配置的组合 %1：").arg(row + 1))) << row;
    PressSave(row);
    EXPECT_TRUE(frame->IsSettled());
  }
  EXPECT_TRUE(Boxes().empty());
  for (const QString& asked : Asked()) EXPECT_EQ(asked, kRemote + "zh_5.dat");
  Click(*portfolios, kStyle, static_cast<int>(names.size()));
  Serve();
  EXPECT_EQ(holdings->RowCount(), 2);
}

TEST_F(AllocationEdges, ALateCompositionOfAnotherCandidateIsNotShown) {
  OpenAll();
  Click(*portfolios, kStyle, 1);
  Click(*portfolios, kStyle, 0);
  ASSERT_EQ(Role(1)->Pending(), std::vector<QString>({kRemote + "zh_5_2.dat", kRemote + "zh_5_1.dat"}));
  Answer(*Role(1), kRemote + "zh_5_2.dat");
  EXPECT_TRUE(holdings->IsEmpty());
  PressSave(0);
  EXPECT_TRUE(Boxes().empty()) << "the holdings of the other candidate would be stored";
  Serve();
  EXPECT_EQ(Parts().last(), "600000 浦发银行 12500 0.25");
}

TEST_F(AllocationEdges, ALateListOfAnotherCapitalIsNotShown) {
  files[kRemote + "zh_2.dat"] = CandidateList({{"两只", 0.1, 0.1, 1, "zh_2_1.dat"}});
  files[kRemote + "zh_2_1.dat"] = CompositionFile({{"600000", 1}});
  OpenAll();
  Configure();
  Type("5");
  Configure();
  Answer(*Role(1), kRemote + "zh_5.dat");
  EXPECT_TRUE(portfolios->IsEmpty());
  Serve();
  EXPECT_EQ(Shown(*portfolios, 2), QStringList("1 两只"));
  EXPECT_EQ(Parts(), QStringList("600000 浦发银行 5000 1"));
}

TEST_F(AllocationEdges, AFileWithoutAMarkIsNotLoadedAndFillsTheListFromWhatThereIs) {
  OpenAll();
  Role(1)->ReceiveFileUnasked(kRemote + "plain.dat");
  EXPECT_TRUE(LastLog().contains("->InfoAsynDownFileRole1ReciveAFile 发生错误!")) << "a composition is no list";
  EXPECT_EQ(portfolios->RowCount(), 2) << "what was there stays";
  Configure();
  Answer(*Role(1), kRemote + "zh_5.dat");
  Role(1)->ReceiveFileUnasked(kRemote + "plain.dat");
  EXPECT_EQ(portfolios->RowCount(), 2);
  Serve();
  EXPECT_EQ(holdings->RowCount(), 2);
}

TEST_F(AllocationEdges, ThePoolMayComeAsAStream) {
  OpenOnly();
  Role(2)->ReceiveStream(kRemote + "StockPool.dat", files[kRemote + "StockPool.dat"]);
  EXPECT_EQ(g_StockClosePrice->Prices()->ValueOf(u"600000"), "10.00");
  EXPECT_EQ(Asked().size(), 2) << "the allocation runs again";
}

TEST_F(AllocationEdges, ADamagedPoolLeavesTheDataCentresPrices) {
  files[kRemote + "StockPool.dat"] = "no packet";
  OpenAll();
  EXPECT_EQ(Parts().last(), "600000 浦发银行 12500 0.25");
  const auto lines = bench.host.debug.Lines();
  EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [](const QString& line) {
    return line.startsWith("Holdwise.bpl->Znpz->InfoAsynDownFileRole2ReciveAFile 发生错误!");
  }));
}

TEST_F(AllocationEdges, RepliesAfterTheEndAreIgnored) {
  OpenOnly();
  const auto first = Role(1);
  const auto second = Role(2);
  bench.CloseMainFrame();
  EXPECT_FALSE(first->ReceiveFile(kRemote + "zh_5.dat"));
  EXPECT_FALSE(second->ReceiveFile(kRemote + "StockPool.dat"));
}

TEST_F(AllocationEdges, TheMainFrameMayGoWhileAShortfallIsTold) {
  files[kRemote + "zh_5_2.dat"] = CompositionFile({{"300750", 1}});
  OpenAll();
  Click(*portfolios, kStyle, 1);
  bench.host.messageBoxes.whileAsking = [this] { bench.CloseMainFrame(); };
  Answer(*Role(1), kRemote + "zh_5_2.dat");
  EXPECT_EQ(bench.mainFrame, nullptr);
}

TEST_F(AllocationEdges, AnotherAllocationMayStartWhileAShortfallIsTold) {
  files[kRemote + "zh_5_2.dat"] = CompositionFile({{"300750", 1}});
  OpenAll();
  Click(*portfolios, kStyle, 1);
  bench.host.messageBoxes.whileAsking = [this] {
    bench.host.messageBoxes.whileAsking = nullptr;
    EXPECT_FALSE(frame->IsSettled());
    Configure();
  };
  Serve();
  EXPECT_EQ(Parts().last(), "600000 浦发银行 12500 0.25");
  PressSave(0);
  EXPECT_EQ(Boxes().back().text, "是否保存当前智能配置组合?");
}

}  // namespace
}  // namespace holdwise::test
