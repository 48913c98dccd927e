// SPDX-License-Identifier: MIT
#pragma once
#include <QDeadlineTimer>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QThread>
#include <functional>
#include <memory>
#include <vector>

namespace holdwise::e2e {

/// The programs of a sanitizer's build are that many times slower: what is only a limit is that much longer.
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
inline constexpr int kSlowness = 5;
#else
inline constexpr int kSlowness = 1;
#endif

/// Path of a program of this build (folder in HOLDWISE_BIN).
QString Program(const QString& name);
/// The environment of the tests without display and without settings that would reach the terminal.
QProcessEnvironment BareEnvironment();

struct Outcome {
  int exitCode = -1;  ///< -1: killed by a signal or still running at the end of the time
  QString out;
  QString err;
};
/// Runs a program to its end.
Outcome Run(const QString& program, const QStringList& arguments,
            const QProcessEnvironment& environment = BareEnvironment(), int timeOutMilliseconds = 90'000 * kSlowness);
/// Runs holdwise-terminal to its end.
Outcome RunTerminal(const QStringList& arguments, const QProcessEnvironment& environment = BareEnvironment());

/// Looks twenty times a second; false when `isSo` is not in that time (more of it for a slow build).
template <typename Condition>
[[nodiscard]] bool Until(const Condition& isSo, int milliseconds) {
  const QDeadlineTimer end(milliseconds * kSlowness);
  while (!isSo()) {
    if (end.hasExpired()) return false;
    QThread::msleep(50);
  }
  return true;
}

/// A data folder made by holdwise-market from bars of 12 stocks over 60 weekdays. Stock k (600001 to 600012) closes at
/// k + day / 100 yuan on day 1 to 60, so its last close is k + 0.60 and the one before k + 0.59.
class Market {
 public:
  Market();
  [[nodiscard]] const QString& Data() const { return data_; }
  /// Writes the bars and the index closes anew, up to a day (YYYY-MM-DD; empty: the last one).
  void WriteBars(const QString& last = {}) const;
  /// Takes the lines of some days (YYYY-MM-DD, both included) out of a stock's bars; Build makes a folder of the rest.
  void RemoveBars(const QString& code, const QString& first, const QString& last) const;
  /// Gives the Shanghai Composite another close on a day (YYYY-MM-DD); Build makes a folder of it.
  void CorrectIndex(const QString& date, const QByteArray& close) const;
  /// What makes holdwise-market build a data folder of the bars.
  [[nodiscard]] QStringList BuildArguments(const QString& out) const;
  /// Writes a data folder of the bars as they are now, in place of the one that stands there.
  void Build(const QString& out, const QStringList& more = {}) const;

 private:
  QTemporaryDir folder_;
  QString data_;
};
/// The one market of this program, made on first use. Tests that change it copy it.
const Market& SharedMarket();
/// Copies a folder with all it holds.
void CopyFolder(const QString& from, const QString& to);

/// Two portfolios. 甲 holds 100 of 600001 and 200 of 600002 (bought at 1.00 and 2.00), 乙 1000 of 600010 and 300 of
/// 600012 (bought at 10.00 and 12.00), on a day (YYYY-MM-DD) or on the market's date.
QByteArray TwoPortfolios(const QByteArray& boughtOn = {});

/// A third one, 丙, with ten of 600003 and ten of 600004, bought at 3 and 4 on the market's date.
QByteArray OneMore();

/// A work folder beside a folder for outputs, both gone at the end.
class Bench {
 public:
  Bench();
  [[nodiscard]] QString Work() const { return folder_.filePath(QStringLiteral("work")); }
  [[nodiscard]] QString File(const QString& name) const { return folder_.filePath(name); }
  /// Arguments that every start of this bench has in common, then `more`.
  [[nodiscard]] QStringList Arguments(const QStringList& more) const;
  /// Writes a text file and returns its path.
  QString Write(const QString& name, const QByteArray& text) const;
  /// Imports a table and exports into the folder `out` of this bench, with a start of its own or by the one that runs.
  [[nodiscard]] Outcome Import(const QByteArray& csv = TwoPortfolios(), const QString& out = "out") const;
  /// Exports with a start of its own and returns the rows of "<frame id>-<grid>.csv" without its heading.
  std::vector<QStringList> Export(const QString& grid) const;

  QString data = SharedMarket().Data();

 private:
  QTemporaryDir folder_;
};

/// What a file holds; "(none)" when it cannot be read.
QByteArray Bytes(const QString& path);
/// A CSV file as fields, with the heading.
std::vector<QStringList> ReadCsv(const QString& path);

/// A terminal with its window, running until Stop or the destructor; offscreen unless the environment names a platform.
/// `inChild` runs in the new process before the terminal does: nothing in it may allocate.
class RunningTerminal {
 public:
  explicit RunningTerminal(const QStringList& arguments, QProcessEnvironment environment = BareEnvironment(),
                           const std::function<void()>& inChild = {});
  ~RunningTerminal();
  /// Waits until the first view has been painted; false when that takes too long.
  bool WaitForWindow();
  [[nodiscard]] QProcess& Process() { return process_; }
  /// Sends a signal and waits; milliseconds until the end, -1 when it did not end in 10 s (50 for a slow build).
  qint64 Signal(int signal);

 private:
  QProcess process_;
};

}  // namespace holdwise::e2e
