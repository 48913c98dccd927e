// SPDX-License-Identifier: MIT
#pragma once
#include <vector>

class QWidget;

namespace holdwise {

/// Gives the keys to the pane `step` places after the one that has them, round and round; hidden and disabled ones are
/// passed over. From elsewhere to the first, or with a negative step to the last. No pane: nothing happens.
void FocusNextPane(std::vector<QWidget*> panes, int step);

}  // namespace holdwise
