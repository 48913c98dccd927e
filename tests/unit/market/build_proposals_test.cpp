// SPDX-License-Identifier: MIT
#include <cmath>

#include "build_fixture.h"

namespace holdwise {
namespace {

const QString kFolder = QStringLiteral("QMTL/TZZH/");

// Eight trading days from 2024-01-02 on, of stocks in four industries.
class BuildProposals : public Build {
 protected:
  void SetUp() override {
    Build::SetUp();
    QFile::remove(files_.Path(QStringLiteral("bars/600519.csv")));
    for (const char* index : {"1", "399001", "399300"}) {
      files_.Write(QStringLiteral("indices/%1.csv").arg(QString::fromUtf8(index)), Bars(0, 3000));
    }
    options_.days = 8;
    options_.proposals.pool.leastReturns = 5;
    WriteStocks(20);
  }

  static QByteArray Bars(int number, double price, int days = 8) {
    static constexpr const char* kDates[] = {"02", "03", "04", "05", "08", "09", "10", "11"};
    QByteArray csv("date,close,volume\n");
    for (int day = 0; day < days; ++day) {
      csv += "2024-01-" + QByteArray(kDates[day]) + "," + QByteArray::number(price, 'f', 2) + ",1000\n";
      price *= 1 + 0.012 * std::sin(2.3 * day) + 0.01 * std::sin(1.7 * (number + 1) * (day + number));
    }
    return csv;
  }

  void WriteStocks(int count, int days = 8) {
    QDir(files_.Path(QStringLiteral("bars"))).removeRecursively();
    QByteArray securities("code,name,industry\n");
    for (int i = 0; i < count; ++i) {
      const QString code = QString::number(600000 + i);
      files_.Write(QStringLiteral("bars/%1.csv").arg(code), Bars(i + 1, 10 + i, days));
      securities += code.toUtf8() + ",stock,industry" + QByteArray::number(i % 4) + "\n";
    }
    files_.Write(QStringLiteral("securities.csv"), securities);
  }

