// SPDX-License-Identifier: MIT
#include "watched_database.h"

#include <utility>

#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

/// Carries the action out and tells of damage that it meets.
template <typename Action>
auto Watched(const WatchedDatabase::DamageListener& onDamage, Action action) {
  try {
    return action();
  } catch (const Error& error) {
    if (error.Category() == ErrorCategory::Corrupt) onDamage(QString::fromUtf8(error.what()));
    throw;
  }
}

class WatchedSession final : public UserDataSession {
 public:
  WatchedSession(std::unique_ptr<UserDataSession> session, WatchedDatabase::DamageListener onDamage)
      : session_(std::move(session)), onDamage_(std::move(onDamage)) {}
  ResultSet Query(const QString& sql) override {
    return Watched(onDamage_, [&] { return session_->Query(sql); });
  }
  std::int64_t Count(const QString& sql) override {
    return Watched(onDamage_, [&] { return session_->Count(sql); });
  }
  Value Scalar(const QString& sql) override {
    return Watched(onDamage_, [&] { return session_->Scalar(sql); });
  }
  int Execute(const QString& sql) override {
    return Watched(onDamage_, [&] { return session_->Execute(sql); });
  }
  void StartTransaction() override {
    Watched(onDamage_, [&] { session_->StartTransaction(); });
  }
  void Commit() override {
    Watched(onDamage_, [&] { session_->Commit(); });
  }
  void RollBack() override {
    Watched(onDamage_, [&] { session_->RollBack(); });
  }
  bool InTransaction() const override { return session_->InTransaction(); }

 private:
  std::unique_ptr<UserDataSession> session_;
  WatchedDatabase::DamageListener onDamage_;
};

}  // namespace

WatchedDatabase::WatchedDatabase(std::unique_ptr<UserDataServices> inner, DamageListener onDamage)
    : inner_(std::move(inner)), onDamage_(std::move(onDamage)) {}

ResultSet WatchedDatabase::Query(const QString& sql) {
  return Watched(onDamage_, [&] { return inner_->Query(sql); });
}

std::int64_t WatchedDatabase::Count(const QString& sql) {
  return Watched(onDamage_, [&] { return inner_->Count(sql); });
}

Value WatchedDatabase::Scalar(const QString& sql) {
  return Watched(onDamage_, [&] { return inner_->Scalar(sql); });
}

int WatchedDatabase::Execute(const QString& sql) {
  return Watched(onDamage_, [&] { return inner_->Execute(sql); });
}

void WatchedDatabase::StartTransaction() {
  Watched(onDamage_, [&] { inner_->StartTransaction(); });
}

void WatchedDatabase::Commit() {
  Watched(onDamage_, [&] { inner_->Commit(); });
}

void WatchedDatabase::RollBack() {
  Watched(onDamage_, [&] { inner_->RollBack(); });
}

std::unique_ptr<UserDataSession> WatchedDatabase::OpenSession() {
  return std::make_unique<WatchedSession>(inner_->OpenSession(), onDamage_);
}

}  // namespace holdwise
