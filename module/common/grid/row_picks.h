// SPDX-License-Identifier: MIT
#pragma once
#include <algorithm>
#include <cstdint>
#include <vector>

namespace holdwise {

/// What tells a row of a grid from all others for as long as it lives, wherever it moves.
using RowId = std::int64_t;

/// Rows picked one by one, known by identity and kept sorted. Rows that are gone may stay in it. A value type.
class RowPicks {
 public:
  [[nodiscard]] bool IsEmpty() const noexcept { return ids_.empty(); }
  [[nodiscard]] bool Contains(RowId id) const { return std::binary_search(ids_.begin(), ids_.end(), id); }
  /// Puts it in when it is not there, takes it out when it is.
  void Toggle(RowId id) {
    const auto place = std::lower_bound(ids_.begin(), ids_.end(), id);
    if (place != ids_.end() && *place == id) {
      ids_.erase(place);
    } else {
      ids_.insert(place, id);
    }
  }

 private:
  std::vector<RowId> ids_;
};

}  // namespace holdwise
