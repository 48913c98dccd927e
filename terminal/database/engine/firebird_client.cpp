// SPDX-License-Identifier: MIT
#include "database/engine/firebird_client.h"

#include <pthread.h>
#include <signal.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "holdwise/packet/system_error.h"

namespace holdwise::firebird {

namespace {

// The closes of a week lie one or two a page, so small pages halve what the first view reads.
constexpr int kPageSize = 4096;
constexpr int kLockTimeoutSeconds = 10;

/// Database when the code says nothing more.
ErrorCategory CategoryOfCode(intptr_t code) {
  switch (code) {
    case isc_deadlock:
    case isc_update_conflict:
    case isc_lock_conflict:
    case isc_lock_timeout:
    case isc_already_opened:
    case isc_obj_in_use:
      return ErrorCategory::Busy;
    case isc_db_corrupt:
    case isc_bad_db_format:
    case isc_bad_checksum:
    case isc_badpage:
    case isc_wrong_ods:
    case isc_bug_check:
    case isc_no_crypt_plugin:  // no database of this terminal is encrypted: a page that says so is damaged
    case isc_decrypt_error:
    case isc_bad_crypt_key:
      return ErrorCategory::Corrupt;
    case isc_login:
    case isc_no_priv:
      return ErrorCategory::Refused;
    case isc_io_error:
    case isc_network_error:
    case isc_net_read_err:
    case isc_net_write_err:
    case isc_att_shutdown:
    case isc_unavailable:
    case isc_sys_request:  // of the lock files, say
      return ErrorCategory::Io;
    default:
      return ErrorCategory::Database;
  }
}

/// What is missing or unreadable in the file is damage; that it cannot be opened or written is not.
bool IsFailedRead(const intptr_t* item) {
  if (item[1] != isc_io_error || item[2] != isc_arg_string) return false;
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the engine hands a text over as a number.
  return std::strcmp(reinterpret_cast<const char*>(item[3]), "read") == 0;
}

/// The engine reports a chain from the general to the particular: the particular counts ("cannot read the file" may end
/// in "held by another process").
struct Reading {
  ErrorCategory category = ErrorCategory::Database;
  int systemError = 0;
  bool isNetwork = false;
};
Reading ReadVector(const intptr_t* vector) {
  Reading reading;
  for (const intptr_t* item = vector; *item != isc_arg_end; item += (*item == isc_arg_cstring ? 3 : 2)) {
    if (*item == isc_arg_unix) reading.systemError = static_cast<int>(item[1]);
    if (*item != isc_arg_gds) continue;
    if (item[1] == isc_network_error) reading.isNetwork = true;
    const ErrorCategory particular = IsFailedRead(item) ? ErrorCategory::Corrupt : CategoryOfCode(item[1]);
    if (particular != ErrorCategory::Database) reading.category = particular;
  }
  return reading;
}

/// Blocks every signal in this thread, so that the threads the engine starts inherit the block, and puts back the
/// process's handlers that the engine replaces.
class SignalKeeper {
 public:
  SignalKeeper() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &mask_);
    for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], nullptr, &actions_[i]);
  }
  ~SignalKeeper() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &actions_[i], nullptr);
    pthread_sigmask(SIG_SETMASK, &mask_, nullptr);
  }
  SignalKeeper(const SignalKeeper&) = delete;
  SignalKeeper& operator=(const SignalKeeper&) = delete;

 private:
  static constexpr std::array kSignals{SIGINT, SIGTERM};
  sigset_t mask_{};
  std::array<struct sigaction, kSignals.size()> actions_{};
};

class ParameterBlock {
 public:
  ParameterBlock(Status& status, unsigned kind)
      : status_(status), builder_(Master().getUtilInterface()->getXpbBuilder(status.Get(), kind, nullptr, 0)) {}
  ~ParameterBlock() { builder_->dispose(); }
  ParameterBlock(const ParameterBlock&) = delete;
  ParameterBlock& operator=(const ParameterBlock&) = delete;
  Firebird::IXpbBuilder* operator->() const { return builder_; }
  [[nodiscard]] unsigned Size() const { return builder_->getBufferLength(status_.Get()); }
  [[nodiscard]] const unsigned char* Data() const { return builder_->getBuffer(status_.Get()); }

 private:
  Status& status_;
  Firebird::IXpbBuilder* builder_;
};

}  // namespace

Firebird::IMaster& Master() {
  return *Firebird::fb_get_master_interface();
}

