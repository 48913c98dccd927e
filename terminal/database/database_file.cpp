// SPDX-License-Identifier: MIT
#include "database_file.h"

#include <sys/prctl.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QtEndian>
#include <csignal>

namespace holdwise::firebird {

namespace {

constexpr int kHelperTimeoutMs = 30'000;
constexpr qint64 kBytesAMillisecond = 1000;  // what the slowest disk gives
// Places in a header page and in the first page of allocated-page bits, on-disk structure 12.
constexpr int kPageTypeAt = 0;
constexpr int kPageNumberAt = 12;
constexpr int kPageSizeAt = 16;
constexpr int kStructureAt = 18;
constexpr int kPagesUsedAt = 24;
constexpr uchar kHeaderPage = 1;
constexpr uchar kPageBitsPage = 2;
constexpr uchar kLastPageType = 10;
constexpr int kPageHeadBytes = 16;
constexpr qint64 kMostPagesRead = 4096;
constexpr quint16 kFirebirdFlag = 0x8000;
constexpr quint16 kStructureVersion = 12;
constexpr int kSmallestPage = 4096;
constexpr int kLargestPage = 16384;
constexpr int kHeaderBytes = 32;

/// Every page says its number and its kind; one that was never written is empty. What the engine meets elsewhere it
/// takes for what it should be, and may crash over it.
QString PageHeadProblem(QFile& input, quint16 pageSize) {
  const QByteArray empty(kPageHeadBytes, '\0');
  const qint64 pages = input.size() / pageSize;
  const qint64 step = (pages + kMostPagesRead - 1) / kMostPagesRead;
  for (qint64 page = 1; page < pages; page += step) {
    const QByteArray head = input.seek(page * pageSize) ? input.read(kPageHeadBytes) : QByteArray();
    if (head == empty) continue;
    if (head.size() < kPageHeadBytes || static_cast<uchar>(head[kPageTypeAt]) > kLastPageType ||
        qFromLittleEndian<quint32>(head.constData() + kPageNumberAt) != page)
      return QStringLiteral("第%1页的内容有误").arg(page);
  }
  return {};
}

Error NotCompleted(const QString& file, const QString& reason) {
  return {
      ErrorCategory::TimedOut,
      QStringLiteral("数据库文件 %1 上次没有正常关闭，这次的检查没有完成（%2），没有打开它；文件没有改动，请再启动一次")
          .arg(file, reason)
          .toStdString()};
}

}  // namespace

Error Damaged(const QString& file, const QString& reason) {
  return {ErrorCategory::Corrupt,
          QStringLiteral("数据库文件 %1 已损坏（%2）。请用备份替换它，或把它移走后重新启动（将建立空的数据库）")
              .arg(file, reason)
              .toStdString()};
}

QString MarkerOf(const QString& file) {
  return file + QStringLiteral(".open");
}

QString CheckRecordOf(const QString& file) {
  return file + QStringLiteral(".checked");
}

Error HeldByAnother(const QString& file) {
  return {ErrorCategory::Busy, QStringLiteral("数据库文件 %1 正被另一个程序使用，请先关闭它").arg(file).toStdString()};
}

QString HeaderProblem(const QString& file) {
  QFile input(file);
  if (!input.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
    throw Error(ErrorCategory::Io,
                QStringLiteral("不能读取数据库文件 %1：%2").arg(file, input.errorString()).toStdString());
  }
  const QByteArray head = input.read(kHeaderBytes);
  if (head.size() < kHeaderBytes) return QStringLiteral("文件是空的或太短");
  const auto* bytes = reinterpret_cast<const uchar*>(head.constData());
  const quint16 pageSize = qFromLittleEndian<quint16>(bytes + kPageSizeAt);
  const quint16 structure = qFromLittleEndian<quint16>(bytes + kStructureAt);
  const bool sane = pageSize >= kSmallestPage && pageSize <= kLargestPage && (pageSize & (pageSize - 1)) == 0;
  if (bytes[kPageTypeAt] != kHeaderPage || !sane || (structure & kFirebirdFlag) == 0) {
    return QStringLiteral("文件不是数据库");
  }
  if ((structure & ~kFirebirdFlag) != kStructureVersion) return QStringLiteral("文件的数据库格式版本不符");
  if (input.size() % pageSize != 0) return QStringLiteral("文件长度不完整");
  if (!input.seek(pageSize)) return QStringLiteral("文件被截断");
  const QByteArray second = input.read(kHeaderBytes);
  if (second.size() < kHeaderBytes) return QStringLiteral("文件被截断");
  const auto* bits = reinterpret_cast<const uchar*>(second.constData());
  if (bits[kPageTypeAt] != kPageBitsPage) return QStringLiteral("文件的页目录已损坏");
  if (qint64{qFromLittleEndian<quint32>(bits + kPagesUsedAt)} * pageSize > input.size())
    return QStringLiteral("文件被截断");
  return PageHeadProblem(input, pageSize);
}

int LongestCheckMilliseconds(const QString& file) {
  return kHelperTimeoutMs + static_cast<int>(QFileInfo(file).size() / kBytesAMillisecond);
}

bool CheckInHelper(const QString& file, const QString& lockFolder, int longestMilliseconds) {
  // Not QCoreApplication: the file may be opened on another thread before the application object is there.
  const QString program =
      QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))).path() + QStringLiteral("/holdwise-dbcheck");
  if (!QFileInfo(program).isExecutable()) return false;
  QProcess helper;
  // Ends with this process: left alone it would hold the file against the next start.
  helper.setChildProcessModifier([parent = ::getpid()] {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) ::_exit(kHelperRefused);
  });
  helper.start(program, {file, lockFolder});
  if (!helper.waitForFinished(longestMilliseconds)) {
    helper.kill();
    helper.waitForFinished(kHelperTimeoutMs);
    throw NotCompleted(file, QStringLiteral("没有在%1秒内结束").arg(longestMilliseconds / 1000));
  }
  if (helper.exitStatus() == QProcess::NormalExit) {
    const QString report = QString::fromUtf8(helper.readAllStandardOutput()).trimmed();
    switch (helper.exitCode()) {
      case kHelperGood: {
        // Opening for writing alone would leave the date of an empty file as it was.
        QFile record(CheckRecordOf(file));
        if (record.open(QIODevice::WriteOnly)) record.write("ok\n");
        return true;
      }
      case kHelperBusy:
        throw HeldByAnother(file);
      case kHelperIo:
        throw Error(ErrorCategory::Io, report.toStdString());
      case kHelperRefused:
        throw Error(ErrorCategory::Refused, report.toStdString());
      default:
        throw Damaged(file, report);
    }
  }
  // The engine's own faults are other signals.
  const int signal = helper.exitCode();
  if (signal == SIGKILL || signal == SIGTERM || signal == SIGINT || signal == SIGHUP)
    throw NotCompleted(file, QStringLiteral("检查程序被结束了"));
  throw Damaged(file, QStringLiteral("数据库引擎读取它时出错退出"));
}

}  // namespace holdwise::firebird
