#include "datacentre/quotes_watcher.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

constexpr int kSettleMilliseconds = 100;

/// What tells one state of the file from another, for reports that concern the whole folder.
QString StateOf(const QString& path) {
  const QFileInfo info(path);
  if (!info.exists()) return {};
  return QStringLiteral("%1/%2").arg(info.lastModified().toMSecsSinceEpoch()).arg(info.size());
}

}  // namespace

QuotesWatcher::QuotesWatcher(MarketData& data, DebugServers& log)
    : data_(data), log_(log), path_(QDir(data.Folder()).filePath(QStringLiteral("quotes.dat"))) {
  lastState_ = StateOf(path_);
  settle_.setSingleShot(true);
  settle_.setInterval(kSettleMilliseconds);  // a plain copy arrives in several writes
  connect(&settle_, &QTimer::timeout, this, &QuotesWatcher::Reload);
  connect(&watcher_, &QFileSystemWatcher::fileChanged, &settle_, qOverload<>(&QTimer::start));
  connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, &QuotesWatcher::Look);
  Watch();
  if (watcher_.directories().isEmpty()) {
    log_.WriteLog(QStringLiteral("无法监视行情文件夹“%1”，行情文件的变化不会被发现").arg(data.Folder()));
  }
}

void QuotesWatcher::Look() {
  Watch();
  if (StateOf(path_) != lastState_) settle_.start();
}

void QuotesWatcher::Watch() {
  // A replaced file or folder is a new one to the watcher, which has dropped the old.
  const QString folder = data_.Folder();
  if (QFile::exists(folder) && !watcher_.directories().contains(folder)) watcher_.addPath(folder);
  if (QFile::exists(path_) && !watcher_.files().contains(path_)) watcher_.addPath(path_);
}

void QuotesWatcher::Reload() {
  Watch();
  const QString state = StateOf(path_);
  if (state.isEmpty()) return;  // between removal and replacement
  lastState_ = state;
  try {
    data_.ReloadQuotes();
  } catch (const Error& error) {
    const QString text = QStringLiteral("行情没有更新，继续使用原有行情。%1").arg(QString::fromUtf8(error.what()));
    log_.WriteLog(text);
    Q_EMIT Refused(text);
    return;
  }
  Q_EMIT Reloaded();
}

}  // namespace holdwise
