// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

#include "holdwise/sdk/catalogue.h"

namespace holdwise {

/// A grid's texts as a spreadsheet takes them from the clipboard: a line of titles and one for each row, hidden columns
/// left out, cells separated by tabs, each line ended. Tabs and line ends inside a text become blanks; texts keep no
/// blanks at their ends. Pure; any thread.
[[nodiscard]] QString TabSeparated(const GridText& grid);

}  // namespace holdwise
