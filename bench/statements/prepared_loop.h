// SPDX-License-Identifier: MIT
#pragma once
#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "database/engine/firebird_client.h"
#include "holdwise/packet/dates.h"
#include "temp_database.h"

/// The yardstick of the benchmarks that fill the statistics: a hand-written loop over one prepared statement.
namespace holdwise::bench {

inline constexpr int kRows = 314;  // 250 days, 52 weeks, 12 months
inline constexpr int kColumns = 12;
inline constexpr std::array<bool, kColumns> kIsReal{false, true, false, false, true,  true,
                                                    false, true, true,  false, false, false};
using Row = std::array<double, kColumns>;

inline constexpr int kDays = 250;
inline constexpr int kWeeks = 52;

/// The working days, Fridays and months' last working days that end with the last day of 2025, the latest last.
inline std::vector<int> DaysOf(int type, int count) {
  std::vector<int> days;
  int nextWorking = 20260101;
  for (int number = DayNumber(20251231); static_cast<int>(days.size()) < count; --number) {
    const int day = DateOfDayNumber(number);
    if (!IsWeekday(day)) continue;
    const auto isLastOf = [&](int (*period)(int)) { return period(nextWorking) != period(day); };
    if (type == 0 || (type == 1 ? isLastOf(WeekNumber) : isLastOf(MonthNumber))) days.push_back(day);
    nextWorking = day;
  }
  std::reverse(days.begin(), days.end());
  return days;
}

inline std::vector<Row> MakeRows() {
  std::vector<Row> rows;
  int type = 0;
  for (const int count : {kDays, kWeeks, kRows - kDays - kWeeks}) {
    const std::vector<int> days = DaysOf(type, count);
    for (const int day : days) {
      const auto i = static_cast<int>(rows.size());
      rows.push_back({1600000, 10 + 0.01 * i, double(type), double(i + 1), 0.0123456789 - 0.0001 * i, 0.00098765432109,
                      double(day), 10 + 0.01 * (i - 1), 0.0187654321, day == days.back() ? 1.0 : 0.0,
                      double(days.front()), double(days.back())});
    }
    ++type;
  }
  return rows;
}

inline const std::vector<Row>& Rows() {
  static const std::vector<Row> kAll = MakeRows();
  return kAll;
}

/// The yardstick: prepared once, values copied into its message.
class PreparedLoop {
 public:
  PreparedLoop()
      : attachment_(
            firebird::Attach(database_.File(), {.create = false, .embedded = true, .user = {}, .password = {}})) {
    firebird::Transaction transaction(status_, *attachment_, firebird::Transaction::Mode::ChangeNoWait);
    statement_.reset(attachment_->prepare(
        status_.Get(), &transaction.Get(), 0,
        "insert into alg_stockstatistic (secucode,closeprice,hqtype,rowid,ggqjsyl,pjsyl,hqdate,oldcloseprice,sylbzc,"
        "islastday,startdate,enddate) values(?,?,?,?,?,?,?,?,?,?,?,?)",
        3, Firebird::IStatement::PREPARE_PREFETCH_METADATA));
    format_.reset(statement_->getInputMetadata(status_.Get()));
    message_.resize(format_->getMessageLength(status_.Get()));
    for (unsigned i = 0; i < kColumns; ++i) {
      offsets_[i] = format_->getOffset(status_.Get(), i);
      const short notNull = 0;
      std::memcpy(message_.data() + format_->getNullOffset(status_.Get(), i), &notNull, sizeof notNull);
    }
  }
  ~PreparedLoop() {
    format_.reset();
    statement_.reset();
    firebird::Detach(status_, attachment_);
  }
  PreparedLoop(const PreparedLoop&) = delete;
  PreparedLoop& operator=(const PreparedLoop&) = delete;

  void Insert() {
    firebird::Transaction transaction(status_, *attachment_, firebird::Transaction::Mode::ChangeNoWait);
    for (const Row& row : Rows()) {
      for (std::size_t i = 0; i < kColumns; ++i) {
        if (kIsReal[i]) {
          std::memcpy(message_.data() + offsets_[i], &row[i], sizeof(double));
        } else {
          const int value = static_cast<int>(row[i]);
          std::memcpy(message_.data() + offsets_[i], &value, sizeof value);
        }
      }
      statement_->execute(status_.Get(), &transaction.Get(), format_.get(), message_.data(), nullptr, nullptr);
    }
    transaction.Commit();
  }
  void Remove() {
    Run("delete from alg_stockstatistic");
    // Whoever passes deleted rows first clears them away: not the next round.
    Run("update alg_stockstatistic set rowid = rowid");
  }

 private:
  void Run(const char* sql) {
    firebird::Transaction transaction(status_, *attachment_, firebird::Transaction::Mode::ChangeNoWait);
    attachment_->execute(status_.Get(), &transaction.Get(), 0, sql, 3, nullptr, nullptr, nullptr, nullptr);
    transaction.Commit();
  }

  test::TempDatabase database_{false};
  firebird::Status status_;
  firebird::Handle<Firebird::IAttachment> attachment_;
  firebird::Handle<Firebird::IStatement> statement_;
  firebird::Handle<Firebird::IMessageMetadata> format_;
  std::vector<unsigned char> message_;
  std::array<unsigned, kColumns> offsets_{};
};

}  // namespace holdwise::bench
