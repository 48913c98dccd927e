// SPDX-License-Identifier: MIT
#include <QCryptographicHash>
#include <QDirIterator>
#include <QThread>
#include <map>
#include <random>

#include "build_memory.h"
#include "holdwise/market/simulated_market.h"
#include "market_files.h"

namespace holdwise {
namespace {

using Contents = std::map<QString, QByteArray>;

/// What a build says and what it leaves in its folder.
struct Said {
  Contents folder;
  std::vector<std::string> lines;
  bool operator==(const Said&) const = default;
};

class BuildAgain : public testing::Test {
 protected:
  void SetUp() override {
    SimulationOptions market;
    market.securities = 24;
    market.days = 45;
    market.outFolder = files_.Path(QStringLiteral("in"));
    WriteSimulatedMarket(market);
    options_.barsFolder = Place("bars");
    options_.indicesFolder = Place("indices");
    options_.securitiesFile = Place("securities.csv");
    options_.datesFile = Place("trading_dates.csv");
    options_.ratesFile = Place("deposit_rates.csv");
    options_.estimatesFile = Place("estimates.csv");
    options_.accountsFile = Place("accounts.csv");
    options_.industriesFile = Place("industries.csv");
    options_.quotesFile = Place("quotes.csv");
    options_.factorsPlace = Place("factors");
    options_.isSimulated = true;
    options_.days = 30;
    options_.proposals.pool.leastReturns = 5;
    Write("industries.csv", "code,industry\n600000,港口\n");
    Write("accounts.csv", "code,eps,bps\n600519,1,2\n");
    Write("quotes.csv", "code,price,prev_close\n600519,20.5,20\n");
    for (const QString& code : Codes()) WriteFactors(code, {});
  }

  [[nodiscard]] QString Place(const QString& name) const { return files_.Path(QStringLiteral("in/") + name); }
  [[nodiscard]] QString Place(const char* name) const { return Place(QString::fromUtf8(name)); }
  [[nodiscard]] QByteArray Read(const QString& name) const { return files_.Read(QStringLiteral("in/") + name); }
  void Write(const QString& name, const QByteArray& bytes) const { files_.Write(QStringLiteral("in/") + name, bytes); }
  void Write(const char* name, const QByteArray& bytes) const { Write(QString::fromUtf8(name), bytes); }
  static QString Bars(const QString& code) { return QStringLiteral("bars/%1.csv").arg(code); }

  [[nodiscard]] QStringList Codes() const {
    QStringList codes = QDir(Place("bars")).entryList({QStringLiteral("*.csv")});
    for (QString& code : codes) code.chop(4);
    return codes;
  }
  // From the first day on, then changed on `day`.
  void WriteFactors(const QString& code, const QByteArray& day) const {
    QByteArray lines = "date,adj_factor\n2020-01-02,1\n";
    if (!day.isEmpty()) lines += day + ",1.02\n";
    Write(QStringLiteral("factors/%1.csv").arg(code), lines);
  }

  Said Build(const char* out, BuildMemory& memory) {
    Said said;
    BuildObserver observer;
    observer.onRejection = [&](const Rejection& rejection) { said.lines.push_back(rejection.ToText().toStdString()); };
    observer.onWarning = observer.onRejection;
    options_.outFolder = files_.Path(QString::fromUtf8(out));
    try {
      const BuildSummary summary = BuildDataFolder(options_, observer, memory);
      for (const auto* lines : {&summary.remarks, &summary.understood, &summary.brief, &summary.advice}) {
        for (const QString& line : *lines) said.lines.push_back(line.toStdString());
      }
      for (const std::int64_t number :
           {std::int64_t{summary.securities}, std::int64_t{summary.series}, summary.rows, summary.rejectedLines,
            std::int64_t{summary.rejectedFiles}, std::int64_t{summary.suspended}, std::int64_t{summary.currentDate},
            std::int64_t{summary.proposals}}) {
        said.lines.push_back(std::to_string(number));
      }
    } catch (const Error& error) {
      said.lines.emplace_back(error.what());
    }
    QDirIterator names(options_.outFolder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (names.hasNext()) {
      const QString path = names.next();
      QFile file(path);
      EXPECT_TRUE(file.open(QIODevice::ReadOnly));
      said.folder[QDir(options_.outFolder).relativeFilePath(path)] = file.readAll();
    }
    return said;
  }
  Said BuildFromNothing() {
    QDir(files_.Path(QStringLiteral("fresh"))).removeRecursively();
    BuildMemory nothing;
    return Build("fresh", nothing);
  }

  test::MarketFiles files_;
  BuildOptions options_;
  BuildMemory memory_;
};

/// Changes of one input each, drawn at random.
class Changes {
 public:
  using Change = std::function<std::string()>;

