// SPDX-License-Identifier: MIT
// An engine, made up here, that meets damage where a transaction begins or ends: a sound file never does so, and a
// damaged one seldom just there.
#include <gtest/gtest.h>

#include <QFile>
#include <memory>
#include <stdexcept>

#include "database/connection.h"
#include "database/database_file.h"
#include "database_texts.h"
#include "temp_database.h"

using namespace holdwise;
using namespace holdwise::test;

namespace {

using EngineStatus = Firebird::CheckStatusWrapper;
using Octets = const unsigned char*;

enum class Call { None, Start, Commit, RollBack, CommitAndRollBack };

struct Plan {
  Call failing = Call::None;
  ISC_STATUS code = isc_db_corrupt;
  int open = 0;  ///< transactions that have begun and not ended

  /// What the engine does in a call of that kind: fails, if it is that one's turn.
  bool Fails(Call call, EngineStatus* status) const {
    const bool isBoth = failing == Call::CommitAndRollBack && (call == Call::Commit || call == Call::RollBack);
    if (call != failing && !isBoth) return false;
    const ISC_STATUS errors[] = {isc_arg_gds, code, isc_arg_end};
    status->setErrors(errors);
    return true;
  }
};

[[noreturn]] void Unexpected() {
  throw std::logic_error("nobody calls this");
}

class MadeUpTransaction final : public Firebird::ITransactionImpl<MadeUpTransaction, EngineStatus> {
 public:
  explicit MadeUpTransaction(Plan& plan) : plan_(plan) { ++plan_.open; }
  ~MadeUpTransaction() override { --plan_.open; }
  MadeUpTransaction(const MadeUpTransaction&) = delete;
  MadeUpTransaction& operator=(const MadeUpTransaction&) = delete;
  void addRef() override {}
  int release() override {
    delete this;
    return 0;
  }
  void commit(EngineStatus* status) override {
    if (!plan_.Fails(Call::Commit, status)) delete this;
  }
  void rollback(EngineStatus* status) override {
    if (!plan_.Fails(Call::RollBack, status)) delete this;
  }
  void getInfo(EngineStatus*, unsigned, Octets, unsigned, unsigned char*) override { Unexpected(); }
  void prepare(EngineStatus*, unsigned, Octets) override { Unexpected(); }
  void commitRetaining(EngineStatus*) override { Unexpected(); }
  void rollbackRetaining(EngineStatus*) override { Unexpected(); }
  void disconnect(EngineStatus*) override { Unexpected(); }
  Firebird::ITransaction* join(EngineStatus*, Firebird::ITransaction*) override { Unexpected(); }
  Firebird::ITransaction* validate(EngineStatus*, Firebird::IAttachment*) override { Unexpected(); }
  Firebird::ITransaction* enterDtc(EngineStatus*) override { Unexpected(); }

