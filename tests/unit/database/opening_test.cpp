// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <random>

#include "database/database_file.h"
#include "database_texts.h"
#include "opening_support.h"

using namespace holdwise;
using namespace holdwise::test;

namespace {

constexpr int kChildTimeoutMs = 60'000;

QString ChildProgram() {
  return QCoreApplication::applicationDirPath() + QStringLiteral("/holdwise-database-child");
}
int ExitCodeFor(ErrorCategory category) {
  return 10 + static_cast<int>(category);
}

/// Another process on the file, with lock files of its own unless a folder for them is given.
class Child {
 public:
  Child(const QString& mode, const QString& file, const QString& locks = {}) {
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_.start(ChildProgram(), {mode, file, locks.isEmpty() ? locks_.path() : locks});
  }
  ~Child() { End(); }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  void WaitUntilReady() {
    ASSERT_TRUE(process_.waitForReadyRead(kChildTimeoutMs));
    ASSERT_EQ(process_.readAllStandardOutput().trimmed(), "ready");
  }
  void Kill() {
    process_.kill();
    process_.waitForFinished(kChildTimeoutMs);
  }
  int End() {
    process_.closeWriteChannel();
    if (process_.state() != QProcess::NotRunning && !process_.waitForFinished(kChildTimeoutMs)) return -1;
    return process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1;
  }

 private:
  QTemporaryDir locks_;
  QProcess process_;
};

void Overwrite(const QString& file, qint64 at, const QByteArray& bytes) {
  QFile output(file);
  ASSERT_TRUE(output.open(QIODevice::ReadWrite));
  ASSERT_TRUE(output.seek(at));
  ASSERT_EQ(output.write(bytes), bytes.size());
}

QByteArray RandomBytes(int count, unsigned seed) {
  std::mt19937 random(seed);
  QByteArray bytes(count, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random() & 0xFF);
  return bytes;
}

mode_t ModeOf(const QString& file) {
  struct stat info {};
  stat(QFile::encodeName(file).constData(), &info);
  return info.st_mode & 0777;
}

TEST(Opening, MakesAMissingFileForItsOwnerOnly) {
  const QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("中文 名.fdb"));
  auto service = FirebirdUserData::Open(DatabaseTarget{file, {}, {}}, TempDatabase::LockFolder());
  EXPECT_EQ(ModeOf(file), 0600U);
  EXPECT_EQ(service->Count(kCountPortfolios), 0);
  EXPECT_TRUE(QFileInfo::exists(firebird::MarkerOf(file))) << "open";
  service.reset();
  EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList{QStringLiteral("中文 名.fdb")})
      << "closed, no traces";
}

TEST(Opening, TakesOthersRightsAway) {
  TempDatabase db(false);
  QFile::setPermissions(db.File(), QFile::permissions(db.File()) | QFile::ReadOther | QFile::ReadGroup);
  db.Open();
  EXPECT_EQ(ModeOf(db.File()), 0600U);
}

TEST(Opening, LockFilesAreInThePrivateFolder) {
  TempDatabase db;
  EXPECT_EQ(qgetenv("FIREBIRD_LOCK"), QFile::encodeName(TempDatabase::LockFolder()));
  EXPECT_FALSE(QDir(TempDatabase::LockFolder()).entryList({QStringLiteral("fb_*")}, QDir::Files).isEmpty());
  EXPECT_EQ(ModeOf(TempDatabase::LockFolder()), 0700U);
}

TEST(Opening, FileOfAnotherProcessIsBusyUntilItEnds) {
  TempDatabase db(false);
  Child child(QStringLiteral("hold"), db.File());
  child.WaitUntilReady();
  const Outcome outcome = OpeningFails(db.File());
  EXPECT_EQ(outcome.category, ErrorCategory::Busy);
  EXPECT_EQ(outcome.text, QStringLiteral("数据库文件 %1 正被另一个程序使用，请先关闭它").arg(db.File()));
  EXPECT_EQ(child.End(), 0);
  EXPECT_EQ(db.Open().Count(kCountPortfolios), 0);
}

TEST(Opening, OwnFileIsBusyForOthers) {
  TempDatabase db;
  Child child(QStringLiteral("open"), db.File());
  EXPECT_EQ(child.End(), ExitCodeFor(ErrorCategory::Busy));
  EXPECT_EQ(db.Service().Execute(InsertPortfolio(1, QStringLiteral("甲"))), 1);
}

