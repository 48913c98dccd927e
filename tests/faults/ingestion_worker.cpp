// SPDX-License-Identifier: MIT
// The process that the fault campaigns end at random moments, and their look into a database.
//
//   holdwise-ingestion-worker loop DATABASE LOCKFOLDER FILES JOURNAL
//       ingests the base-data files again and again, alternating between FILES/0 and FILES/1, and adds a portfolio
//       after each round. JOURNAL is a file of the layout below, made by the caller; it outlives the process.
//   holdwise-ingestion-worker dump DATABASE LOCKFOLDER
//       prints every row of the portfolio and statistics tables.
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QThread>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "calc/base_data_ingestion.h"
#include "calc/unfinished_work.h"
#include "common/store/statements.h"
#include "database/firebird_process.h"
#include "database/firebird_user_data.h"
#include "holdwise/packet/packet_file.h"

namespace holdwise {
namespace {

constexpr int kMaxFiles = 64;
constexpr int kBusyAttempts = 100;
constexpr unsigned long kRetryMilliseconds = 100;
constexpr int kMaxRounds = 3;
constexpr char kStockPrefix[] = "QMTL\\TZZH\\Day250\\股票\\";
constexpr char kIndexName[] = "QMTL\\TZZH\\Day250\\指数\\allzs.dat";

enum Stage : std::uint8_t { kStarting, kOpening, kBetween, kChanging, kCommitting, kClosing };

/// What the campaign reads after the end of the process. A mapped file: what is stored survives any end but that of the
/// machine.
struct Journal {
  std::uint8_t stage;
  std::int8_t file;                   ///< whose transaction is open; -1: the portfolio's
  std::uint8_t version;               ///< which one it brings
  std::uint8_t fileCount;             ///< files 0 ... fileCount - 1, the index file last
  std::uint32_t statements;           ///< inside the open transaction
  std::uint32_t portfolios;           ///< committed
  std::uint32_t ingestions;           ///< committed
  std::uint8_t committed[kMaxFiles];  ///< version of each file
};
static_assert(sizeof(Journal) == 16 + kMaxFiles);

volatile Journal* MapJournal(const char* path) {
  const int descriptor = ::open(path, O_RDWR | O_CLOEXEC);
  if (descriptor < 0) throw Error(ErrorCategory::Io, "no journal");
  void* memory = ::mmap(nullptr, sizeof(Journal), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
  ::close(descriptor);
  if (memory == MAP_FAILED) throw Error(ErrorCategory::Io, "the journal cannot be mapped");
  return static_cast<volatile Journal*>(memory);
}

/// Notes where the process is before each call.
class JournaledStatements final : public DatabaseStatements {
 public:
  JournaledStatements(DatabaseStatements& inner, volatile Journal& journal) : inner_(inner), journal_(journal) {}
  ResultSet Query(const QString& sql) override { return inner_.Query(sql); }
  std::int64_t Count(const QString& sql) override { return inner_.Count(sql); }
  Value Scalar(const QString& sql) override { return inner_.Scalar(sql); }
  int Execute(const QString& sql) override {
    journal_.statements = journal_.statements + 1;
    return inner_.Execute(sql);
  }
  void StartTransaction() override {
    journal_.statements = 0;
    journal_.stage = kChanging;
    inner_.StartTransaction();
  }
  void Commit() override {
    journal_.stage = kCommitting;
    inner_.Commit();
  }
  void RollBack() override { inner_.RollBack(); }
  bool InTransaction() const override { return inner_.InTransaction(); }

 private:
  DatabaseStatements& inner_;
  volatile Journal& journal_;
};

/// A helper of the process ended before may hold the file for a moment.
std::unique_ptr<FirebirdUserData> OpenPatiently(const QString& file, const QString& lockFolder) {
  for (int attempt = 1;; ++attempt) {
    try {
      return FirebirdUserData::Open(DatabaseTarget{file, {}, {}}, lockFolder);
    } catch (const Error& error) {
      if (error.Category() != ErrorCategory::Busy || attempt == kBusyAttempts) throw;
    }
    QThread::msleep(kRetryMilliseconds);
  }
}

/// Text files of FILES/0 are named by their code, so their order is that of the codes.
QStringList FileNames(const QString& folder) {
  QStringList names = QDir(folder + QStringLiteral("/0")).entryList({QStringLiteral("*.dat")}, QDir::Files, QDir::Name);
  names.removeOne(QStringLiteral("allzs.dat"));
  names.append(QStringLiteral("allzs.dat"));
  return names;
}

void IngestFile(DatabaseStatements& database, const QString& folder, const QString& name, int version) {
  const bool isIndex = name == QLatin1String("allzs.dat");
  const QString remoteName = isIndex ? QString::fromUtf8(kIndexName) : QString::fromUtf8(kStockPrefix) + name;
  // As the database stores it: the code number, a leading 1 before the six digits.
  const QString code = isIndex ? QStringLiteral("1") : QLatin1Char('1') + name.left(name.indexOf(QLatin1Char('.')));
  calc::IngestBaseData(database, ReadPacketFile(folder + QLatin1Char('/') + QString::number(version) + '/' + name),
                       calc::ClassifyBaseData(remoteName), code,
                       [](int) -> int { throw Error(ErrorCategory::Refused, "this family asks for no trading date"); });
}

void AddPortfolio(DatabaseStatements& database, std::uint32_t number, const QStringList& names) {
  const auto run = [&database](const QString& statement) {
    if (database.Execute(statement) != 1) throw Error(ErrorCategory::Database, statement.toStdString());
  };
  const QString id = QString::number(number + 1);
  TransactionScope transaction(database);
  for (int holding = 0; holding < 3; ++holding) {
    const QString code = QLatin1Char('1') + names[holding].left(6);
    run(sql::RestoreHolding({QString::number(number * 3 + static_cast<std::uint32_t>(holding) + 1), id, code,
                             QString::number((holding + 1) * 100), QStringLiteral("0.25"), QStringLiteral("12.5")}));
  }
  run(sql::RestorePortfolio(
      {id, QStringLiteral("组合") + id, QStringLiteral("3000.5"), QStringLiteral("2024-05-31"), QStringLiteral("1")}));
  transaction.Commit();
}

void Round(DatabaseStatements& database, volatile Journal& journal, const QString& folder, const QStringList& names) {
  JournaledStatements journaled(database, journal);
  for (int file = 0; file < names.size(); ++file) {
    const int version = journal.committed[file] == 0 ? 1 : 0;
    journal.file = static_cast<std::int8_t>(file);
    journal.version = static_cast<std::uint8_t>(version);
    IngestFile(journaled, folder, names[file], version);
    journal.committed[file] = static_cast<std::uint8_t>(version);
    journal.ingestions = journal.ingestions + 1;
    journal.stage = kBetween;
  }
  journal.file = -1;
  AddPortfolio(journaled, journal.portfolios, names);
  journal.portfolios = journal.portfolios + 1;
  journal.stage = kBetween;
  calc::CalculatePortfolio(database, QString::number(journal.portfolios));
}

[[noreturn]] void Loop(const QString& file, const QString& lockFolder, const QString& folder, const char* journalPath) {
  volatile Journal& journal = *MapJournal(journalPath);
  const QStringList names = FileNames(folder);
  if (names.size() < 4 || names.size() > kMaxFiles) throw Error(ErrorCategory::Refused, "3 to 63 securities, please");
  journal.fileCount = static_cast<std::uint8_t>(names.size());
  for (int life = 0;; ++life) {
    journal.stage = kOpening;
    auto service = OpenPatiently(file, lockFolder);
    journal.stage = kBetween;
    for (int round = 0; round <= life % kMaxRounds; ++round) Round(*service, journal, folder, names);
    journal.stage = kClosing;
    service.reset();
  }
}

void PrintRows(DatabaseStatements& database, const char* table) {
  const ResultSet rows = database.Query(QStringLiteral("select * from ") + QLatin1String(table));
  for (int row = 0; row < rows.RowCount(); ++row) {
    std::string line = table;
    for (int column = 0; column < rows.ColumnCount(); ++column) {
      line += '\t';
      line += rows.IsNull(row, column) ? "-" : rows.TextAt(row, column).toStdString();
    }
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stdout);
  }
}

int Dump(const QString& file, const QString& lockFolder) {
  {
    const auto service = OpenPatiently(file, lockFolder);
    for (const char* table : {"alg_commain", "alg_comdetail", "alg_stockstatistic", "alg_rmbinterestrate"})
      PrintRows(*service, table);
  }
  std::puts("end");
  std::fflush(stdout);
  (void)ShutdownFirebird();
  return 0;
}

int Main(int argc, char** argv) {
  const QString command = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
  const auto argument = [argv](int index) { return QString::fromLocal8Bit(argv[index]); };
  if (command == QLatin1String("loop") && argc == 6) Loop(argument(2), argument(3), argument(4), argv[5]);
  if (command == QLatin1String("dump") && argc == 4) return Dump(argument(2), argument(3));
  std::fputs("holdwise-ingestion-worker loop DATABASE LOCKFOLDER FILES JOURNAL | dump DATABASE LOCKFOLDER\n", stderr);
  return 2;
}

}  // namespace
}  // namespace holdwise

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  try {
    return holdwise::Main(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
