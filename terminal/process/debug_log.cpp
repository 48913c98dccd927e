// SPDX-License-Identifier: MIT
#include "process/debug_log.h"

#include "holdwise/packet/text_file.h"
#include "process/print.h"

namespace holdwise {
namespace {

/// One entry is one line of the file, so that a reader can count on the time in front.
QString OneLine(const QString& text) {
  QString line = text.left(DebugLog::kLongestEntry).trimmed();
  line.replace(QLatin1Char('\n'), QStringLiteral(" | "));
  line = ControlsShown(line);
  if (text.size() > DebugLog::kLongestEntry) line += QStringLiteral("…（共%1个字符）").arg(text.size());
  return line;
}

}  // namespace

DebugLog::DebugLog(const QString& path, ClockService& clock) : clock_(clock), file_(path) {
  file_.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered);
}

void DebugLog::WriteLog(const QString& text) {
  const QString line = clock_.Now().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz ")) + OneLine(text);
  {
    const MutexLock lock(mutex_);
    if (lines_.size() >= kLinesInMemory) lines_.removeFirst();
    lines_.append(line);
    const QByteArray bytes = line.toUtf8() + '\n';
    if (file_.isOpen() && file_.size() > 0 && file_.size() + bytes.size() > kFileBytes) MakeRoom();
    // The failure worth reading about may be that of the disk itself.
    if (!file_.isOpen() || file_.write(bytes) != bytes.size()) PrintError(line);
  }
  const MutexLock lock(listenerMutex_);
  if (listener_) listener_();
}

void DebugLog::SetListener(std::function<void()> listener) {
  const MutexLock lock(listenerMutex_);
  listener_ = std::move(listener);
}

void DebugLog::TellFailure(const QString& text) {
  const MutexLock lock(listenerMutex_);
  if (failureListener_) failureListener_(text);
}

void DebugLog::SetFailureListener(std::function<void(const QString&)> listener) {
  const MutexLock lock(listenerMutex_);
  failureListener_ = std::move(listener);
}

void DebugLog::TellOutcome(const QString& text) {
  const MutexLock lock(listenerMutex_);
  if (outcomeListener_) outcomeListener_(text);
}

void DebugLog::SetOutcomeListener(std::function<void(const QString&)> listener) {
  const MutexLock lock(listenerMutex_);
  outcomeListener_ = std::move(listener);
}

void DebugLog::TellOngoing(const QString& text) {
  const MutexLock lock(listenerMutex_);
  if (ongoingListener_) ongoingListener_(text);
}

void DebugLog::SetOngoingListener(std::function<void(const QString&)> listener) {
  const MutexLock lock(listenerMutex_);
  ongoingListener_ = std::move(listener);
}

QStringList DebugLog::Lines() const {
  const MutexLock lock(mutex_);
  return lines_;
}

void DebugLog::MakeRoom() {
  const QString path = file_.fileName();
  const auto oldName = [&path](int number) { return path + QLatin1Char('.') + QString::number(number); };
  file_.close();
  QFile::remove(oldName(kOldFiles));
  for (int number = kOldFiles - 1; number >= 1; --number) QFile::rename(oldName(number), oldName(number + 1));
  QFile::rename(path, oldName(1));
  file_.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered);
}

}  // namespace holdwise