  template <typename Number>
  Number Below(Number limit) {
    return static_cast<Number>(std::uniform_int_distribution<long long>(0, static_cast<long long>(limit) - 1)(engine_));
  }
  template <typename List>
  auto OneOf(const List& list) {
    return list[Below(list.size())];
  }

 private:
  std::mt19937_64 engine_{20260101};
};

class BuildAgainAtRandom : public BuildAgain {
 protected:
  // A line of a CSV file of bars, its close moved by a cent inside high and low.
  static QByteArray WithOtherClose(const QByteArray& line) {
    QByteArrayList fields = line.split(',');
    const bool isAtHigh = fields[4] == fields[2];
    const double moved = fields[4].toDouble() + (isAtHigh ? -0.01 : 0.01);
    fields[4] = QByteArray::number(moved, 'f', 2);
    fields[2] = fields[4].toDouble() > fields[2].toDouble() ? fields[4] : fields[2];
    fields[3] = fields[4].toDouble() < fields[3].toDouble() ? fields[4] : fields[3];
    return fields.join(',');
  }
  void ChangeLine(const QString& name, qsizetype fromEnd) {
    QByteArrayList lines = Read(name).split('\n');
    QByteArray& line = lines[lines.size() - 1 - fromEnd];
    line = WithOtherClose(line);
    Write(name, lines.join('\n'));
  }
  void AddDay(const QString& name, const QByteArray& date) {
    const QByteArray text = Read(name);
    const QByteArrayList lines = text.split('\n');
    QByteArrayList fields = WithOtherClose(lines[lines.size() - 2]).split(',');
    fields[0] = date;
    Write(name, text + fields.join(',') + '\n');
  }
  void AddDayForAll() {
    do lastDay_ = lastDay_.addDays(1);
    while (lastDay_.dayOfWeek() > 5);
    const QByteArray date = lastDay_.toString(Qt::ISODate).toUtf8();
    for (const QString& code : Codes()) AddDay(Bars(code), date);
    for (const char* index : {"1", "399001", "399300"}) {
      AddDay(QStringLiteral("indices/%1.csv").arg(QString::fromUtf8(index)), date);
    }
    Write("trading_dates.csv", Read(QStringLiteral("trading_dates.csv")) + date + '\n');
  }
  void ChangeSecurity(const QString& code, const QByteArray& line) {
    QByteArrayList lines = Read(QStringLiteral("securities.csv")).split('\n');
    for (QByteArray& one : lines) {
      if (one.startsWith(code.toUtf8())) one = line;
    }
    Write("securities.csv", lines.join('\n'));
  }

  std::string ChangeBars() {
    const QString code = changes_.OneOf(Codes());
    switch (changes_.Below(5)) {
      case 0:
        ChangeLine(Bars(code), 1);
        return "last close of " + code.toStdString();
      case 1:
        ChangeLine(Bars(code), 2 + changes_.Below(15));
        return "a close of " + code.toStdString();
      case 2:
        Write(Bars(code), Read(Bars(code)) + "2024-13-01,x,1,1,1,1\n");
        return "a bad line for " + code.toStdString();
      case 3:
        Write(QStringLiteral("kept.csv"), Read(Bars(code)));
        QFile::remove(Place(Bars(code)));
        removed_ = code;
        return code.toStdString() + " removed";
      default:
        if (!removed_.isEmpty()) Write(Bars(removed_), Read(QStringLiteral("kept.csv")));
        return removed_.toStdString() + " added";
    }
  }
  std::string ChangeReferences() {
    const QString code = changes_.OneOf(Codes());
    switch (changes_.Below(9)) {
      case 8:
        Write("accounts.csv", "code,eps,bps\n" + code.toUtf8() + ",1.5,8\n");
        return "accounts";
      case 0:
        ChangeSecurity(code, code.toUtf8() + ",*ST某,房地产,,2024-06-03");
        return code.toStdString() + " has another name and list date";
      case 1:
        ChangeSecurity(code, code.toUtf8() + ",新名,,,");
        return code.toStdString() + " has no industry and list date";
      case 2:
        Write("industries.csv", "code,industry\n" + code.toUtf8() + ",渔业\n");
        return code.toStdString() + " has an industry";
      case 3:
        WriteFactors(code, changes_.Below(2) == 0 ? "2025-12-10" : "2025-12-17");
        return code.toStdString() + " has a dividend";
      case 4:
        Write("quotes.csv", "code,price,prev_close\n" + code.toUtf8() + ",0,9.5\n");
        return code.toStdString() + " has a quote";
      case 5:
        Write("deposit_rates.csv", "date,one_year\n2015-10-24,1." + QByteArray::number(10 + changes_.Below(80)) + "\n");
        return "rates";
      case 6:
        Write("estimates.csv", "code,price\n" + code.toUtf8() + ",7.5\n");
        return "estimates";
      default:
        ChangeLine(QStringLiteral("indices/%1.csv").arg(changes_.Below(2) == 0 ? 1 : 399300), 3);
        return "an index";
    }
  }
  std::string ChangeOptions() {
    switch (changes_.Below(4)) {
      case 0:
        options_.days = 20 + changes_.Below(20);
        return "days";
      case 1:
        options_.currentDate = options_.currentDate == 0 ? 20251229 : 0;
        return "current date";
      case 2:
        options_.proposals.areWanted = !options_.proposals.areWanted;
        return "proposals";
      default:
        options_.proposals.premium = 3 + changes_.Below(4);
        return "premium";
    }
  }
  std::string ChangeSomething() {
    const int kind = changes_.Below(10);
    if (kind == 0) {
      AddDayForAll();
      return "a new day";
    }
    if (kind == 1) return ChangeOptions();
    return kind < 6 ? ChangeBars() : ChangeReferences();
  }