  [[nodiscard]] QStringList ProposalNames() const {
    QStringList names;
    for (const QString& name : Names(QStringLiteral("out/") + kFolder)) {
      if (name.startsWith(QStringLiteral("zh_")) || name == QStringLiteral("ZNPZ.dat")) names.push_back(name);
    }
    return names;
  }
  [[nodiscard]] std::map<QString, QByteArray> Contents() const {
    std::map<QString, QByteArray> contents;
    for (const QString& name : ProposalNames()) contents[name] = files_.Read(QStringLiteral("out/") + kFolder + name);
    return contents;
  }
};

TEST_F(BuildProposals, AreFilesThatTheTerminalTellsApart) {
  const Outcome outcome = Run();
  ASSERT_EQ(outcome.error, "");
  const ResultSet capitals = Table(kFolder + QStringLiteral("ZNPZ.dat"));
  ASSERT_GE(capitals.RowCount(), 5);
  int candidates = 0;
  for (int row = 0; row < capitals.RowCount(); ++row) {
    const QString count = capitals.TextAt(row, capitals.Column("StockCount"));
    if (row > 0) {
      EXPECT_GT(capitals.RealAt(row, capitals.Column("StockMoney")),
                capitals.RealAt(row - 1, capitals.Column("StockMoney")));
    }
    const ResultSet list = Table(kFolder + QStringLiteral("zh_%1.dat").arg(count));
    for (int candidate = 0; candidate < list.RowCount(); ++candidate) {
      const QString file = list.TextAt(candidate, list.Column("FILENAME"));
      EXPECT_EQ(file, QStringLiteral("zh_%1_%2.dat").arg(count).arg(candidate + 1));
      const ResultSet holdings = Table(kFolder + file);
      EXPECT_EQ(QString::number(holdings.RowCount()), count);
      EXPECT_EQ(holdings.TypeOf(holdings.Column("SecuCode")), ColumnType::Text);
      EXPECT_EQ(holdings.TypeOf(holdings.Column("PZBL")), ColumnType::Real);
      ++candidates;
    }
  }
  EXPECT_EQ(outcome.summary.proposals, candidates);
  EXPECT_EQ(ProposalNames().size(), 1 + capitals.RowCount() + candidates) << "and no others";
}

TEST_F(BuildProposals, NameTheEdition) {
  ASSERT_EQ(Run().error, "");
  const QString edition = Table(QStringLiteral("market.dat")).TextAt(0, 3);
  QStringList names = ProposalNames();
  names.push_back(QStringLiteral("StockPool.dat"));
  ASSERT_GT(names.size(), 10);
  for (const QString& name : names) {
    const ResultSet table = Table(kFolder + name);
    EXPECT_EQ(table.TextAt(0, table.Column("edition")), edition) << name.toStdString();
  }
}

TEST_F(BuildProposals, NameOneFingerprintThatOtherOptionsChange) {
  const auto fingerprints = [this] {
    QStringList texts;
    for (const QString& name : ProposalNames() + QStringList{QStringLiteral("StockPool.dat")}) {
      const ResultSet table = Table(kFolder + name);
      texts << table.TextAt(0, table.Column("proposals"));
    }
    texts.removeDuplicates();
    return texts;
  };
  ASSERT_EQ(Run().error, "");
  const QStringList first = fingerprints();
  const QString edition = Table(QStringLiteral("market.dat")).TextAt(0, 3);
  ASSERT_EQ(first.size(), 1);
  EXPECT_EQ(first.front().size(), 64);
  ASSERT_EQ(Run().error, "");
  EXPECT_EQ(fingerprints(), first) << "the same options";
  options_.proposals.premium = 10;
  ASSERT_EQ(Run().error, "");
  ASSERT_EQ(fingerprints().size(), 1);
  EXPECT_NE(fingerprints(), first);
  EXPECT_EQ(Table(QStringLiteral("market.dat")).TextAt(0, 3), edition) << "the data are the same";
}

TEST_F(BuildProposals, AreTheSameBytesOnOneThreadAndOnMany) {
  options_.threads = 1;
  ASSERT_EQ(Run().error, "");
  const auto one = Contents();
  ASSERT_GT(one.size(), 10U);
  options_.threads = 6;
  ASSERT_EQ(Run().error, "");
  EXPECT_EQ(Contents(), one);
}

TEST_F(BuildProposals, OfAnEarlierBuildDoNotOutliveIt) {
  ASSERT_EQ(Run().error, "");
  const auto before = Contents();
  ASSERT_TRUE(before.contains(QStringLiteral("zh_8.dat")));
  WriteStocks(3);
  Outcome outcome = Run();
  EXPECT_EQ(outcome.error, "");
  EXPECT_FALSE(ProposalNames().contains(QStringLiteral("zh_8.dat")));
  EXPECT_FALSE(ProposalNames().contains(QStringLiteral("zh_8_1.dat")));
  EXPECT_TRUE(ProposalNames().contains(QStringLiteral("zh_3_1.dat")));
  options_.proposals.areWanted = false;
  outcome = Run();
  EXPECT_EQ(outcome.error, "");
  EXPECT_EQ(outcome.summary.proposals, 0);
  EXPECT_TRUE(outcome.summary.remarks.empty());
  EXPECT_TRUE(ProposalNames().isEmpty());
  EXPECT_FALSE(QFileInfo::exists(files_.Path(QStringLiteral("out/QMTL/TZZH/StockPool.dat"))));
}

// Nothing to propose: it is said, and everything else is written.
TEST_F(BuildProposals, WithoutAnyTheRestIsWritten) {
  const auto remarks = [this] {
    const Outcome outcome = Run();
    EXPECT_EQ(outcome.error, "");
    EXPECT_EQ(outcome.summary.proposals, 0);
    EXPECT_TRUE(ProposalNames().isEmpty());
    EXPECT_TRUE(QFileInfo::exists(files_.Path(QStringLiteral("out/QMTL/TZZH/风险计量/SH.dat"))));
    EXPECT_EQ(Table(QStringLiteral("market.dat")).RowCount(), 1);
    std::string text;
    for (const QString& remark : outcome.summary.remarks) text += remark.toStdString() + "\n";
    return text;
  };
  WriteStocks(1);
  EXPECT_EQ(remarks(),
            "股票池 1 只，未收：无\n股票池里 1 只股票没有估值（--estimates），该列为空\n符合条件的股票只有 1 "
            "只，没有可供配置的组合\n");
  EXPECT_EQ(Table(kFolder + QStringLiteral("StockPool.dat")).RowCount(), 1);
  WriteStocks(20, 7);  // no bar on the last day
  EXPECT_EQ(remarks(), "股票池 0 只，未收：停牌 20\n符合条件的股票只有 0 只，没有可供配置的组合\n");
  EXPECT_EQ(Table(kFolder + QStringLiteral("StockPool.dat")).RowCount(), 0);
  WriteStocks(20);
  options_.proposals.pool.leastReturns = 200;
  EXPECT_EQ(remarks(), "股票池 0 只，未收：收益率天数不足 20\n符合条件的股票只有 0 只，没有可供配置的组合\n");
  options_.proposals.pool.leastReturns = 5;
  files_.Write(QStringLiteral("securities.csv"), files_.Read(QStringLiteral("securities.csv"))
                                                     .replace("industry1", "industry0")
                                                     .replace("industry2", "industry0")
                                                     .replace("industry3", "industry0"));
  EXPECT_NE(remarks().find("2 只股票的组合里没有稳健型、稳进型、平衡型、进取型、等权型："), std::string::npos);
}

TEST_F(BuildProposals, TheStockPoolHasTheEstimatesThatSomebodyGave) {
  files_.Write(QStringLiteral("estimates.csv"), "code,price\n600003,15.25\n");
  options_.estimatesFile = files_.Path(QStringLiteral("estimates.csv"));
  options_.proposals.pool.most = 4;
  ASSERT_EQ(Run().error, "");
  // The busiest are those of the highest prices.
  const ResultSet pool = Table(kFolder + QStringLiteral("StockPool.dat"));
  ASSERT_EQ(pool.RowCount(), 4);
  for (int row = 0; row < 4; ++row) {
    EXPECT_EQ(pool.TextAt(row, pool.Column("SecuCode")), QString::number(600016 + row));
    EXPECT_EQ(pool.TextAt(row, pool.Column("CTIme")), QStringLiteral("2024-01-11"));
    EXPECT_TRUE(pool.IsNull(row, pool.Column("PRICE"))) << "nobody gave one: no figure";
  }
  options_.proposals.pool.most = 300;
  const Outcome outcome = Run();
  ASSERT_EQ(outcome.error, "");
  ASSERT_GE(outcome.summary.remarks.size(), 2U);
  EXPECT_EQ(outcome.summary.remarks[1], QStringLiteral("股票池里 19 只股票没有估值（--estimates），该列为空"));
  const ResultSet all = Table(kFolder + QStringLiteral("StockPool.dat"));
  ASSERT_EQ(all.RowCount(), 20);
  EXPECT_EQ(all.RealAt(3, all.Column("PRICE")), 15.25);
  EXPECT_TRUE(all.IsNull(2, all.Column("PRICE")));
}

TEST_F(BuildProposals, OptionsAreCheckedBeforeAnything) {
  options_.proposals.premium = 99;
  EXPECT_EQ(Run().error, "--premium 须在 0 到 30 之间");
  EXPECT_FALSE(QFileInfo::exists(files_.Path(QStringLiteral("out"))));
}

}  // namespace
}  // namespace holdwise
