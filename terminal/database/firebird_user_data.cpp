// SPDX-License-Identifier: MIT
#include "database/firebird_user_data.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <utility>

#include "connection.h"
#include "database/firebird_process.h"
#include "database_file.h"
#include "disk_space.h"
#include "holdwise/packet/atomic_file.h"
#include "schema.h"

namespace holdwise {

using firebird::AttachOptions;
using firebird::Connection;
using firebird::Transaction;

namespace {

constexpr mode_t kFileMode = S_IRUSR | S_IWUSR;

Error IoError(const QString& text) {
  return {ErrorCategory::Io, text.toStdString()};
}

/// Statements with a transaction of their own on a shared attachment.
class Session final : public UserDataSession {
 public:
  explicit Session(std::shared_ptr<Connection> connection) : connection_(std::move(connection)) {}
  ~Session() override {
    if (!transaction_) return;
    try {
      connection_->RollBack(std::move(transaction_));
    } catch (const Error&) {  // the engine has already given the transaction up
    }
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  ResultSet Query(const QString& sql) override {
    return connection_->Query(transaction_.get(), sql, Connection::kAllRows);
  }
  std::int64_t Count(const QString& sql) override {
    const ResultSet rows = First(sql);
    return rows.IsEmpty() || rows.IsNull(0, 0) ? -1 : rows.IntegerAt(0, 0);
  }
  Value Scalar(const QString& sql) override {
    const ResultSet rows = First(sql);
    return rows.IsEmpty() ? Value{} : rows.ValueAt(0, 0);
  }
  int Execute(const QString& sql) override {
    connection_->Execute(transaction_.get(), sql);
    return 1;
  }
  void StartTransaction() override {
    if (transaction_) throw Error(ErrorCategory::Refused, "事务已经开始，不能再开始一次");
    transaction_ = connection_->Start();
  }
  void Commit() override {
    RequireTransaction();
    connection_->Commit(std::move(transaction_));
  }
  void RollBack() override {
    RequireTransaction();
    connection_->RollBack(std::move(transaction_));
  }
  bool InTransaction() const override { return transaction_ != nullptr; }

 private:
  ResultSet First(const QString& sql) { return connection_->Query(transaction_.get(), sql, 1); }
  void RequireTransaction() const {
    if (!transaction_) throw Error(ErrorCategory::Refused, "事务没有开始");
  }

  std::shared_ptr<Connection> connection_;
  std::unique_ptr<Transaction> transaction_;
};

/// Made under another name and given its own when complete, so that a file cut short by a crash is never found.
void CreateFile(const QString& file) {
  if (file.contains(u':')) {
    throw Error(ErrorCategory::Refused,
                QStringLiteral("数据库文件 %1 的路径里有冒号，数据库引擎会把它当作服务器").arg(file).toStdString());
  }
  const QFileInfo info(file);
  if (!QFileInfo(info.absolutePath()).isWritable()) {
    throw IoError(QStringLiteral("文件夹 %1 不能写入，不能建立数据库").arg(info.absolutePath()));
  }
  const QString making = file + QStringLiteral(".new");
  QFile::remove(making);
  firebird::Status status;
  firebird::Handle<Firebird::IAttachment> attachment;
  try {
    attachment = firebird::Attach(making, {.create = true, .embedded = true, .user = {}, .password = {}});
    if (::chmod(QFile::encodeName(making).constData(), kFileMode) != 0) {
      throw IoError(QStringLiteral("不能设置文件 %1 的权限").arg(making));
    }
    firebird::UpgradeSchema(status, *attachment);
  } catch (...) {
    firebird::Detach(status, attachment);
    QFile::remove(making);
    throw;
  }
  firebird::Detach(status, attachment);
  if (::rename(QFile::encodeName(making).constData(), QFile::encodeName(file).constData()) != 0) {
    throw IoError(QStringLiteral("不能建立数据库文件 %1").arg(file));
  }
  FlushFolder(info.absolutePath());
}

/// The engine's full check where it can be had; otherwise what the header says.
void CheckWhole(const QString& file, const QString& lockFolder, const QString& headerProblem) {
  if (!firebird::CheckInHelper(file, lockFolder, firebird::LongestCheckMilliseconds(file)) && !headerProblem.isEmpty())
    throw firebird::Damaged(file, headerProblem);
}

void CheckFile(const QString& file, const QString& lockFolder) {
  const QFileInfo info(file);
  if (!QFileInfo(info.absolutePath()).isDir()) {
    throw IoError(QStringLiteral("文件夹 %1 不存在，不能打开数据库").arg(info.absolutePath()));
  }
  if (info.isSymLink() && !info.exists()) {
    // On a disk that is not there, perhaps: a new file would take the place of the way to it.
    throw IoError(QStringLiteral("数据库文件 %1 是指向 %2 的链接，而 %2 不存在").arg(file, info.symLinkTarget()));
  }
  if (!info.exists()) {
    QFile::remove(firebird::MarkerOf(file));  // of one that went away while it was open
    return CreateFile(file);
  }
  if (!info.isFile()) throw IoError(QStringLiteral("%1 不是文件，不能当作数据库打开").arg(file));
  if (!info.isWritable() || !QFileInfo(info.absolutePath()).isWritable()) {
    throw IoError(QStringLiteral("数据库文件 %1 或它的文件夹不能写入，请检查权限").arg(file));
  }
  const QString problem = firebird::HeaderProblem(file);
  if (problem.isEmpty() && !QFileInfo::exists(firebird::MarkerOf(file))) return;
  // Not closed last time, or doubtful: a damaged file may take the process that opens it down.
  CheckWhole(file, lockFolder, problem);
}

/// True when the marker was not there before.
bool PutMarker(const QString& file) {
  const QString marker = firebird::MarkerOf(file);
  const int descriptor =
      ::open(QFile::encodeName(marker).constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, kFileMode);
  if (descriptor < 0) {
    if (QFileInfo::exists(marker)) return false;
    throw IoError(QStringLiteral("不能写入文件 %1").arg(marker));
  }
  ::fsync(descriptor);
  ::close(descriptor);
  FlushFolder(QFileInfo(marker).absolutePath());
  return true;
}

/// "host:", "inet://host/" and "inet://host" name none.
bool NamesDatabase(const QString& server) {
  constexpr qsizetype kMarkLength = 3;
  const qsizetype mark = server.indexOf(QLatin1String("://"));
  return !server.endsWith(u':') && !server.endsWith(u'/') && (mark < 0 || server.indexOf(u'/', mark + kMarkLength) > 0);
}

std::shared_ptr<Connection> OpenServer(const DatabaseTarget& target) {
  if (!NamesDatabase(target.text)) {
    // The library would take the server's name for a file's, in the current folder or on a server of this machine.
    throw Error(ErrorCategory::Refused,
                QStringLiteral("“%1”没有写明服务器上的数据库，应为“主机:/路径”").arg(target.text).toStdString());
  }
  AttachOptions options{.create = false, .embedded = false, .user = target.user, .password = target.password};
  firebird::Handle<Firebird::IAttachment> attachment;
  try {
    attachment = firebird::Attach(target.text, options);
  } catch (const Error& error) {
    if (error.Category() == ErrorCategory::Refused) {
      throw Error(ErrorCategory::Refused,
                  std::string(error.what()) + "（用户名和密码取自环境变量 HOLDWISE_DB_USER 和 HOLDWISE_DB_PASSWORD）");
    }
    if (error.Category() != ErrorCategory::Io) throw;
    // A missing file and a missing server look alike.
    options.create = true;
    try {
      attachment = firebird::Attach(target.text, options);
    } catch (const Error& creating) {
      if (creating.Category() != ErrorCategory::Refused) throw error;
      throw Error(ErrorCategory::Refused, std::string(error.what()) + "；也不能在服务器上建立它：" + creating.what());
    }
  }
  firebird::Status status;
  firebird::UpgradeSchema(status, *attachment);
  options.create = false;
  return std::make_shared<Connection>(
      std::move(attachment),
      Connection::Place{.attachAgain = [text = target.text, options] { return firebird::Attach(text, options); }});
}

std::shared_ptr<Connection> OpenFile(const QString& file, const QString& lockFolder, bool& wasClosed) {
  const QString folder = QFileInfo(file).absolutePath();
  for (const QString& place : {folder, lockFolder}) firebird::RequireSpace(place, firebird::kBytesToOpen);
  CheckFile(file, lockFolder);
  const bool ownMarker = PutMarker(file);
  wasClosed = ownMarker;
  firebird::Handle<Firebird::IAttachment> attachment;
  firebird::Status status;
  try {
    attachment = firebird::Attach(file, {.create = false, .embedded = true, .user = {}, .password = {}});
    firebird::ReserveLockFiles(lockFolder);
    ::chmod(QFile::encodeName(file).constData(), kFileMode);
    firebird::UpgradeSchema(status, *attachment);
  } catch (const Error& error) {
    firebird::Detach(status, attachment);
    if (ownMarker) QFile::remove(firebird::MarkerOf(file));
    // The engine says of much damage only that something inside the file is not as it has to be.
    const bool isDamage = error.Category() == ErrorCategory::Corrupt || error.Category() == ErrorCategory::Database;
    if (isDamage) throw firebird::Damaged(file, QString::fromUtf8(error.what()));
    if (error.Category() != ErrorCategory::Busy) throw;
    throw firebird::HeldByAnother(file);
  }
  return std::make_shared<Connection>(
      std::move(attachment), Connection::Place{.folder = folder, .markerFile = firebird::MarkerOf(file), .file = file});
}

}  // namespace

DatabaseTarget DatabaseTarget::FromText(const QString& text) {
  return {text, qEnvironmentVariable("HOLDWISE_DB_USER"), qEnvironmentVariable("HOLDWISE_DB_PASSWORD")};
}

bool DatabaseTarget::IsServer() const {
  // A local path starts with "/" or ".", or holds no ":".
  const qsizetype colon = text.indexOf(u':');
  return colon > 0 && !text.startsWith(u'/') && !text.startsWith(u'.');
}

class FirebirdUserData::Implementation {
 public:
  Implementation(std::shared_ptr<Connection> shared, bool wasFileClosed)
      : connection(std::move(shared)), line(connection), wasClosed(wasFileClosed) {}
  std::shared_ptr<Connection> connection;
  Session line;
  const bool wasClosed;
};

std::unique_ptr<FirebirdUserData> FirebirdUserData::Open(const DatabaseTarget& target, const QString& lockFolder) {
  if (target.text.isEmpty()) throw Error(ErrorCategory::Refused, "没有指定数据库");
  PrepareFirebirdProcess(lockFolder);
  bool wasClosed = true;
  auto connection = target.IsServer() ? OpenServer(target)
                                      : OpenFile(QFileInfo(target.text).absoluteFilePath(), lockFolder, wasClosed);
  return std::unique_ptr<FirebirdUserData>(
      new FirebirdUserData(std::make_unique<Implementation>(std::move(connection), wasClosed)));
}

std::unique_ptr<FirebirdUserData> FirebirdUserData::OpenAsItIs(const QString& file, const QString& lockFolder) {
  PrepareFirebirdProcess(lockFolder);
  auto connection = std::make_shared<Connection>(
      firebird::Attach(file, {.create = false, .embedded = true, .user = {}, .password = {}}),
      Connection::Place{.folder = QFileInfo(file).absolutePath(), .file = file});
  const bool wasClosed = !QFileInfo::exists(firebird::MarkerOf(file));
  return std::unique_ptr<FirebirdUserData>(
      new FirebirdUserData(std::make_unique<Implementation>(std::move(connection), wasClosed)));
}

void FirebirdUserData::Check(const DatabaseTarget& target, const QString& lockFolder) {
  if (target.IsServer()) {
    PrepareFirebirdProcess(lockFolder);
    (void)OpenServer(target);
    return;
  }
  const QFileInfo file(target.text);
  if (!file.exists())
    throw Error(ErrorCategory::NotFound, QStringLiteral("数据库文件 %1 不在").arg(target.text).toStdString());
  if (!file.isFile()) throw IoError(QStringLiteral("%1 不是文件").arg(target.text));
  CheckWhole(file.absoluteFilePath(), lockFolder, firebird::HeaderProblem(file.absoluteFilePath()));
}

QString FirebirdUserData::CheckRecordOf(const QString& file) {
  return firebird::CheckRecordOf(QFileInfo(file).absoluteFilePath());
}

FirebirdUserData::FirebirdUserData(std::unique_ptr<Implementation> implementation)
    : implementation_(std::move(implementation)) {}
FirebirdUserData::~FirebirdUserData() = default;

bool FirebirdUserData::WasClosed() const {
  return implementation_->wasClosed;
}

ResultSet FirebirdUserData::Query(const QString& sql) {
  return implementation_->line.Query(sql);
}
std::int64_t FirebirdUserData::Count(const QString& sql) {
  return implementation_->line.Count(sql);
}
Value FirebirdUserData::Scalar(const QString& sql) {
  return implementation_->line.Scalar(sql);
}
int FirebirdUserData::Execute(const QString& sql) {
  return implementation_->line.Execute(sql);
}
void FirebirdUserData::StartTransaction() {
  implementation_->line.StartTransaction();
}
void FirebirdUserData::Commit() {
  implementation_->line.Commit();
}
void FirebirdUserData::RollBack() {
  implementation_->line.RollBack();
}
bool FirebirdUserData::InTransaction() const {
  return implementation_->line.InTransaction();
}

std::unique_ptr<UserDataSession> FirebirdUserData::OpenSession() {
  return std::make_unique<Session>(implementation_->connection);
}

void FirebirdUserData::Advise(const std::vector<StatementAdvice>& advice) {
  implementation_->connection->Advise(advice);
}

QString SetDatabaseAside(const QString& file, const QDateTime& now) {
  const auto named = [&file](const QString& time) { return file + u'.' + time + QStringLiteral(".damaged"); };
  QString name = named(FreeTimeText(now, [&named](const QString& time) { return QFileInfo::exists(named(time)); }));
  if (QFileInfo::exists(file)) RenameFileAtomically(file, name, Durability::Lasting);
  QFile::remove(firebird::MarkerOf(file));
  QFile::remove(firebird::CheckRecordOf(file));
  return name;
}

}  // namespace holdwise
