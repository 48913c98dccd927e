// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <utility>
#include <vector>

class QWidget;

/// The pages of the help menu, shown until they are closed. User-interface thread.
namespace holdwise {

/// Two texts of a line: what, and how it is.
using Lines = std::vector<std::pair<QString, QString>>;

/// What the terminal is, its version and licence, and below them the facts (paths, plug-ins, state); all of it can be
/// copied.
void ShowAbout(QWidget* window, const Lines& facts);
/// The table of keys.
void ShowKeys(QWidget* window);

}  // namespace holdwise
