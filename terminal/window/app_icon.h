// SPDX-License-Identifier: MIT
#pragma once
#include <QIcon>

namespace holdwise {

/// The terminal's own picture, painted in the sizes that desktops ask for. A QGuiApplication must be there.
[[nodiscard]] QIcon AppIcon();

}  // namespace holdwise
