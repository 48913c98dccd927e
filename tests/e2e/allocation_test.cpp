// SPDX-License-Identifier: MIT
// The smart allocation in the real terminal, on files that the test writes: weights are whole ten-thousandths and
// prices whole fen, so that quantities follow from whole-number arithmetic. Stock k closes at k + 0.60 yuan.
#include <gtest/gtest.h>

#include <QDate>
#include <QDir>
#include <QFile>
#include <csignal>

#include "holdwise/packet/packet_file.h"
#include "screen.h"

namespace holdwise::e2e {
namespace {

using Rows = std::vector<QStringList>;
/// Stocks by their number k, with weights in ten-thousandths, the greatest first.
using Parts = std::vector<std::pair<int, int>>;

struct Proposal {
  const char* style;
  Parts parts;
};
const std::vector<Proposal> kOfTwo = {{"稳健型", {{1, 6000}, {2, 4000}}}, {"进取型", {{3, 9900}, {12, 100}}}};
const std::vector<Proposal> kOfFive = {{"稳健型", {{12, 3333}, {7, 2500}, {5, 2000}, {3, 1167}, {1, 1000}}},
                                       {"进取型", {{2, 4001}, {4, 2999}, {6, 1500}, {8, 1000}, {10, 500}}}};
const std::vector<Proposal> kOfTen = {
    {"分散型",
     {{1, 1900}, {2, 1700}, {3, 1500}, {4, 1300}, {5, 1100}, {6, 900}, {7, 700}, {8, 500}, {9, 300}, {10, 100}}}};

/// Whole lots: weight x capital x 100 yuan a ten-thousandth, in fen, by the price in fen.
int LotsOf(int stock, int weight, int capital) {
  const std::int64_t fen = std::int64_t{weight} * capital * 100;
  return static_cast<int>(fen / (100 * stock + 60) / 100 * 100);
}

class Allocation : public testing::Test {
 protected:
  Allocation() {
    CopyFolder(SharedMarket().Data(), bench_.File("data"));
    bench_.data = bench_.File("data");
    WriteCapitalTable();
    Write(2, kOfTwo);
    Write(5, kOfFive);
    Write(10, kOfTen);
    ResultSet pool = Table({"SecuCode", "CTIme"}, {"PRICE"});
    for (int stock = 1; stock <= 12; ++stock) {
      const int row = pool.AppendRow();
      pool.SetText(row, 0, QString::number(600000 + stock));
      pool.SetText(row, 1, "2024-05-31");
      pool.SetReal(row, 2, stock * 1.25);
    }
    Write("StockPool.dat", pool);
  }
  static ResultSet Table(const std::vector<const char*>& texts, const std::vector<const char*>& reals) {
    ResultSet table;
    for (const char* name : texts) table.AddColumn(name, ColumnType::Text);
    for (const char* name : reals) table.AddColumn(name, ColumnType::Real);
    return table;
  }
  void Write(const QString& name, const ResultSet& table) const {
    QDir().mkpath(bench_.data + "/QMTL/TZZH");
    WritePacketFile(bench_.data + "/QMTL/TZZH/" + name, table, Durability::Replaceable);
  }
  void WriteCapitalTable() const {
    ResultSet table;
    const int count = table.AddColumn("StockCount", ColumnType::Integer);
    const int money = table.AddColumn("StockMoney", ColumnType::Real);
    for (const auto& [stocks, limit] : {std::pair{2, 10}, {5, 50}, {10, 100}}) {
      const int row = table.AppendRow();
      table.SetInteger(row, count, stocks);
      table.SetReal(row, money, limit);
    }
    Write("ZNPZ.dat", table);
  }
  void Write(int count, const std::vector<Proposal>& proposals) const {
    ResultSet list = Table({"ZHFG", "FILENAME"}, {"MBSYL", "FC", "BETA"});
    for (const Proposal& proposal : proposals) {
      const int row = list.AppendRow();
      const QString file = QString("zh_%1_%2.dat").arg(count).arg(row + 1);
      list.SetText(row, 0, proposal.style);
      list.SetText(row, 1, file);
      for (int column = 2; column <= 4; ++column) list.SetReal(row, column, 0.0625 * column);
      ResultSet composition = Table({"SecuCode"}, {"PZBL"});
      for (const auto& [stock, weight] : proposal.parts) {
        const int part = composition.AppendRow();
        composition.SetText(part, 0, QString::number(600000 + stock));
        composition.SetReal(part, 1, weight / 10000.0);
      }
      Write(file, composition);
    }
    Write(QString("zh_%1.dat").arg(count), list);
  }
  [[nodiscard]] Outcome Export(const QStringList& more) const {
    return RunTerminal(bench_.Arguments(QStringList{"--export", bench_.File("out")} + more));
  }
  [[nodiscard]] Rows Read(const QString& name) const { return ReadCsv(bench_.File("out/" + name + ".csv")); }

