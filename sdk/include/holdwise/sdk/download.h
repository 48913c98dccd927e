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
  virtual void Configure(const Settings& settings) = 0;
  /// Asks for a remote file; several requests of one role are served in order.
  virtual void Request(const QString& remoteName) = 0;

  /// `fileName` is the remote name in all three. The file stands in the work-data folder under LocalPath(fileName).
  std::function<void(const QString& fileName, int errorCode)> OnReciveAFile;
  std::function<void(const QString& fileName, int errorCode, const QByteArray& content)> OnReciveStearm;
  std::function<void(const QString& fileName, int errorCode)> OnReciveAFileFail;
  /// Full path of the local copy of a remote file; empty when the name is refused.
  [[nodiscard]] virtual QString LocalPath(const QString& remoteName) const = 0;
};

}  // namespace holdwise