TEST(Opening, KilledInMidTransactionLeavesTheOldRows) {
  TempDatabase db;
  db.Service().StartTransaction();
  for (int day = 0; day < 50; ++day) {
    db.Service().Execute(InsertStatistic({.code = 1600000, .date = 20260101 + day, .dailyReturn = 0.01 * day}));
  }
  db.Service().Commit();
  const QString all = QStringLiteral("select * from alg_stockstatistic order by hqdate");
  const ResultSet before = db.Service().Query(all);
  db.Close();
  Child child(QStringLiteral("half"), db.File());
  child.WaitUntilReady();
  child.Kill();
  EXPECT_TRUE(QFileInfo::exists(firebird::MarkerOf(db.File()))) << "not closed";
  EXPECT_EQ(db.Open().Query(all), before);
  db.Service().Execute(QStringLiteral("delete from alg_stockstatistic"));
  EXPECT_EQ(db.Service().Count(QStringLiteral("select count(*) from alg_stockstatistic")), 0);
}

TEST(Opening, SignalsGoToTheApplicationAndTheDatabaseStaysUsable) {
  const TempDatabase db(false);
  Child child(QStringLiteral("signal"), db.File());
  EXPECT_EQ(child.End(), 0);
}

TEST(Opening, HandlersInstalledBeforehandAreKept) {
  struct sigaction before {};
  struct sigaction after {};
  sigaction(SIGTERM, nullptr, &before);
  TempDatabase db;
  sigaction(SIGTERM, nullptr, &after);
  EXPECT_EQ(before.sa_handler, after.sa_handler);
}

/// A folder of a user who has no right beyond it, and the child program run as that user. Root becomes "nobody";
/// everybody else is such a user already.
class OrdinaryUser {
 public:
  OrdinaryUser() {
    Give(folder_.path());
    // A copy of the program: the build folder may not be theirs to read.
    QFile::copy(ChildProgram(), File("child"));
    Give(File("child"));
  }
  [[nodiscard]] QString File(const char* name) const { return folder_.filePath(QString::fromLatin1(name)); }
  [[nodiscard]] QString Folder() const { return folder_.path(); }
  void Give(const QString& path) const {
    if (!IsRoot()) return;
    EXPECT_EQ(::chown(QFile::encodeName(path).constData(), kNobody, kNobody), 0);
  }
  /// Opens the database and closes it; the child's exit code.
  int OpenAs(const QString& file) {
    QStringList command{File("child"), QStringLiteral("open"), file, File("locks")};
    if (IsRoot()) {
      command = QStringList{"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"} + command;
    }
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(command.takeFirst(), command);
    return process.waitForFinished(kChildTimeoutMs) ? process.exitCode() : -1;
  }

 private:
  static constexpr uid_t kNobody = 65534;
  static bool IsRoot() { return ::getuid() == 0; }
  QTemporaryDir folder_{QStringLiteral("/tmp/holdwise-user-XXXXXX")};
};

TEST(Opening, OtherUserIsNotShutOutByTheLockFolder) {
  TempDatabase ours;  // the engine runs here
  OrdinaryUser user;
  EXPECT_EQ(user.OpenAs(user.File("theirs.fdb")), 0);
  EXPECT_EQ(ModeOf(user.File("locks")), 0700U);
}

TEST(Opening, ReadOnlyFileAndFolderAreIo) {
  OrdinaryUser user;
  const TempDatabase whole(false);
  const QString file = user.File("db.fdb");
  ASSERT_TRUE(QFile::copy(whole.File(), file));
  user.Give(file);
  const QByteArray path = QFile::encodeName(file);
  const QByteArray folder = QFile::encodeName(user.Folder());
  ::chmod(path.constData(), 0400);
  EXPECT_EQ(user.OpenAs(file), ExitCodeFor(ErrorCategory::Io)) << "file";
  ::chmod(path.constData(), 0000);
  EXPECT_EQ(user.OpenAs(file), ExitCodeFor(ErrorCategory::Io)) << "not even to read";
  ::chmod(path.constData(), 0600);
  EXPECT_EQ(user.OpenAs(file), 0) << "made under another account";
  ::chmod(folder.constData(), 0500);
  EXPECT_EQ(user.OpenAs(file), ExitCodeFor(ErrorCategory::Io)) << "folder";
  EXPECT_EQ(user.OpenAs(user.File("new.fdb")), ExitCodeFor(ErrorCategory::Io)) << "new file";
  ::chmod(folder.constData(), 0700);
}

TEST(Opening, MissingFolderAndUnwritablePlacesAreIo) {
  const QTemporaryDir folder;
  const Outcome missing = OpeningFails(folder.filePath(QStringLiteral("none/db.fdb")));
  EXPECT_EQ(missing.category, ErrorCategory::Io);
  EXPECT_TRUE(missing.text.contains(QStringLiteral("不存在")));
  EXPECT_EQ(OpeningFails(folder.path()).category, ErrorCategory::Io) << "a folder is no database";
  EXPECT_EQ(OpeningFails(QStringLiteral("/proc/holdwise.fdb")).category, ErrorCategory::Io);
}