  void ExpectQuantities(const std::vector<Proposal>& proposals, int capital) const {
    for (std::size_t number = 1; number <= proposals.size(); ++number) {
      const Parts& parts = proposals[number - 1].parts;
      const Rows rows = Read(QString("1001-StringGrid1-%1").arg(number));
      ASSERT_EQ(rows.size(), parts.size() + 1) << capital;
      std::int64_t leftFen = std::int64_t{capital} * 1'000'000;
      for (std::size_t part = 0; part < parts.size(); ++part) {
        const auto& [stock, weight] = parts[part];
        const int quantity = LotsOf(stock, weight, capital);
        EXPECT_EQ(rows[part + 1][0], QString::number(600000 + stock)) << capital << ' ' << number;
        EXPECT_EQ(rows[part + 1][2], QString::number(quantity)) << capital << ' ' << stock;
        leftFen -= std::int64_t{quantity} * (100 * stock + 60);
      }
      EXPECT_NEAR(rows[1][6].toDouble(), static_cast<double>(leftFen) / 100, 0.0051) << "what is left over";
    }
  }

  /// With keys, at the usual capital of 50; the second time is answered that there is such a portfolio already.
  void SaveTheFirstCandidateTwice() const {
    const Screen screen;
    ASSERT_TRUE(screen.IsThere());
    RunningTerminal running(bench_.Arguments({"--address", "投资组合"}), screen.Environment());
    ASSERT_TRUE(running.WaitForWindow());
    ASSERT_TRUE(screen.Enter(QStringLiteral("Holdwise")));
    QThread::sleep(1);
    screen.Click(300, 436);  // the first candidate
    const auto answer = [&] {
      ASSERT_TRUE(screen.Enter(QStringLiteral("提示")));
      screen.Keys({"Return"});
    };
    screen.Keys({"F4"});
    answer();
    ASSERT_TRUE(screen.IsGone(QStringLiteral("提示")));
    ASSERT_TRUE(screen.Enter(QStringLiteral("Holdwise")));
    screen.Keys({"F4"});
    answer();
    QThread::msleep(500);
    answer();  // that there is such a portfolio already
    ASSERT_TRUE(screen.IsGone(QStringLiteral("提示")));
    EXPECT_GE(running.Signal(SIGTERM), 0);
  }