Error ToError(const Firebird::FbException& exception, const QString& action) {
  std::array<char, 2048> text{};
  Master().getUtilInterface()->formatStatus(text.data(), text.size(), exception.getStatus());
  QString reason = QString::fromUtf8(text.data()).simplified();
  const Reading reading = ReadVector(exception.getStatus()->getErrors());
  // The engine's own words are English.
  QString meaning;
  if (reading.isNetwork) {
    meaning = QStringLiteral("连接不上数据库服务器");
  } else if (reading.category == ErrorCategory::Corrupt) {
    meaning = QStringLiteral("数据库文件的内容有误");
  } else if (reading.category == ErrorCategory::Io && reading.systemError != 0) {
    meaning = QString::fromStdString(SystemReason(reading.systemError));
  }
  if (!meaning.isEmpty()) reason = QStringLiteral("%1（%2）").arg(meaning, reason);
  return {reading.category, (action + QStringLiteral("：") + reason).toStdString()};
}

Transaction::Transaction(Status& status, Firebird::IAttachment& attachment, Mode mode) : status_(status) {
  Guarded(u"不能开始事务", [&] {
    ParameterBlock block(status, Firebird::IXpbBuilder::TPB);
    block->insertTag(status.Get(), isc_tpb_read_committed);
    block->insertTag(status.Get(), isc_tpb_rec_version);
    block->insertTag(status.Get(), mode == Mode::ReadOnly ? isc_tpb_read : isc_tpb_write);
    if (mode == Mode::ChangeWait) {
      block->insertTag(status.Get(), isc_tpb_wait);
      block->insertInt(status.Get(), isc_tpb_lock_timeout, kLockTimeoutSeconds);
    } else {
      block->insertTag(status.Get(), isc_tpb_nowait);
    }
    transaction_.reset(attachment.startTransaction(status.Get(), block.Size(), block.Data()));
  });
}

Transaction::~Transaction() {
  if (!transaction_) return;
  try {
    RollBack();
  } catch (const Error&) {  // the engine has already given the transaction up
  }
}

void Transaction::Commit() {
  Guarded(u"提交失败，所做的修改没有保存", [&] {
    transaction_->commit(status_.Get());
    static_cast<void>(transaction_.release());  // the engine has freed it
  });
}

void Transaction::RollBack() {
  Guarded(u"回滚失败", [&] {
    transaction_->rollback(status_.Get());
    static_cast<void>(transaction_.release());
  });
}

Handle<Firebird::IAttachment> Attach(const QString& database, const AttachOptions& options) {
  Status status;
  const SignalKeeper keeper;
  return Guarded(options.create ? u"不能建立数据库" : u"不能打开数据库", [&] {
    ParameterBlock block(status, Firebird::IXpbBuilder::DPB);
    block->insertString(status.Get(), isc_dpb_lc_ctype, "UTF8");
    block->insertTag(status.Get(), isc_dpb_utf8_filename);
    if (options.embedded) {
      // Without this the library tries a server on this machine when the engine cannot open the file.
      block->insertString(status.Get(), isc_dpb_config, "Providers=Engine12");
      // One owner for all that is made, so that the file still opens after it has moved to another account.
      block->insertString(status.Get(), isc_dpb_user_name, "SYSDBA");
    } else if (!options.user.isEmpty()) {
      block->insertString(status.Get(), isc_dpb_user_name, options.user.toUtf8().constData());
    }
    if (!options.password.isEmpty()) {
      block->insertString(status.Get(), isc_dpb_password, options.password.toUtf8().constData());
    }
    if (options.verifies) {
      block->insertInt(status.Get(), isc_dpb_verify,
                       isc_dpb_pages | isc_dpb_records | isc_dpb_indices | isc_dpb_transactions | isc_dpb_no_update);
    }
    if (options.create) {
      block->insertInt(status.Get(), isc_dpb_page_size, kPageSize);
      block->insertInt(status.Get(), isc_dpb_sql_dialect, 3);
      block->insertInt(status.Get(), isc_dpb_force_write, 1);
      block->insertString(status.Get(), isc_dpb_set_db_charset, "UTF8");
    }
    Firebird::IProvider* provider = Master().getDispatcher();
    const QByteArray name = database.toUtf8();
    Handle<Firebird::IAttachment> attachment;
    try {
      attachment.reset(options.create
                           ? provider->createDatabase(status.Get(), name.constData(), block.Size(), block.Data())
                           : provider->attachDatabase(status.Get(), name.constData(), block.Size(), block.Data()));
    } catch (...) {
      provider->release();
      throw;
    }
    provider->release();
    return attachment;
  });
}

bool IsAlive(Status& status, Firebird::IAttachment& attachment) noexcept {
  try {
    attachment.ping(status.Get());
    return true;
  } catch (const Firebird::FbException&) {
    return false;
  }
}

bool Detach(Status& status, Handle<Firebird::IAttachment>& attachment) noexcept {
  if (!attachment) return true;
  try {
    attachment->detach(status.Get());
    static_cast<void>(attachment.release());
    return true;
  } catch (const Firebird::FbException&) {
    attachment.reset();
    return false;
  }
}

}  // namespace holdwise::firebird
