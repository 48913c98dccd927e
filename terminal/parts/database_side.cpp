// SPDX-License-Identifier: MIT
#include "parts/database_side.h"

#include <utility>

#include "holdwise/packet/error.h"

namespace holdwise {

DatabaseSide::DatabaseSide(Opener opener) : opener_(std::move(opener)) {}

UserDataServices& DatabaseSide::Opened() {
  if (userData_ == nullptr) throw Error(ErrorCategory::Refused, "数据库还没有打开");
  return *userData_;
}

QStringList DatabaseSide::Open() {
  userData_ = opener_();
  QStringList problems;
  for (const std::vector<StatementAdvice>& advice : advice_) {
    try {
      userData_->Advise(advice);
    } catch (const Error& error) {
      problems.append(QString::fromUtf8(error.what()));
    }
  }
  return problems;
}

void DatabaseSide::Advise(const std::vector<StatementAdvice>& advice) {
  if (userData_ != nullptr) userData_->Advise(advice);
  advice_.push_back(advice);
}

}  // namespace holdwise
