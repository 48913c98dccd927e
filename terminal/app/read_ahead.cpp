#include "app/read_ahead.h"

#include <QFile>
#include <QSaveFile>
#include <utility>

namespace holdwise {
namespace {

constexpr int kMostReads = 64;

/// A select that moves a generator must not run without being asked for.
bool IsPlainRead(const QString& sql) {
  return sql.startsWith(QStringLiteral("select"), Qt::CaseInsensitive) && !sql.contains(QLatin1Char('\n')) &&
         !sql.contains(QStringLiteral("gen_id"), Qt::CaseInsensitive) &&
         !sql.contains(QStringLiteral("next value"), Qt::CaseInsensitive);
}

QStringList ReadsOf(const QString& path) {
  QStringList reads;
  QFile file(path);
  if (path.isEmpty() || !file.open(QIODevice::ReadOnly)) return reads;
  for (const QString& line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
    if (reads.size() < kMostReads && IsPlainRead(line) && !reads.contains(line)) reads.append(line);
  }
  return reads;
}

}  // namespace

ReadAheadUserData::ReadAheadUserData(std::unique_ptr<UserDataServices> database, QString file)
    : database_(std::move(database)), file_(std::move(file)), before_(ReadsOf(file_)) {
  if (before_.isEmpty()) return;
  std::map<QString, std::promise<ResultSet>> answers;
  for (const QString& sql : before_) answers_[sql] = answers[sql].get_future();
  // The service's own line may begin a transaction meanwhile, which is nothing for another thread to read in.
  reader_ = std::jthread([this, session = database_->OpenSession(), kept = std::move(answers)](
                             const std::stop_token& stop) mutable { ReadAll(stop, *session, std::move(kept)); });
}

ReadAheadUserData::~ReadAheadUserData() = default;

void ReadAheadUserData::ReadAll(const std::stop_token& stop, UserDataSession& session,
                                std::map<QString, std::promise<ResultSet>> answers) {
  for (const QString& sql : before_) {
    if (stop.stop_requested()) return;  // the promises that are left are broken: whoever waits reads for himself
    std::promise<ResultSet>& answer = answers.at(sql);
    try {
      answer.set_value(session.Query(sql));
    } catch (...) {
      answer.set_exception(std::current_exception());
    }
  }
}

std::optional<ResultSet> ReadAheadUserData::Answer(const QString& sql) {
  std::future<ResultSet> answer;
  {
    const std::lock_guard guard(lock_);
    if (!isStart_) return std::nullopt;
    if (reads_.size() < kMostReads && IsPlainRead(sql) && !reads_.contains(sql)) reads_.append(sql);
    const auto found = answers_.find(sql);
    if (found == answers_.end()) return std::nullopt;
    answer = std::move(found->second);
    answers_.erase(found);
  }
  try {
    return answer.get();
  } catch (...) {  // the caller's own reading will say what is wrong
    return std::nullopt;
  }
}

void ReadAheadUserData::Stop() {
  reader_.request_stop();
  const std::lock_guard guard(lock_);
  isStart_ = false;
  answers_.clear();
}

void ReadAheadUserData::EndStart() {
  Stop();
  if (file_.isEmpty() || reads_.isEmpty() || reads_ == before_) return;
  QSaveFile file(file_);
  if (!file.open(QIODevice::WriteOnly)) return;
  file.write(reads_.join(QLatin1Char('\n')).toUtf8());
  file.commit();
}

ResultSet ReadAheadUserData::Query(const QString& sql) {
  if (std::optional<ResultSet> rows = Answer(sql)) return *std::move(rows);
  return database_->Query(sql);
}

std::int64_t ReadAheadUserData::Count(const QString& sql) {
  const std::optional<ResultSet> rows = Answer(sql);
  if (!rows) return database_->Count(sql);
  return rows->IsEmpty() || rows->IsNull(0, 0) ? -1 : rows->IntegerAt(0, 0);
}

Value ReadAheadUserData::Scalar(const QString& sql) {
  const std::optional<ResultSet> rows = Answer(sql);
  if (!rows) return database_->Scalar(sql);
  return rows->IsEmpty() ? Value{} : rows->ValueAt(0, 0);
}

int ReadAheadUserData::Execute(const QString& sql) {
  Stop();
  return database_->Execute(sql);
}

void ReadAheadUserData::StartTransaction() {
  Stop();
  database_->StartTransaction();
}

void ReadAheadUserData::Commit() {
  database_->Commit();
}

void ReadAheadUserData::RollBack() {
  database_->RollBack();
}

bool ReadAheadUserData::InTransaction() const {
  return database_->InTransaction();
}

std::unique_ptr<UserDataSession> ReadAheadUserData::OpenSession() {
  Stop();
  return database_->OpenSession();
}

}  // namespace holdwise
