// SPDX-License-Identifier: MIT
#pragma once
#include <firebird/Interface.h>

#include <QString>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "holdwise/packet/error.h"

/// Thin ownership and error layer over the engine's object interface.
namespace holdwise::firebird {

[[nodiscard]] Firebird::IMaster& Master();

/// A status block. Not to be shared between threads that call at the same time.
class Status {
 public:
  Status() : wrapper_(Master().getStatus()) {}
  ~Status() { wrapper_.dispose(); }
  Status(const Status&) = delete;
  Status& operator=(const Status&) = delete;
  [[nodiscard]] Firebird::ThrowStatusWrapper* Get() { return &wrapper_; }

 private:
  Firebird::ThrowStatusWrapper wrapper_;
};

/// The categorised error for what the engine reported; `action` is the Chinese text that says what failed.
[[nodiscard]] Error ToError(const Firebird::FbException& exception, const QString& action);

/// Runs engine calls and turns the engine's exceptions into Error.
template <typename Function>
decltype(auto) Guarded(const char16_t* action, Function&& function) {
  try {
    return std::forward<Function>(function)();
  } catch (const Firebird::FbException& exception) {
    throw ToError(exception, QString::fromUtf16(action));
  }
}

template <typename Interface>
struct Release {
  void operator()(Interface* object) const { object->release(); }
};
template <typename Interface>
using Handle = std::unique_ptr<Interface, Release<Interface>>;

/// One transaction; rolled back at the end of its life unless ended before.
class Transaction {
 public:
  enum class Mode { ReadOnly, ChangeNoWait, ChangeWait };
  Transaction(Status& status, Firebird::IAttachment& attachment, Mode mode);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  /// A failed commit rolls back; either way the transaction has ended.
  void Commit();
  void RollBack();
  [[nodiscard]] Firebird::ITransaction& Get() const { return *transaction_; }

 private:
  Status& status_;
  Handle<Firebird::ITransaction> transaction_;
};

/// Parameters of an attachment.
struct AttachOptions {
  bool create = false;
  bool embedded = true;
  QString user;
  QString password;
  bool verifies = false;  ///< the engine looks over every page, record and index first, and changes nothing
};
/// Attaches or creates; the process's handlers for SIGINT and SIGTERM are the same afterwards as before.
[[nodiscard]] Handle<Firebird::IAttachment> Attach(const QString& database, const AttachOptions& options);
/// Does the server, or the engine, still answer for this attachment?
[[nodiscard]] bool IsAlive(Status& status, Firebird::IAttachment& attachment) noexcept;
/// Detaches; the handle is empty afterwards. False when that failed: the file was not closed in order.
bool Detach(Status& status, Handle<Firebird::IAttachment>& attachment) noexcept;

}  // namespace holdwise::firebird
