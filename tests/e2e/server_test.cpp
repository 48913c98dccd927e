// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "firebird_server.h"
#include "terminal_process.h"

namespace holdwise::e2e {
namespace {

using test::FirebirdServer;

/// The terminal with its database on a server.
class TerminalOnAServer : public testing::Test {
 protected:
  void SetUp() override {
    if (FirebirdServer::Program().isEmpty()) GTEST_SKIP() << "the program firebird is not here";
    server_ = std::make_unique<FirebirdServer>();
    const DatabaseTarget target = server_->Target("terminal.fdb");
    database_ = target.text;
    environment_.insert("HOLDWISE_DB_USER", target.user);
    environment_.insert("HOLDWISE_DB_PASSWORD", target.password);
  }
  [[nodiscard]] QStringList Arguments(const QStringList& more) const {
    return bench_.Arguments(QStringList{"--db", database_} + more);
  }
  [[nodiscard]] Outcome Run(const QStringList& more) const { return RunTerminal(Arguments(more), environment_); }
  [[nodiscard]] QString Import() const { return bench_.Write("p.csv", TwoPortfolios()); }
  /// 100 x 1.60 + 200 x 2.60 and 1000 x 10.60 + 300 x 12.60, newest first.
  void ExpectBothPortfolios(const QString& folder) const {
    const std::vector<QStringList> rows = ReadCsv(bench_.File(folder + "/2001-strngrd.csv"));
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[1].value(0) + rows[1].value(2), QStringLiteral("乙14380.00"));
    EXPECT_EQ(rows[2].value(0) + rows[2].value(2), QStringLiteral("甲680.00"));
  }

  Bench bench_;
  std::unique_ptr<FirebirdServer> server_;
  QString database_;
  QProcessEnvironment environment_ = BareEnvironment();
};

TEST_F(TerminalOnAServer, ImportsCalculatesAndExports) {
  const Outcome first = Run({"--import", Import(), "--export", bench_.File("out")});
  ASSERT_EQ(first.exitCode, 0) << first.err.toStdString();
  ExpectBothPortfolios("out");
  ASSERT_EQ(Run({"--export", bench_.File("again")}).exitCode, 0);
  ExpectBothPortfolios("again");
}

TEST_F(TerminalOnAServer, GoesOnAfterTheServerWasRestarted) {
  ASSERT_EQ(Run({"--import", Import(), "--export", bench_.File("out")}).exitCode, 0);
  RunningTerminal terminal(Arguments({}), environment_);
  ASSERT_TRUE(terminal.WaitForWindow());
  server_->Kill();
  server_->Start();
  const Outcome handedOver = Run({"--export", bench_.File("again")});
  EXPECT_EQ(handedOver.exitCode, 0) << handedOver.err.toStdString();
  ExpectBothPortfolios("again");
  EXPECT_EQ(terminal.Process().state(), QProcess::Running);
}

TEST_F(TerminalOnAServer, SaysThatTheServerDoesNotAnswer) {
  server_->Kill();
  const Outcome outcome = Run({"--export", bench_.File("out")});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains("不能打开数据库")) << outcome.err.toStdString();
}

}  // namespace
}  // namespace holdwise::e2e