TEST(Opening, ALinkToNothingIsKept) {
  const QTemporaryDir folder;
  const QString link = folder.filePath(QStringLiteral("db.fdb"));
  ASSERT_TRUE(QFile::link(folder.filePath(QStringLiteral("disk/db.fdb")), link));
  const Outcome outcome = OpeningFails(link);
  EXPECT_EQ(outcome.category, ErrorCategory::Io);
  EXPECT_TRUE(outcome.text.contains(folder.filePath(QStringLiteral("disk/db.fdb")) + QStringLiteral(" 不存在")));
  EXPECT_TRUE(QFileInfo(link).isSymLink());
  TempDatabase whole(false);
  const QString good = folder.filePath(QStringLiteral("good.fdb"));
  ASSERT_TRUE(QFile::link(whole.File(), good));
  EXPECT_EQ(FirebirdUserData::Open(DatabaseTarget{good, {}, {}}, TempDatabase::LockFolder())->Count(kCountPortfolios),
            0);
}

TEST(Opening, UnreachableServerIsIo) {
  // Port 1 of this machine refuses at once.
  const Outcome outcome = OpeningFails(QStringLiteral("127.0.0.1/1:/tmp/none.fdb"));
  EXPECT_EQ(outcome.category, ErrorCategory::Io) << outcome.text.toStdString();
  EXPECT_TRUE(outcome.text.startsWith(QStringLiteral("不能打开数据库：连接不上数据库服务器（")))
      << outcome.text.toStdString();
}

TEST(Opening, NamesThatTheEngineReadsOtherwiseAreRefused) {
  const QTemporaryDir folder;
  const QString before = QDir::currentPath();
  ASSERT_TRUE(QDir::setCurrent(folder.path()));
  for (const char* server :
       {"localhost:", "localhost/3050:", "inet://localhost/", "inet://localhost", "inet://localhost:1"}) {
    const Outcome outcome = OpeningFails(QString::fromLatin1(server));
    EXPECT_EQ(outcome.category, ErrorCategory::Refused) << server;
    EXPECT_TRUE(outcome.text.contains(QStringLiteral("没有写明服务器上的数据库"))) << outcome.text.toStdString();
  }
  const Outcome colon = OpeningFails(QStringLiteral("./a:b.fdb"));
  EXPECT_EQ(colon.category, ErrorCategory::Refused);
  EXPECT_TRUE(colon.text.contains(folder.filePath(QStringLiteral("a:b.fdb")) + QStringLiteral(" 的路径里有冒号")));
  EXPECT_TRUE(QDir(folder.path()).isEmpty()) << "no file of that name was made";
  QDir::setCurrent(before);
}

TEST(Opening, TargetsAreToldApart) {
  const auto isServer = [](const char* text) { return DatabaseTarget{QString::fromLatin1(text), {}, {}}.IsServer(); };
  EXPECT_TRUE(isServer("host:/srv/db.fdb"));
  EXPECT_TRUE(isServer("host/3051:/srv/db.fdb"));
  EXPECT_TRUE(isServer("inet://host/srv/db.fdb"));
  EXPECT_TRUE(isServer("host:alias"));
  EXPECT_FALSE(isServer("/srv/a:b.fdb"));
  EXPECT_FALSE(isServer("./a:b.fdb"));
  EXPECT_FALSE(isServer("db.fdb"));
  qputenv("HOLDWISE_DB_USER", "reader");
  qputenv("HOLDWISE_DB_PASSWORD", "secret");
  const DatabaseTarget target = DatabaseTarget::FromText(QStringLiteral("host:db"));
  EXPECT_EQ(target.user, QStringLiteral("reader"));
  EXPECT_EQ(target.password, QStringLiteral("secret"));
  qunsetenv("HOLDWISE_DB_USER");
  qunsetenv("HOLDWISE_DB_PASSWORD");
}

struct Damage {
  const char* name;
  void (*apply)(const QString& file);
};

class DamagedFiles : public testing::TestWithParam<Damage> {};

TEST_P(DamagedFiles, AreCorruptAndLeftAlone) {
  TempDatabase db;
  db.Service().StartTransaction();
  for (int day = 0; day < 300; ++day) {
    db.Service().Execute(InsertStatistic({.code = 1600000, .date = 20260101 + day, .dailyReturn = 0.01 * day}));
  }
  db.Service().Commit();
  db.Close();
  GetParam().apply(db.File());
  QFile file(db.File());
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray before = file.readAll();
  const Outcome outcome = OpeningFails(db.File());
  EXPECT_EQ(outcome.category, ErrorCategory::Corrupt) << outcome.text.toStdString();
  EXPECT_TRUE(outcome.text.contains(QStringLiteral("已损坏"))) << outcome.text.toStdString();
  EXPECT_TRUE(outcome.text.contains(db.File()));
  file.seek(0);
  EXPECT_EQ(file.readAll(), before);
}

