// SPDX-License-Identifier: MIT
#pragma once
#include <QFile>
#include <QString>
#include <functional>
#include <map>
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
  /// @param isKnown only rows of such code numbers are read; empty: all are
  TickStore(QString path, const QString& identity, const std::function<bool(int codeNumber)>& isKnown = {});
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
  /// Forgets a security: its place is free.
  void Forget(int codeNumber);
  /// Hands the file what is not in it yet. After a failure this alone tries again.
  void Flush();
  /// Why the file is not written, for the log; empty while it is.
  [[nodiscard]] const QString& Problem() const { return problem_; }

 private:
  /// A security's ticks; the first `written` are in the file as they are.
  struct Day {
    std::vector<Tick> ticks;
    std::size_t written = 0;
  };
  void Load(const std::function<bool(int)>& isKnown);
  /// Add without the file.
  bool Take(int codeNumber, const Tick& tick);
  // The following are false when the file could not be written, which is told then.
  bool Rewrite();
  [[nodiscard]] bool Open();
  [[nodiscard]] bool Append(const QByteArray& rows);
  /// Hands the file a day's ticks up to the `end`-th.
  bool Write(int codeNumber, Day& day, std::size_t end);
  bool Fail(const QString& why);

  QString path_;
  QByteArray header_;
  QFile file_;
  qint64 size_ = 0;      ///< of the file, as far as it is whole
  bool isOurs_ = false;  ///< the file is of this day, and nothing in it is to be taken back
  QString problem_;
  std::map<int, Day> days_;
};

}  // namespace holdwise
