// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>
#include <sys/types.h>
#include <unistd.h>

#include <QString>
#include <string>

#include "holdwise/packet/packet_file.h"

namespace holdwise {

/// Category of the error that a call throws; its text goes to `text`. A test failure when it throws nothing.
template <typename Call>
ErrorCategory CategoryOf(Call call, std::string* text = nullptr) {
  try {
    call();
  } catch (const Error& error) {
    if (text != nullptr) *text = error.what();
    return error.Category();
  }
  ADD_FAILURE() << "no error";
  return ErrorCategory::Busy;
}

/// All column types, nulls in each, the outermost values, texts of one to four bytes a character.
inline ResultSet SampleSet() {
  ResultSet set;
  set.AddColumn("SecuCode", ColumnType::Integer);
  set.AddColumn("closeprice", ColumnType::Real);
  set.AddColumn("名称", ColumnType::Text);
  set.AddColumn("edited", ColumnType::DateTime);
  set.AddColumn("wide", ColumnType::Integer);
  for (int row = 0; row < 10; ++row) {
    set.AppendRow();
    set.SetInteger(row, 0, row - 5);
    set.SetReal(row, 1, row * 0.1 - 0.3);
    set.SetText(row, 2, row % 2 == 0 ? "浦发银行" : "aé😀");
    set.SetDateTime(row, 3, 1704153600000 + row);
  }
  set.SetInteger(0, 4, INT64_MIN);
  set.SetInteger(9, 4, INT64_MAX);
  set.SetReal(1, 1, 1.7976931348623157e308);
  set.SetReal(2, 1, 5e-324);
  set.SetText(3, 2, "");
  set.SetNull(9, 0);
  set.SetNull(8, 1);
  set.SetNull(7, 2);
  set.SetNull(0, 3);
  return set;
}

/// Drops the rights of root while it lives, so that file modes count.
class WithoutRoot {
 public:
  WithoutRoot() {
    constexpr uid_t kNobody = 65534;
    if (::geteuid() == 0) dropped_ = ::seteuid(kNobody) == 0;
  }
  ~WithoutRoot() {
    if (dropped_ && ::seteuid(0) != 0) ADD_FAILURE() << "rights not restored";
  }
  WithoutRoot(const WithoutRoot&) = delete;
  WithoutRoot& operator=(const WithoutRoot&) = delete;

 private:
  bool dropped_ = false;
};

}  // namespace holdwise
