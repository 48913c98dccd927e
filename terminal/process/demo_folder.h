// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

#include "process/command_line.h"

namespace holdwise {

/// The work folder of a simulated market that is tried out. It stands inside that of the user's own data and is one
/// like any other, with a database, backups, settings and a data folder "market" of its own: what is entered in one of
/// the two never comes into the other. The file "demo.ini" in it says that it is one, whether starts on the user's own
/// folder open it, and how the user's own data were opened before. Any one thread.
class DemoFolder {
 public:
  /// @param ownFolder work folder of the user's own data, absolute
  explicit DemoFolder(const QString& ownFolder);
  /// The work folder of the user's own data that a demo's belongs to; empty when the folder is no demo's.
  [[nodiscard]] static QString OwnFolderOf(const QString& workFolder);

  [[nodiscard]] const QString& Path() const { return path_; }
  /// Its data folder, which need not be there.
  [[nodiscard]] QString Market() const { return path_ + QStringLiteral("/market"); }
  /// There is a simulated market in it.
  [[nodiscard]] bool IsMade() const;
  /// It is what was chosen last.
  [[nodiscard]] bool IsChosen() const;
  /// From now on starts open it. `own`: the start that comes back to the user's own data, of which the data folder and
  /// the database of its command line are kept. Error(Io) when that cannot be written: nothing has changed. A file that
  /// is damaged is kept under another name.
  void Choose(const Options& own) const;
  /// From now on starts open the user's own data again. Error(Io) likewise.
  void Leave() const;
  /// How to start with the user's own data as they were opened before the demo; where a terminal runs on them, with
  /// whichever it has. Error when their work folder cannot be used.
  [[nodiscard]] Options WayBack() const;
  /// How to start with the demo. Error when its folder cannot be used.
  [[nodiscard]] Options WayThere() const;

 private:
  const QString ownFolder_;
  const QString path_;
};

/// Makes the demo what a start opens that names neither data nor database, is no batch and no check, when the demo was
/// chosen last (the others are told on standard error where it is), its folder can be used and no terminal runs on the
/// user's own data. A start on the demo's work folder becomes one of it too.
void TurnToDemo(Options& options);

}  // namespace holdwise
