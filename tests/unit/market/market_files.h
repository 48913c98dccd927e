// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace holdwise::test {

/// A folder of its own for one test, with what the tests of the producer do in it.
class MarketFiles {
 public:
  MarketFiles() { EXPECT_TRUE(folder_.isValid()); }
  [[nodiscard]] QString Path(const QString& name) const { return folder_.filePath(name); }
  void Write(const QString& name, const QByteArray& bytes) const {
    QDir().mkpath(QFileInfo(Path(name)).path());
    QFile file(Path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
  }
  [[nodiscard]] QByteArray Read(const QString& name) const {
    QFile file(Path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
  /// Three indices with the same bars, the two well-known stocks in the master.
  void WriteMarket(const QByteArray& indexBars) const {
    for (const char* name : {"indices/1.csv", "indices/399001.csv", "indices/399300.csv"})
      Write(QString::fromUtf8(name), indexBars);
    Write(QStringLiteral("securities.csv"),
          "code,name,industry,market,list_date\n"
          "600519,贵州茅台,白酒,SH,2001-08-27\n"
          "000001,平安银行,银行,SZ,1991-04-03\n");
  }

 private:
  QTemporaryDir folder_;
};

}  // namespace holdwise::test
