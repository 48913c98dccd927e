// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "database_texts.h"
#include "firebird_server.h"
#include "temp_database.h"

using namespace holdwise;
using namespace holdwise::test;

namespace {

class OnAServer : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    if (!FirebirdServer::Program().isEmpty()) server_ = std::make_unique<FirebirdServer>();
  }
  static void TearDownTestSuite() { server_.reset(); }
  void SetUp() override {
    if (!server_) GTEST_SKIP() << "the program firebird is not here";
    target_ = server_->Target(QString::fromLatin1(testing::UnitTest::GetInstance()->current_test_info()->name()) +
                              QStringLiteral(".fdb"));
  }
  [[nodiscard]] std::unique_ptr<FirebirdUserData> Open() const {
    return FirebirdUserData::Open(target_, TempDatabase::LockFolder());
  }
  static void Restart() {
    server_->Kill();
    server_->Start();
  }

  static inline std::unique_ptr<FirebirdServer> server_;
  DatabaseTarget target_;
};

TEST_F(OnAServer, AMissingDatabaseIsMadeWithItsSchemaAndKept) {
  {
    const auto service = Open();
    service->Execute(InsertPortfolio(1, QStringLiteral("沪深组合")));
    service->Execute(
        InsertHolding(QStringLiteral("1"), QStringLiteral("1600000"), QStringLiteral("300"), QStringLiteral("0.5")));
  }
  const auto service = Open();
  EXPECT_EQ(service->Scalar(QStringLiteral("select COMNAME from alg_commain where ID = 1")).ToText(),
            QStringLiteral("沪深组合"));
  EXPECT_EQ(service->Count(kCountHoldings), 1);
  EXPECT_EQ(service->Execute(QStringLiteral("execute procedure INITFIRSTCALC('2026-01-05')")), 1);
}

TEST_F(OnAServer, AWrongPasswordIsRefusedAndSaysWhereItComesFrom) {
  Open().reset();
  target_.password = QStringLiteral("wrong");
  const Error error = ErrorOf([&] { (void)Open(); });
  EXPECT_EQ(error.Category(), ErrorCategory::Refused);
  EXPECT_NE(std::string(error.what()).find("HOLDWISE_DB_PASSWORD"), std::string::npos);
}

TEST_F(OnAServer, WhatOthersWriteIsSeenAtOnce) {
  const auto mine = Open();
  const auto other = Open();
  mine->Advise({{.statement = kIds, .mayBeKept = true}});
  for (int time = 0; time < 3; ++time) EXPECT_EQ(IdsOf(*mine), "");
  other->Execute(InsertPortfolio(1, QStringLiteral("甲")));
  EXPECT_EQ(IdsOf(*mine), "1");
}

TEST_F(OnAServer, ALostConnectionIsMadeAgain) {
  const auto service = Open();
  const auto session = service->OpenSession();
  service->Execute(InsertPortfolio(1, QStringLiteral("甲")));
  Restart();
  EXPECT_EQ(IdsOf(*service), "1");
  Restart();
  EXPECT_EQ(service->Execute(InsertPortfolio(2, QStringLiteral("乙"))), 1);
  Restart();
  session->StartTransaction();
  session->Execute(InsertPortfolio(3, QStringLiteral("丙")));
  session->Commit();
  EXPECT_EQ(IdsOf(*service), "1,2,3");
}

TEST_F(OnAServer, AFailingReadCostsNobodyHisTransaction) {
  const auto service = Open();
  const auto session = service->OpenSession();
  session->StartTransaction();
  session->Execute(InsertPortfolio(1, QStringLiteral("甲")));
  EXPECT_EQ(ErrorOf([&] { (void)service->Query(QStringLiteral("select NOTHING from alg_commain")); }).Category(),
            ErrorCategory::Database);
  session->Commit();
  EXPECT_EQ(IdsOf(*service), "1");
}

TEST_F(OnAServer, WithoutTheServerEveryCallSaysSoUntilItIsBack) {
  const auto service = Open();
  service->Execute(InsertPortfolio(1, QStringLiteral("甲")));
  server_->Kill();
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(ErrorOf([&] { (void)service->Query(kIds); }).Category(), ErrorCategory::Io);
    EXPECT_EQ(ErrorOf([&] { service->Execute(InsertPortfolio(2, QStringLiteral("乙"))); }).Category(),
              ErrorCategory::Io);
    EXPECT_EQ(ErrorOf([&] { service->StartTransaction(); }).Category(), ErrorCategory::Io);
    EXPECT_FALSE(service->InTransaction());
  }
  server_->Start();
  EXPECT_EQ(IdsOf(*service), "1");
}

TEST_F(OnAServer, AnOpenTransactionIsLostWithItsConnectionAsAWhole) {
  const auto service = Open();
  const auto session = service->OpenSession();
  session->StartTransaction();
  session->Execute(InsertPortfolio(1, QStringLiteral("甲")));
  Restart();
  EXPECT_EQ(ErrorOf([&] { session->Execute(InsertPortfolio(2, QStringLiteral("乙"))); }).Category(), ErrorCategory::Io);
  EXPECT_EQ(IdsOf(*service), "") << "on a new connection";
  EXPECT_THROW(session->Execute(InsertPortfolio(3, QStringLiteral("丙"))), Error);
  EXPECT_THROW(session->Commit(), Error);
  EXPECT_FALSE(session->InTransaction());
  EXPECT_EQ(IdsOf(*session), "");
  session->StartTransaction();
  session->Execute(InsertPortfolio(4, QStringLiteral("丁")));
  session->Commit();
  EXPECT_EQ(IdsOf(*service), "4");
}

}  // namespace
