// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "market_files.h"
#include "market_program.h"

namespace holdwise {
namespace {

using test::MarketFiles;

QStringList Words(const MarketFiles& files, const QString& shape) {
  return QString::fromUtf8(files.Read(QStringLiteral("shapes/") + shape + QStringLiteral("/arguments.txt")))
      .split(u'\n');
}

// Real bars as five families of sources write them make the same data folder, byte for byte.
TEST(Shapes, GiveTheSameDataFolder) {
  const QString market = qEnvironmentVariable("HOLDWISE_MARKET_DATA");
  if (market.isEmpty()) GTEST_SKIP() << "no real bars at hand";
  const MarketFiles files;
  const Result made = Execute(
      kPython, {Script("market_shapes.py"), market, files.Path(QStringLiteral("shapes")), QStringLiteral("60")});
  ASSERT_EQ(made.exitCode, 0) << made.error.constData();
  std::map<QString, QByteArray> wanted;
  for (const char* shape : {"plain", "chinese", "ts_code", "sh_dot", "dated", "symbol_factor"}) {
    const QString name = QString::fromUtf8(shape);
    const Result built = RunProgram(Words(files, name));
    ASSERT_EQ(built.exitCode, 0) << shape << ": " << built.error.constData();
    EXPECT_TRUE(built.out.contains("未采用的行：0，未采用的文件：0")) << shape << built.error.left(2000).constData();
    EXPECT_FALSE(built.out.contains("未复权")) << shape << built.out.constData();
    const auto contents = Contents(files.Path(QStringLiteral("shapes/%1/data").arg(name)));
    if (wanted.empty()) wanted = contents;
    EXPECT_GT(contents.size(), 60U) << shape;
    EXPECT_TRUE(contents == wanted) << shape;
    const Result checked = RunProgram(Words(files, name) << QStringLiteral("--check"));
    EXPECT_EQ(checked.exitCode, 0) << checked.error.constData();
    EXPECT_TRUE(checked.out.contains("只作检查，没有写任何文件")) << checked.out.constData();
  }
}

// The exchange's reference prices, made of closes as traded and the days on which rights went off.
TEST(Shapes, BarsAsTradedHaveTheReturnsOfTheirPreviousCloses) {
  const QString market = qEnvironmentVariable("HOLDWISE_MARKET_DATA");
  if (market.isEmpty()) GTEST_SKIP() << "no real bars at hand";
  const MarketFiles files;
  const QString source = files.Path(QStringLiteral("source"));
  const Result made = Execute(kPython, {Script("as_traded.py"), QStringLiteral("write"), market, source});
  ASSERT_EQ(made.exitCode, 0) << made.error.constData();
  const QString out = files.Path(QStringLiteral("data"));
  const Result built =
      RunProgram({QStringLiteral("build"), QStringLiteral("--bars"), source + QStringLiteral("/bars"),
                  QStringLiteral("--indices"), market + QStringLiteral("/indices"), QStringLiteral("--securities"),
                  market + QStringLiteral("/securities.csv"), QStringLiteral("--date"), QStringLiteral("2025-05-23"),
                  QStringLiteral("--days"), QStringLiteral("340"), QStringLiteral("--out"), out});
  ASSERT_EQ(built.exitCode, 0) << built.error.constData();
  EXPECT_TRUE(built.out.contains("只按昨收复权")) << built.out.constData();
  const Result checked = Execute(kPython, {Script("as_traded.py"), QStringLiteral("check"), market, source, out});
  EXPECT_EQ(checked.exitCode, 0) << checked.out.constData() << checked.error.constData();
  RecordProperty("check", checked.out.trimmed().toStdString());

  // Without the reference prices the jumps are named.
  const Result bare =
      RunProgram({QStringLiteral("build"), QStringLiteral("--check"), QStringLiteral("--bars"),
                  market + QStringLiteral("/bars_unadjusted"), QStringLiteral("--indices"),
                  market + QStringLiteral("/indices"), QStringLiteral("--securities"),
                  market + QStringLiteral("/securities.csv"), QStringLiteral("--date"), QStringLiteral("2025-05-23")});
  EXPECT_EQ(bare.exitCode, 0) << bare.error.constData();
  EXPECT_TRUE(bare.out.contains("行情像是未复权的：8 只股票 8 处")) << bare.out.constData();
  // And with the factors they are gone.
  const Result factors =
      RunProgram({QStringLiteral("build"), QStringLiteral("--check"), QStringLiteral("--bars"),
                  market + QStringLiteral("/bars_unadjusted"), QStringLiteral("--factors"),
                  market + QStringLiteral("/ex_rights.csv"), QStringLiteral("--indices"),
                  market + QStringLiteral("/indices"), QStringLiteral("--securities"),
                  market + QStringLiteral("/securities.csv"), QStringLiteral("--date"), QStringLiteral("2025-05-23")});
  EXPECT_EQ(factors.exitCode, 0) << factors.error.constData();
  EXPECT_FALSE(factors.out.contains("未复权")) << factors.out.constData();
  EXPECT_TRUE(factors.out.contains("174 只按 --factors 复权")) << factors.out.constData();
}

// What build would refuse is no good check, and what it said is there all the same.
TEST(Shapes, ACheckWithoutAUsableBarFails) {
  const MarketFiles files;
  files.WriteMarket("date,close\n2024-01-02,1000\n2024-01-03,1100\n");
  files.Write(QStringLiteral("bars/600519.csv"), "date,close\n2024-01-02,x\n");
  const QStringList check = BuildArguments(files.Path(QString()), files.Path(QStringLiteral("out")))
                            << QStringLiteral("--check");
  const Result nothing = RunProgram(check);
  EXPECT_EQ(nothing.exitCode, 1);
  EXPECT_TRUE(nothing.error.contains("没有一只股票的行情可用")) << nothing.error.constData();
  EXPECT_TRUE(nothing.error.contains("收盘价不是数字“x”")) << nothing.error.constData();
  EXPECT_TRUE(nothing.out.contains("证券：2，有行情 0")) << nothing.out.constData();
  files.Write(QStringLiteral("bars/600519.csv"), "date,close\n2024-01-02,10\n");
  EXPECT_EQ(RunProgram(check).exitCode, 0);
  EXPECT_FALSE(QFileInfo::exists(files.Path(QStringLiteral("out"))));
}

// Every block of the page, with stand-ins for the packages.
TEST(Shapes, TheBlocksOfThePageWriteWhatIsTaken) {
  const MarketFiles files;
  const Result ran =
      Execute(kPython, {Script("data_sources.py"),
                        qEnvironmentVariable("HOLDWISE_SOURCE") + QStringLiteral("/docs/data-sources.md"), Program(),
                        files.Path(QStringLiteral("work"))});
  EXPECT_EQ(ran.exitCode, 0) << ran.error.constData();
  EXPECT_EQ(ran.out.trimmed().toStdString(), "AKShare Tushare BaoStock yfinance Qlib");
}

}  // namespace
}  // namespace holdwise
