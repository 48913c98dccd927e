// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <QCoreApplication>
#include <cstdio>
#include <limits>
#include <string>

#include "database/engine/prepared_statement.h"
#include "database/firebird_process.h"
#include "database/firebird_user_data.h"
#include "database_file.h"

namespace holdwise::firebird {

namespace {

void ReadEverything(const QString& file) {
  Status status;
  auto attachment = Attach(file, {.create = false, .embedded = true, .user = {}, .password = {}});
  {
    Transaction transaction(status, *attachment, Transaction::Mode::ReadOnly);
    PreparedStatement tables(status, *attachment, transaction,
                             "select trim(rdb$relation_name) from rdb$relations where rdb$relation_type in (0, 1)");
    const ResultSet names = tables.Read(transaction, std::numeric_limits<int>::max());
    for (int row = 0; row < names.RowCount(); ++row) {
      const std::string statement = "select * from \"" + names.Utf8At(row, 0) + "\"";
      PreparedStatement(status, *attachment, transaction, statement).Execute(transaction);
    }
  }
  Detach(status, attachment);
}

int ResultOf(const Error& error) {
  switch (error.Category()) {
    case ErrorCategory::Busy:
      return kHelperBusy;
    case ErrorCategory::Refused:
      return kHelperRefused;
    case ErrorCategory::Io:  // a full disk, say: reading may have to write
      return kHelperIo;
    default:
      return kHelperDamaged;
  }
}

int Check(const QString& file, const QString& lockFolder) {
  try {
    PrepareFirebirdProcess(lockFolder);
  } catch (const Error& error) {
    std::puts(error.what());
    return kHelperIo;
  }
  try {
    ReadEverything(file);
    return kHelperGood;
  } catch (const Error& error) {
    std::puts(error.what());
    return ResultOf(error);
  }
}

}  // namespace

}  // namespace holdwise::firebird

/// holdwise-dbcheck FILE LOCKFOLDER: reads every row of the database. Run as a process of its own, because a damaged
/// file can take the engine and with it the process down. The exit code says what was found, standard output why.
int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  if (argc != 3) {
    std::fputs("holdwise-dbcheck FILE LOCKFOLDER\n", stderr);
    return holdwise::firebird::kHelperRefused;
  }
  const int result = holdwise::firebird::Check(QString::fromLocal8Bit(argv[1]), QString::fromLocal8Bit(argv[2]));
  std::fflush(stdout);
  if (!holdwise::ShutdownFirebird()) ::_exit(result);
  return result;
}
