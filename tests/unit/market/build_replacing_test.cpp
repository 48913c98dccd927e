// SPDX-License-Identifier: MIT
#include <QDir>
#include <QLockFile>

#include "build_fixture.h"

namespace holdwise {
namespace {

TEST_F(Build, ReplacesTheFolderAndKeepsFilesOfOthers) {
  EXPECT_EQ(Run().error, "");
  files_.Write(QStringLiteral("out/accounts.dat"), "accounts");
  files_.Write(QStringLiteral("out/QMTL/TZZH/notes.dat"), "of somebody else");
  files_.Write(QStringLiteral("out/QMTL/TZZH/Day250/股票/600000.dat"), "of a stock that is gone");
  files_.Write(QStringLiteral("bars/000001.csv"), "date,close\n2024-01-08,9\n2024-01-09,8\n");
  EXPECT_EQ(Run().error, "");
  EXPECT_EQ(files_.Read(QStringLiteral("out/accounts.dat")), "accounts");
  EXPECT_EQ(files_.Read(QStringLiteral("out/QMTL/TZZH/notes.dat")), "of somebody else");
  EXPECT_FALSE(QFileInfo::exists(files_.Path(QStringLiteral("out/QMTL/TZZH/Day250/股票/600000.dat"))));
  EXPECT_TRUE(QFileInfo::exists(files_.Path(QStringLiteral("out/QMTL/TZZH/Day250/股票/000001.dat"))));
  EXPECT_FALSE(QFileInfo::exists(files_.Path(QStringLiteral(".out.new"))));
  EXPECT_FALSE(QFileInfo::exists(files_.Path(QStringLiteral(".out.lock"))));
}

TEST_F(Build, RemovesWhatAnEarlierKillLeft) {
  files_.Write(QStringLiteral(".out.new/QMTL/half"), "half");
  EXPECT_EQ(Run().error, "");
  EXPECT_FALSE(QFileInfo::exists(files_.Path(QStringLiteral(".out.new"))));
  EXPECT_FALSE(QFileInfo::exists(files_.Path(QStringLiteral("out/QMTL/half"))));
}

// Each way to fail leaves the old folder byte by byte as it was.
TEST_F(Build, FailsWithTheOldFolderWhole) {
  EXPECT_EQ(Run().error, "");
  const QByteArray old = files_.Read(QStringLiteral("out/") + kMoutai);
  ASSERT_FALSE(old.isEmpty());
  files_.Write(QStringLiteral("bars/600519.csv"), "date,close\n2024-01-09,99\n");
  files_.Write(QStringLiteral("empty.csv"), "");
  files_.Write(QStringLiteral("nothing.csv"), "code,name\nx,y\n");
  files_.Write(QStringLiteral("one/1.csv"), kWeek);
  for (const char* name : {"two/1.csv", "two/sh000001.csv", "two/399001.csv", "two/399300.csv"}) {
    files_.Write(QString::fromUtf8(name), kWeek);
  }
  for (const char* name : {"void/1.csv", "void/399001.csv", "void/399300.csv"}) {
    files_.Write(QString::fromUtf8(name), "date,close\nx,1\n");
  }
  files_.Write(QStringLiteral("bad/600519.csv"), "date,close\n2024-01-09,\n");
  QDir().mkpath(files_.Path(QStringLiteral("hollow")));

  const auto failsWith = [&](QString BuildOptions::*option, const char* name, const char* text) {
    const BuildOptions good = options_;
    options_.*option = files_.Path(QString::fromUtf8(name));
    const std::string error = Run().error;
    EXPECT_NE(error.find(text), std::string::npos) << name << " gave " << error;
    EXPECT_EQ(files_.Read(QStringLiteral("out/") + kMoutai), old) << name;
    EXPECT_FALSE(QFileInfo::exists(files_.Path(QStringLiteral(".out.new")))) << name;
    options_ = good;
  };
  failsWith(&BuildOptions::barsFolder, "missing", "目录不存在");
  failsWith(&BuildOptions::barsFolder, "empty.csv", "文件为空");
  failsWith(&BuildOptions::barsFolder, "hollow", "没有 CSV 文件");
  failsWith(&BuildOptions::barsFolder, "bad", "没有可用的证券行情");
  failsWith(&BuildOptions::indicesFolder, "missing", "目录不存在");
  failsWith(&BuildOptions::indicesFolder, "one", "缺少指数行情 深证成指");
  failsWith(&BuildOptions::indicesFolder, "two", "同一指数有两个文件");
  failsWith(&BuildOptions::indicesFolder, "void", "没有可用的行");
  failsWith(&BuildOptions::securitiesFile, "missing.csv", "missing.csv");
  failsWith(&BuildOptions::securitiesFile, "empty.csv", "文件为空");
  failsWith(&BuildOptions::securitiesFile, "nothing.csv", "证券表没有可用的行");
  failsWith(&BuildOptions::datesFile, "missing.csv", "missing.csv");
  failsWith(&BuildOptions::ratesFile, "empty.csv", "文件为空");
  failsWith(&BuildOptions::estimatesFile, "missing.csv", "missing.csv");
  failsWith(&BuildOptions::estimatesFile, "nothing.csv", "表头缺少列“price”");
  failsWith(&BuildOptions::quotesFile, "nothing.csv", "表头缺少列“price”");
  options_.currentDate = 20200101;
  EXPECT_NE(Run().error.find("没有可用的行"), std::string::npos) << "no bars before the first date";
  EXPECT_EQ(files_.Read(QStringLiteral("out/") + kMoutai), old);
}

TEST_F(Build, NeverReplacesAFolderOfAnotherKind) {
  files_.Write(QStringLiteral("photos/summer.jpg"), "picture");
  options_.outFolder = files_.Path(QStringLiteral("photos"));
  EXPECT_NE(Run().error.find("输出目录里有别的文件"), std::string::npos);
  EXPECT_EQ(files_.Read(QStringLiteral("photos/summer.jpg")), "picture");
  options_.outFolder = files_.Path(QStringLiteral("securities.csv"));
  EXPECT_NE(Run().error.find("输出位置已有同名文件"), std::string::npos);
  QDir().mkpath(files_.Path(QStringLiteral("hollow")));
  options_.outFolder = files_.Path(QStringLiteral("hollow")) + u'/';
  EXPECT_EQ(Run().error, "") << "an empty folder may be used";
}

TEST_F(Build, ReplacesDataOfTheOtherKindOnlyWhenTold) {
  for (const bool isSimulated : {true, false}) {
    options_.outFolder = files_.Path(isSimulated ? QStringLiteral("real") : QStringLiteral("made_up"));
    options_.isSimulated = !isSimulated;
    EXPECT_EQ(Run().error, "");
    const QString market = isSimulated ? QStringLiteral("real/market.dat") : QStringLiteral("made_up/market.dat");
    const QByteArray old = files_.Read(market);
    options_.isSimulated = isSimulated;
    const std::string error = Run().error;
    EXPECT_NE(error.find(isSimulated ? "里是真实行情，没有用虚构数据替换它" : "里是虚构数据，没有用真实行情替换它"),
              std::string::npos)
        << error;
    EXPECT_NE(error.find("--replace"), std::string::npos) << error;
    EXPECT_EQ(files_.Read(market), old);
    options_.mayReplaceOtherKind = true;
    EXPECT_EQ(Run().error, "");
    EXPECT_NE(files_.Read(market), old);
    options_.mayReplaceOtherKind = false;
    EXPECT_EQ(Run().error, "") << "the same kind needs no word";
    files_.Write(market, "damaged");
    options_.isSimulated = !isSimulated;
    EXPECT_EQ(Run().error, "") << "what cannot be read is nobody's";
  }
}

TEST_F(Build, ReplacesTheFolderBehindALink) {
  options_.outFolder = files_.Path(QStringLiteral("disk/real"));
  EXPECT_EQ(Run().error, "");
  ASSERT_TRUE(QFile::link(files_.Path(QStringLiteral("disk/real")), files_.Path(QStringLiteral("out"))));
  const QByteArray old = files_.Read(QStringLiteral("out/market.dat"));
  options_.outFolder = files_.Path(QStringLiteral("out"));
  options_.isSimulated = true;
  options_.mayReplaceOtherKind = true;
  EXPECT_EQ(Run().error, "");
  EXPECT_TRUE(QFileInfo(files_.Path(QStringLiteral("out"))).isSymLink());
  EXPECT_NE(files_.Read(QStringLiteral("disk/real/market.dat")), old);
  EXPECT_EQ(files_.Read(QStringLiteral("out/market.dat")), files_.Read(QStringLiteral("disk/real/market.dat")));
}

TEST_F(Build, OneProcessAtATimeWritesAFolder) {
  QLockFile other(files_.Path(QStringLiteral(".out.lock")));
  ASSERT_TRUE(other.lock());
  EXPECT_NE(Run().error.find("另一个进程正在写此目录"), std::string::npos);
  other.unlock();
  EXPECT_EQ(Run().error, "");
}

/// What a process leaves that is killed between making its lock file and writing its number into it.
TEST_F(Build, ALockFileThatNobodyHoldsIsNoLock) {
  QFile left(files_.Path(QStringLiteral(".out.lock")));
  ASSERT_TRUE(left.open(QIODevice::WriteOnly));
  left.close();
  EXPECT_EQ(Run().error, "");
}

}  // namespace
}  // namespace holdwise
