// SPDX-License-Identifier: MIT
#pragma once
#include <QFont>

namespace holdwise {

/// The design font in pixels, with the names under which its Chinese characters are found elsewhere. User-interface
/// thread, after the application object.
inline constexpr int kDesignFontPixels = 12;
[[nodiscard]] QFont DesignFont(int pixels = kDesignFontPixels, bool bold = false);

}  // namespace holdwise