  Bench bench_;
};

TEST_F(Allocation, EveryCapitalBuysWholeLotsOfEveryCandidate) {
  for (const auto& [capital, proposals] : {std::pair{5, kOfTwo}, {50, kOfFive}, {120, kOfTen}, {300, kOfTen}}) {
    const Outcome outcome = Export({"--capital", QString::number(capital)});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    const Rows list = Read("1001-strngrd");
    ASSERT_EQ(list.size(), proposals.size() + 1) << capital;
    EXPECT_EQ(list[0], QStringList({"序号", "组合风格", "目标收益率(%)", "方差", "Beta系数", "操作", "#6"}));
    EXPECT_EQ(list[1], QStringList({"1", proposals[0].style, "12.50", "0.187500", "0.250000", "",
                                    QString("zh_%1_1.dat").arg(proposals[0].parts.size())}));
    ExpectQuantities(proposals, capital);
    EXPECT_EQ(Read("1001-inputs"),
              Rows({{"输入项", "控件", "值"}, {"资金量(万元)", "Edit1", QString::number(capital)}}));
  }
}

TEST_F(Allocation, TheStockPoolIsExportedWithPicturesOfBoth) {
  ASSERT_EQ(Export({}).exitCode, 0);
  const Rows pool = Read("StockPool-strngrd");
  ASSERT_EQ(pool.size(), 13U);
  EXPECT_EQ(pool[0], QStringList({"代码", "名称", "日期", "估值", "昨收", "每股收益", "每股净资产"}));
  EXPECT_EQ(pool[12].mid(0, 4), QStringList({"600012", "股票12", "2024-05-31", "15.00"}));
  for (const char* name : {"1001.png", "StockPool.png"}) EXPECT_TRUE(QFile::exists(bench_.File("out/") + name)) << name;
}

TEST_F(Allocation, AShortfallIsPrinted) {
  const Outcome outcome = Export({"--capital", "5"});
  EXPECT_EQ(outcome.exitCode, 0) << "nothing is missing";
  // 100 ten-thousandths of 50,000 yuan are 500, and a lot of the twelfth stock costs 1,260.
  EXPECT_TRUE(outcome.err.contains("您的资金量无法配置当前组合:\"股票12\"")) << outcome.err.toStdString();
}

TEST_F(Allocation, AStockWithoutAPriceIsSaid) {
  ResultSet composition = Table({"SecuCode"}, {"PZBL"});
  composition.AppendRow();
  composition.SetText(0, 0, "300750");
  composition.SetReal(0, 1, 1);
  Write("zh_10_1.dat", composition);
  const Outcome outcome = Export({"--capital", "300"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains("没有价格，数量按 0 计")) << outcome.err.toStdString();
  EXPECT_EQ(Read("1001-StringGrid1-1")[1][2], "0");
}

TEST_F(Allocation, AListThatIsMissingIsSaidWhenItsCapitalIsAskedFor) {
  ASSERT_TRUE(QFile::remove(bench_.data + "/QMTL/TZZH/zh_10.dat"));
  const Outcome outcome = Export({"--capital", "300"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains("智能配置没有候选组合：没有取得文件 zh_10.dat")) << outcome.err.toStdString();
  EXPECT_EQ(Read("1001-strngrd").size(), 1U);
}

TEST_F(Allocation, ABadAmountIsRefusedAtOnce) {
  for (const char* bad : {"zehn", "0", "-5", "1e3", "100000", "1.2.3"}) {
    const Outcome outcome = Export({"--capital", bad});
    EXPECT_EQ(outcome.exitCode, 2) << bad;
    EXPECT_TRUE(outcome.err.contains(
        QString("--capital 要是大于 0、小于 100000 的数（万元），例如 50 或 12.5，不能是“%1”").arg(bad)))
        << outcome.err.toStdString();
  }
  EXPECT_FALSE(QFile::exists(bench_.File("out")));
}

TEST_F(Allocation, ARunningTerminalHasItsCapitalBackAfterwards) {
  RunningTerminal running(bench_.Arguments({}));
  ASSERT_TRUE(running.WaitForWindow());
  ASSERT_EQ(Export({"--capital", "120"}).exitCode, 0);
  EXPECT_EQ(Read("1001-inputs")[1][2], "120");
  ASSERT_EQ(Export({}).exitCode, 0);
  EXPECT_EQ(Read("1001-inputs")[1][2], "50");
  ExpectQuantities(kOfFive, 50);
}

TEST_F(Allocation, ASavedProposalIsFollowedAndSavingItTwiceIsRefused) {
  if (const QString program = MissingProgram(); !program.isEmpty())
    GTEST_SKIP() << program.toStdString() << " is missing";
  ASSERT_NO_FATAL_FAILURE(SaveTheFirstCandidateTwice());
  const Outcome outcome = Export({});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
  const Rows list = Read("2001-strngrd");
  ASSERT_EQ(list.size(), 2U) << "once";
  EXPECT_EQ(list[1][0], QString("稳健型%1_5_1").arg(QDate::currentDate().toString("yyyyMMdd")));
  EXPECT_EQ(list[1][1], "2024-05-31");
  std::int64_t valueFen = 0;
  for (const auto& [stock, weight] : kOfFive[0].parts)
    valueFen += std::int64_t{LotsOf(stock, weight, 50)} * (100 * stock + 60);
  EXPECT_NEAR(list[1][2].toDouble(), static_cast<double>(valueFen) / 100, 0.0051);
  EXPECT_EQ(list[1][6], "0.00") << "bought at these prices";
  const Rows risk = Read("2002-strngrd");
  ASSERT_EQ(risk.size(), 2U);
  EXPECT_NE(risk[1][4].toDouble(), 0) << "the statistics have run: beta is neither nothing nor the proposal's";
  EXPECT_NE(risk[1][4].toDouble(), 0.25);
}

/// The producer's own proposals, of real bars, or of a simulated market where there are none.
class ProducedAllocation : public Allocation {
 protected:
  void SetUp() override {
    const QString real = qEnvironmentVariable("HOLDWISE_MARKET_DATA");
    const QString source = real.isEmpty() ? bench_.File("market") : real;
    const QString program = Program("holdwise-market");
    if (real.isEmpty()) {
      const Outcome made = e2e::Run(program, {"simulate", "--securities", "60", "--days", "300", "--out", source});
      ASSERT_EQ(made.exitCode, 0) << made.err.toStdString();
    }
    bench_.data = bench_.File("produced");
    QStringList arguments{"build", "--out", bench_.data, "--bars", source + "/bars", "--indices", source + "/indices"};
    arguments << "--securities" << source + "/securities.csv";
    if (real.isEmpty()) arguments << "--simulated";
    const Outcome built = e2e::Run(program, arguments);
    ASSERT_EQ(built.exitCode, 0) << built.err.toStdString();
  }
  [[nodiscard]] ResultSet Produced(const QString& name) const {
    return ReadPacketFile(bench_.data + "/QMTL/TZZH/" + name);
  }
};

TEST_F(ProducedAllocation, TheStatisticsOfASavedProposalAreTheProducers) {
  if (const QString program = MissingProgram(); !program.isEmpty())
    GTEST_SKIP() << program.toStdString() << " is missing";
  ASSERT_NO_FATAL_FAILURE(SaveTheFirstCandidateTwice());
  const Outcome outcome = Export({});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();

  const ResultSet limits = Produced("ZNPZ.dat");
  int row = 0;
  while (row + 1 < limits.RowCount() && limits.RealAt(row, limits.Column("StockMoney")) < 50) ++row;
  const QString count = limits.TextAt(row, limits.Column("StockCount"));
  const ResultSet list = Produced("zh_" + count + ".dat");
  const QString today = QDate::currentDate().toString("yyyyMMdd");
  const QString name = list.TextAt(0, list.Column("ZHFG")) + today + '_' + count + "_1";
  for (const char* view : {"2001-strngrd", "3001-strngrd"}) {
    const Rows rows = Read(view);
    ASSERT_EQ(rows.size(), 2U) << view << ": once";
    EXPECT_EQ(rows[1][0], name) << view;
  }
  // The terminal leaves what is stored, with all digits, when it ends.
  const ResultSet stored = ReadPacketFile(bench_.Work() + "/TZZHMerge.dat");
  ASSERT_EQ(stored.RowCount(), 1);
  EXPECT_EQ(stored.TextAt(0, stored.Column("COMNAME")), name);
  for (const char* figure : {"FC", "BETA"}) {
    const double wanted = list.RealAt(0, list.Column(figure));
    EXPECT_NEAR(stored.TextAt(0, stored.Column(figure)).toDouble() / wanted, 1, 1e-9) << figure << ' ' << wanted;
  }
}

}  // namespace
}  // namespace holdwise::e2e