  Changes changes_;
  QDate lastDay_{2025, 12, 31};
  QString removed_;
};

TEST_F(BuildAgainAtRandom, IsByteForByteABuildFromNothing) {
  EXPECT_EQ(Build("out", memory_), BuildFromNothing());
  int different = 0;
  Contents before;
  for (int round = 0; round < 60; ++round) {
    std::string what = ChangeSomething();
    if (round % 5 == 0) what += ", " + ChangeSomething();
    if (round % 3 == 0) QThread::msleep(120);  // now and then the files have settled, else they just change
    const Said again = Build("out", memory_);
    const Said fresh = BuildFromNothing();
    ASSERT_EQ(again.lines, fresh.lines) << round << ": " << what;
    ASSERT_EQ(again.folder, fresh.folder) << round << ": " << what;
    different += again.folder != before ? 1 : 0;
    before = again.folder;
  }
  EXPECT_GT(different, 30) << "most changes can be seen";
}

// Neither the size nor the time that programs may set tells.
TEST_F(BuildAgain, AFileWithItsOldTimeIsReadAgain) {
  const QString name = Bars(Codes().front());
  QByteArray text = Read(name);
  QFile file(Place(name));
  const QDateTime written(QDate(2025, 12, 31), QTime(16, 0));
  ASSERT_TRUE(file.open(QIODevice::ReadWrite));
  ASSERT_TRUE(file.setFileTime(written, QFileDevice::FileModificationTime));
  file.close();
  QThread::msleep(150);
  const Said first = Build("out", memory_);
  text[text.lastIndexOf('.') - 1] = text[text.lastIndexOf('.') - 1] == '9' ? '8' : '9';
  ASSERT_TRUE(file.open(QIODevice::ReadWrite));
  ASSERT_EQ(file.write(text), text.size());
  ASSERT_TRUE(file.flush());
  ASSERT_TRUE(file.setFileTime(written, QFileDevice::FileModificationTime));
  file.close();
  ASSERT_EQ(QFileInfo(file).lastModified(), written);
  const Said again = Build("out", memory_);
  EXPECT_NE(again, first);
  EXPECT_EQ(again, BuildFromNothing());
}

TEST_F(BuildAgain, WhatHasNotChangedIsNotMadeAgain) {
  const auto made = [this] {
    const Said said = Build("out", memory_);
    EXPECT_TRUE(said.folder.contains(QStringLiteral("market.dat"))) << said.lines.back();
    std::map<QString, std::shared_ptr<const MadeStock>> stocks;  // held: no other can take its place in memory
    for (const QString& code : Codes()) {
      const QString path = Place(Bars(code));
      StockSource source{*FileStateOf(path), 0, {{}, 20200102}};
      for (const QByteArray& line : Read(QStringLiteral("securities.csv")).split('\n')) {
        if (line.startsWith(code.toUtf8())) source.listDate = line.split(',').last().replace("-", "").toInt();
      }
      stocks[code] = memory_.GetWork().stocks.Find(path, source);
    }
    return stocks;
  };
  QThread::msleep(150);
  const auto first = made();
  for (const auto& [code, stock] : first) EXPECT_NE(stock, nullptr) << code.toStdString();
  EXPECT_EQ(made(), first);
  const QString code = Codes().front();
  Write(Bars(code), Read(Bars(code)) + "bad line\n");
  QThread::msleep(150);
  auto second = made();
  EXPECT_NE(second.at(code), first.at(code));
  second[code] = first.at(code);
  EXPECT_EQ(second, first) << "the others";
  Write("deposit_rates.csv", "date,one_year\n2015-10-24,1.11\n");
  const auto third = made();
  for (const auto& [one, stock] : third) EXPECT_NE(stock, second.at(one)) << "all depend on the rate";
}

}  // namespace
}  // namespace holdwise
