// SPDX-License-Identifier: MIT
#pragma once
#include <QStringList>
#include <memory>
#include <utility>

#include "holdwise/sdk/database.h"

namespace holdwise::test {

/// Lets one call of a database service fail, to see what is left behind, and writes down all of them.
class FailurePlan {
 public:
  enum class Kind {
    Throws,   ///< an Error
    Refuses,  ///< Execute answers 0 and does nothing; the other calls throw
  };
  /// The call with that number (0 = the next one) fails, once.
  void FailCall(int number, Kind kind = Kind::Throws) {
    remaining_ = number;
    kind_ = kind;
    hasFailed_ = false;
  }
  void FailNothing() { remaining_ = -1; }
  [[nodiscard]] bool HasFailed() const { return hasFailed_; }
  /// Statements as they stand, and "start", "commit", "rollback".
  [[nodiscard]] const QStringList& Calls() const { return calls_; }

  void Note(const QString& call) { calls_ << call; }
  /// True when this call is the one.
  bool IsDue(const QString& call) {
    Note(call);
    if (remaining_ < 0 || remaining_-- > 0) return false;
    hasFailed_ = true;
    return true;
  }
  void Pass(const QString& call) {
    if (IsDue(call)) Throw();
  }
  [[nodiscard]] Kind HowToFail() const { return kind_; }
  /// Of the failures to come; Database before the first call.
  void SetCategory(ErrorCategory category) { category_ = category; }
  [[noreturn]] void Throw() const { throw Error(category_, "injected failure"); }

 private:
  ErrorCategory category_ = ErrorCategory::Database;
  int remaining_ = -1;
  Kind kind_ = Kind::Throws;
  bool hasFailed_ = false;
  QStringList calls_;
};

/// Passes every call on unless the plan says otherwise. Roll-backs never fail; a commit that fails has rolled back.
template <typename Base>
class Injecting : public Base {
 public:
  Injecting(DatabaseStatements& inner, FailurePlan& plan) : inner_(inner), plan_(plan) {}
  ResultSet Query(const QString& sql) override {
    plan_.Pass(sql);
    return inner_.Query(sql);
  }
  std::int64_t Count(const QString& sql) override {
    plan_.Pass(sql);
    return inner_.Count(sql);
  }
  Value Scalar(const QString& sql) override {
    plan_.Pass(sql);
    return inner_.Scalar(sql);
  }
  int Execute(const QString& sql) override {
    if (!plan_.IsDue(sql)) return inner_.Execute(sql);
    if (plan_.HowToFail() == FailurePlan::Kind::Refuses) return 0;
    plan_.Throw();
  }
  void StartTransaction() override {
    plan_.Pass(QStringLiteral("start"));
    inner_.StartTransaction();
  }
  void Commit() override {
    if (plan_.IsDue(QStringLiteral("commit"))) {
      inner_.RollBack();
      plan_.Throw();
    }
    inner_.Commit();
  }
  void RollBack() override {
    plan_.Note(QStringLiteral("rollback"));
    inner_.RollBack();
  }
  bool InTransaction() const override { return inner_.InTransaction(); }

 protected:
  DatabaseStatements& inner_;
  FailurePlan& plan_;
};

class InjectingSession final : public Injecting<UserDataSession> {
 public:
  InjectingSession(std::unique_ptr<UserDataSession> session, FailurePlan& plan)
      : Injecting(*session, plan), session_(std::move(session)) {}

 private:
  std::unique_ptr<UserDataSession> session_;
};

class InjectingUserData final : public Injecting<UserDataServices> {
 public:
  explicit InjectingUserData(UserDataServices& inner) : Injecting(inner, plan), services_(inner) {}
  std::unique_ptr<UserDataSession> OpenSession() override {
    return std::make_unique<InjectingSession>(services_.OpenSession(), plan);
  }

  FailurePlan plan;

 private:
  UserDataServices& services_;
};

}  // namespace holdwise::test
