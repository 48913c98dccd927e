// SPDX-License-Identifier: MIT
#pragma once
#include <string_view>
#include <vector>

#include "holdwise/market/csv_table.h"

namespace holdwise {

/// The lines of the Beijing exchange in a list of the whole market: no mistakes, and told together.
class BeijingLines {
 public:
  /// Counts lines with a code of that exchange; false, and nothing counted, when it is another one.
  /// @param line of the first of these lines
  bool Take(std::string_view code, const QString& path, std::int64_t line, std::int64_t lines = 1);
  /// Appends what has been counted, if anything.
  void AddTo(std::vector<Rejection>& rejections) const;

 private:
  Rejection first_;
  QString code_;
};

}  // namespace holdwise
