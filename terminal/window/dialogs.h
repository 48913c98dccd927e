// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

class QWidget;

namespace holdwise {

/// Asks for the file to import; empty when the user gives up.
[[nodiscard]] QString AskForFile(QWidget* window);
/// Asks for the folder to export to; empty when the user gives up.
[[nodiscard]] QString AskForFolder(QWidget* window);
/// Shows a text of any number of lines, which can be copied, until it is closed.
void ShowReport(QWidget* window, const QString& title, const QString& text);

}  // namespace holdwise
