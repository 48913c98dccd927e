#include "app/database_side.h"

#include <utility>

#include "holdwise/packet/error.h"

namespace holdwise {

DatabaseSide::DatabaseSide(Opener opener) : opener_(std::move(opener)) {}

void DatabaseSide::Open() {
  userData_ = opener_();
}

void DatabaseSide::DoQuery(const QString& sql, ResultSet& resultSet) {
  if (userData_ == nullptr) throw Error(ErrorCategory::Refused, "数据库还没有打开");
  resultSet = userData_->Query(sql);
}

}  // namespace holdwise
