// SPDX-License-Identifier: MIT
#include "health/health.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "holdwise/packet/packet_file.h"

namespace holdwise::health {
namespace {

void Write(const QString& path, const QByteArray& text = "x") {
  ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  ASSERT_EQ(file.write(text), text.size());
}

/// A terminal with which all is well.
class HealthTest : public testing::Test {
 protected:
  HealthTest() {
    Write(folder_.filePath("holdwise.fdb"), QByteArray(5 << 20, 'x'));
    Write(folder_.filePath("TZZHDetail.dat"));
    Write(folder_.filePath("TZZHMerge.dat"));
    Write(folder_.filePath("log/terminal.log"));
    Write(folder_.filePath("backups/portfolios-20240530-101112-3-14.csv"));
    Write(folder_.filePath("backups/portfolios-20240531-093000-4-20.csv"));
    for (const char* name :
         {"quotes.dat", "market.dat", "securities.dat", "trading_dates.dat", "QMTL/TZZH/Day250/股票/600000.dat",
          "QMTL/TZZH/Day250/指数/allzs.dat", "QMTL/TZZH/风险计量/SH.dat", "QMTL/TZZH/风险计量/SZ.dat",
          "QMTL/TZZH/风险计量/HS.dat", "QMTL/TZZH/InterestRate.Dat", "QMTL/TZZH/GZ.dat", "QMTL/TZZH/ZNPZ.dat",
          "QMTL/TZZH/StockPool.dat"})
      Write(folder_.filePath("data/") + name);
    facts_.now = QDateTime::currentDateTime().addSecs(7200 + 30);
    facts_.workFolder = folder_.path();
    facts_.database = folder_.filePath("holdwise.fdb");
    facts_.dataFolder = folder_.filePath("data");
    facts_.dataDate = "2024-05-31";
    facts_.dataEdition = "e1";
    facts_.quotesProblem = "";
  }
  /// The text of a row that is, or is not, well.
  QString Text(const char* subject, bool isWell) const {
    for (const Row& row : TableOf(facts_)) {
      if (row.subject != QString::fromUtf8(subject)) continue;
      EXPECT_EQ(row.isWell, isWell) << subject << ": " << row.text.toStdString();
      return row.text;
    }
    ADD_FAILURE() << "no row " << subject;
    return {};
  }
  void ExpectIn(const char* subject, bool isWell, const QString& part) const {
    const QString text = Text(subject, isWell);
    EXPECT_TRUE(text.contains(part)) << text.toStdString();
  }

