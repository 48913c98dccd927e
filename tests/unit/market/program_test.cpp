// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <signal.h>

#include <QElapsedTimer>
#include <QThread>

#include "holdwise/market/market_rules.h"
#include "holdwise/packet/packet_file.h"
#include "market_files.h"
#include "market_program.h"

namespace holdwise {
namespace {

using test::MarketFiles;

TEST(Program, HelpNamesEveryOption) {
  const Result help = RunProgram({QStringLiteral("build"), QStringLiteral("--help")});
  EXPECT_EQ(help.exitCode, 0);
  for (const char* option : {"--bars",         "--indices",      "--securities",
                             "--dates",        "--rates",        "--quotes",
                             "--estimates",    "--date",         "--days",
                             "--out",          "--simulated",    "--replace",
                             "--pool-returns", "--pool-size",    "--pool-suspended",
                             "--pool-limit",   "--pool-star",    "--pool-st",
                             "--least-weight", "--most-weight",  "--industry-weight",
                             "--premium",      "--no-proposals", "--industries",
                             "--factors",      "--check",        "--watch",
                             "--accounts"}) {
    EXPECT_TRUE(help.out.contains(option)) << option;
  }
  EXPECT_FALSE(help.out.contains("Options") || help.out.contains("REQUIRED")) << "one language";
  EXPECT_EQ(RunProgram({QStringLiteral("--help")}).exitCode, 0);
}

TEST(Program, WrongArgumentsAreAnError) {
  EXPECT_GT(RunProgram({}).exitCode, 100);
  const Result missing = RunProgram({QStringLiteral("build"), QStringLiteral("--bars"), QStringLiteral("x")});
  EXPECT_GT(missing.exitCode, 100);
  EXPECT_TRUE(missing.error.contains("参数错误")) << missing.error.constData();
  const MarketFiles files;
  QStringList arguments = BuildArguments(files.Path(QString()), files.Path(QStringLiteral("out")));
  arguments << QStringLiteral("--date") << QStringLiteral("2024-02-30");
  const Result date = RunProgram(arguments);
  EXPECT_EQ(date.exitCode, 1);
  EXPECT_TRUE(date.error.contains("--date 的日期无法识别")) << date.error.constData();
}

TEST(Program, SaysWhatIsWrongWithTheArguments) {
  const auto error = [](const QByteArray& arguments) {
    QStringList list;
    for (const QByteArray& argument : arguments.split(' ')) list << QString::fromUtf8(argument);
    const Result result = RunProgram(list);
    EXPECT_GT(result.exitCode, 100) << arguments.constData();
    return result.error.split('\n').constFirst();
  };
  EXPECT_EQ(error("biuld --bars x"), "参数错误：没有命令“biuld”");
  EXPECT_EQ(error("packet shwo x"), "参数错误：没有命令“shwo”");
  EXPECT_EQ(error("packet"), "参数错误：没有命令");
  EXPECT_EQ(error("build"), "参数错误：缺少 --bars");
  EXPECT_EQ(error("packet show"), "参数错误：缺少 file");
  EXPECT_EQ(error("simulate --out"), "参数错误：--out 后面没有值");
  EXPECT_EQ(error("simulate --out "), "参数错误：--out: 值为空");
  EXPECT_EQ(error("simulate --out a --out b"), "参数错误：--out 只能给一次");
  EXPECT_EQ(error("simulate --out a --c"), "参数错误：多余的参数“--c”");
  EXPECT_EQ(error("simulate --out a --days 99999999999"), "参数错误：--days 的值“99999999999”无法识别或超出范围");
  for (const char* number : {"-1", "+1", "1.5", "x"}) {
    EXPECT_EQ(error(QByteArray("simulate --out a --seed ") + number),
              QByteArray("参数错误：--seed: “") + number + "”不是非负整数");
  }
}

TEST(Program, BuildReportsOnBothStreams) {
  const MarketFiles files;
  files.WriteMarket("date,close\n2024-01-02,10\n2024-01-03,11\n");
  files.Write(QStringLiteral("bars/600519.csv"), "date,close\n2024-01-02,10\nx,1\n2024-01-03,11\n");
  const Result result = RunProgram(BuildArguments(files.Path(QString()), files.Path(QStringLiteral("中文 out"))));
  // Two days in one week and month: 4 rows for the stock and for each of the three indices.
  EXPECT_EQ(result.exitCode, 0) << result.error.constData();
  EXPECT_TRUE(result.error.contains("600519.csv:3: 日期无法识别“x”\n")) << result.error.constData();
  EXPECT_TRUE(result.error.contains("处理行情 1/1\n")) << result.error.constData();
  EXPECT_FALSE(result.error.contains('\r')) << "no terminal, no carriage returns";
  EXPECT_TRUE(
      result.out.contains("当前日期：2024-01-03\n证券：2，有行情 1\n统计行：16\n未采用的行：1，未采用的文件：0\n"))
      << result.out.constData();
  EXPECT_TRUE(QFileInfo::exists(files.Path(QStringLiteral("中文 out/QMTL/TZZH/Day250/股票/600519.dat"))));

  const Result missing =
      RunProgram(BuildArguments(files.Path(QStringLiteral("nowhere")), files.Path(QStringLiteral("x"))));
  EXPECT_EQ(missing.exitCode, 1);
  EXPECT_TRUE(missing.error.contains("目录不存在")) << missing.error.constData();
}

TEST(Program, ChinesePathsWorkInEveryLocale) {
  for (const char* variable : {"LC_ALL=C", "NOTHING=OF_A_LOCALE"}) {
    const QStringList environment{QString::fromUtf8(variable)};
    const MarketFiles root;
    root.Write(QStringLiteral("来源/indices/上证.txt"), "");
    const QString source = root.Path(QStringLiteral("来源"));
    for (const char* index : {"1", "399001", "399300"}) {
      root.Write(QStringLiteral("来源/indices/%1.csv").arg(QLatin1String(index)),
                 "date,close\n2024-01-02,10\n2024-01-03,11\n");
    }
    root.Write(QStringLiteral("来源/securities.csv"), "代码,名称\n600519,贵州茅台\n");
    root.Write(QStringLiteral("来源/bars/600519.csv"), "日期,收盘\n2024-01-02,10\n错,1\n2024-01-03,11\n");
    root.Write(QStringLiteral("来源/bars/说明.csv"), "a\n");
    const QString out = root.Path(QStringLiteral("数据"));
    const Result result = Execute(Program(), BuildArguments(source, out), environment);
    EXPECT_EQ(result.exitCode, 0) << result.error.constData();
    EXPECT_TRUE(result.out.contains("数据目录：" + out.toUtf8() + "\n")) << result.out.constData();
    EXPECT_TRUE(result.error.contains(source.toUtf8() + "/bars/600519.csv:3: 日期无法识别“错”\n"))
        << result.error.constData();
    EXPECT_TRUE(result.error.contains(source.toUtf8() + "/bars/说明.csv: 文件名不是沪深证券代码\n"))
        << result.error.constData();
    EXPECT_TRUE(QFileInfo::exists(out + QStringLiteral("/QMTL/TZZH/Day250/股票/600519.dat")));
    const QString packet = out + QStringLiteral("/securities.dat");
    const Result shown = Execute(Program(), {QStringLiteral("packet"), QStringLiteral("to-csv"), packet}, environment);
    EXPECT_TRUE(shown.out.contains("600519,贵州茅台,")) << shown.out.constData();
    const Result missing = Execute(Program(), BuildArguments(root.Path(QStringLiteral("没有")), out), environment);
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_TRUE(missing.error.startsWith("错误：目录不存在：" + root.Path(QStringLiteral("没有")).toUtf8()))
        << missing.error.constData();
  }
}

TEST(Program, PacketsGoToCsvAndBack) {
  const MarketFiles files;
  const QByteArray csv(
      "name:text,n:integer,x:real,at:datetime\n\"a,\"\"b\",1,0.1,2024-01-02\n,,,\n\"\",-5,-1e-300,1969-12-31 "
      "23:59:59\n");
  files.Write(QStringLiteral("a.csv"), csv);
  const QString packet = files.Path(QStringLiteral("a.dat"));
  const QStringList fromCsv{QStringLiteral("packet"), QStringLiteral("from-csv"), files.Path(QStringLiteral("a.csv")),
                            QStringLiteral("--out"), packet};
  EXPECT_EQ(RunProgram(fromCsv).exitCode, 0);
  const ResultSet table = ReadPacketFile(packet);
  ASSERT_EQ(table.RowCount(), 3);
  EXPECT_TRUE(table.IsNull(1, 0));
  EXPECT_FALSE(table.IsNull(2, 0));
  EXPECT_EQ(RunProgram({QStringLiteral("packet"), QStringLiteral("to-csv"), packet}).out, csv);
  const QString again = files.Path(QStringLiteral("b.csv"));
  EXPECT_EQ(
      RunProgram({QStringLiteral("packet"), QStringLiteral("to-csv"), packet, QStringLiteral("--out"), again}).exitCode,
      0);
  EXPECT_EQ(files.Read(QStringLiteral("b.csv")), csv);
  const Result show = RunProgram(
      {QStringLiteral("packet"), QStringLiteral("show"), packet, QStringLiteral("--rows"), QStringLiteral("1")});
  EXPECT_EQ(show.out.toStdString(),
            "列：4，行：3\nname:text\tn:integer\tx:real\tat:datetime\na,\"b\t1\t0.1\t2024-01-02\n……\n");

  files.Write(QStringLiteral("bad.csv"), "n:integer\n1.5\n");
  QStringList bad = fromCsv;
  bad[2] = files.Path(QStringLiteral("bad.csv"));
  const Result refused = RunProgram(bad);
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_EQ(QString::fromUtf8(refused.error), QStringLiteral("错误：%1：第 2 行“n”列：不认识的值“1.5”\n").arg(bad[2]));
  EXPECT_EQ(ReadPacketFile(packet).RowCount(), 3) << "a refused CSV file leaves the earlier data file";
  EXPECT_EQ(RunProgram({QStringLiteral("packet"), QStringLiteral("show"), again}).exitCode, 1) << "no data file";
}

TEST(Simulate, IsTheSameForTheSameSeed) {
  const MarketFiles files;
  ASSERT_EQ(RunProgram(SimulateArguments(files.Path(QStringLiteral("a")), 300, 60, 5)).exitCode, 0);
  ASSERT_EQ(RunProgram(SimulateArguments(files.Path(QStringLiteral("b")), 300, 60, 5)).exitCode, 0);
  ASSERT_EQ(RunProgram(SimulateArguments(files.Path(QStringLiteral("c")), 300, 60, 6)).exitCode, 0);
  const auto first = Contents(files.Path(QStringLiteral("a")));
  EXPECT_EQ(first.size(), 300U + 3 + 4);
  EXPECT_EQ(first, Contents(files.Path(QStringLiteral("b"))));
  const auto other = Contents(files.Path(QStringLiteral("c")));
  EXPECT_NE(first.at(QStringLiteral("bars/600519.csv")), other.at(QStringLiteral("bars/600519.csv")));
  EXPECT_EQ(RunProgram(SimulateArguments(files.Path(QStringLiteral("d")), 0, 60, 5)).exitCode, 1);
  EXPECT_EQ(RunProgram(SimulateArguments(files.Path(QStringLiteral("d")), 8001, 60, 5)).exitCode, 1);
}

struct SimulatedDay {
  std::string date;
  std::int64_t prices[4];  // open, high, low, close in cents
};

std::vector<SimulatedDay> ReadSimulated(const QString& path) {
  QFile file(path);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_EQ(file.readLine(), "date,open,high,low,close,volume\n");
  std::vector<SimulatedDay> days;
  while (!file.atEnd()) {
    const QList<QByteArray> fields = file.readLine().trimmed().split(',');
    SimulatedDay day{fields[0].toStdString(), {}};
    for (int i = 0; i < 4; ++i) day.prices[i] = QByteArray(fields[i + 1]).replace(".", "").toLongLong();
    EXPECT_GT(fields[5].toLongLong(), 0);
    days.push_back(day);
  }
  return days;
}

TEST(Simulate, RefusesDaysBeforeThereWasAnExchange) {
  const MarketFiles files;
  QStringList arguments = SimulateArguments(files.Path(QStringLiteral("out")), 1, 20, 1);
  arguments << QStringLiteral("--end") << QStringLiteral("1990-12-31");
  const Result result = RunProgram(arguments);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_TRUE(result.error.contains("早于 1990-12-19")) << result.error.constData();
  EXPECT_FALSE(QFileInfo::exists(files.Path(QStringLiteral("out"))));
}

TEST(Simulate, StaysInsideTheLimitsWithGapsAndAllBoards) {
  const MarketFiles files;
  const QString folder = files.Path(QStringLiteral("market"));
  ASSERT_EQ(RunProgram(SimulateArguments(folder, 900, 250, 9)).exitCode, 0);
  int gaps = 0;
  int beyondTen = 0;
  int atLimit = 0;
  for (const QFileInfo& info : QDir(folder + QStringLiteral("/bars")).entryInfoList(QDir::Files)) {
    const std::string code = info.completeBaseName().toStdString();
    const std::string board = code.substr(0, 3);
    const int percent = board == "300" || board == "301" || board == "688" ? 20 : 10;
    EXPECT_NE(MarketOfStock(code), 0) << code;
    const auto days = ReadSimulated(info.filePath());
    if (days.size() < 250) ++gaps;
    for (std::size_t i = 0; i < days.size(); ++i) {
      const auto& [open, high, low, close] = days[i].prices;
      ASSERT_TRUE(low <= open && low <= close && open <= high && close <= high && low > 0) << code << days[i].date;
      if (i == 0) continue;
      ASSERT_LT(days[i - 1].date, days[i].date);
      // Previous close x (1 +- limit), rounded half up to the cent, as integers.
      const std::int64_t previous = days[i - 1].prices[3];
      ASSERT_LE(high, (previous * (100 + percent) + 50) / 100) << code << days[i].date;
      ASSERT_GE(low, (previous * (100 - percent) + 50) / 100) << code << days[i].date;
      if (close == (previous * (100 + percent) + 50) / 100) ++atLimit;
      if (100 * close > 112 * previous) ++beyondTen;
    }
  }
  EXPECT_GT(gaps, 30);
  EXPECT_GT(atLimit, 0);
  EXPECT_GT(beyondTen, 0) << "boards with 20 percent use it";
  const QByteArray securities = files.Read(QStringLiteral("market/securities.csv"));
  EXPECT_TRUE(securities.startsWith("code,name,industry,market,list_date\n600519,贵州茅台,白酒,SH,"));
  QSet<QByteArray> names;
  for (const QByteArray& line : securities.trimmed().split('\n')) names.insert(line.split(',')[1]);
  EXPECT_EQ(names.size(), 901) << "every name once, and the heading";
  for (const char* board : {"\n600", "\n000", "\n002", "\n300", "\n301", "\n688"})
    EXPECT_TRUE(securities.contains(board));
  EXPECT_EQ(files.Read(QStringLiteral("market/trading_dates.csv")).count('\n'), 251);
  EXPECT_EQ(files.Read(QStringLiteral("market/estimates.csv")).count('\n'), 901);

  const Result built = RunProgram(BuildArguments(folder, files.Path(QStringLiteral("data"))));
  EXPECT_EQ(built.exitCode, 0);
  EXPECT_TRUE(built.out.contains("未采用的行：0，未采用的文件：0")) << built.out.constData();
}

// Killed at many moments, the folder is always one of the two whole ones.
TEST(Kill, LeavesTheOldOrTheNewFolderWhole) {
  const MarketFiles files;
  const QString out = files.Path(QStringLiteral("out"));
  ASSERT_EQ(RunProgram(SimulateArguments(files.Path(QStringLiteral("old")), 400, 120, 1)).exitCode, 0);
  ASSERT_EQ(RunProgram(SimulateArguments(files.Path(QStringLiteral("new")), 400, 120, 2)).exitCode, 0);
  ASSERT_EQ(RunProgram(BuildArguments(files.Path(QStringLiteral("new")), out)).exitCode, 0);
  const auto newContents = Contents(out);
  QElapsedTimer timer;
  timer.start();
  ASSERT_EQ(RunProgram(BuildArguments(files.Path(QStringLiteral("old")), out)).exitCode, 0);
  const qint64 buildMicroseconds = timer.nsecsElapsed() / 1000;
  const auto oldContents = Contents(out);
  ASSERT_EQ(newContents.size(), oldContents.size());
  ASSERT_NE(newContents, oldContents);

  int killedBefore = 0;
  constexpr int kRounds = 24;
  for (int round = 0; round < kRounds; ++round) {
    QProcess process;
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(Program(), BuildArguments(files.Path(QStringLiteral("new")), out));
    ASSERT_TRUE(process.waitForStarted());
    QThread::usleep(static_cast<unsigned long>(buildMicroseconds * round / kRounds));
    ::kill(static_cast<pid_t>(process.processId()), SIGKILL);
    ASSERT_TRUE(process.waitForFinished(10000));
    const auto contents = Contents(out);
    ASSERT_TRUE(contents == oldContents || contents == newContents) << "round " << round;
    if (contents == newContents) {
      ASSERT_EQ(RunProgram(BuildArguments(files.Path(QStringLiteral("old")), out)).exitCode, 0);
    } else {
      ++killedBefore;
    }
  }
  EXPECT_GT(killedBefore, 0) << "no kill came before the end";
  EXPECT_EQ(RunProgram(BuildArguments(files.Path(QStringLiteral("new")), out)).exitCode, 0)
      << "a killed lock does not last";
  EXPECT_EQ(Contents(out), newContents);
  EXPECT_FALSE(QFileInfo::exists(files.Path(QStringLiteral(".out.new"))));
}

// Every row of real stocks against figures computed by numpy straight from the CSV files.
class RealData : public testing::TestWithParam<const char*> {};

TEST_P(RealData, EqualsAnIndependentCalculation) {
  const QString source = qEnvironmentVariable("HOLDWISE_MARKET_DATA");
  if (source.isEmpty()) GTEST_SKIP() << "no real bars at hand";
  const QString date = QString::fromUtf8(GetParam());
  const MarketFiles files;
  const QString out = files.Path(QStringLiteral("data"));
  QStringList arguments = BuildArguments(source, out);
  if (date != QStringLiteral("-")) arguments << QStringLiteral("--date") << date;
  const Result built = RunProgram(arguments);
  ASSERT_EQ(built.exitCode, 0) << built.error.constData();

  QStringList check{
      Script("check_statistics.py"), source + QStringLiteral("/bars"), source + QStringLiteral("/indices"), out, date,
      QStringLiteral("250")};
  for (const char* code : {"600519", "000001", "300750", "600036", "601318", "000002", "600900"})
    check << QString::fromUtf8(code);
  const Result checked = Execute(kPython, check);
  EXPECT_EQ(checked.exitCode, 0) << checked.error.constData();
  EXPECT_TRUE(checked.out.contains(" values, worst relative difference ")) << checked.out.constData();
  RecordProperty("check", checked.out.trimmed().toStdString());
}

INSTANTIATE_TEST_SUITE_P(Dates, RealData, testing::Values("-", "2025-01-03", "2024-03-01"));

// Means, deviations and risk figures of 200 made-up stocks with holes and late listings against numpy.
TEST(Figures, OfMadeUpStocksAreNumpys) {
  for (const auto& [seed, days] : {std::pair("1", "250"), std::pair("2", "250"), std::pair("3", "20")}) {
    const MarketFiles files;
    const QString source = files.Path(QStringLiteral("source"));
    const Result made = Execute(kPython, {Script("made_up_market.py"), QStringLiteral("write"), source,
                                          QString::fromUtf8(seed), QStringLiteral("200")});
    ASSERT_EQ(made.exitCode, 0) << made.error.constData();
    QStringList arguments = BuildArguments(source, files.Path(QStringLiteral("out")));
    arguments << QStringLiteral("--rates") << source + QStringLiteral("/rates.csv") << QStringLiteral("--days")
              << QString::fromUtf8(days);
    const Result built = RunProgram(arguments);
    ASSERT_EQ(built.exitCode, 0) << built.error.constData();
    const Result checked = Execute(
        kPython, {Script("check_figures.py"), source, files.Path(QStringLiteral("out")), QString::fromUtf8(days)});
    EXPECT_EQ(checked.exitCode, 0) << checked.error.constData();
    EXPECT_TRUE(checked.out.contains(" values, worst relative difference ")) << checked.out.constData();
    RecordProperty("check", checked.out.trimmed().toStdString());
  }
}

}  // namespace
}  // namespace holdwise
