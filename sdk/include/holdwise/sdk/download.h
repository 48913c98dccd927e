// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QString>
#include <functional>

namespace holdwise {

/// Asynchronous download of remote files into the work-data folder. Made by the host, owned by the caller; all events
/// come on the user-interface thread, never inside Request, and none after the destructor has returned.
///
/// Each request ends in exactly one of the three events. Remote names use backslashes ("QMTL\TZZH\ZNPZ.dat") and keep
/// their capital letters; a name that would leave the work-data folder (absolute, drive letter, "..") fails.
class TDSBAsynDownFileRole {
 public:
  struct Settings {
    QString nameString;
    QString componentName;
    int communicationType = 0;
    int downWaitStartTime = 500;  ///< ms before a waiting hint may be shown
    int downWaitTimeOut = 20000;  ///< ms until the request fails with kTimedOut
    bool downFailTips = false;    ///< the host itself tells the user of a failure
    bool downWaitTips = false;    ///< the host itself shows that it waits, after downWaitStartTime
    bool isCompress = true;       ///< the host may ask for a compressed transfer; content arrives plain
    bool isStream = false;        ///< deliver in memory (OnReciveStearm) instead of on disk (OnReciveAFile)
    int localDirectoryType = 2;   ///< 2 = work-data folder
    QString defaultPath;
  };
  /// Error codes of the events.
  enum Code : int { kOk = 0, kNotFound = 1, kTimedOut = 2, kRefused = 3, kUnreadable = 4, kUnwritable = 5 };

  virtual ~TDSBAsynDownFileRole() = default;
  /// Settings of the requests that begin from now on; the role keeps a copy. Without it the defaults above hold.
  virtual void Configure(const Settings& settings) = 0;
  /// Asks for a remote file; several requests of one role are served in order. Returns at once and throws nothing: an
  /// unfit or empty name ends in OnReciveAFileFail with kRefused.
  virtual void Request(const QString& remoteName) = 0;

  /// The file stands whole in the work-data folder under LocalPath(fileName); `errorCode` is kOk. In all three events
  /// `fileName` is the remote name as it was asked for. An empty event is passed over.
  std::function<void(const QString& fileName, int errorCode)> OnReciveAFile;
  /// The same in memory, for Settings::isStream; nothing is written. An empty file is empty content.
  std::function<void(const QString& fileName, int errorCode, const QByteArray& content)> OnReciveStearm;
  /// There is no file; `errorCode` is one of the others. A local copy of before is as it was.
  std::function<void(const QString& fileName, int errorCode)> OnReciveAFileFail;
  /// Absolute path of the local copy of a remote file, whether it is there or not; empty when the name is refused.
  [[nodiscard]] virtual QString LocalPath(const QString& remoteName) const = 0;
};

}  // namespace holdwise
