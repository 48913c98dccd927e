// SPDX-License-Identifier: MIT
#pragma once
#include <stdexcept>
#include <string>

/// Categorised errors. "None" (an empty result) is never reported as an error, and an error never as an empty result.
namespace holdwise {

enum class ErrorCategory {
  NotFound,  ///< the named thing does not exist
  Busy,      ///< held by somebody else; trying later may help
  TimedOut,  ///< no answer in the agreed time
  Corrupt,   ///< data is there but damaged, truncated or not in the expected form
  Refused,   ///< the request breaks a rule (bad value, path outside the folder, limit exceeded)
  Database,  ///< the database engine rejected a statement
  Io,        ///< the operating system could not read or write
};

/// The one exception type of the house. what() is UTF-8 text that a person can act on.
/// Visible across shared-library borders, so a host can catch what a plug-in throws and the other way round.
class __attribute__((visibility("default"))) Error : public std::runtime_error {
 public:
  Error(ErrorCategory category, const std::string& text) : std::runtime_error(text), category_(category) {}
  [[nodiscard]] ErrorCategory Category() const noexcept { return category_; }

 private:
  ErrorCategory category_;
};

}  // namespace holdwise
