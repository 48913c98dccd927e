// SPDX-License-Identifier: MIT
#pragma once
#include <QTemporaryDir>
#include <utility>
#include <vector>

#include "holdwise/packet/result_set.h"

namespace holdwise {

/// A table from texts: headings "name:type" (integer, real, text) and rows of cells, "NULL" for null.
ResultSet MakeTable(const QStringList& headings, const std::vector<QStringList>& rows);

/// A small data folder of its own, complete when made; the tests spoil or replace single files.
/// Stocks: 600000 浦发银行 and 600036 招商银行 (Shanghai, 银行), 000001 平安银行 (Shenzhen, 银行), 000002 万科Ａ
/// (Shenzhen, 房地产), 300750 宁德时代 (Shenzhen, 电池), 601001 to 601012 股票1 to 股票12 (Shanghai), 900901 云赛Ｂ股
/// (Shanghai, not an A-share). Current date 2024-05-29, a Wednesday; index 1 stands at 3111.02.
class MarketFolder {
 public:
  MarketFolder();
  [[nodiscard]] QString Path() const { return folder_.path(); }
  [[nodiscard]] QString File(const QString& name) const { return folder_.filePath(name); }
  void Write(const QString& name, const ResultSet& table) const;
  void WriteBytes(const QString& name, const QByteArray& bytes) const;
  /// An empty edition leaves the column out, as folders did that were made before there was one.
  void WriteMarket(int currentDate, bool simulated, const QString& edition = {}) const;
  /// quotes.dat with these prices: (code number, price, previous close).
  void WriteQuotes(const std::vector<QStringList>& rows) const;
  [[nodiscard]] static std::vector<QStringList> SecurityRows();
  [[nodiscard]] static std::vector<QStringList> QuoteRows();
  static const QStringList kSecurityHeadings;
  static const QStringList kQuoteHeadings;

 private:
  QTemporaryDir folder_;
};

}  // namespace holdwise