  QTemporaryDir folder_;
  Facts facts_;
};

TEST_F(HealthTest, AllIsWell) {
  const Table table = TableOf(facts_);
  EXPECT_EQ(table.size(), 9U);
  EXPECT_EQ(ProblemsIn(table), 0) << TextOf(table).toStdString();
  EXPECT_EQ(TextOf(table).split('\n').size(), 9);
  EXPECT_TRUE(TextOf(table).startsWith("正常  数据库："));
  ExpectIn("数据库", true, "5 MB");
  ExpectIn("备份", true, "最近 2024-05-31 09:30:00，4 个组合、20 条持股；共 2 份");
  ExpectIn("行情", true, "2 小时前");
  ExpectIn("行情", true, "正在跟踪");
  ExpectIn("数据目录", true, "版本 e1");
}

TEST_F(HealthTest, BeforeAnyDataWereChosenNothingIsAmiss) {
  facts_.dataFolder = folder_.filePath("none");
  facts_.dataProblem = "不能使用";
  facts_.quotesProblem.reset();
  (void)Text("行情", false);
  (void)Text("数据目录", false);
  facts_.isDataAwaited = true;
  ExpectIn("行情", true, "还没有选择");
  ExpectIn("数据目录", true, "还没有选择");
  EXPECT_EQ(ProblemsIn(TableOf(facts_)), 0);
}

TEST_F(HealthTest, PluginsAreThereOnceTheyHaveBeenLoaded) {
  facts_.plugins = "投资组合 1.0";
  ExpectIn("插件", true, "投资组合 1.0");
  facts_.pluginProblems = QStringList{"“x.so”不是本终端的插件"};
  ExpectIn("插件", false, "x.so");
  ExpectIn("插件", false, "投资组合 1.0");
  facts_.plugins.clear();
  ExpectIn("插件", false, "没有可用的插件");
}

TEST_F(HealthTest, TheDatabase) {
  facts_.databaseProblem = "坏了";
  ExpectIn("数据库", false, "坏了");
  facts_.databaseProblem.clear();
  ASSERT_TRUE(QFile::remove(facts_.database));
  ExpectIn("数据库", false, "不在了");
  facts_.isServer = true;
  ExpectIn("数据库检查", true, "服务器");
  (void)Text("数据库", true);
}

TEST_F(HealthTest, TheLastCheckHasItsDate) {
  ExpectIn("数据库检查", true, "还没有");
  facts_.checkRecord = folder_.filePath("record");
  Write(facts_.checkRecord);
  QFile record(facts_.checkRecord);
  ASSERT_TRUE(record.open(QIODevice::ReadWrite));
  ASSERT_TRUE(record.setFileTime(QDateTime({2024, 5, 31}, {9, 30}), QFileDevice::FileModificationTime));
  record.close();
  ExpectIn("数据库检查", true, "2024-05-31 09:30:00 完整检查过");
}

TEST_F(HealthTest, TheMirror) {
  Write(folder_.filePath("TZZHMerge.dat.20240531-093000.bad"));
  ExpectIn("镜像文件", false, "TZZHMerge.dat.20240531-093000.bad");
  ASSERT_TRUE(QFile::remove(folder_.filePath("TZZHMerge.dat.20240531-093000.bad")));
  ASSERT_TRUE(QFile::remove(folder_.filePath("TZZHMerge.dat")));
  ExpectIn("镜像文件", false, "缺了一个");
}

TEST_F(HealthTest, AMirrorThatCannotBeReadIsSaidUntilItIsWrittenAnew) {
  const QString detail = folder_.filePath("TZZHDetail.dat");
  const QString merge = folder_.filePath("TZZHMerge.dat");
  MirrorReader reader;
  WritePacketFile(detail, ResultSet(), Durability::Replaceable);
  WritePacketFile(merge, ResultSet(), Durability::Replaceable);
  EXPECT_EQ(reader.Problem(folder_.path()), QString());
  ExpectIn("镜像文件", true, "写于");
  Write(merge, {});
  facts_.mirrorProblem = reader.Problem(folder_.path());
  EXPECT_TRUE(facts_.mirrorProblem.contains(merge)) << facts_.mirrorProblem.toStdString();
  EXPECT_EQ(reader.Problem(folder_.path()), facts_.mirrorProblem) << "remembered";
  ExpectIn("镜像文件", false, "读不出来");
  WritePacketFile(merge, ResultSet(), Durability::Replaceable);
  EXPECT_EQ(reader.Problem(folder_.path()), QString());
  ASSERT_TRUE(QFile::remove(merge));
  EXPECT_EQ(reader.Problem(folder_.path()), QString()) << "said otherwise";
}

TEST_F(HealthTest, BackupQuotesDataAndLog) {
  facts_.backupProblem = "磁盘满";
  ExpectIn("备份", false, "磁盘满");
  facts_.quotesProblem = "文件坏了";
  ExpectIn("行情", false, "没有跟踪：文件坏了");
  facts_.quotesProblem.reset();
  ExpectIn("行情", true, "终端没有运行");
  ASSERT_TRUE(QFile::remove(folder_.filePath("data/quotes.dat")));
  ExpectIn("行情", false, "quotes.dat");
  facts_.dataNotices = QStringList{"groups.dat 没有"};
  ExpectIn("数据目录", false, "groups.dat 没有");
  facts_.dataProblem = "market.dat 坏了";
  ExpectIn("数据目录", false, "market.dat 坏了");
  ASSERT_TRUE(QDir(folder_.filePath("log")).removeRecursively());
  ExpectIn("日志", false, "没有日志文件");
}

TEST_F(HealthTest, TheComparisonWithTheBackup) {
  facts_.comparison = {"一致"};
  ExpectIn("与备份比较", true, "一致");
  facts_.comparison = {"少了一个组合", false};
  ExpectIn("与备份比较", false, "少了一个组合");
}

TEST_F(HealthTest, FilesMissingInTheDataFolderAreNamed) {
  const QString folder = folder_.filePath("data/QMTL/TZZH/");
  ASSERT_TRUE(QFile::remove(folder + "ZNPZ.dat"));
  ExpectIn("数据目录", true, "没有 QMTL/TZZH/ZNPZ.dat，智能配置没有内容");
  ASSERT_TRUE(QFile::remove(folder + "风险计量/SZ.dat"));
  ASSERT_TRUE(QFile::remove(folder + "InterestRate.Dat"));
  ExpectIn("数据目录", false, "缺少 QMTL/TZZH/风险计量/SZ.dat、QMTL/TZZH/InterestRate.Dat，");
  ASSERT_TRUE(QDir(folder + "Day250/股票").removeRecursively());
  ExpectIn("数据目录", false, "缺少 QMTL/TZZH/Day250/股票、");
  facts_.dataProblem = "market.dat 坏了";
  ExpectIn("数据目录", false, "market.dat 坏了；缺少 QMTL");
}

TEST_F(HealthTest, AFolderThatIsGone) {
  facts_.workFolder = folder_.filePath("none");
  ExpectIn("磁盘", false, "none 不在了");
}

}  // namespace
}  // namespace holdwise::health
