#include "database/kept_answers.h"

#include <QRegularExpression>
#include <algorithm>
#include <cstdint>

namespace holdwise::firebird {
namespace {

constexpr std::size_t kMostAnswers = 16;
constexpr std::int64_t kMostCells = 100'000;

/// Reads of one of the schema's own tables, which have no computed columns; a procedure or view may give another answer
/// on the same rows. Without brackets, quotes and "$" there is no function, no word like 'now' and no second select but
/// in a union; what is left that gives another answer on unchanged rows is excluded by name.
bool DependsOnRowsOnly(const QString& sql) {
  static const QRegularExpression plain(
      QStringLiteral("^select\\s[\\w\\s,.*+-]*\\sfrom\\s+alg_\\w+(\\s+\\w+)?(\\s+(where|order)\\s[\\w\\s,.*=<>+-]*)?$"),
      QRegularExpression::CaseInsensitiveOption);
  static const QRegularExpression moving(
      QStringLiteral("\\b(current_\\w*|localtime\\w*|next)\\b|\\bfrom\\b.*\\bfrom\\b|--"),
      QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
  return plain.match(sql).hasMatch() && !moving.match(sql).hasMatch();
}

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
    if (isSmall && DependsOnRowsOnly(sql)) answer->rows = rows;
    return;
  }
  if (answers_.size() == kMostAnswers) answers_.pop_back();
  answers_.push_front({sql, std::nullopt});
}

}  // namespace holdwise::firebird
