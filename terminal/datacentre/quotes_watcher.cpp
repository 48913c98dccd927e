// SPDX-License-Identifier: MIT
#include "datacentre/quotes_watcher.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

constexpr int kPollMilliseconds = 2000;
constexpr int kLookSoonMilliseconds = 20;
constexpr int kSettleMilliseconds = 100;  // a plain copy arrives in several writes
constexpr int kFolderSettleMilliseconds = 500;
constexpr int kMissingMilliseconds = 1000;  // between removal and replacement

QString NotUpdated(const QString& reason) {
  return QStringLiteral("行情没有更新，继续使用原有行情。%1").arg(reason);
}

void SetUp(QTimer& timer, int milliseconds) {
  timer.setSingleShot(true);
  timer.setInterval(milliseconds);
}

/// The nearest folder above a path that exists.
QString ExistingAbove(const QString& path) {
  QString above = path;
  do {
    above = QFileInfo(above).path();
  } while (!QFileInfo::exists(above) && above != QFileInfo(above).path());
  return above;
}

}  // namespace

QuotesWatcher::QuotesWatcher(MarketData& data, DebugServers& log)
    : data_(data),
      log_(log),
      quotesPath_(QDir(data.Folder()).filePath(QStringLiteral("quotes.dat"))),
      marketPath_(QDir(data.Folder()).filePath(QStringLiteral("market.dat"))),
      seen_(Now()),
      subfolders_(data.Folder()) {
  SetUp(lookSoon_, kLookSoonMilliseconds);
  SetUp(settleQuotes_, kSettleMilliseconds);
  SetUp(settleFolder_, kFolderSettleMilliseconds);
  SetUp(missing_, kMissingMilliseconds);
  connect(&poll_, &QTimer::timeout, this, &QuotesWatcher::Look);
  connect(&lookSoon_, &QTimer::timeout, this, &QuotesWatcher::Look);
  connect(&settleQuotes_, &QTimer::timeout, this, &QuotesWatcher::Reload);
  connect(&settleFolder_, &QTimer::timeout, this, [this] {
    if (IdentityOf(data_.Folder()).Exists()) Q_EMIT FolderChanged();
  });
  connect(&missing_, &QTimer::timeout, this, &QuotesWatcher::ReportMissing);
  // A folder above may be a busy one: its many notifications end in one look.
  const auto lookSoon = [this] {
    if (!lookSoon_.isActive()) lookSoon_.start();
  };
  connect(&watcher_, &QFileSystemWatcher::fileChanged, this, lookSoon);
  connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, lookSoon);
  Watch();
  poll_.start(kPollMilliseconds);
}

QuotesWatcher::QuotesState QuotesWatcher::Now() const {
  return {IdentityOf(quotesPath_), IdentityOf(marketPath_)};
}

void QuotesWatcher::Look() {
  Watch();
  const QuotesState now = Now();
  if (!now.quotes.Exists()) {
    if (!isMissing_ && !missing_.isActive()) missing_.start();
  } else if (now != seen_) {
    settleQuotes_.start();
  }
  if (subfolders_.Look()) settleFolder_.start();
}

void QuotesWatcher::Watch() {
  // A replaced folder or file is a new one to the watcher, which follows the old one wherever it was moved or drops it.
  const QString folder = data_.Folder();
  if (const FileIdentity now = IdentityOf(folder);
      now.number != watchedFolder_.number || now.device != watchedFolder_.device) {
    watchedFolder_ = now;
    const QStringList old = watcher_.directories() + watcher_.files();
    if (!old.isEmpty()) watcher_.removePaths(old);
  }
  const auto watch = [this](const QString& path, const QStringList& watched) {
    if (!watched.contains(path) && QFileInfo::exists(path)) watcher_.addPath(path);
  };
  watch(folder, watcher_.directories());
  watch(ExistingAbove(folder), watcher_.directories());
  watch(quotesPath_, watcher_.files());
}

void QuotesWatcher::Reload() {
  const QuotesState now = Now();
  if (!now.quotes.Exists()) return;  // between removal and replacement
  seen_ = now;
  isMissing_ = false;
  try {
    data_.ReloadQuotes();
  } catch (const Error& error) {
    return Refuse(NotUpdated(QString::fromUtf8(error.what())));
  }
  Q_EMIT Reloaded();
}

void QuotesWatcher::ReportMissing() {
  if (Now().quotes.Exists()) return;
  isMissing_ = true;
  seen_ = {};  // also the same file is news when it comes back
  Refuse(MissingNow());
}

QString QuotesWatcher::MissingNow() const {
  if (Now().quotes.Exists()) return {};
  return NotUpdated(
      QStringLiteral("行情数据文件“%1”不在了，放回后自动继续").arg(QDir::toNativeSeparators(quotesPath_)));
}

void QuotesWatcher::Refuse(const QString& whole) {
  log_.WriteLog(whole);
  Q_EMIT Refused(whole);
}

}  // namespace holdwise
