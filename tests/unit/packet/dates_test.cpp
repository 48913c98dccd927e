// SPDX-License-Identifier: MIT
#include "holdwise/packet/dates.h"

#include <gtest/gtest.h>

#include <QDate>
#include <QString>

namespace holdwise {
namespace {

TEST(Dates, TheCalendarIsQts) {
  for (QDate day(1, 1, 1); day.year() <= 9999; day = day.addDays(13)) {
    const int number = day.year() * 10000 + day.month() * 100 + day.day();
    ASSERT_TRUE(IsCalendarDate(number)) << number;
    ASSERT_EQ(DayNumber(number), QDate(1970, 1, 1).daysTo(day)) << number;
    ASSERT_EQ(DateOfDayNumber(DayNumber(number)), number);
  }
  for (const int month : {0, 1, 2, 3, 4, 11, 12, 13}) {
    for (int day = 0; day < 35; ++day) {
      for (const int year : {1900, 2000, 2023, 2024}) {
        EXPECT_EQ(IsCalendarDate(year * 10000 + month * 100 + day), QDate::isValid(year, month, day));
      }
    }
  }
}

TEST(Dates, WhatIsNoDate) {
  for (const std::int64_t number :
       {0LL, -20240102LL, 100LL, 101LL, 20240230LL, 99991232LL, 100000101LL, 4315207398LL}) {
    EXPECT_FALSE(IsCalendarDate(number)) << number;
    EXPECT_FALSE(IsMarketDate(number)) << number;
  }
  EXPECT_TRUE(IsCalendarDate(99991231));
  EXPECT_TRUE(IsMarketDate(19000101));
  EXPECT_TRUE(IsMarketDate(21001231));
  EXPECT_FALSE(IsMarketDate(18991231));
  EXPECT_FALSE(IsMarketDate(21010101));
}

TEST(Dates, IsoIsExactlyTenCharacters) {
  EXPECT_EQ(ReadIsoDate("2024-02-29"), 20240229);
  EXPECT_EQ(ReadIsoDate("0001-01-01"), 10101);
  for (const char* text : {"", "2023-02-29", "2024-2-29", "20240229", "2024/02/29", " 2024-02-29", "2024-02-29 ",
                           "2024-02-2x", "2024-02-29T", "-024-02-29", "0000-01-01", "2024-02+29"}) {
    EXPECT_FALSE(ReadIsoDate(std::string_view(text))) << text;
    EXPECT_FALSE(ReadIsoDate(QString::fromUtf8(text))) << text;
  }
  EXPECT_EQ(ReadIsoDate(u"2024-02-29"), 20240229);
  EXPECT_FALSE(ReadIsoDate(u"２０２４-02-29")) << "digits of full width are none";
}

TEST(Dates, MayHaveATimeBehindThem) {
  struct Case {
    const char* text;
    int date;
  };
  const Case cases[] = {
      {"2025-01-02", 20250102},
      {"20250102", 20250102},
      {"2025/1/2", 20250102},
      {"2025-01-02 00:00:00", 20250102},
      {"2025-01-02 15:00", 20250102},
      {"2025/1/2 0:00", 20250102},
      {"2025-01-02T15:00:00.000000", 20250102},
      {"2025-01-02 00:00:00+08:00", 20250102},
      {"2025-01-02T00:00:00+0800", 20250102},
      {"2025-01-02 00:00:00+00:00", 20250102},
      // 16:00 in Greenwich is midnight in Shanghai, 15:59 the minute before.
      {"2025-01-01T16:00:00Z", 20250102},
      {"2025-01-01T15:59:59Z", 20250101},
      {"2025-01-01 11:00:00-05:00", 20250102},
      {"2025-01-02 00:00:00+09:00", 20250101},
      {"2024-12-31T16:00:00Z", 20250101},
  };
  for (const Case& item : cases) EXPECT_EQ(ReadTimedDate(item.text), item.date) << item.text;
  for (const char* text :
       {"", "2025-01-02 ", "2025-01-02T", "2025-01-02 24:00", "2025-01-02 12:60", "2025-01-02 12:00:60",
        "2025-01-02 12", "2025-01-02 12:00:", "2025-01-02 12:00:00.", "2025-01-02 12:00 +08:00", "2025-01-02 12:00+8",
        "2025-01-02 12:00+08:00x", "2025-01-02  12:00", "2025-02-29 12:00", "2025-01-02+08:00",
        "2100-12-31T23:00:00-12:00", "2025-01-02 12:00 CST", "12:00"}) {
    EXPECT_FALSE(ReadTimedDate(text)) << text;
  }
}

}  // namespace
}  // namespace holdwise
