// SPDX-License-Identifier: MIT
// The smart allocation's arithmetic, files and sorting. Expected values are worked out by hand.
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "allocation_tables.h"
#include "common/grid/string_grid.h"
#include "holdwise/packet/packet_file.h"
#include "views/znpz/allocation_figures.h"
#include "views/znpz/allocation_files.h"
#include "views/znpz/grid_sort.h"
#include "views/znpz/stock_count.h"

namespace holdwise::allocation {
namespace {

TEST(StockCount, ByTheFixedTable) {
  for (const auto& [capital, count] : {std::pair{0.5, 2},
                                       {10.0, 2},
                                       {10.01, 3},
                                       {20.0, 3},
                                       {20.5, 4},
                                       {30.0, 4},
                                       {30.01, 5},
                                       {50.0, 5},
                                       {50.01, 6},
                                       {60.0, 6},
                                       {60.5, 7},
                                       {80.0, 7},
                                       {80.01, 8},
                                       {90.0, 8},
                                       {90.5, 9},
                                       {100.0, 9},
                                       {100.5, 10},
                                       {99999.0, 10}}) {
    EXPECT_EQ(FixedStockCount(capital), count) << capital;
  }
}

TEST(StockCount, ByACapitalTableTheFirstLimitThatCovers) {
  const QStringList table{"3,20", "6,50", "9,100"};
  EXPECT_EQ(StockCountBy(table, 20), 3);
  EXPECT_EQ(StockCountBy(table, 20.5), 6);
  EXPECT_EQ(StockCountBy(table, 50), 6);
  EXPECT_EQ(StockCountBy(table, 500), 9);
  EXPECT_EQ(StockCountBy({}, 20), 0);
}

TEST(StockCount, EntriesThatAreNoNumbersCountAsZero) {
  EXPECT_EQ(StockCountBy({"3", "6,50"}, 10), 6) << "no comma: count 0, limit 0";
  EXPECT_EQ(StockCountBy({"x,20"}, 10), 0);
  EXPECT_EQ(StockCountBy({"4,x", "7,y"}, 10), 7) << "the last one when none covers";
  EXPECT_EQ(StockCountBy({"4,20,30"}, 10), 4) << "the rest behind the first comma is no number, and the entry the last";
}

TEST(CapitalEntry, TakesTheKeysItShould) {
  struct Case {
    char16_t key;
    int length;
    int caret;
    bool isTaken;
  };
  for (const auto& [key, length, caret, isTaken] :
       {Case{u'\b', 0, 0, true},  Case{u'\b', 9, 3, true},   Case{u'1', 0, 0, true},   Case{u'9', 4, 4, true},
        Case{u'1', 5, 5, false},  Case{u'0', 0, 0, false},   Case{u'0', 3, 0, false},  Case{u'0', 1, 1, true},
        Case{u'.', 0, 0, true},   Case{u'.', 4, 2, true},    Case{u'.', 5, 2, false},  Case{u'\r', 2, 2, true},
        Case{u'\r', 5, 5, false}, Case{u'-', 0, 0, false},   Case{u'+', 0, 0, false},  Case{u',', 0, 0, false},
        Case{u'e', 1, 1, false},  Case{u' ', 1, 1, false},   Case{u'五', 1, 1, false}, Case{u'５', 1, 1, false},
        Case{u'\t', 1, 1, false}, Case{u'\x1b', 1, 1, false}}) {
    EXPECT_EQ(IsCapitalKey(QChar(key), length, caret), isTaken) << int{key} << ' ' << length << ' ' << caret;
  }
}

TEST(CapitalEntry, AnAmountIsAPlainNumberAboveZero) {
  for (const char* text : {"50", "0.5", ".5", "12.34", "99999", "5.", "0050"}) EXPECT_TRUE(IsCapital(text)) << text;
  for (const char* text :
       {"", "0", "0.00", "-5", "+5", "1e3", "5 ", "1,000", "1.2.3", ".", "100000", "999999999", "nan", "５", "inf"})
    EXPECT_FALSE(IsCapital(QString::fromUtf8(text))) << text;
}

TEST(Quantities, AreWholeLots) {
  EXPECT_EQ(QuantityOf(0.25, 50, 12.34), 10100) << "10129 shares";
  EXPECT_EQ(QuantityOf(0.25, 50, 0), 0);
  EXPECT_EQ(QuantityOf(0, 50, 10), 0);
  EXPECT_EQ(QuantityOf(0.5, 5, 1710), 0) << "14 shares";
  EXPECT_EQ(QuantityOf(1, 0.1, 10), 100) << "1000 yuan";
  EXPECT_EQ(QuantityOf(1, 0.0999, 10), 0) << "99.9 shares";
  EXPECT_EQ(QuantityOf(1, 99999, 0.01), 99999000000) << "shares that 32 bits do not hold";
  EXPECT_GT(QuantityOf(1, 99999, 1e-300), 0) << "no overflow";
}

// Weights of four decimals and prices of two: whole numbers settle what the shares are.
TEST(Quantities, AreThoseOfWholeNumberArithmetic) {
  int tried = 0;
  for (int weight = 1; weight <= 10000; weight += 37) {
    for (const int capital : {1, 5, 29, 50, 100, 120, 300}) {
      for (const int fen : {1, 99, 290, 1000, 1234, 2900, 8999, 171000}) {
        // weight/10000 x capital x 10000 yuan x 100 fen / fen
        const std::int64_t raw = std::int64_t{weight} * capital * 100 / fen;
        ASSERT_EQ(QuantityOf(weight / 10000.0, capital, fen / 100.0), raw / 100 * 100)
            << weight << ' ' << capital << ' ' << fen;
        ++tried;
      }
    }
  }
  EXPECT_GT(tried, 10000);
}

TEST(Quantities, WhatRoundingLeaves) {
  // 20 ten-thousands: 100,000 yuan buy 8100 of 12.34 = 99,954; 60,000 buy 500 of 110 = 55,000; 40,000 nothing of 500.
  const std::vector<Bought> holdings{{0.5, 12.34, 8100}, {0.3, 110, 500}, {0.2, 500, 0}};
  const Rounding rounding = RoundingOf(holdings, 20);
  EXPECT_NEAR(rounding.leftOver, 200000 - 99954 - 55000, 1e-6);
  EXPECT_NEAR(rounding.largestError, 0.2, 1e-12);
  EXPECT_NEAR(WeightErrorOf(holdings[1], 20), 55000.0 / 200000 - 0.3, 1e-12);
  EXPECT_NEAR(RoundingOf({}, 20).leftOver, 200000, 0);
}

TEST(Shortfall, NamesAreQuotedAndTheLastCommaGoes) {
  EXPECT_EQ(ShortfallText({"贵州茅台"}), QStringLiteral("\"贵州茅台\""));
  EXPECT_EQ(ShortfallText({"贵州茅台", "宁德时代"}), QStringLiteral("\"贵州茅台\",\"宁德时代\""));
  EXPECT_EQ(ShortfallText({""}), QStringLiteral("\"\""));
}

TEST(ProposalName, IsStyleDayStockCountAndNumber) {
  EXPECT_EQ(PortfolioName(QStringLiteral("稳健型"), QDate(2024, 6, 3), 5, QStringLiteral("1")),
            QStringLiteral("稳健型20240603_5_1"));
}

TEST(AllocationFiles, NamesTellListsFromCompositions) {
  EXPECT_EQ(CandidateListFile(5), QStringLiteral("QMTL\\TZZH\\zh_5.dat"));
  EXPECT_FALSE(IsComposition(CandidateListFile(10)));
  EXPECT_TRUE(IsComposition(QStringLiteral("QMTL\\TZZH\\zh_5_1.dat")));
  EXPECT_TRUE(IsComposition(QStringLiteral("a__")));
  EXPECT_FALSE(IsComposition(QStringLiteral("abc.dat")));
  EXPECT_FALSE(IsComposition({}));
}

TEST(AllocationFiles, OnlyPlainCompositionNamesAreAskedFor) {
  for (const char* name : {"zh_5_1.dat", "zh_10_稳健型.dat", "_a_"})
    EXPECT_EQ(ProblemOfFileName(QString::fromUtf8(name)), QString()) << name;
  const QString nul = QStringLiteral("zh_5_1") + QChar(0) + QStringLiteral(".dat");
  for (const QString& name :
       {QString(), QStringLiteral(".."), QStringLiteral("../zh_5_1.dat"), QStringLiteral("..\\zh_5_1.dat"),
        QStringLiteral("/etc/a_b_c"), QStringLiteral("C:\\a_b_c"), QStringLiteral("a/b_c_d"),
        QStringLiteral("a\\b_c_d"), QStringLiteral("a_b_..c"), nul, QStringLiteral("zh_5_1\n.dat"),
        QStringLiteral("_").repeated(101), QStringLiteral("_").repeated(100000), QStringLiteral("zh_5.dat"),
        QStringLiteral("plain.dat")}) {
    const QString problem = ProblemOfFileName(name);
    EXPECT_FALSE(problem.isEmpty()) << name.left(20).toStdString();
    EXPECT_LT(problem.size(), 120);
    EXPECT_FALSE(problem.contains(QChar(0)) || problem.contains(u'\n'));
  }
}

ResultSet Composition(const test::WeightedCodes& parts) {
  return DecodePacket(test::CompositionFile(parts));
}

TEST(AllocationFiles, ACompositionsPartsStandInItsOrder) {
  const std::vector<Part> parts = PartsIn(Composition({{"1600000", 0.25}, {"000001", 0.75}}));
  ASSERT_EQ(parts.size(), 2U);
  EXPECT_EQ(parts[0].code, "1600000");
  EXPECT_EQ(parts[0].weightText, "0.25");
  EXPECT_EQ(parts[1].weight, 0.75);
  EXPECT_TRUE(PartsIn(Composition({})).empty());
}

TEST(AllocationFiles, ACompositionThatCannotBeIsRefused) {
  for (const double weight : {-0.01, 1.01, 1e300})
    EXPECT_THROW((void)PartsIn(Composition({{"600000", weight}})), Error);
  ResultSet noCode = Composition({{"600000", 0.5}});
  noCode.SetNull(0, 0);
  EXPECT_THROW((void)PartsIn(noCode), Error);
  EXPECT_THROW((void)PartsIn(ResultSet()), Error) << "no columns";
}

TEST(AllocationFiles, ACapitalTablesEntriesAreItsTexts) {
  EXPECT_EQ(CapitalTableIn(DecodePacket(test::CapitalTable({{2, 10}, {3, 20.5}}))), QStringList({"2,10", "3,20.5"}));
}

TEST(AllocationFiles, AFileLargerThanSuchAFileEverIsIsRefused) {
  const QTemporaryDir folder;
  ResultSet table;
  const int code = table.AddColumn("SecuCode", ColumnType::Text);
  for (int row = 0; row < 20'000; ++row) table.SetText(table.AppendRow(), code, "600000");
  WritePacketFile(folder.filePath("pool"), table, Durability::Replaceable);
  EXPECT_THROW((void)ReadAllocationFile(folder.filePath("pool")), Error);
}

class GridSort : public testing::Test {
 protected:
  void Fill(const QStringList& keys) {
    grid_.SetColCount(2);
    grid_.SetRowCount(static_cast<int>(keys.size()));
    for (int row = 0; row < keys.size(); ++row) {
      grid_.SetCells(0, row, QString::number(row));
      grid_.SetCells(1, row, keys[row]);
    }
  }
  [[nodiscard]] QString Column(int column) const {
    QStringList texts;
    for (int row = 0; row < grid_.RowCount(); ++row) texts << grid_.Cells(column, row);
    return texts.join(' ');
  }
  TStringGrid grid_{QStringLiteral("Test"), QStringLiteral("grid")};
};

TEST_F(GridSort, NumbersDescendAndTheirRowsGoWithThem) {
  Fill({"0.2", "0.05", "0.5", "0.25"});
  GridQuickSort(grid_, 1, false, true);
  EXPECT_EQ(Column(1), "0.5 0.25 0.2 0.05");
  EXPECT_EQ(Column(0), "2 3 0 1");
  GridQuickSort(grid_, 1, true, true);
  EXPECT_EQ(Column(1), "0.05 0.2 0.25 0.5");
}

TEST_F(GridSort, TextsAreComparedByteByByte) {
  Fill({"9", "10", "b", "B", "银"});
  GridQuickSort(grid_, 1, true, false);
  EXPECT_EQ(Column(1), "10 9 B b 银");
}

TEST_F(GridSort, WhatIsNoNumberIsZeroAndAnEmptyCellBecomesOne) {
  Fill({"-1", "", "x", "2"});
  GridQuickSort(grid_, 1, false, true);
  EXPECT_EQ(grid_.Cells(1, 0), "2");
  EXPECT_EQ(grid_.Cells(1, 3), "-1");
  EXPECT_TRUE((QStringList{grid_.Cells(1, 1), grid_.Cells(1, 2)} == QStringList{"0", "x"}) ||
              (QStringList{grid_.Cells(1, 1), grid_.Cells(1, 2)} == QStringList{"x", "0"}));
}

// Four equal keys by hand: the pivot is row 1; (0,3) and (1,2) change places; both halves of two rows change places
// again.
TEST_F(GridSort, EqualKeysEndAsTheDescribedSortLeavesThem) {
  Fill({"1", "1", "1", "1"});
  GridQuickSort(grid_, 1, false, true);
  EXPECT_EQ(Column(0), "2 3 0 1");
}

TEST_F(GridSort, OneRowStaysAndALongGridIsSortedToo) {
  Fill({"7"});
  GridQuickSort(grid_, 1, false, true);
  EXPECT_EQ(Column(1), "7");
  QStringList keys;
  for (int row = 0; row < 5001; ++row) keys << QString::number(row * 7919 % 5003);
  Fill(keys);
  GridQuickSort(grid_, 1, true, true);
  for (int row = 1; row < grid_.RowCount(); ++row)
    ASSERT_LT(grid_.Cells(1, row - 1).toInt(), grid_.Cells(1, row).toInt());
  EXPECT_NE(grid_.viewport()->cursor().shape(), Qt::WaitCursor) << "the hourglass is gone";
}

}  // namespace
}  // namespace holdwise::allocation
