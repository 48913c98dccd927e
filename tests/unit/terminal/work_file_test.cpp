// SPDX-License-Identifier: MIT
#include "files/work_file.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <atomic>
#include <thread>
#include <vector>

#include "holdwise/sdk/download.h"

namespace holdwise {
namespace {

TEST(WorkFile, FoldersMayBeMadeByAllDownloadsAtOnce) {
  constexpr int kRounds = 200;
  constexpr int kDownloads = 8;
  const QTemporaryDir folder;
  for (int round = 0; round < kRounds; ++round) {
    const QString work = folder.filePath(QString::number(round));
    ASSERT_TRUE(QDir().mkdir(work));
    std::atomic<int> waiting = kDownloads;
    std::vector<int> codes(kDownloads, -1);
    std::vector<std::thread> downloads;
    for (int index = 0; index < kDownloads; ++index) {
      downloads.emplace_back([&, index] {
        const QString path = QStringLiteral("QMTL/TZZH/Day250/%1.dat").arg(index);
        for (--waiting; waiting > 0;) {
        }
        codes[static_cast<std::size_t>(index)] = StoreWorkFile(work, path, QByteArray::number(index));
      });
    }
    for (std::thread& download : downloads) download.join();
    EXPECT_EQ(codes, std::vector<int>(kDownloads, TDSBAsynDownFileRole::Code::kOk)) << round;
    for (int index = 0; index < kDownloads; ++index) {
      QFile file(work + QStringLiteral("/QMTL/TZZH/Day250/%1.dat").arg(index));
      ASSERT_TRUE(file.open(QIODevice::ReadOnly));
      EXPECT_EQ(file.readAll(), QByteArray::number(index));
    }
  }
}

TEST(WorkFile, AFileInTheWayOfAFolderIsSaid) {
  const QTemporaryDir folder;
  ASSERT_TRUE(QFile(folder.filePath(QStringLiteral("QMTL"))).open(QIODevice::WriteOnly));
  EXPECT_EQ(StoreWorkFile(folder.path(), QStringLiteral("QMTL/a.dat"), "a"), TDSBAsynDownFileRole::Code::kUnwritable);
}

}  // namespace
}  // namespace holdwise
