// SPDX-License-Identifier: MIT
#include "connection.h"

#include <sys/stat.h>

#include <QFile>

#include "database/firebird_process.h"

namespace holdwise::firebird {

namespace {

/// Stands where something may be changed, also by what then fails.
class ChangeNote {
 public:
  explicit ChangeNote(KeptAnswers& kept) : kept_(kept) {}
  ~ChangeNote() { kept_.Clear(); }
  ChangeNote(const ChangeNote&) = delete;
  ChangeNote& operator=(const ChangeNote&) = delete;

 private:
  KeptAnswers& kept_;
};

std::pair<std::uint64_t, std::uint64_t> NumberOf(const QString& file) {
  struct stat status = {};
  if (file.isEmpty() || ::stat(QFile::encodeName(file).constData(), &status) != 0) return {0, 0};
  return {status.st_dev, status.st_ino};
}

}  // namespace

Connection::Connection(Handle<Firebird::IAttachment> attachment, Place place)
    : place_(std::move(place)), fileNumber_(NumberOf(place_.file)), attachment_(std::move(attachment)) {}

Connection::~Connection() {
  cache_.Clear();
  reading_.reset();
  if (place_.IsEmbedded() && !IsFirebirdFolderThere()) {
    static_cast<void>(attachment_.release());
    return;
  }
  const bool isClosed = Detach(status_, attachment_);
  // A damaged file is to be checked by the next start; whatever stands in its place by now was closed by nobody.
  if (isClosed && !isDamaged_ && !place_.markerFile.isEmpty() && IsFileThere()) QFile::remove(place_.markerFile);
}

/// For what changes nothing and may therefore be done twice.
template <typename Action>
auto Connection::OnLiveConnection(Action action) {
  try {
    return action();
  } catch (const Error&) {
    // While the server answers, the connection and the transactions open on it are whole, whatever the error is.
    if (!place_.attachAgain || IsAlive(status_, *attachment_)) throw;
  }
  Handle<Firebird::IAttachment> attachment = place_.attachAgain();
  cache_.Clear();
  reading_.reset();
  Detach(status_, attachment_);
  attachment_ = std::move(attachment);
  return action();
}

bool Connection::IsFileThere() const {
  return NumberOf(place_.file) == fileNumber_;
}

template <typename Action>
auto Connection::Noted(Action action) {
  const MutexLock lock(mutex_);
  try {
    return action();
  } catch (const Error& error) {
    if (error.Category() == ErrorCategory::Corrupt) isDamaged_ = true;
    throw;
  }
}

/// A file that was removed takes changes all the same, and they go with its last user.
void Connection::RequireFile() const {
  if (IsFileThere()) return;
  throw Error(ErrorCategory::Io,
              QStringLiteral("数据库文件 %1 不在原处了，所做的修改没有保存").arg(place_.file).toStdString());
}

std::unique_ptr<Transaction> Connection::StartChange() {
  RequireFile();
  if (place_.IsEmbedded()) {
    RequireSpace(place_.folder, place_.bytesToChange);
    return std::make_unique<Transaction>(status_, *attachment_, Transaction::Mode::ChangeNoWait);
  }
  return OnLiveConnection([&]() HOLDWISE_REQUIRES(mutex_) {
    return std::make_unique<Transaction>(status_, *attachment_, Transaction::Mode::ChangeWait);
  });
}

/// One transaction for all reads outside a caller's own: a read-only read-committed one costs the engine nothing,
/// however long it lives, and sees what others commit.
Transaction& Connection::Reading() {
  if (!reading_) reading_ = std::make_unique<Transaction>(status_, *attachment_, Transaction::Mode::ReadOnly);
  return *reading_;
}

void Connection::ReadShape(const QString& sql) {
  if (!sql.isValidUtf16()) throw Error(ErrorCategory::Refused, "语句里有不完整的字符，没有执行");
  const QByteArray utf8 = sql.toUtf8();
  text_.assign(utf8.constData(), static_cast<std::size_t>(utf8.size()));
  shape_.Read(text_);
}

PreparedStatement& Connection::PrepareForm(Transaction& transaction, std::string_view form) {
  auto statement = std::make_unique<PreparedStatement>(status_, *attachment_, transaction, form);
  if (statement->ParameterCount() != shape_.Literals().size()) {
    throw Error(ErrorCategory::Refused, "语句里有没有值的参数");
  }
  return cache_.Add(shape_.Text(), std::move(statement));
}

/// Null when the shape is one that the engine does not prepare.
PreparedStatement* Connection::PrepareShape(Transaction& transaction, std::string_view sql) {
  const std::string& shape = shape_.Text();
  if (PreparedStatement* known = cache_.Find(shape)) return known;
  if (cache_.IsUnbindable(shape)) return nullptr;
  if (const std::string_view form = advised_.FormToPrepare(shape); form != shape) {
    try {
      return &PrepareForm(transaction, form);
    } catch (const Error&) {  // bad advice: as it is written, then
    }
  }
  try {
    return &PrepareForm(transaction, shape);
  } catch (const Error& error) {
    if (error.Category() == ErrorCategory::Refused || shape_.Literals().empty()) throw;
    // Whether the text itself is at fault shows when it is prepared as it stands.
    const PreparedStatement asWritten(status_, *attachment_, transaction, sql);
    cache_.AddUnbindable(shape);
    return nullptr;
  }
}

Connection::Ready Connection::Prepare(Transaction& transaction, std::string_view sql) {
  Ready ready;
  const StatementKind kind = shape_.Kind();
  if (kind == StatementKind::Select || kind == StatementKind::Change) {
    ready.statement = PrepareShape(transaction, sql);
    if (ready.statement != nullptr && !ready.statement->Bind(shape_.Literals())) ready.statement = nullptr;
  }
  if (ready.statement == nullptr) {
    ready.once = std::make_unique<PreparedStatement>(status_, *attachment_, transaction, sql);
    ready.statement = ready.once.get();
    if (ready.statement->ParameterCount() != 0) throw Error(ErrorCategory::Refused, "语句里有没有值的参数");
  }
  return ready;
}

ResultSet Connection::Query(Transaction* own, const QString& sql, int maxRows) {
  return Noted([&]() HOLDWISE_REQUIRES(mutex_) { return Read(own, sql, maxRows); });
}

ResultSet Connection::Read(Transaction* own, const QString& sql, int maxRows) {
  // A server has other writers, of whom nothing is heard here.
  const bool mayKeep = own == nullptr && maxRows == kAllRows && place_.IsEmbedded();
  if (mayKeep) {
    if (std::optional<ResultSet> rows = kept_.Find(sql)) return *std::move(rows);
  }
  ReadShape(sql);
  if (own == nullptr && shape_.Kind() == StatementKind::Select) {
    ResultSet rows = OnLiveConnection(
        [&]() HOLDWISE_REQUIRES(mutex_) { return Prepare(Reading(), text_).statement->Read(Reading(), maxRows); });
    if (mayKeep && advised_.MayBeKept(shape_.Text())) kept_.Add(sql, rows);
    return rows;
  }
  const ChangeNote note(kept_);
  if (own != nullptr) return Prepare(*own, text_).statement->Read(*own, maxRows);
  const std::unique_ptr<Transaction> transaction = StartChange();
  ResultSet rows = Prepare(*transaction, text_).statement->Read(*transaction, maxRows);
  transaction->Commit();
  return rows;
}

void Connection::Execute(Transaction* own, const QString& sql) {
  Noted([&]() HOLDWISE_REQUIRES(mutex_) {
    const ChangeNote note(kept_);
    ReadShape(sql);
    if (shape_.Kind() == StatementKind::Definition) {
      // The engine does not change what a prepared statement still uses.
      cache_.Clear();
      reading_.reset();
    }
    if (own != nullptr) {
      Prepare(*own, text_).statement->Execute(*own);
      return;
    }
    const std::unique_ptr<Transaction> transaction = StartChange();
    Prepare(*transaction, text_).statement->Execute(*transaction);
    transaction->Commit();
  });
}

std::unique_ptr<Transaction> Connection::Start() {
  return Noted([&]() HOLDWISE_REQUIRES(mutex_) { return StartChange(); });
}

void Connection::Commit(std::unique_ptr<Transaction> transaction) {
  Noted([&]() HOLDWISE_REQUIRES(mutex_) {
    const ChangeNote note(kept_);
    const std::unique_ptr<Transaction> ending = std::move(transaction);  // rolled back under the lock when this fails
    RequireFile();
    ending->Commit();
  });
}

void Connection::RollBack(std::unique_ptr<Transaction> transaction) {
  Noted([&]() HOLDWISE_REQUIRES(mutex_) {
    const ChangeNote note(kept_);  // the database may have a trigger on it
    const std::unique_ptr<Transaction> ending = std::move(transaction);
    ending->RollBack();
  });
}

void Connection::Advise(const std::vector<StatementAdvice>& advice) {
  const MutexLock lock(mutex_);
  advised_.Take(advice);
  // What is prepared and kept was so by the advice before.
  cache_.Clear();
  kept_.Clear();
}

}  // namespace holdwise::firebird
