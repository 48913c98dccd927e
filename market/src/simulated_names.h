// SPDX-License-Identifier: MIT
#pragma once
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace holdwise {

/// A well-known A-share: what a demonstration market begins with.
struct KnownSecurity {
  const char* code;
  const char* name;
  const char* industry;
  int price;  ///< plausible first price, yuan
};
[[nodiscard]] std::span<const KnownSecurity> KnownSecurities() noexcept;

struct SimulatedSecurity {
  std::string code;
  std::string name;
  std::string industry;
  double firstPrice = 0;  ///< 0 = to be drawn
};
/// `count` securities: the well-known ones first, then made-up ones on all boards with names of their own. All codes
/// and names differ. The same for every call.
[[nodiscard]] std::vector<SimulatedSecurity> SimulatedSecurities(int count);

}  // namespace holdwise
