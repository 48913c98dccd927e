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

/// CSV files of stocks in a folder, ascending by code. Names that mean no stock, and a second file of one code, are
/// reported. Missing or unreadable folder: Error(NotFound), Error(Io); no usable file: Error(NotFound).
[[nodiscard]] std::vector<StockFile> ListStockFiles(const QString& folder, std::vector<Rejection>& rejections);

/// The files of the three indices by number. One missing: Error(NotFound); two for one index: Error(Refused).
[[nodiscard]] std::map<int, QString> ListIndexFiles(const QString& folder);

}  // namespace holdwise
