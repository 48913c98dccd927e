// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

class QSettings;
class QWidget;

namespace holdwise {

/// The settings in which each of the dialogs below remembers the folder that was last used in it; null: nowhere. They
/// outlive this. User-interface thread, as all of these.
void KeepDialogFoldersIn(QSettings* settings);

/// Asks for the file to import; empty when the user gives up.
[[nodiscard]] QString AskForFile(QWidget* window);
/// Asks for the folder to export to; empty when the user gives up.
[[nodiscard]] QString AskForFolder(QWidget* window);
/// Asks for a data folder; empty when the user gives up.
[[nodiscard]] QString AskForDataFolder(QWidget* window);
/// Asks for the file to write all portfolios to, with that name offered, and before one is replaced; empty when the
/// user gives up.
[[nodiscard]] QString AskForNewFile(QWidget* window, const QString& name);
/// Asks for a file to restore; empty when the user gives up.
[[nodiscard]] QString AskForBackup(QWidget* window);
/// Shows a text of any number of lines, which can be copied, until it is closed.
void ShowReport(QWidget* window, const QString& title, const QString& text);

}  // namespace holdwise
