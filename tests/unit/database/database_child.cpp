// SPDX-License-Identifier: MIT
// The other process of the opening tests: holdwise-database-child MODE FILE LOCKFOLDER.
//   open      opens the database; the exit code is 0, or 10 + the category of the error, whose text goes to stdout
//   hold      opens it, says "ready" and keeps it until standard input ends
//   half      the same with a transaction that has replaced every row
//   signal    opens it between the installation of an own handler and a SIGTERM to itself; exit code 0 when the handler
//             ran and the database still works and closes
//   left      opens it and ends without closing
//   user      makes the database of a server's users, with SYSDBA in it, whose password is the last argument
#include <QCoreApplication>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>

#include "database/engine/firebird_client.h"
#include "database/firebird_process.h"
#include "database/firebird_user_data.h"

namespace {

using namespace holdwise;

volatile std::sig_atomic_t signals = 0;
void CountSignal(int /*signal*/) {
  signals = signals + 1;
}

void WaitForEnd() {
  std::puts("ready");
  std::fflush(stdout);
  std::string line;
  std::getline(std::cin, line);
}

int KeepUsableAfterSignals(FirebirdUserData& service) {
  for (const int number : {SIGTERM, SIGINT}) {
    std::raise(number);
    service.Execute(QStringLiteral("insert into alg_commain (ID) values (gen_id(ALG_ROWID_MAIN,1))"));
  }
  return signals == 2 && service.Count(QStringLiteral("select count(*) from alg_commain")) == 2 ? 0 : 1;
}

void MakeUser(const QString& file, const QString& password) {
  firebird::Status status;
  auto attachment = firebird::Attach(file, {.create = true, .embedded = true, .user = {}, .password = {}});
  {
    firebird::Transaction transaction(status, *attachment, firebird::Transaction::Mode::ChangeNoWait);
    const std::string statement = "create user SYSDBA password '" + password.toStdString() + "'";
    attachment->execute(status.Get(), &transaction.Get(), 0, statement.c_str(), SQL_DIALECT_CURRENT, nullptr, nullptr,
                        nullptr, nullptr);
    transaction.Commit();
  }
  firebird::Detach(status, attachment);
}

int Run(const std::string& mode, const QString& file, const QString& lockFolder) {
  if (mode == "user") {
    MakeUser(file, lockFolder);
    return 0;
  }
  if (mode == "signal") {
    std::signal(SIGTERM, CountSignal);
    std::signal(SIGINT, CountSignal);
  }
  auto service = FirebirdUserData::Open(DatabaseTarget{file, {}, {}}, lockFolder);
  if (mode == "hold") WaitForEnd();
  if (mode == "half") {
    service->StartTransaction();
    service->Execute(QStringLiteral("delete from alg_stockstatistic"));
    service->Execute(QStringLiteral("insert into alg_stockstatistic (secucode, hqdate) values (9, 9)"));
    WaitForEnd();
  }
  if (mode == "left") std::_Exit(0);
  const int result = mode == "signal" ? KeepUsableAfterSignals(*service) : 0;
  service.reset();
  return result;
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  if (argc != 4) return 2;
  int result = 0;
  try {
    result = Run(argv[1], QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]));
  } catch (const holdwise::Error& error) {
    std::puts(error.what());
    std::fflush(stdout);
    result = 10 + static_cast<int>(error.Category());
  } catch (const Firebird::FbException& exception) {
    std::puts(holdwise::firebird::ToError(exception, QStringLiteral("error")).what());
    result = 10;
  }
  (void)holdwise::ShutdownFirebird();
  return result;
}
