// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "holdwise/packet/packet_file.h"
#include "market_data_fixture.h"

namespace holdwise {
namespace {

constexpr const char* kRequiredFiles[] = {"market.dat", "securities.dat", "trading_dates.dat", "quotes.dat"};
constexpr const char* kOptionalFiles[] = {"accounts.dat", "groups.dat"};

class RefusedFolder : public MarketDataTest {
 protected:
  /// The text and category of the error that Load ends in.
  std::pair<ErrorCategory, QString> LoadError() {
    try {
      MarketData data(clock_, log_, reader_);
      data.Load(folder_.Path());
    } catch (const Error& error) {
      return {error.Category(), QString::fromUtf8(error.what())};
    }
    ADD_FAILURE() << "Load accepted the folder";
    return {ErrorCategory::Database, {}};
  }
  void ExpectRefusal(const char* file, ErrorCategory category, const char* part) {
    const auto [found, text] = LoadError();
    EXPECT_EQ(found, category) << text.toStdString();
    EXPECT_TRUE(text.contains(QString::fromUtf8(file))) << text.toStdString();
    EXPECT_TRUE(text.contains(QString::fromUtf8(part))) << text.toStdString();
  }
};

TEST_F(RefusedFolder, MissingFileIsNamed) {
  for (const char* name : kRequiredFiles) {
    const QString path = folder_.File(QString::fromLatin1(name));
    ASSERT_TRUE(QFile::rename(path, path + QStringLiteral(".away")));
    ExpectRefusal(name, ErrorCategory::NotFound, "不存在");
    ASSERT_TRUE(QFile::rename(path + QStringLiteral(".away"), path));
  }
}

TEST_F(RefusedFolder, SpoiledFileIsNamed) {
  for (const char* name : kRequiredFiles) {
    const QString path = folder_.File(QString::fromLatin1(name));
    QByteArray whole;
    if (QFile file(path); file.open(QIODevice::ReadOnly)) whole = file.readAll();
    folder_.WriteBytes(QString::fromLatin1(name), "");
    ExpectRefusal(name, ErrorCategory::Corrupt, "损坏");
    folder_.WriteBytes(QString::fromLatin1(name), "date\n20240101\n");
    ExpectRefusal(name, ErrorCategory::Corrupt, "损坏");
    if (!whole.isEmpty()) {
      folder_.WriteBytes(QString::fromLatin1(name), whole.left(whole.size() - 5));
      ExpectRefusal(name, ErrorCategory::Corrupt, "损坏");
    }
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(QDir().mkdir(path));
    ExpectRefusal(name, ErrorCategory::Io, "无法读取");
    ASSERT_TRUE(QDir().rmdir(path));
    if (!whole.isEmpty()) folder_.WriteBytes(QString::fromLatin1(name), whole);
  }
}

TEST_F(RefusedFolder, FileWithoutRowsIsNamed) {
  for (const char* name : kRequiredFiles) {
    const QString path = folder_.File(QString::fromLatin1(name));
    const ResultSet whole = ReadPacketFile(path);
    ResultSet bare;
    for (int column = 0; column < whole.ColumnCount(); ++column) {
      bare.AddColumn(whole.ColumnName(column), whole.TypeOf(column));
    }
    folder_.Write(QString::fromLatin1(name), bare);
    ExpectRefusal(name, ErrorCategory::Corrupt, "没有数据行");
    folder_.Write(QString::fromLatin1(name), whole);
  }
}

TEST_F(RefusedFolder, EveryColumnIsNeededWithItsType) {
  for (const char* name : kRequiredFiles) {
    const ResultSet whole = ReadPacketFile(folder_.File(QString::fromLatin1(name)));
    for (int victim = 0; victim < whole.ColumnCount(); ++victim) {
      for (const bool drop : {true, false}) {
        ResultSet spoiled;
        spoiled.AddColumn("padding", ColumnType::Text);
        for (int column = 0; column < whole.ColumnCount(); ++column) {
          if (column == victim && drop) continue;
          spoiled.AddColumn(whole.ColumnName(column), column == victim ? ColumnType::DateTime : whole.TypeOf(column));
        }
        spoiled.AppendRow();
        folder_.Write(QString::fromLatin1(name), spoiled);
        const auto [category, text] = LoadError();
        EXPECT_EQ(category, ErrorCategory::Corrupt) << text.toStdString();
        EXPECT_TRUE(text.contains(QString::fromLatin1(name))) << text.toStdString();
      }
    }
    folder_.Write(QString::fromLatin1(name), whole);
  }
}

/// The quotes of another build in the folder.
TEST_F(RefusedFolder, QuotesOfAnotherEditionAreRefused) {
  const auto writeQuotes = [this](const char* edition) {
    std::vector<QStringList> rows = MarketFolder::QuoteRows();
    rows.front().append(QString::fromLatin1(edition));
    folder_.Write(QStringLiteral("quotes.dat"),
                  MakeTable(MarketFolder::kQuoteHeadings + QStringList{"edition:text"}, rows));
  };
  folder_.WriteMarket(20240529, false, QStringLiteral("a1"));
  writeQuotes("b2");
  ExpectRefusal("quotes.dat", ErrorCategory::Refused, "随另一份数据生成");
  for (const char* good : {"a1", "NULL"}) {
    writeQuotes(good);
    MarketData data(clock_, log_, reader_);
    EXPECT_NO_THROW(data.Load(folder_.Path())) << good;
  }
  // While the terminal runs the earlier quotes stay.
  MarketData data(clock_, log_, reader_);
  data.Load(folder_.Path());
  writeQuotes("b2");
  EXPECT_THROW(data.ReloadQuotes(), Error);
  EXPECT_EQ(data.Quotes().size(), MarketFolder::QuoteRows().size());
  folder_.WriteQuotes({{"1600000", "9", "8"}});
  data.ReloadQuotes();
  EXPECT_EQ(data.StockNowData(1600000).currentPrice, 9) << "a file that names none";
  folder_.WriteMarket(20240529, false);
  writeQuotes("b2");
  EXPECT_NO_THROW(data.ReloadQuotes()) << "a folder that tells none";
}

struct BadRow {
  const char* file;
  QStringList headings;
  std::vector<QStringList> rows;
  const char* part;
};

TEST_F(RefusedFolder, ImpossibleValuesAreRefused) {
  const QStringList marketHeadings = {QStringLiteral("current_date:integer"), QStringLiteral("simulated:integer"),
                                      QStringLiteral("format:integer")};
  const QStringList dateHeadings = {QStringLiteral("date:integer")};
  const auto& securities = MarketFolder::kSecurityHeadings;
  const auto& quotes = MarketFolder::kQuoteHeadings;
  const std::vector<BadRow> cases = {
      {"market.dat", marketHeadings, {Row("20240230,0,1")}, "20240230"},
      {"market.dat", marketHeadings, {Row("0,0,1")}, "日期0"},
      {"market.dat", marketHeadings, {Row("20240529,2,1")}, "模拟标志2"},
      {"market.dat", marketHeadings, {Row("20240529,0,2")}, "版本2"},
      {"market.dat", marketHeadings, {Row("20240529,0,1"), Row("20240529,0,1")}, "最多 1"},
      {"market.dat", marketHeadings, {Row("99999999999,0,1")}, "超出范围"},
      {"market.dat", marketHeadings + QStringList{"edition:text"}, {Row("20240529,0,1,a'b")}, "版本标记"},
      {"market.dat",
       marketHeadings + QStringList{"edition:text"},
       {{"20240529", "0", "1", QString(65, QLatin1Char('a'))}},
       "版本标记"},
      {"securities.dat",
       securities,
       {Row("600000,甲,银行,1,NULL,1"), Row("600036,乙,银行,1,NULL,1"), Row("600000,丙,银行,1,NULL,1")},
       "第3行"},
      {"securities.dat", securities, {Row("60000,甲,银行,1,NULL,1")}, "“60000”"},
      {"securities.dat", securities, {Row("60000x,甲,银行,1,NULL,1")}, "六位"},
      {"securities.dat", securities, {Row("399001,甲,银行,2,NULL,1")}, "指数"},
      {"securities.dat", securities, {Row("600000,,银行,1,NULL,1")}, "名称为空"},
      {"securities.dat", securities, {Row("600000,甲,银行,3,NULL,1")}, "市场3"},
      {"securities.dat", securities, {Row("600000,甲,银行,1,20241301,1")}, "20241301"},
      {"securities.dat", securities, {Row("600000,甲,银行,1,NULL,5")}, "A股标志5"},
      {"trading_dates.dat", dateHeadings, {Row("20240528"), Row("20240528")}, "第2行"},
      {"trading_dates.dat", dateHeadings, {Row("20240529"), Row("20240528")}, "先后"},
      {"trading_dates.dat", dateHeadings, {Row("20240528"), Row("20240532")}, "20240532"},
      {"trading_dates.dat", dateHeadings, {Row("20240530")}, "没有不晚于"},
      {"quotes.dat", quotes, {Row("1,3111,3100"), Row("1600000,0,8.2")}, "不大于零"},
      {"quotes.dat", quotes, {Row("1600000,-8.15,8.2")}, "不大于零"},
      {"quotes.dat", quotes, {Row("1600000,8.15,-8.2")}, "昨收"},
      {"quotes.dat", quotes, {Row("1600000,8.15,8.2"), Row("1600000,8.16,8.2")}, "1600000重复"},
  };
  for (const BadRow& bad : cases) {
    SCOPED_TRACE(bad.part);
    const QString path = folder_.File(QString::fromLatin1(bad.file));
    QByteArray whole;
    if (QFile file(path); file.open(QIODevice::ReadOnly)) whole = file.readAll();
    folder_.Write(QString::fromLatin1(bad.file), MakeTable(bad.headings, bad.rows));
    ExpectRefusal(bad.file, ErrorCategory::Refused, bad.part);
    if (whole.isEmpty()) {
      QFile::remove(path);
    } else {
      folder_.WriteBytes(QString::fromLatin1(bad.file), whole);
    }
  }
}

/// An optional file that cannot be used is left out and said once, in the log and for the window.
class DamagedOptionalFile : public MarketDataTest {
 protected:
  void ExpectNotice(const char* file, const char* part) {
    MarketData data(clock_, log_, reader_);
    const std::size_t logged = log_.Lines().size();
    ASSERT_NO_THROW(data.Load(folder_.Path())) << file;
    ASSERT_EQ(data.Notices().size(), 1) << file << ": " << part;
    EXPECT_TRUE(data.Notices()[0].contains(QString::fromUtf8(file))) << data.Notices()[0].toStdString();
    EXPECT_TRUE(data.Notices()[0].contains(QString::fromUtf8(part))) << data.Notices()[0].toStdString();
    ASSERT_EQ(log_.Lines().size(), logged + 1);
    EXPECT_EQ(log_.Lines().back(), data.Notices()[0]);
    EXPECT_FALSE(data.StockAccountInfo(1600000));
    EXPECT_TRUE(data.GetGroupCodeNumList(QStringLiteral("a")).empty());
    EXPECT_EQ(data.StockNowData(1600000).currentPrice, 8.15) << "everything else is there";
  }
  const QStringList accountHeadings_ = {QStringLiteral("code_number:integer"), QStringLiteral("eps:real"),
                                        QStringLiteral("net_asset_per_share:real"),
                                        QStringLiteral("total_shares:real")};
  const QStringList groupHeadings_ = {QStringLiteral("name:text"), QStringLiteral("code_number:integer")};
};

TEST_F(DamagedOptionalFile, OfAnyKindIsSaid) {
  for (const char* name : kOptionalFiles) {
    const QString path = folder_.File(QString::fromLatin1(name));
    folder_.WriteBytes(QString::fromLatin1(name), "");
    ExpectNotice(name, "损坏");
    folder_.WriteBytes(QString::fromLatin1(name), "date\n20240101\n");
    ExpectNotice(name, "损坏");
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(QDir().mkdir(path));
    ExpectNotice(name, "无法读取");
    ASSERT_TRUE(QDir().rmdir(path));
  }
}

TEST_F(DamagedOptionalFile, WithImpossibleValuesIsLeftOutWhole) {
  const std::vector<BadRow> cases = {
      {"accounts.dat", accountHeadings_, {Row("1600000,1,1,1"), Row("1600000,2,2,2")}, "第2行"},
      {"accounts.dat", accountHeadings_, {Row("1600000,1,1,-1")}, "总股本"},
      {"groups.dat", groupHeadings_, {Row(",1600000")}, "名称为空"},
      {"groups.dat", groupHeadings_, {Row("a,1600000"), Row("a,1600000")}, "1600000重复"},
  };
  for (const BadRow& bad : cases) {
    folder_.Write(QString::fromLatin1(bad.file), MakeTable(bad.headings, bad.rows));
    ExpectNotice(bad.file, bad.part);
    ASSERT_TRUE(QFile::remove(folder_.File(QString::fromLatin1(bad.file))));
  }
}

TEST_F(RefusedFolder, FilesWithMoreRowsThanTheyCanHave) {
  // Small on the disk: equal rows pack well.
  for (const char* name : {"securities.dat", "quotes.dat", "trading_dates.dat", "market.dat"}) {
    const QString path = folder_.File(QString::fromLatin1(name));
    const ResultSet whole = ReadPacketFile(path);
    ResultSet huge;
    for (int column = 0; column < whole.ColumnCount(); ++column) {
      huge.AddColumn(whole.ColumnName(column), whole.TypeOf(column));
    }
    for (int row = 0; row < 1'000'000; ++row) huge.AppendRow();
    folder_.Write(QString::fromLatin1(name), huge);
    EXPECT_LT(QFileInfo(path).size(), 20'000);
    ExpectRefusal(name, ErrorCategory::Refused, "超出限制");
    folder_.Write(QString::fromLatin1(name), whole);
  }
}

TEST_F(RefusedFolder, NullWhereAValueIsNeeded) {
  folder_.WriteQuotes({Row("1600000,8.15,8.2"), Row("1600036,NULL,1")});
  ExpectRefusal("quotes.dat", ErrorCategory::Corrupt, "第2行");
}

}  // namespace
}  // namespace holdwise
