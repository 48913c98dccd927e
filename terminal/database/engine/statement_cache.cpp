// SPDX-License-Identifier: MIT
#include "database/engine/statement_cache.h"

namespace holdwise::firebird {

namespace {
constexpr std::size_t kCapacity = 64;
}

StatementCache::Entry* StatementCache::Lookup(std::string_view shape) {
  // Long runs of one statement are the common case.
  if (!entries_.empty() && entries_.front().shape == shape) return &entries_.front();
  const auto found = index_.find(shape);
  if (found == index_.end()) return nullptr;
  entries_.splice(entries_.begin(), entries_, found->second);
  return &entries_.front();
}

PreparedStatement* StatementCache::Find(std::string_view shape) {
  const Entry* entry = Lookup(shape);
  return entry != nullptr ? entry->statement.get() : nullptr;
}

bool StatementCache::IsUnbindable(std::string_view shape) {
  const Entry* entry = Lookup(shape);
  return entry != nullptr && !entry->statement;
}

void StatementCache::Insert(std::string_view shape, std::unique_ptr<PreparedStatement> statement) {
  if (entries_.size() >= kCapacity) {
    index_.erase(entries_.back().shape);
    entries_.pop_back();
  }
  entries_.push_front({std::string(shape), std::move(statement)});
  index_.emplace(entries_.front().shape, entries_.begin());
}

PreparedStatement& StatementCache::Add(std::string_view shape, std::unique_ptr<PreparedStatement> statement) {
  Insert(shape, std::move(statement));
  return *entries_.front().statement;
}

void StatementCache::Clear() {
  index_.clear();
  entries_.clear();
}

}  // namespace holdwise::firebird
