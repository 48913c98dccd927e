// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <optional>

#include "theme/theme_table.h"

namespace holdwise {

/// What a start asks the terminal to do once it stands; handed over when a terminal runs already. Paths are absolute.
struct Command {
  std::optional<ThemeKind> theme;
  QString address;    ///< empty: stay where the user is
  QString parameter;  ///< for the address; without one, for the address with views
  QString importFile;
  QString exportFolder;
  QString dataFolder;     ///< empty: whichever the running terminal has
  QString database;       ///< likewise
  QString stress{};       ///< move in percent that the export sets in the stress view; empty: as it stands there
  QString capital{};      ///< ten-thousands of yuan that the export sets in the smart allocation; empty likewise
  QString check{};        ///< "1": only say whether all is well
  QString stressIndex{};  ///< its reference index, "1", "399001" or "399300"; empty likewise
  QString backupFile{};   ///< all portfolios are written to it
  QString restoreFile{};  ///< all portfolios become those of it
  QString importAs{};     ///< name of the portfolio of an import file that names none; empty: after the file
  QString skipUnknown{};  ///< "1": rows of an import file that are no A-shares are left out
  bool asks = false;      ///< somebody at the window wants to see what an import brings first; never handed over
  bool tells = false;     ///< its texts go to this process's own output, at once; never handed over

  [[nodiscard]] bool IsEmpty() const;
  /// Is there something to carry out beside going to an address?
  [[nodiscard]] bool HasWork() const;
  /// Can it be carried out without a data folder?
  [[nodiscard]] bool NeedsViews() const { return !importFile.isEmpty() || !exportFolder.isEmpty(); }
  [[nodiscard]] QByteArray ToJson() const;
  /// None when the text is not one of ToJson's: also for a key or a theme that is not known.
  [[nodiscard]] static std::optional<Command> FromJson(const QByteArray& json);
};

/// The command line. Folders are absolute and end without "/".
struct Options {
  QString dataFolder;
  QString workFolder;
  QString database;     ///< file of the embedded engine or connection string of a server; empty: in the work folder
  QString ownFolder{};  ///< of a demo: the work folder of the user's own data; empty: these are they
  double simulationSpeed = 1;  ///< seconds of a simulated market's day a second
  Command command;

  /// Is it the database of the work folder, of which the backups there tell?
  [[nodiscard]] bool IsOwnDatabase() const { return command.database.isEmpty(); }
  /// Is it the work folder of the simulated market that is tried out?
  [[nodiscard]] bool IsDemo() const { return !ownFolder.isEmpty(); }
  /// Where the engine keeps its locks.
  [[nodiscard]] QString LockFolder() const { return workFolder + QStringLiteral("/lock"); }

  /// Do it and end: no window, questions and messages go to standard error.
  [[nodiscard]] bool IsBatch() const {
    return !command.exportFolder.isEmpty() || !command.backupFile.isEmpty() || !command.restoreFile.isEmpty();
  }
};

/// Why a running terminal cannot carry a command out: it was asked for with another data folder or database. Empty when
/// it can.
[[nodiscard]] QString ConflictOf(const Command& command, const Options& running);

/// Outcome of reading a command line: options, or a text to print with the exit code to end with.
struct ParsedCommandLine {
  std::optional<Options> options;
  QString text;
  int exitCode = 0;
};

/// @param arguments the arguments with the program's name first
/// Unknown options, values that cannot be and left-over arguments end with exit code 2 and a text that says which.
[[nodiscard]] ParsedCommandLine ParseCommandLine(const QStringList& arguments);

}  // namespace holdwise
