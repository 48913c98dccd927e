// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <map>
#include <string>
#include <vector>

#include "holdwise/market/csv_table.h"

namespace holdwise {

struct StockFile {
  std::string code;  ///< six digits
  QString path;
};

/// Where bars come from: a file of one security each, or files of many that name the security in every line.
struct BarSources {
  std::vector<StockFile> stocks;  ///< ascending by code
  std::vector<QString> tables;    ///< ascending by name
};

/// The CSV files of stocks in a folder, or the one file named. Names that mean no stock are those of tables of many
/// stocks when their heading has a code, else reported; so is a second file of one code. Missing or unreadable:
/// Error(NotFound), Error(Io); no usable file: Error(NotFound).
[[nodiscard]] BarSources ListStockFiles(const QString& place, std::vector<Rejection>& rejections);

struct IndexSources {
  std::map<int, QString> files;  ///< by number; none where there is a table
  QString table;                 ///< of all of them; empty where there are files
};
/// The files of the three indices in a folder, or the one file named. One missing in a folder: Error(NotFound); two for
/// one index: Error(Refused).
[[nodiscard]] IndexSources ListIndexFiles(const QString& place);
/// "上证指数（1.csv）".
[[nodiscard]] const char* IndexName(int number);

}  // namespace holdwise
