// SPDX-License-Identifier: MIT
#include "database/firebird_process.h"

#include <fcntl.h>
#include <firebird/Interface.h>
#include <langinfo.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <atomic>
#include <clocale>
#include <mutex>
#include <string_view>

#include "holdwise/packet/error.h"

namespace holdwise {

namespace {

constexpr unsigned kShutdownTimeoutMs = 3000;
constexpr int kRefuseShutdown = 1;
constexpr int kOwnShutdownReason = 1;

/// Non-zero keeps the engine running: a signal is the application's to handle, with its database still usable.
int ConfirmShutdown(const int reason, const int /*mask*/, void* /*argument*/) {
  return reason == fb_shutrsn_signal ? kRefuseShutdown : 0;
}

void MakePrivateFolder(const QString& folder) {
  const QByteArray path = QFile::encodeName(folder);
  const bool existed = QFileInfo(folder).isDir();
  if (!QDir().mkpath(folder) || (!existed && ::chmod(path.constData(), S_IRWXU) != 0)) {
    throw Error(ErrorCategory::Io, QStringLiteral("不能建立文件夹 %1").arg(folder).toStdString());
  }
  if (!QFileInfo(folder).isWritable()) {
    throw Error(ErrorCategory::Io, QStringLiteral("文件夹 %1 不能写入").arg(folder).toStdString());
  }
}

/// Every process that dies with the engine running leaves an empty file of a name that is never used again. The
/// engine holds a lock on its trace file while it runs: nobody's are those that stand while that lock is to be had.
void RemoveLeftTraces(const QString& folder) {
  const QByteArray path = QFile::encodeName(folder + QStringLiteral("/fb12_trace"));
  const int descriptor = ::open(path.constData(), O_RDWR | O_CLOEXEC);
  if (descriptor < 0) return;
  const auto release = qScopeGuard([descriptor] { ::close(descriptor); });
  if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) return;
  QDir traces(folder, QStringLiteral("fb_trace_*"), QDir::NoSort, QDir::Files | QDir::NoSymLinks);
  for (const QString& name : traces.entryList()) traces.remove(name);
}

/// The engine reads every path in the process's character set and refuses what it cannot read; ours are UTF-8, also in
/// a container or a plain ssh, whose environment names no character set. Into the environment, which Qt asks again with
/// its first application object; only LC_CTYPE changes, unless LC_ALL stands in its way.
void UseUtf8Paths() {
  std::setlocale(LC_CTYPE, "");
  if (std::string_view(nl_langinfo(CODESET)) == "UTF-8") return;
  qputenv(qEnvironmentVariableIsEmpty("LC_ALL") ? "LC_CTYPE" : "LC_ALL", "C.UTF-8");
  std::setlocale(LC_CTYPE, "");
}

std::once_flag prepared;
QString lockFolder;  ///< written once, before the engine is there

}  // namespace

void PrepareFirebirdProcess(const QString& privateFolder) {
  std::call_once(prepared, [&] {
    const QString folder = QDir(privateFolder).absolutePath();
    MakePrivateFolder(folder);
    RemoveLeftTraces(folder);
    UseUtf8Paths();
    qputenv("FIREBIRD_LOCK", QFile::encodeName(folder));
    lockFolder = folder;
    qunsetenv("ISC_USER");
    qunsetenv("ISC_PASSWORD");
    ISC_STATUS_ARRAY status{};
    if (fb_shutdown_callback(status, ConfirmShutdown, fb_shut_confirmation, nullptr) != 0) {
      throw Error(ErrorCategory::Database, "数据库引擎不接受关闭控制");
    }
  });
}

bool IsFirebirdFolderThere() {
  return lockFolder.isEmpty() || QFileInfo(lockFolder).isDir();
}

bool ShutdownFirebird() {
  if (!IsFirebirdFolderThere()) return false;
  fb_shutdown(kShutdownTimeoutMs, kOwnShutdownReason);
  return true;
}

}  // namespace holdwise
