// SPDX-License-Identifier: MIT
// The smart allocation, from what it asks for to what its grids show. Quantities are worked out by hand.
#include "znpz_fixture.h"

namespace holdwise::test {
namespace {

using namespace allocation;

TEST_F(AllocationView, OpeningAsksForThePoolAndForTheDefaultCapital) {
  OpenOnly();
  EXPECT_EQ(Role(2)->Requests(), std::vector<QString>{kRemote + "StockPool.dat"});
  EXPECT_EQ(Asked(), QStringList{kRemote + "zh_5.dat"}) << "5 stocks for 50";
  EXPECT_EQ(Entry().text(), "50");
  EXPECT_FALSE(frame->IsSettled());
  Serve();
  EXPECT_TRUE(frame->IsSettled());
  EXPECT_EQ(Asked().count(kRemote + "zh_5.dat"), 2) << "again when the pool has come";
  EXPECT_EQ(Asked().last(), kRemote + "zh_5_1.dat");
}

TEST_F(AllocationView, CandidatesAndHoldingsStandInTheirColumns) {
  OpenAll();
  EXPECT_EQ(Shown(*portfolios, 7), QStringList({"1 稳健型 12.35 0.000121 0.750000  zh_5_1.dat",
                                                "2 进取型 20.00 0.000456 1.250000  zh_5_2.dat"}));
  // 375,000 at 12 are 31,250 shares; 125,000 at 10 are 12,500.
  EXPECT_EQ(Parts(), QStringList({"000001 平安银行 31200 0.75", "600000 浦发银行 12500 0.25"}));
  EXPECT_EQ(portfolios->ToGridText().titles,
            QStringList({"序号", "组合风格", "目标收益率(%)", "方差", "Beta系数", "操作", ""}));
  EXPECT_TRUE(portfolios->isColumnHidden(kFileName));
  EXPECT_TRUE(Boxes().empty());
}

TEST_F(AllocationView, TheTitleOfTheTargetHasTwoLines) {
  OpenAll();
  QStringList labels;
  for (const QLabel* label : frame->findChildren<QLabel*>()) labels << label->text();
  EXPECT_TRUE(labels.contains("目标收\n益率(%)"));
}

TEST_F(AllocationView, AnotherCandidateShowsItsHoldings) {
  OpenAll();
  Click(*portfolios, kStyle, 1);
  EXPECT_TRUE(holdings->IsEmpty()) << "until they have come";
  Serve();
  // 200,000 at 8 are 25,000; 300,000 at 1710 are 175 shares.
  EXPECT_EQ(Parts(), QStringList({"600519 贵州茅台 100 0.6", "000002 万科A 25000 0.4"}));
  const auto before = Asked().size();
  Click(*portfolios, kStyle, 1);
  EXPECT_EQ(Asked().size(), before) << "the current row";
  Click(*portfolios, kStyle, 0);
  EXPECT_EQ(Asked().last(), kRemote + "zh_5_1.dat");
}

TEST_F(AllocationView, ArrowKeysGoFromCandidateToCandidate) {
  OpenAll();
  portfolios->setFocus();
  QTest::keyClick(portfolios, Qt::Key_Down);
  EXPECT_EQ(Asked().last(), kRemote + "zh_5_2.dat");
}

TEST_F(AllocationView, ACapitalThatIsNoneEmptiesBothGridsAndAsksForNothing) {
  OpenAll();
  const auto before = Asked().size();
  for (const char* text : {"", ".", "..", ".0"}) {
    Type(QString::fromLatin1(text));
    Configure();
    EXPECT_TRUE(portfolios->IsEmpty()) << text;
    EXPECT_TRUE(holdings->IsEmpty()) << text;
  }
  EXPECT_EQ(Asked().size(), before);
  EXPECT_TRUE(frame->IsSettled());
  Apply("50");
  EXPECT_FALSE(portfolios->IsEmpty());
}

TEST_F(AllocationView, TheCapitalChoosesTheFile) {
  OpenAll();
  for (const auto& [capital, file] : {std::pair{"10", "zh_2.dat"},
                                      {"10.01", "zh_3.dat"},
                                      {"100", "zh_9.dat"},
                                      {"100.5", "zh_10.dat"},
                                      {"300", "zh_10.dat"}}) {
    Type(QString::fromLatin1(capital));
    Configure();
    EXPECT_EQ(Asked().last(), kRemote + file) << capital;
    Serve();
  }
}

TEST_F(AllocationView, TheCapitalTableGoesBeforeTheFixedOneAndIsReadOnce) {
  PutFile("ZNPZ.dat", CapitalTable({{3, 20}, {6, 50}, {9, 100}}));
  OpenAll();
  EXPECT_EQ(Asked().first(), kRemote + "zh_6.dat");
  PutFile("ZNPZ.dat", CapitalTable({{4, 1000}}));
  for (const auto& [capital, file] : {std::pair{"20", "zh_3.dat"}, {"20.5", "zh_6.dat"}, {"500", "zh_9.dat"}}) {
    Apply(QString::fromLatin1(capital));
    EXPECT_TRUE(Asked().contains(kRemote + file)) << capital;
  }
  EXPECT_FALSE(Asked().contains(kRemote + "zh_4.dat"));
}

TEST_F(AllocationView, ACapitalTableThatComesLaterIsTakenThen) {
  OpenAll();
  PutFile("ZNPZ.dat", CapitalTable({{7, 1000}}));
  Apply("50");
  EXPECT_EQ(Asked().last(), kRemote + "zh_7.dat");
}

TEST_F(AllocationView, ACapitalTableThatOtherDataHaveLeftIsNotUsed) {
  bench.host.dataCenter.dataEdition = "one";
  PutFile("ZNPZ.dat", MadeWith("two", CapitalTable({{3, 1000}})));
  OpenAll();
  EXPECT_EQ(Asked().first(), kRemote + "zh_5.dat") << "the fixed table's count for 50";
  PutFile("ZNPZ.dat", MadeWith("one", CapitalTable({{7, 1000}})));
  Apply("50");
  EXPECT_EQ(Asked().last(), kRemote + "zh_7.dat");
}

TEST_F(AllocationView, ADamagedCapitalTableIsLoggedAndSaid) {
  PutFile("ZNPZ.dat", "no packet");
  OpenAll();
  EXPECT_EQ(Asked().first(), kRemote + "zh_0.dat");
  const auto lines = bench.host.debug.Lines();
  EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [](const QString& line) {
    return line.startsWith("Holdwise.bpl->ZNZP->CalcFileNum 发生错误!错误信息:");
  }));
  QStringList texts;
  for (const QLabel* label : portfolios->findChildren<QLabel*>()) texts << label->text();
  EXPECT_TRUE(texts.join("").contains("ZNPZ.dat 不能读取")) << texts.join("").toStdString();
  EXPECT_TRUE(Boxes().empty());
}

