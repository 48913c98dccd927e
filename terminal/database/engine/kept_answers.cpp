// SPDX-License-Identifier: MIT
#include "database/engine/kept_answers.h"

#include <algorithm>
#include <cstdint>

namespace holdwise::firebird {
namespace {

constexpr std::size_t kMostAnswers = 16;
constexpr std::int64_t kMostCells = 100'000;

}  // namespace

KeptAnswers::Answer* KeptAnswers::Lookup(const QString& sql) {
  const auto found =
      std::find_if(answers_.begin(), answers_.end(), [&](const Answer& each) { return each.sql == sql; });
  if (found == answers_.end()) return nullptr;
  answers_.splice(answers_.begin(), answers_, found);
  return &answers_.front();
}

std::optional<ResultSet> KeptAnswers::Find(const QString& sql) {
  const Answer* answer = Lookup(sql);
  return answer != nullptr ? answer->rows : std::nullopt;
}

void KeptAnswers::Add(const QString& sql, const ResultSet& rows) {
  if (Answer* answer = Lookup(sql)) {
    const bool isSmall = std::int64_t{rows.RowCount()} * rows.ColumnCount() <= kMostCells;
    if (isSmall) answer->rows = rows;
    return;
  }
  if (answers_.size() == kMostAnswers) answers_.pop_back();
  answers_.push_front({sql, std::nullopt});
}

}  // namespace holdwise::firebird
