// SPDX-License-Identifier: MIT
#include "database/statements/statement_advice.h"

#include <algorithm>
#include <utility>

#include "holdwise/packet/error.h"

namespace holdwise::firebird {

namespace {

bool AreEqual(const Literal& one, const Literal& other) {
  return one.quoted == other.quoted && one.text == other.text;
}

}  // namespace

AdvisedStatements::Table::value_type AdvisedStatements::ShapesOf(const StatementAdvice& advice) {
  const std::string statement = advice.statement.toStdString();
  StatementShape asWritten;
  asWritten.Read(statement);
  const auto refuse = [&](const char* reason) {
    throw Error(ErrorCategory::Refused, std::string(reason) + "：“" + statement + "”");
  };
  if (asWritten.Kind() != StatementKind::Select) refuse("关于语句的说明只能是关于查询的");
  Table::value_type entry{asWritten.Text(), {.formToPrepare = {}, .mayBeKept = advice.mayBeKept}};
  if (advice.equalForm.isEmpty()) return entry;
  const std::string form = advice.equalForm.toStdString();
  StatementShape equal;
  equal.Read(form);
  if (equal.Kind() != StatementKind::Select || !std::equal(asWritten.Literals().begin(), asWritten.Literals().end(),
                                                           equal.Literals().begin(), equal.Literals().end(), AreEqual))
    refuse("等价的写法与原语句的值不同");
  entry.second.formToPrepare = equal.Text();
  return entry;
}

void AdvisedStatements::Take(const std::vector<StatementAdvice>& advice) {
  Table table = table_;
  for (const StatementAdvice& each : advice) {
    Table::value_type entry = ShapesOf(each);
    table.insert_or_assign(entry.first, std::move(entry.second));
  }
  table_ = std::move(table);
}

std::string_view AdvisedStatements::FormToPrepare(std::string_view shape) const {
  const auto found = table_.find(shape);
  return found == table_.end() || found->second.formToPrepare.empty() ? shape : found->second.formToPrepare;
}

bool AdvisedStatements::MayBeKept(std::string_view shape) const {
  const auto found = table_.find(shape);
  return found != table_.end() && found->second.mayBeKept;
}

}  // namespace holdwise::firebird
