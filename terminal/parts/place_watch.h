// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QTimer>
#include <functional>

#include "datacentre/folder_state.h"

namespace holdwise {

/// Looks every second whether the work folder and the database's file are still those of the start: removed, moved
/// away, or on a disk that has gone, they still serve who has them open, and nobody would notice. User-interface
/// thread.
class PlaceWatch {
 public:
  /// @param database a file; of a database on a server (a name that is no file) nothing is watched
  PlaceWatch(QString workFolder, QString database);

  /// Called when one of them is missing that was there at the last look, with what has happened and what to do.
  std::function<void(const QString& text)> OnGone;
  /// Called when all are back.
  std::function<void()> OnBack;

  /// Begins to look; what stands there now is what is looked for.
  void Start();
  /// What is missing, as OnGone says it; empty while nothing is.
  [[nodiscard]] const QString& Problem() const { return problem_; }

 private:
  [[nodiscard]] QString Missing() const;
  void Look();

  const QString workFolder_;
  const QString database_;
  FileIdentity folderAtStart_;
  FileIdentity fileAtStart_;
  QString problem_;
  QTimer timer_;
};

}  // namespace holdwise
