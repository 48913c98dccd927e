// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>

#include "datacentre/index_closes.h"
#include "datacentre/market_data.h"
#include "holdwise/packet/code_numbers.h"
#include "injecting_user_data.h"
#include "local_database_reader.h"
#include "market_folder.h"
#include "scripted_host.h"
#include "temp_database.h"
#include "transfer/import.h"

namespace holdwise {

inline constexpr char kGood[] =
    "name,code,quantity,price\n"
    "稳健一号,600000,1000,8.00\n"
    "进取(2)_A-b,000001,300,11.23\n"
    "稳健一号,600036,500,34\n"
    "进取(2)_A-b,300750,100,199.88\n"
    "进取(2)_A-b,600000,7,8.15\n";

class ImportTest : public testing::Test {
 protected:
  void SetUp() override { data_.Load(folder_.Path()); }
  [[nodiscard]] ImportServices Services() {
    return {database_, data_, data_, [this] { return ReadIndexCloses(folder_.Path(), kCompositeIndex); }};
  }
  ImportResult Import(const QByteArray& csv, const ImportProgress& progress = {}, const ImportOptions& options = {}) {
    return ImportPortfolios(csv, Services(), progress, options);
  }
  /// A whole table as text, one line a row.
  QString Dump(const char* sql) { return temp_.Lines(QString::fromLatin1(sql), u'|').join(u'\n'); }
  QString Everything() {
    return Dump("select * from alg_commain order by ID") + QLatin1Char('#') +
           Dump("select * from alg_comdetail order by ID") + QLatin1Char('#') +
           Dump("select * from alg_stockstatistic order by secucode, hqtype, hqdate, rowid");
  }

  MarketFolder folder_;
  ScriptedClock clock_;
  ScriptedDebug log_;
  test::TempDatabase temp_;
  test::InjectingUserData database_{temp_.Service()};
  LocalDatabaseReader reader_{database_};
  MarketData data_{clock_, log_, reader_};
};

}  // namespace holdwise
