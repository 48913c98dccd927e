// SPDX-License-Identifier: MIT
#include <ibase.h>
#include <unistd.h>

#include <QCoreApplication>
#include <array>
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

/// Errors that the engine's own look at every page, record and index finds. Pages that nobody uses, which a killed
/// program leaves behind, are none.
int ErrorsFound(Status& status, Firebird::IAttachment& attachment) {
  static constexpr std::array<unsigned char, 8> kAsked = {
      isc_info_page_errors,  isc_info_record_errors, isc_info_bpage_errors, isc_info_dpage_errors,
      isc_info_ipage_errors, isc_info_ppage_errors,  isc_info_tpage_errors, isc_info_end};
  constexpr std::size_t kHead = 3;  // the item and two bytes for the length of its number
  std::array<unsigned char, 256> answer{};
  Guarded(u"不能检查数据库",
          [&] { attachment.getInfo(status.Get(), kAsked.size(), kAsked.data(), answer.size(), answer.data()); });
  int errors = 0;
  for (std::size_t at = 0; at + kHead < answer.size() && answer[at] != isc_info_end;) {
    const auto length = static_cast<short>(answer[at + 1] | answer[at + 2] << 8);
    errors += isc_vax_integer(reinterpret_cast<const ISC_SCHAR*>(&answer[at + kHead]), length);
    at += kHead + static_cast<std::size_t>(length);
  }
  return errors;
}

void VerifyEverything(const QString& file) {
  Status status;
  auto attachment = Attach(file, {.create = false, .embedded = true, .user = {}, .password = {}, .verifies = true});
  const int errors = ErrorsFound(status, *attachment);
  Detach(status, attachment);
  if (errors > 0)
    throw Error(ErrorCategory::Corrupt, QStringLiteral("数据库引擎的检查发现%1处错误").arg(errors).toStdString());
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
    VerifyEverything(file);
    return kHelperGood;
  } catch (const Error& error) {
    std::puts(error.what());
    return ResultOf(error);
  }
}

}  // namespace

}  // namespace holdwise::firebird

/// holdwise-dbcheck FILE LOCKFOLDER: reads every row of the database and has the engine check every page. Run as a
/// process of its own, because a damaged file can take the engine and with it the process down. The exit code says what
/// was found, standard output why.
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
