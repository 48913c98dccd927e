// SPDX-License-Identifier: MIT
// What the window feels of an import of 1,000 portfolios of ten holdings that is begun in the file menu, and of the
// calculation after it: the whole terminal with its plug-in on an embedded database and a simulated market. A timer of
// 5 ms in the window's thread tells how long no event was answered. With --check the exit code says whether the import
// takes at most 2 s, and whether no gap is above 100 ms.
#include <QAction>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenuBar>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QTimerEvent>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <utility>
#include <vector>

#include "app/terminal.h"
#include "database/database_identity.h"
#include "database/firebird_process.h"
#include "database/firebird_user_data.h"
#include "parts/terminal_application.h"
#include "process/signal_guard.h"
#include "window/terminal_style.h"

namespace holdwise {
namespace {

constexpr int kPortfolios = 1000;
constexpr int kHoldings = 10;
constexpr double kMostSeconds = 2;
constexpr qint64 kLongestGap = 100;

enum Phase : std::size_t { kStart, kImport, kReport, kCalculation, kAfter, kPhases };
constexpr const char* kPhaseNames[kPhases] = {"before", "import", "report", "calculation", "after it"};

/// Milliseconds of the window's thread on the processor: what it takes away from the window itself, whatever else runs.
double ProcessorMilliseconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// Longest time without an event in each phase. Not a QTimer, which an import keeps waiting.
class Pulse : public QObject {
 public:
  Pulse() {
    startTimer(5, Qt::PreciseTimer);
    since_.start();
    phase_.start();
  }
  void Enter(Phase phase) {
    lasted_[now_] += phase_.restart();
    now_ = phase;
  }
  [[nodiscard]] Phase Now() const { return now_; }
  [[nodiscard]] qint64 Longest(Phase phase) const { return longest_[phase]; }
  [[nodiscard]] double LongestOnProcessor(Phase phase) const { return longestOnProcessor_[phase]; }
  [[nodiscard]] double Seconds(Phase phase) const { return static_cast<double>(lasted_[phase]) / 1000; }

 protected:
  void timerEvent(QTimerEvent* /*event*/) override {
    longest_[now_] = std::max(longest_[now_], since_.restart());
    const double now = ProcessorMilliseconds();
    longestOnProcessor_[now_] = std::max(longestOnProcessor_[now_], now - std::exchange(onProcessor_, now));
  }

 private:
  QElapsedTimer since_, phase_;
  Phase now_ = kStart;
  qint64 longest_[kPhases] = {};
  double longestOnProcessor_[kPhases] = {};
  double onProcessor_ = ProcessorMilliseconds();
  qint64 lasted_[kPhases] = {};
};

/// The hands of the user: answers each dialog as it comes, and ends the terminal when nothing comes any more.
class Hands : public QObject {
 public:
  Hands(Pulse& pulse, const QString& file) : pulse_(pulse), file_(file) {
    startTimer(10);
    constexpr int kLongest = 600'000;
    QTimer::singleShot(kLongest, qApp, [] { QCoreApplication::exit(1); });
  }

 protected:
  void timerEvent(QTimerEvent* /*event*/) override {
    if (isActing_) return;
    QWidget* dialog = Dialog();
    const QString title = dialog == nullptr ? QString() : dialog->windowTitle();
    if (title == QStringLiteral("投资组合")) {
      if (pulse_.Now() != kCalculation) pulse_.Enter(kCalculation);
    } else if (auto* files = qobject_cast<QFileDialog*>(dialog); files != nullptr) {
      files->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(file_);
      Act([files] { QMetaObject::invokeMethod(files, "accept"); });
    } else if (title == QStringLiteral("导入预览")) {
      Act([this, dialog] {
        pulse_.Enter(kImport);
        dialog->findChild<QPushButton*>(QStringLiteral("import"))->click();
      });
    } else if (title == QStringLiteral("导入组合")) {
      pulse_.Enter(kReport);
      Act([dialog] { dialog->close(); });
    } else if (pulse_.Now() == kCalculation) {
      pulse_.Enter(kAfter);
      QTimer::singleShot(3000, qApp, [] { QCoreApplication::exit(0); });
    } else if (pulse_.Now() == kStart && Import() != nullptr) {
      Act([] { Import()->trigger(); });
    }
  }