const Damage kDamages[] = {
    {"empty", [](const QString& file) { QFile::resize(file, 0); }},
    {"short", [](const QString& file) { QFile::resize(file, 20); }},
    {"text",
     [](const QString& file) {
       QFile::resize(file, 0);
       Overwrite(file, 0, QByteArray("not a database at all\n").repeated(1000));
     }},
    {"randomBytes", [](const QString& file) { Overwrite(file, 0, RandomBytes(200'000, 1)); }},
    {"randomAfterTheHeader",
     [](const QString& file) {
       Overwrite(file, 8192, RandomBytes(static_cast<int>(QFileInfo(file).size()) - 8192, 2));
     }},
    {"headOnly", [](const QString& file) { QFile::resize(file, 8192); }},
    {"half", [](const QString& file) { QFile::resize(file, QFileInfo(file).size() / 8192 / 2 * 8192); }},
    {"headOverwritten", [](const QString& file) { Overwrite(file, 0, QByteArray(64, '\0')); }},
    {"pageSizeFlipped", [](const QString& file) { Overwrite(file, 16, QByteArray(1, '\x7F')); }},
    {"structureFlipped", [](const QString& file) { Overwrite(file, 18, QByteArray(2, '\x55')); }},
    {"pagesThatSayTheyAreEncrypted",
     [](const QString& file) {
       constexpr qint64 kPage = 4096;
       const qint64 pages = QFileInfo(file).size() / kPage;
       for (qint64 page = 3; page < pages; ++page) Overwrite(file, page * kPage + 1, QByteArray(1, '\x80'));
     }},
    {"randomInTheMiddle",
     [](const QString& file) { Overwrite(file, qint64{40} * 4096, RandomBytes(qint64{40} * 4096, 7)); }},
    {"notClosedAndHolesInside",
     [](const QString& file) {
       QFile(firebird::MarkerOf(file)).open(QIODevice::WriteOnly);
       const qint64 pages = QFileInfo(file).size() / 8192;
       for (qint64 page = 2; page < pages; page += 2) Overwrite(file, page * 8192, RandomBytes(8192, 3));
     }},
};
INSTANTIATE_TEST_SUITE_P(Opening, DamagedFiles, testing::ValuesIn(kDamages),
                         [](const auto& damage) { return std::string(damage.param.name); });

TEST(Opening, DamageThatTheEngineFindsIsToldInChinese) {
  TempDatabase db(false);
  // The pages behind the two of the header: the engine itself stumbles over them.
  Overwrite(db.File(), 8192, RandomBytes(static_cast<int>(QFileInfo(db.File()).size()) - 8192, 2));
  const Outcome outcome = OpeningFails(db.File());
  EXPECT_TRUE(outcome.text.contains(QStringLiteral("已损坏（不能打开数据库：数据库文件的内容有误（")))
      << outcome.text.toStdString();
}

TEST(Opening, UnfinishedPageAtTheEndIsNoLoss) {
  TempDatabase db;
  db.Service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  db.Close();
  Overwrite(db.File(), QFileInfo(db.File()).size(), QByteArray(100, '\0'));  // cut off while the file grew
  EXPECT_EQ(db.Open().Count(kCountPortfolios), 1);
}

TEST(Opening, NotClosedButWholeOpensAgain) {
  TempDatabase db(false);
  Child child(QStringLiteral("left"), db.File());
  ASSERT_EQ(child.End(), 0);
  EXPECT_TRUE(QFileInfo::exists(firebird::MarkerOf(db.File())));
  EXPECT_EQ(db.Open().Count(kCountPortfolios), 0);
  db.Close();
  EXPECT_FALSE(QFileInfo::exists(firebird::MarkerOf(db.File())));
}

TEST(Opening, FilesOfDeadProcessesAreClearedAwayAndThoseOfLiveOnesKept) {
  const QTemporaryDir locks;
  const auto traces = [&locks] { return QDir(locks.path()).entryList({QStringLiteral("fb_trace_*")}, QDir::Files); };
  TempDatabase db(false);
  TempDatabase other(false);
  ASSERT_EQ(Child(QStringLiteral("left"), db.File(), locks.path()).End(), 0);
  const QStringList left = traces();
  ASSERT_EQ(left.size(), 1);
  Child live(QStringLiteral("hold"), db.File(), locks.path());
  live.WaitUntilReady();
  const QStringList held = traces();
  ASSERT_EQ(held.size(), 1);
  EXPECT_NE(held, left);
  Child next(QStringLiteral("hold"), other.File(), locks.path());
  next.WaitUntilReady();
  EXPECT_TRUE(traces().contains(held.first()));
  EXPECT_EQ(next.End(), 0);
  EXPECT_EQ(live.End(), 0);
  EXPECT_EQ(traces(), QStringList());
}

}  // namespace
