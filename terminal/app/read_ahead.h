#pragma once
#include <QString>
#include <QStringList>
#include <future>
#include <map>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>

#include "holdwise/sdk/database.h"

namespace holdwise {

/// The local database service with the answers to a start's first reads ready. Which statements a start reads hardly
/// ever changes: they are written to a file at its end, and the next start reads them in a thread of its own while the
/// window is being made. Each answer is given once; the first change to the database drops those that are left. Only
/// for a database that nobody else writes. Threads as UserDataServices.
class ReadAheadUserData final : public UserDataServices {
 public:
  /// Starts reading. `file`: one statement a line; missing, unreadable or without statements: nothing is read ahead.
  /// Empty: neither read nor written.
  ReadAheadUserData(std::unique_ptr<UserDataServices> database, QString file);
  ~ReadAheadUserData() override;

  /// The start is over: answers that nobody asked for are dropped and the file is written when the reads differ from
  /// it. What cannot be written is not missed. User-interface thread.
  void EndStart();

  [[nodiscard]] ResultSet Query(const QString& sql) override;
  [[nodiscard]] std::int64_t Count(const QString& sql) override;
  [[nodiscard]] Value Scalar(const QString& sql) override;
  int Execute(const QString& sql) override;
  void StartTransaction() override;
  void Commit() override;
  void RollBack() override;
  [[nodiscard]] bool InTransaction() const override;
  [[nodiscard]] std::unique_ptr<UserDataSession> OpenSession() override;

 private:
  void ReadAll(const std::stop_token& stop, UserDataSession& session,
               std::map<QString, std::promise<ResultSet>> answers);
  /// The answer that is ready or under way; none when there is none, or when reading it failed.
  [[nodiscard]] std::optional<ResultSet> Answer(const QString& sql);
  void Stop();

  std::unique_ptr<UserDataServices> database_;
  const QString file_;
  const QStringList before_;  ///< the reads of the last start
  std::mutex lock_;           ///< over what follows
  bool isStart_ = true;
  QStringList reads_;
  std::map<QString, std::future<ResultSet>> answers_;
  std::jthread reader_;
};

}  // namespace holdwise
