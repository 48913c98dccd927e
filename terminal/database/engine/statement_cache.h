// SPDX-License-Identifier: MIT
#pragma once
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "database/engine/prepared_statement.h"

namespace holdwise::firebird {

/// The prepared statements of one attachment by shape, the least recently used dropped first.
class StatementCache {
 public:
  /// Null when the shape is not known. `IsUnbindable` tells a shape that the engine refuses to prepare.
  [[nodiscard]] PreparedStatement* Find(std::string_view shape);
  [[nodiscard]] bool IsUnbindable(std::string_view shape);
  PreparedStatement& Add(std::string_view shape, std::unique_ptr<PreparedStatement> statement);
  void AddUnbindable(std::string_view shape) { Insert(shape, nullptr); }
  void Clear();

 private:
  struct Entry {
    std::string shape;
    std::unique_ptr<PreparedStatement> statement;  // null: unbindable
  };
  using Entries = std::list<Entry>;
  [[nodiscard]] Entry* Lookup(std::string_view shape);
  void Insert(std::string_view shape, std::unique_ptr<PreparedStatement> statement);

  Entries entries_;  // most recently used first
  std::unordered_map<std::string_view, Entries::iterator> index_;
};

}  // namespace holdwise::firebird