TEST_F(AllocationView, PricesOfThePoolGoBeforeTheDataCentres) {
  OpenOnly();
  // The market is open: the pool's prices come by the bus, and until then the data centre's stand in.
  bench.host.dataCenter.isOpen = true;
  Serve();
  EXPECT_EQ(Parts().last(), "600000 浦发银行 12500 0.25");
  const auto bus = bench.host.DataDown(QStringLiteral("FDSBVexDownDataRole"));
  EXPECT_EQ(bus->Commands(), std::vector<QString>{"0|01600000,02000001"});
  bus->Deliver(PriceReply({{QStringLiteral("600000"), {1234, 2}}}));
  Apply("50");
  EXPECT_EQ(Parts().last(), "600000 浦发银行 10100 0.25") << "125,000 at 12.34: 10129 shares";
}

TEST_F(AllocationView, WithoutAPriceNothingIsBoughtAndItIsSaid) {
  files[kRemote + "zh_5_2.dat"] = CompositionFile({{"000002", 0.4}, {"300750", 0.6}});
  OpenAll();
  Click(*portfolios, kStyle, 1);
  Serve();
  EXPECT_EQ(Parts(), QStringList({"300750 已退市 0 0.6", "000002 万科A 25000 0.4"}));
  EXPECT_EQ(Boxes(), std::vector<Call>({{"您的资金量无法配置当前组合:\"已退市\"", "投资组合", 0, 128}}));
  EXPECT_TRUE(holdings->RemarkOf({kQuantity, 0}).contains("没有取得价格"));
  EXPECT_EQ(Notice().text(), "1 只股票没有价格");
  EXPECT_TRUE(frame->Notice().hint.contains("没有价格，数量按 0 计"));
}

TEST_F(AllocationView, AShortfallIsToldFromTheSecondCompositionOn) {
  files[kRemote + "zh_2.dat"] = TwoCandidates();
  files[kRemote + "zh_5_1.dat"] = CompositionFile({{"600519", 0.6}, {"600000", 0.4}});
  OpenAll();
  Apply("5");
  EXPECT_EQ(Parts(), QStringList({"600519 贵州茅台 0 0.6", "600000 浦发银行 2000 0.4"}));
  EXPECT_TRUE(Boxes().empty()) << "the first one is not told";
  EXPECT_TRUE(holdings->RemarkOf({kQuantity, 0}).contains("不够买一手")) << "but marked";
  EXPECT_EQ(holdings->RemarkOf({kQuantity, 1}), QString());
  Click(*portfolios, kStyle, 1);
  Serve();
  // 2500 at 8; 3000 at 1710 is one share.
  EXPECT_EQ(Boxes(), std::vector<Call>({{"您的资金量无法配置当前组合:\"贵州茅台\"", "投资组合", 0, 128}}));
  Click(*portfolios, kStyle, 0);
  Serve();
  EXPECT_EQ(Boxes().size(), 2U);
}

