// SPDX-License-Identifier: MIT
#include "bar_folder.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>

#include "headings.h"
#include "holdwise/market/market_rules.h"
#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

QFileInfoList CsvFiles(const QString& folder) {
  const QFileInfo info(folder);
  if (!info.exists()) throw Error(ErrorCategory::NotFound, "目录不存在：" + folder.toStdString());
  if (!info.isDir()) throw Error(ErrorCategory::NotFound, "不是目录：" + folder.toStdString());
  if (!info.isReadable() || !info.isExecutable()) throw Error(ErrorCategory::Io, "目录不可读：" + folder.toStdString());
  // Folders, pipes and links to nothing are listed as well, to be named when they turn out unreadable.
  QFileInfoList files =
      QDir(folder).entryInfoList({QStringLiteral("*.csv")}, QDir::Files | QDir::Dirs | QDir::System, QDir::Name);
  if (files.isEmpty()) throw Error(ErrorCategory::NotFound, "目录里没有 CSV 文件：" + folder.toStdString());
  return files;
}

// Whether the lines of the file name their securities. What cannot be read is no such table.
bool IsTable(const QString& path) {
  try {
    constexpr std::int64_t kHeadingAndMore = 64 << 10;  // enough to tell the encoding
    return CsvTable(path, BarColumns(), kHeadingAndMore).Has(kBarCode);
  } catch (const Error&) {
    return false;
  }
}

void RejectSecondFiles(std::vector<StockFile>& files, std::vector<Rejection>& rejections) {
  std::stable_sort(files.begin(), files.end(), [](const StockFile& a, const StockFile& b) { return a.code < b.code; });
  const auto isSameCode = [&](const StockFile& a, const StockFile& b) {
    if (a.code != b.code) return false;
    rejections.push_back({b.path, 0, QStringLiteral("与 %1 是同一证券").arg(a.path)});
    return true;
  };
  files.erase(std::unique(files.begin(), files.end(), isSameCode), files.end());
}

}  // namespace

const char* IndexName(int number) {
  switch (number) {
    case 1:
      return "上证指数（1.csv）";
    case 399001:
      return "深证成指（399001.csv）";
    default:
      return "沪深300（399300.csv）";
  }
}

BarSources ListStockFiles(const QString& place, std::vector<Rejection>& rejections) {
  BarSources sources;
  if (QFileInfo(place).isFile()) {
    const auto code = ParseStockCode(QFileInfo(place).completeBaseName().toStdString());
    if (!code || IsTable(place)) {
      sources.tables.push_back(place);
    } else {
      sources.stocks.push_back({*code, place});
    }
    return sources;
  }
  for (const QFileInfo& info : CsvFiles(place)) {
    const auto code = ParseStockCode(info.completeBaseName().toStdString());
    if (code) {
      sources.stocks.push_back({*code, info.filePath()});
    } else if (IsTable(info.filePath())) {
      sources.tables.push_back(info.filePath());
    } else {
      rejections.push_back({info.filePath(), 0, QStringLiteral("文件名不是沪深证券代码")});
    }
  }
  RejectSecondFiles(sources.stocks, rejections);
  if (sources.stocks.empty() && sources.tables.empty()) {
    throw Error(ErrorCategory::NotFound, "目录里没有证券的行情文件：" + place.toStdString());
  }
  return sources;
}

IndexSources ListIndexFiles(const QString& place) {
  IndexSources sources;
  if (QFileInfo(place).isFile()) {
    sources.table = place;
    return sources;
  }
  for (const QFileInfo& info : CsvFiles(place)) {
    const int number = ParseIndexNumber(info.completeBaseName().toStdString(), true);
    if (number == 0) continue;
    const auto [known, isNew] = sources.files.emplace(number, info.filePath());
    if (!isNew) {
      throw Error(ErrorCategory::Refused,
                  "同一指数有两个文件：" + known->second.toStdString() + "，" + info.filePath().toStdString());
    }
  }
  for (const int number : kIndexNumbers) {
    if (sources.files.contains(number)) continue;
    throw Error(ErrorCategory::NotFound, std::string("缺少指数行情 ") + IndexName(number) + "：" + place.toStdString());
  }
  return sources;
}

}  // namespace holdwise
