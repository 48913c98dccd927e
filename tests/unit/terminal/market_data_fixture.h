// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>

#include "datacentre/market_data.h"
#include "local_database_reader.h"
#include "market_folder.h"
#include "scripted_host.h"

namespace holdwise {

inline QStringList Row(const char* text) {
  return QString::fromUtf8(text).split(QLatin1Char(','));
}

class MarketDataTest : public testing::Test {
 protected:
  void Load() { data_.Load(folder_.Path()); }

  MarketFolder folder_;
  ScriptedClock clock_;
  ScriptedDebug log_;
  FakeUserData database_;
  LocalDatabaseReader reader_{database_};
  MarketData data_{clock_, log_, reader_};
};

}  // namespace holdwise