TEST_F(AllocationView, WhatRoundingLeavesIsSaidAndExported) {
  OpenAll();
  // 31,200 at 12 = 374,400 and 12,500 at 10 = 125,000 of 500,000: 600 are left, 0.7488 instead of 0.75.
  EXPECT_EQ(Notice().text(), "剩余 600.00 元，最大误差 0.12%");
  const GridText table = holdings->ToGridText();
  EXPECT_EQ(table.titles, QStringList({"代码", "名称", "数量(股)", "比例(%)", "价格(元)", "比例误差(%)", "剩余资金(元)",
                                       "最大比例误差(%)"}));
  EXPECT_EQ(table.hidden, std::vector<bool>({false, false, false, false, true, true, true, true}));
  EXPECT_EQ(table.rows[0].mid(4), QStringList({"12.00", "-0.1200", "600.00", "0.1200"}));
  EXPECT_EQ(table.rows[1].mid(4), QStringList({"10.00", "0.0000", "600.00", "0.1200"}));
  QTest::mouseMove(holdings->viewport(), holdings->CellRect(kQuantity, 0).center());
  EXPECT_EQ(QToolTip::text(),
            "31200 股 × 12.00 元 = 374400.00 元，占 50 万元的 74.88%；目标 75.00%，误差 -0.12 个百分点");
}

TEST_F(AllocationView, WeightsAreDrawnAndCopiedInPercent) {
  OpenAll();
  const QStringList copied = holdings->ToGridText().rows.front();
  EXPECT_EQ(copied[kWeight], "75.00");
  EXPECT_EQ(holdings->Cells(kWeight, 0), "0.75");
  EXPECT_EQ(copied[kCode], "000001");
}

TEST_F(AllocationView, WhatIsShownRestsOnTheCapitalThatWasApplied) {
  OpenAll();
  Type("5");
  EXPECT_EQ(frame->Inputs().front().inForce, "50");
  EXPECT_EQ(frame->Inputs().front().value, "5");
  Click(*portfolios, kStyle, 1);
  Serve();
  EXPECT_EQ(Parts().last(), "000002 万科A 25000 0.4");
}

TEST_F(AllocationView, AHostSetsTheCapitalAsAPersonWould) {
  OpenAll();
  for (const char* text : {"", "0", "-5", "zehn", "1e3", "100000", "50 "}) {
    EXPECT_TRUE(frame->SetInput("Edit1", QString::fromUtf8(text)).startsWith("资金量要是大于 0、小于 100000 的数"))
        << text;
  }
  EXPECT_EQ(Entry().text(), "50");
  EXPECT_EQ(frame->SetInput("Edit1", "12.5"), QString());
  EXPECT_EQ(Asked().last(), kRemote + "zh_3.dat");
  EXPECT_FALSE(frame->IsSettled());
  EXPECT_TRUE(frame->SetInput("Edit2", "5").contains("没有输入项"));
  Serve();
  EXPECT_TRUE(frame->Notice().hint.contains("智能配置没有候选组合：没有取得文件 zh_3.dat（没有找到）"));
}

TEST_F(AllocationView, AWholeCatalogueOfCandidatesCanBeVisited) {
  OpenAll();
  EXPECT_EQ(frame->HoldingsGrid().gridName, "StringGrid1");
  EXPECT_EQ(frame->HoldingsGrid().portfolioIds, QStringList({"1", "2"}));
  EXPECT_TRUE(frame->SelectPortfolio("2"));
  EXPECT_FALSE(frame->IsSettled());
  Serve();
  EXPECT_TRUE(frame->IsSettled());
  EXPECT_EQ(Parts().first(), "600519 贵州茅台 100 0.6");
  EXPECT_FALSE(frame->SelectPortfolio("3"));
}

TEST_F(AllocationView, ASecurityIsALinkToItsPage) {
  OpenAll();
  QTest::mouseMove(holdings->viewport(), holdings->TextBox({kCode, 0}).center());
  QTest::mouseClick(holdings->viewport(), Qt::LeftButton, {}, holdings->TextBox({kCode, 0}).center());
  EXPECT_EQ(bench.host.codeNums.currentCode, "1000001");
  QTest::qWait(30);
  ASSERT_FALSE(bench.host.addresses.gone.empty());
  EXPECT_EQ(bench.host.addresses.gone.back().first, "分时走势");
}

TEST_F(AllocationView, EitherEnterLeadsFromACandidateToItsParts) {
  OpenAll();
  for (const auto& [key, modifiers] :
       {std::pair(Qt::Key_Return, Qt::NoModifier), {Qt::Key_Enter, Qt::KeypadModifier}}) {
    portfolios->setFocus();
    QTest::keyClick(portfolios, key, modifiers);
    EXPECT_TRUE(holdings->hasFocus()) << key;
  }
  portfolios->setFocus();
  QTest::keyClick(portfolios, Qt::Key_Return, Qt::ControlModifier);
  EXPECT_TRUE(portfolios->hasFocus());
}

TEST_F(AllocationView, ItSaysThatItIsNoAdvice) {
  OpenAll();
  QString texts;
  for (const QLabel* label : frame->findChildren<QLabel*>())
    if (label->isVisible()) texts += label->text();
  EXPECT_TRUE(texts.contains("历史价格") && texts.contains("不构成投资建议"));
}

}  // namespace
}  // namespace holdwise::test
