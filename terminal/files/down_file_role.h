// SPDX-License-Identifier: MIT
#pragma once
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <deque>
#include <functional>
#include <memory>

#include "files/file_source.h"
#include "holdwise/sdk/download.h"

namespace holdwise {

/// What the host does about the hints that a role's settings ask for. Called on the user-interface thread; any may be
/// empty.
struct DownFileHints {
  std::function<void(const QString& remoteName, bool waiting)> onWaiting;
  std::function<void(const QString& remoteName, int errorCode)> onFailed;
  /// Every failure, whatever the settings say: for the log.
  std::function<void(const QString& remoteName, int errorCode)> onAnyFailure;
};

/// The asynchronous file role over a file source. Requests are served one after the other: the next starts when the
/// event of the one before has returned. A file on disk is written atomically with mode 0600; in stream mode nothing is
/// written. Time-out counts from the start of the request's own fetch.
class DownFileRole final : public TDSBAsynDownFileRole {
 public:
  /// `source` must outlive the role. `workFolder` is absolute and exists.
  DownFileRole(FileSource& source, const QString& workFolder, DownFileHints hints = {});
  /// Gives up the request under way and those that wait; no event comes for them.
  ~DownFileRole() override;

  void Configure(const Settings& settings) override;
  void Request(const QString& remoteName) override;
  [[nodiscard]] QString LocalPath(const QString& remoteName) const override;

 private:
  class Worker;
  std::unique_ptr<Worker> worker_;
};

}  // namespace holdwise
