// SPDX-License-Identifier: MIT
#include "parts/database_side.h"

#include <utility>

#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

/// A session that tells when it has stored something.
class ToldSession final : public UserDataSession {
 public:
  ToldSession(std::unique_ptr<UserDataSession> inner, const ChangeListener& listener)
      : inner_(std::move(inner)), listener_(listener) {}
  ResultSet Query(const QString& sql) override { return inner_->Query(sql); }
  std::int64_t Count(const QString& sql) override { return inner_->Count(sql); }
  Value Scalar(const QString& sql) override { return inner_->Scalar(sql); }
  int Execute(const QString& sql) override {
    const int result = inner_->Execute(sql);
    if (!inner_->InTransaction()) Tell();
    return result;
  }
  void StartTransaction() override { inner_->StartTransaction(); }
  void Commit() override {
    inner_->Commit();
    Tell();
  }
  void RollBack() override { inner_->RollBack(); }
  bool InTransaction() const override { return inner_->InTransaction(); }

 private:
  void Tell() const {
    if (listener_.changed) listener_.changed(true);
  }

  std::unique_ptr<UserDataSession> inner_;
  const ChangeListener& listener_;
};

}  // namespace

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

int DatabaseSide::Execute(const QString& sql) {
  const bool isOwn = !InTransaction();
  if (isOwn && listener_.beforeChange) listener_.beforeChange();
  const int result = Opened().Execute(sql);
  if (isOwn && listener_.changed) listener_.changed(false);
  return result;
}

void DatabaseSide::Commit() {
  if (listener_.beforeChange) listener_.beforeChange();
  Opened().Commit();
  if (listener_.changed) listener_.changed(false);
}

std::unique_ptr<UserDataSession> DatabaseSide::OpenSession() {
  return std::make_unique<ToldSession>(Opened().OpenSession(), listener_);
}

void DatabaseSide::Advise(const std::vector<StatementAdvice>& advice) {
  if (userData_ != nullptr) userData_->Advise(advice);
  advice_.push_back(advice);
}

}  // namespace holdwise
