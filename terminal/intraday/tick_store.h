// SPDX-License-Identifier: MIT
#pragma once
#include <QFile>
#include <QString>
#include <map>
#include <set>
#include <vector>

#include "intraday/ticks.h"

namespace holdwise {

/// The ticks of one market's day, in memory and in one file, which is appended to and forgotten when another day
/// begins. A file whose end is missing or damaged gives what is whole of it. Any one thread.
class TickStore {
 public:
  static constexpr std::size_t kMostSecurities = 300;
  static constexpr int kSlotSeconds = 3;  ///< a tick every so many seconds is kept, the last of them

  /// Reads what the file holds of that day. @param path empty: in memory only
  /// @param identity what tells this market's day from others; a file of another one is not read, and replaced with the
  ///                 first tick
  TickStore(QString path, const QString& identity);
  /// As Flush.
  ~TickStore();
  TickStore(const TickStore&) = delete;
  TickStore& operator=(const TickStore&) = delete;

  /// Ascending by second; empty for a security without any. Valid until the next change.
  [[nodiscard]] const std::vector<Tick>& Of(int codeNumber) const;
  [[nodiscard]] std::vector<int> CodeNumbers() const;
  /// Of the latest tick of all securities; -1 without one.
  [[nodiscard]] int LastSecond() const;
  /// False when nothing changes: a tick that is no later, that says nothing new, that cannot be (second, price), or is
  /// of a security too many.
  bool Add(int codeNumber, const Tick& tick);
  /// Forgets all that came after a second: the day has been set back.
  void DropAfter(int second);
  /// Hands the file what is not in it yet.
  void Flush();
  /// Why the file is not written, for the log; empty while it is. It is not tried again.
  [[nodiscard]] const QString& Problem() const { return problem_; }

 private:
  void Load();
  /// Add without the file.
  bool Take(int codeNumber, const Tick& tick);
  void Rewrite();
  /// Opens the file unless it is open; false when it cannot be, which is told then.
  [[nodiscard]] bool Open();
  void Fail(const QString& why);
  void Write(int codeNumber, const Tick& tick);

  QString path_;
  QByteArray header_;
  QFile file_;
  qint64 size_ = 0;      ///< of the file, as far as it is whole
  bool isOurs_ = false;  ///< the file is of this day
  QString problem_;
  std::map<int, std::vector<Tick>> ticks_;
  std::set<int> unwritten_;  ///< securities whose last tick is not in the file
};

}  // namespace holdwise