 private:
  Plan& plan_;
};

class MadeUpAttachment final : public Firebird::IAttachmentImpl<MadeUpAttachment, EngineStatus> {
 public:
  explicit MadeUpAttachment(Plan& plan) : plan_(plan) {}
  void addRef() override {}
  int release() override {
    delete this;
    return 0;
  }
  Firebird::ITransaction* startTransaction(EngineStatus* status, unsigned, Octets) override {
    return plan_.Fails(Call::Start, status) ? nullptr : new MadeUpTransaction(plan_);
  }
  void detach(EngineStatus*) override { delete this; }
  void ping(EngineStatus*) override {}
  void getInfo(EngineStatus*, unsigned, Octets, unsigned, unsigned char*) override { Unexpected(); }
  Firebird::ITransaction* reconnectTransaction(EngineStatus*, unsigned, Octets) override { Unexpected(); }
  Firebird::IRequest* compileRequest(EngineStatus*, unsigned, Octets) override { Unexpected(); }
  void transactRequest(EngineStatus*, Firebird::ITransaction*, unsigned, Octets, unsigned, Octets, unsigned,
                       unsigned char*) override {
    Unexpected();
  }
  Firebird::IBlob* createBlob(EngineStatus*, Firebird::ITransaction*, ISC_QUAD*, unsigned, Octets) override {
    Unexpected();
  }
  Firebird::IBlob* openBlob(EngineStatus*, Firebird::ITransaction*, ISC_QUAD*, unsigned, Octets) override {
    Unexpected();
  }
  int getSlice(EngineStatus*, Firebird::ITransaction*, ISC_QUAD*, unsigned, Octets, unsigned, Octets, int,
               unsigned char*) override {
    Unexpected();
  }
  void putSlice(EngineStatus*, Firebird::ITransaction*, ISC_QUAD*, unsigned, Octets, unsigned, Octets, int,
                unsigned char*) override {
    Unexpected();
  }
  void executeDyn(EngineStatus*, Firebird::ITransaction*, unsigned, Octets) override { Unexpected(); }
  Firebird::IStatement* prepare(EngineStatus*, Firebird::ITransaction*, unsigned, const char*, unsigned,
                                unsigned) override {
    Unexpected();
  }
  Firebird::ITransaction* execute(EngineStatus*, Firebird::ITransaction*, unsigned, const char*, unsigned,
                                  Firebird::IMessageMetadata*, void*, Firebird::IMessageMetadata*, void*) override {
    Unexpected();
  }
  Firebird::IResultSet* openCursor(EngineStatus*, Firebird::ITransaction*, unsigned, const char*, unsigned,
                                   Firebird::IMessageMetadata*, void*, Firebird::IMessageMetadata*, const char*,
                                   unsigned) override {
    Unexpected();
  }
  Firebird::IEvents* queEvents(EngineStatus*, Firebird::IEventCallback*, unsigned, Octets) override { Unexpected(); }
  void cancelOperation(EngineStatus*, int) override { Unexpected(); }
  void dropDatabase(EngineStatus*) override { Unexpected(); }

 private:
  Plan& plan_;
};

class DamageInTransactions : public testing::TestWithParam<Call> {
 protected:
  void SetUp() override {
    database_.Close();
    QFile marker(Marker());
    ASSERT_TRUE(marker.open(QIODevice::WriteOnly));
    connection_ = std::make_unique<firebird::Connection>(
        firebird::Handle<Firebird::IAttachment>(new MadeUpAttachment(plan_)),
        firebird::Connection::Place{
            .folder = database_.Folder(), .markerFile = Marker(), .bytesToChange = 0, .file = database_.File()});
  }
  [[nodiscard]] QString Marker() const { return firebird::MarkerOf(database_.File()); }
  /// What leaves a transaction that is begun and committed or rolled back.
  [[nodiscard]] Error Failure() {
    plan_.failing = GetParam();
    Error error = ErrorOf([this] {
      auto transaction = connection_->Start();
      if (plan_.failing == Call::RollBack)
        connection_->RollBack(std::move(transaction));
      else
        connection_->Commit(std::move(transaction));
    });
    plan_.failing = Call::None;
    return error;
  }

  Plan plan_;
  TempDatabase database_;
  std::unique_ptr<firebird::Connection> connection_;
};

TEST_P(DamageInTransactions, IsToldAsDamageAndTheFileIsCheckedByTheNextStart) {
  const Error error = Failure();
  EXPECT_EQ(error.Category(), ErrorCategory::Corrupt);
  EXPECT_TRUE(QString::fromUtf8(error.what()).contains(QStringLiteral("数据库文件的内容有误"))) << error.what();
  EXPECT_EQ(plan_.open, 0) << "the transaction has ended";
  connection_->Commit(connection_->Start());
  EXPECT_EQ(plan_.open, 0) << "and the next one can begin";
  connection_.reset();
  EXPECT_TRUE(QFile::exists(Marker()));
}

TEST_P(DamageInTransactions, WhatPassesIsNone) {
  plan_.code = isc_lock_conflict;
  EXPECT_EQ(Failure().Category(), ErrorCategory::Busy);
  EXPECT_EQ(plan_.open, 0);
  connection_.reset();
  EXPECT_FALSE(QFile::exists(Marker())) << "closed in order";
}

INSTANTIATE_TEST_SUITE_P(Database, DamageInTransactions,
                         testing::Values(Call::Start, Call::Commit, Call::RollBack, Call::CommitAndRollBack));

}  // namespace
