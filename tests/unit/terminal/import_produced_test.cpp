// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "datacentre/index_closes.h"
#include "datacentre/market_data.h"
#include "holdwise/market/data_folder_builder.h"
#include "holdwise/market/simulated_market.h"
#include "holdwise/packet/code_numbers.h"
#include "local_database_reader.h"
#include "scripted_host.h"
#include "temp_database.h"
#include "transfer/import.h"

namespace holdwise {
namespace {

/// Close of the last line that starts so, of a file of daily bars (date,open,high,low,close,volume).
double LastClose(const QString& path, const QByteArray& start = {}) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return -1;
  double close = -1;
  for (const QByteArray& line : file.readAll().trimmed().split('\n')) {
    if (line.startsWith(start)) close = line.split(',')[4].toDouble();
  }
  return close;
}

/// With folders as the producer makes them.
class ProducedFolderTest : public testing::Test {
 protected:
  ImportResult Import(const QByteArray& csv) {
    return ImportPortfolios(
        csv, {temp_.Service(), data_, data_, [this] { return ReadIndexCloses(data_.Folder(), kCompositeIndex); }});
  }

  QTemporaryDir folder_;
  ScriptedClock clock_;
  ScriptedDebug log_;
  test::TempDatabase temp_;
  LocalDatabaseReader reader_{temp_.Service()};
  MarketData data_{clock_, log_, reader_};
};

TEST_F(ProducedFolderTest, SimulatedMarket) {
  SimulationOptions simulation;
  simulation.securities = 20;
  simulation.days = 60;
  simulation.outFolder = folder_.filePath(QStringLiteral("csv"));
  WriteSimulatedMarket(simulation);
  BuildOptions build;
  build.barsFolder = simulation.outFolder + QStringLiteral("/bars");
  build.indicesFolder = simulation.outFolder + QStringLiteral("/indices");
  build.securitiesFile = simulation.outFolder + QStringLiteral("/securities.csv");
  build.datesFile = simulation.outFolder + QStringLiteral("/trading_dates.csv");
  build.outFolder = folder_.filePath(QStringLiteral("data"));
  build.days = 40;
  build.isSimulated = true;
  BuildDataFolder(build);
  data_.Load(build.outFolder);
  const std::vector<int> stocks = data_.CodeNumbersOf(10);
  ASSERT_EQ(stocks.size(), 20U);
  QByteArray csv = "name,code,quantity,price\n";
  for (const int stock : {stocks[0], stocks[1]}) csv += "甲," + QByteArray::number(stock).right(6) + ",100,10\n";
  const ImportResult result = Import(csv);
  EXPECT_EQ(result.holdings, 2);
  EXPECT_TRUE(result.warnings.isEmpty()) << result.warnings.join(QLatin1Char('\n')).toStdString();
  EXPECT_TRUE(data_.IsSimulated());
}

TEST_F(ProducedFolderTest, RealMarket) {
  const QString source = qEnvironmentVariable("HOLDWISE_MARKET_DATA");
  if (source.isEmpty()) GTEST_SKIP() << "no real market data";
  const QString bars = folder_.filePath(QStringLiteral("bars"));
  ASSERT_TRUE(QDir().mkpath(bars));
  for (const char* file : {"600519.csv", "600036.csv"}) {
    ASSERT_TRUE(QFile::link(source + QStringLiteral("/bars/") + QLatin1String(file),
                            bars + QLatin1Char('/') + QLatin1String(file)));
  }
  BuildOptions build;
  build.barsFolder = bars;
  build.indicesFolder = source + QStringLiteral("/indices");
  build.securitiesFile = source + QStringLiteral("/securities.csv");
  build.datesFile = source + QStringLiteral("/trading_dates.csv");
  build.outFolder = folder_.filePath(QStringLiteral("data"));
  BuildDataFolder(build);
  data_.Load(build.outFolder);
  const ImportResult result = Import("名称,代码,数量,价格\n白酒,600519,100,1400.00\n白酒,600036,1000,40\n");
  EXPECT_EQ(result.portfolios, 1);
  EXPECT_TRUE(result.warnings.isEmpty()) << result.warnings.join(QLatin1Char('\n')).toStdString();
  EXPECT_EQ(data_.CurrentDate(), 20260108);
  // The last lines of the bar files themselves.
  EXPECT_EQ(LastClose(source + QStringLiteral("/bars/600519.csv")), data_.StockNowData(1600519).currentPrice);
  EXPECT_EQ(LastClose(source + QStringLiteral("/indices/1.csv")),
            temp_.Service().Scalar(QStringLiteral("select ZSCLOSEPRICE from alg_commain")).real);

  const ImportResult spring =
      Import("名称,代码,数量,价格,买入日期\n春,600519,100,1400.00,2025-03-03\n春,600036,1000,40,2025-03-03\n");
  EXPECT_EQ(spring.portfolios, 1);
  EXPECT_NEAR(
      temp_.Service().Scalar(QStringLiteral("select ZSCLOSEPRICE from alg_commain where EDITDATE='2025-03-03'")).real,
      LastClose(source + QStringLiteral("/indices/1.csv"), "2025-03-03"), 0.005);
}

}  // namespace
}  // namespace holdwise
