// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <list>
#include <optional>

#include "holdwise/packet/result_set.h"

namespace holdwise::firebird {

/// Answers to reads that come again and again while nothing changes. Kept is what was read twice since the last change
/// and is small enough to be held, by the whole text with its literals. For a database with one writer, who tells of
/// every change, and for statements that may be kept (see StatementAdvice). Not synchronised.
class KeptAnswers {
 public:
  /// The rows as they stand, when they are kept.
  [[nodiscard]] std::optional<ResultSet> Find(const QString& sql);
  /// Tells that the statement has been read, with these rows.
  void Add(const QString& sql, const ResultSet& rows);
  /// Something may have changed.
  void Clear() { answers_.clear(); }

 private:
  struct Answer {
    QString sql;
    std::optional<ResultSet> rows;  ///< none: read once so far, or too large
  };
  /// The answer, brought to the front; null when there is none.
  [[nodiscard]] Answer* Lookup(const QString& sql);

  std::list<Answer> answers_;  ///< the last one asked for comes first
};

}  // namespace holdwise::firebird
