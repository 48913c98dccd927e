// SPDX-License-Identifier: MIT
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <cmath>

#include "calc/base_data_ingestion.h"
#include "calc/reference_tables.h"
#include "calc/unfinished_work.h"
#include "engine_fixture.h"
#include "holdwise/packet/packet_file.h"

namespace holdwise::calc {
namespace {

constexpr int kStocks = 200;
constexpr double kTolerance = 1e-9;

/// What a program prints; a test failure when it fails.
QByteArray OutputOf(const QString& program, const QStringList& arguments) {
  QProcess process;
  process.start(program, arguments);
  EXPECT_TRUE(process.waitForFinished(120'000)) << program.toStdString();
  EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
  return process.readAllStandardOutput();
}

/// Rows of a CSV text without its heading.
std::vector<QList<QByteArray>> RowsOf(const QByteArray& csv) {
  std::vector<QList<QByteArray>> rows;
  const QList<QByteArray> lines = csv.trimmed().split('\n');
  for (int line = 1; line < lines.size(); ++line) rows.push_back(lines[line].trimmed().split(','));
  return rows;
}

class OneStock : public EngineTest {
 protected:
  /// The producer's files of a made-up market.
  void Build(const QString& seed, const QString& days) {
    const QString source = folder_.filePath(QStringLiteral("source"));
    (void)OutputOf(kPython, {Script(), "write", source, seed, QString::number(kStocks)});
    (void)OutputOf(qEnvironmentVariable("HOLDWISE_BIN") + "/holdwise-market",
                   {"build", "--bars", source + "/bars", "--indices", source + "/indices", "--securities",
                    source + "/securities.csv", "--rates", source + "/rates.csv", "--days", days, "--out", Data()});
    expected_ = RowsOf(OutputOf(kPython, {Script(), "figures", source, days}));
  }
  void Load() {
    const QString folder = Data() + "/QMTL/TZZH/";
    Ingest(folder + QStringLiteral("Day250/指数/allzs.dat"), QStringLiteral("QMTL\\TZZH\\Day250\\指数\\allzs.dat"),
           "1");
    const QDir stocks(folder + QStringLiteral("Day250/股票"));
    for (const QString& name : stocks.entryList(QDir::Files, QDir::Name)) {
      Ingest(stocks.filePath(name), QStringLiteral("QMTL\\TZZH\\Day250\\股票\\") + name, '1' + name.left(6));
    }
    ReplaceInterestRates(Database(), ReadPacketFile(folder + "InterestRate.Dat"));
  }
  /// A portfolio of that stock alone; its id is the stock's six digits.
  void AddPortfolio(const QString& code) {
    Run(QStringLiteral("insert into alg_commain (ID,COMNAME,ISFINISHED,SAVEFLAG) values (%1,'%1',0,1)").arg(code));
    Run(QStringLiteral(
            "insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values (%1,%1,1%1,100,0.37,9)")
            .arg(code));
  }
  [[nodiscard]] const std::vector<QList<QByteArray>>& Expected() const { return expected_; }

 private:
  static QString Script() { return qEnvironmentVariable("HOLDWISE_SOURCE") + "/tests/unit/market/made_up_market.py"; }
  [[nodiscard]] QString Data() const { return folder_.filePath(QStringLiteral("data")); }
  static void Ingest(const QString& path, const QString& remoteName, const QString& code) {
    IngestBaseData(Database(), ReadPacketFile(path), ClassifyBaseData(remoteName), code, {});
  }

  // The system's own has the packages that the tests need.
  inline static const QString kPython = QStringLiteral("/usr/bin/python3");
  QTemporaryDir folder_;
  std::vector<QList<QByteArray>> expected_;
};

/// Stocks with holes, listed late, hardly ever traded: the figures of a portfolio of one of them are numpy's of that
/// stock, through the producer's files, the database and its procedure.
TEST_F(OneStock, APortfolioHasTheFiguresOfItsStock) {
  Build(QStringLiteral("7"), QStringLiteral("250"));
  ASSERT_FALSE(HasFailure());
  Load();
  int compared = 0;
  int withoutTwoDays = 0;
  for (const QList<QByteArray>& row : Expected()) {
    enum { kCode, kIndex, kCount, kMean, kVariance, kDeviation, kBeta, kAlpha, kTreynor, kSharpe, kColumns };
    ASSERT_EQ(row.size(), kColumns);
    if (row[kIndex] != "1") continue;
    const QString code = QString::fromLatin1(row[kCode]);
    AddPortfolio(code);
    CalculatePortfolio(Database(), code);
    const ResultSet found = Database().Query(QStringLiteral("select * from alg_commain where ID = ") + code);
    if (found.IntegerAt(0, found.Column("ISFINISHED")) == 0) {
      EXPECT_LT(row[kCount].toInt(), 2) << code.toStdString();
      EXPECT_TRUE(found.IsNull(0, found.Column("BETA"))) << code.toStdString();
      ++withoutTwoDays;
      continue;
    }
    EXPECT_GE(row[kCount].toInt(), 2) << code.toStdString();
    EXPECT_EQ(found.IntegerAt(0, found.Column("LACKING")), 0) << code.toStdString();
    const std::pair<const char*, int> figures[] = {{"FC", kVariance}, {"ZHBZC", kDeviation}, {"BETA", kBeta},
                                                   {"ALPHA", kAlpha}, {"SHARP", kSharpe},    {"TREYNOR", kTreynor}};
    for (const auto& [name, column] : figures) {
      const double want = row[column].toDouble();
      EXPECT_NEAR(found.RealAt(0, found.Column(name)), want, std::abs(want) * kTolerance + 1e-17)
          << code.toStdString() << ' ' << name;
    }
    ++compared;
  }
  EXPECT_EQ(compared + withoutTwoDays, kStocks);
  EXPECT_GT(compared, kStocks * 3 / 4);
}

}  // namespace
}  // namespace holdwise::calc
