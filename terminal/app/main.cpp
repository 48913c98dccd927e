// SPDX-License-Identifier: MIT
#include <sys/stat.h>
#include <unistd.h>

#include <QFileInfo>
#include <QFont>
#include <QThread>
#include <QUtf8StringView>
#include <cstdio>
#include <exception>
#include <future>
#include <optional>
#include <utility>

#include "database/database_identity.h"
#include "database/firebird_process.h"
#include "database/firebird_user_data.h"
#include "database_repair.h"
#include "health_side.h"
#include "holdwise/packet/error.h"
#include "holdwise/packet/text_file.h"
#include "parts/terminal_application.h"
#include "process/background_thread.h"
#include "process/command_line.h"
#include "process/crash_word.h"
#include "process/demo_folder.h"
#include "process/hand_over.h"
#include "process/print.h"
#include "process/settings_file.h"
#include "process/signal_guard.h"
#include "process/start_again.h"
#include "process/work_folder.h"
#include "terminal.h"
#include "window/app_icon.h"
#include "window/terminal_style.h"

namespace holdwise {
namespace {

constexpr int kFontPixels = 13;
constexpr unsigned long kRetryMilliseconds = 100;
constexpr int kRetries = 100;
constexpr int kBusyAttempts = 10;

bool HasDisplay() {
  return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
         !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

int SayStopped(const Options& options, std::int64_t process) {
  PrintError(QStringLiteral("工作目录“%1”的终端（进程 %2）被暂停了，没有回答，命令没有执行。"
                            "请用 kill -CONT %2 让它继续，或结束它，然后再试一次。")
                 .arg(options.workFolder)
                 .arg(process));
  return 1;
}

/// Becomes the work folder's terminal or has the running one carry out the command; then its exit code.
std::optional<int> LockOrHandOver(WorkFolderLock& lock, const Options& options) {
  if (lock.Acquire()) return std::nullopt;
  StoppedProcessWatch watch;
  bool isStopped = false;
  const auto givenUp = [&] {
    isStopped = watch.IsOver(lock.Holder());
    return isStopped || signal_guard::Requested();
  };
  // Nobody answers while the other one starts or ends: either it will answer soon or its lock becomes free.
  for (int attempt = 0; attempt < kRetries && !givenUp(); ++attempt) {
    const auto answer = HandOver(options.workFolder, options.command, givenUp);
    if (isStopped) break;
    if (answer) {
      const bool isOutput = answer->exitCode == 0 || !options.command.check.isEmpty();
      if (!answer->text.isEmpty()) std::fprintf(isOutput ? stdout : stderr, "%s\n", answer->text.toUtf8().constData());
      return answer->exitCode;
    }
    if (lock.Acquire()) return std::nullopt;
    QThread::msleep(kRetryMilliseconds);
  }
  if (isStopped) return SayStopped(options, lock.Holder());
  PrintError(QStringLiteral("工作目录“%1”正由另一个终端使用，它没有回答。").arg(options.workFolder));
  return 1;
}

/// Asks who sits at the terminal that this was started from; without one nobody can be asked.
bool MayClose(const QString& folder) {
  if (isatty(STDIN_FILENO) == 0 || isatty(STDERR_FILENO) == 0) return false;
  PrintError(QStringLiteral("目录“%1”里有别的东西，又对其他用户开放。作为工作目录它会改为只有您能进入（0700）。"
                            "改吗？输入 y 后按回车表示同意：")
                 .arg(folder));
  return std::getchar() == 'y';
}

/// A terminal that has just ended may leave the file locked for a moment (the lock lives on in a child process that it
/// had started and that has not yet let go), so "busy" is believed only after a while.
std::unique_ptr<FirebirdUserData> OpenWhenFree(const Options& options) {
  const DatabaseTarget target = DatabaseTarget::FromText(options.database);
  for (int attempt = 1;; ++attempt) {
    try {
      auto database = FirebirdUserData::Open(target, options.LockFolder());
      GiveIdentity(*database);
      return database;
    } catch (const Error& error) {
      if (error.Category() != ErrorCategory::Busy || attempt == kBusyAttempts || signal_guard::Requested()) throw;
    }
    QThread::msleep(kRetryMilliseconds);
  }
}

OpenedDatabase OpenDatabase(const Options& options) {
  const bool isFileNew = !QFileInfo::exists(options.database);
  auto database = OpenWhenFree(options);
  OpenedDatabase opened;
  if (!DatabaseTarget::FromText(options.database).IsServer()) {
    opened.look =
        LookAtDatabase(*database, backup::BackupFolder(options.workFolder, options.database), database->WasClosed());
    opened.look.isFileNew = isFileNew;
  }
  opened.database = std::move(database);
  return opened;
}

/// Without a session bus Qt would have one started: a fork in the middle of the start, whose child holds copies of our
/// files and their locks. The terminal has no use for it.
void KeepSessionBusFromStarting() {
  if (!qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")) return;
  const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
  if (!folder.isEmpty() && QFileInfo::exists(folder + QStringLiteral("/bus"))) return;
  qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
}

/// What the user has agreed to while the terminal ran, now that nobody has the file open. What fails of it is asked
/// about by the start that follows.
void Repair(const Options& options) {
  try {
    const QString name = SetDatabaseAside(options.database, QDateTime::currentDateTime());
    PrintError(QStringLiteral("数据库文件已改名保留为“%1”。").arg(name));
    const auto fresh = OpenWhenFree(options);
    const QString restored = RestoreNewest(*fresh, backup::BackupFolder(options.workFolder, options.database));
    PrintError(restored.isEmpty() ? QStringLiteral("没有可恢复的备份。") : restored);
  } catch (const Error& error) {
    PrintError(QStringLiteral("没有恢复：%1").arg(QString::fromUtf8(error.what())));
  }
}

/// Starts anew, now that all of this start is written; with other data the window is to look as it did.
void GoOnWith(const Options& next, const Options& before) {
  if (next.workFolder != before.workFolder) CarrySettings(before.workFolder, next.workFolder);
  if (!signal_guard::Requested()) StartAgain(next);
}

/// `next`: the start that is to follow; none: this is the last.
int RunTerminal(int argc, char** argv, const Options& options, std::optional<Options>& next) {
  QThread::currentThread();  // the first thread Qt sees becomes its main thread
  TerminalApplication::CatchQtMessages();
  {
    // Qt sets the process's locale with its first application object, and the engine's thread reads it.
    const QCoreApplication localeSetter(argc, argv);
  }
  // The engine takes its time to open the file; meanwhile the window system and the fonts are set up.
  std::future<OpenedDatabase> database = std::async(std::launch::async, [&options] {
    StepBehindTheWindow();
    return OpenDatabase(options);
  });
  QApplication::setStyle(new TerminalStyle);  // the application owns it
  // Whether a desktop has a menu bar of its own is asked over a bus, and the answer waited for.
  QCoreApplication::setAttribute(Qt::AA_DontUseNativeMenuBar);
  TerminalApplication application(argc, argv);
  application.Translate();
  QApplication::setWindowIcon(AppIcon());
  QCoreApplication::setApplicationName(QStringLiteral("holdwise-terminal"));
  QFont font(QStringList{QStringLiteral("Noto Sans CJK SC"), QStringLiteral("Microsoft YaHei"),
                         QStringLiteral("WenQuanYi Micro Hei")});
  font.setPixelSize(kFontPixels);
  QApplication::setFont(font);
  int exitCode = 0;
  bool wantsRepair = false;
  {
    Terminal terminal(options, [&] { return database.valid() ? database.get() : OpenDatabase(options); });
    exitCode = terminal.Run();
    wantsRepair = terminal.WantsRepair();
    next = terminal.WantedStart();
  }
  if (wantsRepair) {
    Repair(options);
    next = options;
  }
  return exitCode;
}

/// A name of another encoding, out of an old archive say, would become another name on its way through the program.
int RefuseName(const QByteArray& argument) {
  QString shown = QString::fromUtf8(argument.toPercentEncoding("/.-_ "));
  try {
    shown = QString::fromUtf8(ToUtf8Text(argument));
  } catch (const Error&) {  // no encoding that is known: as bytes
  }
  PrintError(QStringLiteral("holdwise-terminal：参数“%1”不是 UTF-8 编码，不能采用。是文件或目录的名称的，请先改名，"
                            "例如 convmv -f gb18030 -t utf8 --notest。")
                 .arg(shown));
  return 2;
}

/// The arguments are known to be UTF-8; the current folder and the home folder, where they begin, may not be.
int RefuseFolders(const Options& options) {
  const Command& command = options.command;
  for (const QString& path : {options.workFolder, options.dataFolder, options.database, command.importFile,
                              command.exportFolder, command.backupFile, command.restoreFile}) {
    if (!path.contains(QChar::ReplacementCharacter)) continue;
    PrintError(QStringLiteral("holdwise-terminal：路径“%1”里有不是 UTF-8 编码的目录名，不能采用。"
                              "请先改名，或写出别处的完整路径。")
                   .arg(path));
    return 2;
  }
  return 0;
}

void SettleDatabase(Options& options) {
  if (options.database.isEmpty()) {
    options.database = options.workFolder + QStringLiteral("/holdwise.fdb");
    return;
  }
  if (!DatabaseTarget::FromText(options.database).IsServer())
    options.database = QFileInfo(options.database).absoluteFilePath();
  options.command.database = options.database;
}

int Main(int argc, char** argv) {
  signal_guard::Install();
  InstallCrashWord();
  umask(077);  // portfolios are nobody else's business
  QStringList arguments;
  for (int index = 0; index < argc; ++index) {
    if (!QUtf8StringView(argv[index]).isValidUtf8()) return RefuseName(argv[index]);
    arguments.append(QString::fromUtf8(argv[index]));
  }
  ParsedCommandLine parsed = ParseCommandLine(arguments);
  if (!parsed.options) {
    std::fputs(parsed.text.toUtf8().constData(), parsed.exitCode == 0 ? stdout : stderr);
    return parsed.exitCode;
  }
  Options& options = *parsed.options;
  TurnToDemo(options);
  SettleDatabase(options);
  if (const int exitCode = RefuseFolders(options); exitCode != 0) return exitCode;
  PrepareWorkFolder(options.workFolder, MayClose);
  WorkFolderLock lock(options.workFolder);
  if (const std::optional<int> exitCode = LockOrHandOver(lock, options)) return *exitCode;
  if (!options.command.check.isEmpty()) {
    const QCoreApplication application(argc, argv);
    const int exitCode = CheckAtRest(options);
    (void)ShutdownFirebird();
    return exitCode;
  }
  if (options.IsBatch() && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  if (!HasDisplay()) {
    PrintError(QStringLiteral(
        "没有显示器（DISPLAY、WAYLAND_DISPLAY 均未设置）。用 --export DIR 可以不用显示器写出全部视图。"));
    return 2;
  }
  KeepSessionBusFromStarting();
  PrepareFirebirdProcess(options.LockFolder());
  std::optional<Options> next;
  const int exitCode = RunTerminal(argc, argv, options, next);
  const bool isEngineEnded = ShutdownFirebird();
  if (next) GoOnWith(*next, options);
  if (!isEngineEnded) {
    std::fflush(nullptr);
    _exit(exitCode);
  }
  return exitCode;
}

}  // namespace
}  // namespace holdwise

int main(int argc, char** argv) {
  try {
    return holdwise::Main(argc, argv);
  } catch (const std::exception& error) {
    holdwise::PrintError(QStringLiteral("holdwise-terminal：%1").arg(QString::fromUtf8(error.what())));
    return 1;
  }
}
