// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>

#include <QString>
#include <ostream>

#include "common/host/host_access.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "common/store/statements.h"
#include "scripted_host.h"

/// GoogleTest shows texts as texts.
inline void PrintTo(const QString& text, std::ostream* stream) {
  *stream << '"' << text.toStdString() << '"';
}

namespace holdwise {

/// A module with a scripted host and a canned database, without any shared object yet.
class CommonTest : public testing::Test {
 protected:
  CommonTest() {
    SetModuleHost(&host_);
    FDBServer = &host_.UserData();
    AddStock("600000", 1, 10.23, 10.00);
    AddStock("000001", 2, 11.50, 11.25);
    AddStock("300750", 2, 0, 190.5);
  }
  ~CommonTest() override {
    g_NowPrice.reset();
    g_ClosePrice.reset();
    g_UserValue.reset();
    g_StockClosePrice.reset();
    FDBServer = nullptr;
    SetModuleHost(nullptr);
  }

  void AddStock(const char* code, int market, double price, double previousClose) {
    host_.codeNums.Add(
        {QString::fromLatin1(code), QStringLiteral("stock"), QString(), market, {price, previousClose}, false});
  }

  /// Holdings as rows {portfolio id, code, quantity}: the answers of every statement that reads them.
  void SetHoldings(const std::vector<std::vector<QString>>& rows) {
    const std::vector<ColumnSpec> columns = {
        {"MAINID", ColumnType::Integer}, {"SECUCODE", ColumnType::Integer}, {"PZSL", ColumnType::Real}};
    std::vector<std::vector<QString>> codes;
    for (const auto& row : rows) {
      if (std::find(codes.begin(), codes.end(), std::vector<QString>{row[1]}) == codes.end()) codes.push_back({row[1]});
    }
    FakeUserData& database = host_.fakeUserData;
    database.SetResult(sql::kHeldCodes, TableOf({{"SECUCODE", ColumnType::Integer}}, codes));
    for (const QString& statement :
         {sql::kHoldingsForNowValues, sql::kHoldingsForPreviousCloses, sql::kSavedHoldingsForCloses}) {
      database.SetResult(statement, TableOf(columns, rows));
    }
  }

  [[nodiscard]] std::vector<QString> Queries(const QString& statement) const {
    std::vector<QString> found;
    for (const QString& line : host_.fakeUserData.Log()) {
      if (line == statement) found.push_back(line);
    }
    return found;
  }

  ScriptedHost host_;
};

/// "name=value" lines in order, for comparison.
inline QStringList LinesOf(const TNameValueSnapshot& list) {
  QStringList lines;
  for (int index = 0; index < list->Count(); ++index) {
    lines.append(list->NameAt(index) + QLatin1Char('=') + list->ValueAt(index));
  }
  return lines;
}

}  // namespace holdwise