 private:
  /// From the event loop, and not before it has been done is anything else.
  template <typename Deed>
  void Act(const Deed& deed) {
    isActing_ = true;
    QTimer::singleShot(500, this, [this, deed] {
      isActing_ = false;
      deed();
    });
  }
  static QWidget* Dialog() {
    for (QWidget* widget : QApplication::topLevelWidgets())
      if (widget->isVisible() && qobject_cast<QDialog*>(widget) != nullptr) return widget;
    return nullptr;
  }
  static QAction* Import() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      auto* window = qobject_cast<QMainWindow*>(widget);
      if (window == nullptr || !window->isVisible()) continue;
      QAction* action = window->menuBar()->actions().front()->menu()->actions().front();
      return action->isEnabled() ? action : nullptr;
    }
    return nullptr;
  }

  Pulse& pulse_;
  QString file_;
  bool isActing_ = false;
};

void Run(const QStringList& arguments) {
  QProcess program;
  program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  program.start(QCoreApplication::applicationDirPath() + QStringLiteral("/holdwise-market"), arguments);
  program.waitForFinished(-1);
}

void MakeMarket(const QString& folder) {
  const auto csv = [&folder](const char* name) { return folder + QStringLiteral("/csv/") + QLatin1String(name); };
  Run({"simulate", "--securities", "1000", "--days", "400", "--seed", "1", "--out", folder + "/csv"});
  Run({"build", "--bars", csv("bars"), "--indices", csv("indices"), "--securities", csv("securities.csv"), "--dates",
       csv("trading_dates.csv"), "--rates", csv("deposit_rates.csv"), "--estimates", csv("estimates.csv"),
       "--simulated", "--out", folder + "/data"});
}

/// Codes of the simulated market, out of its list of securities.
std::vector<QByteArray> Codes(const QString& folder) {
  QFile file(folder + QStringLiteral("/csv/securities.csv"));
  if (!file.open(QIODevice::ReadOnly)) return {};
  std::vector<QByteArray> codes;
  file.readLine();
  while (!file.atEnd()) codes.push_back(file.readLine().left(6));
  return codes;
}

QString WritePortfolios(const QString& folder) {
  const std::vector<QByteArray> codes = Codes(folder);
  QByteArray csv = "name,code,quantity,price\n";
  for (int portfolio = 0; portfolio < kPortfolios; ++portfolio) {
    for (int holding = 0; holding < kHoldings; ++holding) {
      csv += 'p' + QByteArray::number(portfolio) + ',' +
             codes[static_cast<std::size_t>(portfolio * kHoldings + holding) % codes.size()] + ",100,9.5\n";
    }
  }
  QString path = folder + QStringLiteral("/portfolios.csv");
  QFile file(path);
  if (file.open(QIODevice::WriteOnly)) file.write(csv);
  return path;
}

int Measure(int argc, char** argv, bool isCheck) {
  TerminalApplication application(argc, argv);
  QApplication::setStyle(new TerminalStyle);
  const QTemporaryDir folder;
  Options options;
  options.dataFolder = options.command.dataFolder = folder.filePath(QStringLiteral("data"));
  options.workFolder = folder.filePath(QStringLiteral("work"));
  options.command.parameter = QStringLiteral("Skip风险计量");  // the view that calculates
  options.database = options.workFolder + QStringLiteral("/holdwise.fdb");
  QDir().mkpath(options.LockFolder());
  PrepareFirebirdProcess(options.LockFolder());
  MakeMarket(folder.path());
  const QString file = WritePortfolios(folder.path());
  Pulse pulse;
  const Hands hands(pulse, file);
  Terminal terminal(options, [&options] {
    auto database = FirebirdUserData::Open(DatabaseTarget::FromText(options.database), options.LockFolder());
    GiveIdentity(*database);
    return OpenedDatabase{std::move(database), {}};
  });
  terminal.Run();
  pulse.Enter(kAfter);
  bool isWell = pulse.Seconds(kCalculation) > 0 && pulse.Seconds(kImport) <= kMostSeconds;
  std::printf("%-12s %9s %16s %16s\n", "", "s", "longest gap, ms", "on processor");
  for (const Phase phase : {kImport, kReport, kCalculation, kAfter}) {
    std::printf("%-12s %9.2f %16lld %16.0f\n", kPhaseNames[phase], pulse.Seconds(phase),
                static_cast<long long>(pulse.Longest(phase)), pulse.LongestOnProcessor(phase));
    isWell = isWell && pulse.Longest(phase) <= kLongestGap;
  }
  return isWell || !isCheck ? 0 : 1;
}

}  // namespace
}  // namespace holdwise

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const bool isCheck = argc > 1 && std::strcmp(argv[1], "--check") == 0;
  holdwise::signal_guard::Install();
  const int exitCode = holdwise::Measure(argc, argv, isCheck);
  (void)holdwise::ShutdownFirebird();
  return exitCode;
}
