// SPDX-License-Identifier: MIT
#include "parts/database_side.h"

#include <utility>

#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

/// Carries the action out and tells of damage that it meets.
template <typename Action>
auto Watched(const DatabaseSide::DamageListener& onDamage, Action action) {
  try {
    return action();
  } catch (const Error& error) {
    if (onDamage && error.Category() == ErrorCategory::Corrupt) onDamage(QString::fromUtf8(error.what()));
    throw;
  }
}

/// A session that tells when it has stored something, and of damage.
class ToldSession final : public UserDataSession {
 public:
  ToldSession(std::unique_ptr<UserDataSession> inner, const ChangeListener& listener,
              const DatabaseSide::DamageListener& onDamage)
      : inner_(std::move(inner)), listener_(listener), onDamage_(onDamage) {}
  ResultSet Query(const QString& sql) override {
    return Watched(onDamage_, [&] { return inner_->Query(sql); });
  }
  std::int64_t Count(const QString& sql) override {
    return Watched(onDamage_, [&] { return inner_->Count(sql); });
  }
  Value Scalar(const QString& sql) override {
    return Watched(onDamage_, [&] { return inner_->Scalar(sql); });
  }
  int Execute(const QString& sql) override {
    const int result = Watched(onDamage_, [&] { return inner_->Execute(sql); });
    if (!inner_->InTransaction()) Tell();
    return result;
  }
  void StartTransaction() override {
    Watched(onDamage_, [&] { inner_->StartTransaction(); });
  }
  void Commit() override {
    Watched(onDamage_, [&] { inner_->Commit(); });
    Tell();
  }
  void RollBack() override {
    Watched(onDamage_, [&] { inner_->RollBack(); });
  }
  bool InTransaction() const override { return inner_->InTransaction(); }

 private:
  void Tell() const {
    if (listener_.changed) listener_.changed(true);
  }

  std::unique_ptr<UserDataSession> inner_;
  const ChangeListener& listener_;
  const DatabaseSide::DamageListener& onDamage_;
};

}  // namespace

DatabaseSide::DatabaseSide(Opener opener, DamageListener onDamage)
    : opener_(std::move(opener)), onDamage_(std::move(onDamage)) {}

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

ResultSet DatabaseSide::Query(const QString& sql) {
  return Watched(onDamage_, [&] { return Opened().Query(sql); });
}

std::int64_t DatabaseSide::Count(const QString& sql) {
  return Watched(onDamage_, [&] { return Opened().Count(sql); });
}

Value DatabaseSide::Scalar(const QString& sql) {
  return Watched(onDamage_, [&] { return Opened().Scalar(sql); });
}

void DatabaseSide::StartTransaction() {
  Watched(onDamage_, [&] { Opened().StartTransaction(); });
}

void DatabaseSide::RollBack() {
  Watched(onDamage_, [&] { Opened().RollBack(); });
}

int DatabaseSide::Execute(const QString& sql) {
  const bool isOwn = !InTransaction();
  if (isOwn && listener_.beforeChange) listener_.beforeChange();
  const int result = Watched(onDamage_, [&] { return Opened().Execute(sql); });
  if (isOwn && listener_.changed) listener_.changed(false);
  return result;
}

void DatabaseSide::Commit() {
  if (listener_.beforeChange) listener_.beforeChange();
  Watched(onDamage_, [&] { Opened().Commit(); });
  if (listener_.changed) listener_.changed(false);
}

std::unique_ptr<UserDataSession> DatabaseSide::OpenSession() {
  return std::make_unique<ToldSession>(Opened().OpenSession(), listener_, onDamage_);
}

void DatabaseSide::Advise(const std::vector<StatementAdvice>& advice) {
  if (userData_ != nullptr) userData_->Advise(advice);
  advice_.push_back(advice);
}

}  // namespace holdwise
