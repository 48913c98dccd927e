// SPDX-License-Identifier: MIT
#pragma once
#include <QColor>
#include <QString>
#include <QStringList>
#include <optional>
#include <span>

namespace holdwise {

enum class ThemeKind { Dark, Light };

/// One row of the theme table: a key with its value in both themes (0xRRGGBB).
struct ThemeColor {
  const char* key;
  QRgb dark;
  QRgb light;
};

/// Every colour key this host knows; static storage, any thread.
[[nodiscard]] std::span<const ThemeColor> ThemeColors();
/// Every picture key this host knows.
[[nodiscard]] QStringList ThemePictureKeys();
/// Value of a colour key; none for an unknown key. Keys are compared exactly.
[[nodiscard]] std::optional<QColor> FindThemeColor(ThemeKind kind, const QString& key);
/// The same for a key that is known to be in the table; magenta otherwise.
[[nodiscard]] QColor ThemeColorOf(ThemeKind kind, const char* key);

/// "dark", "light" as the command line and the settings name them; none for any other text.
[[nodiscard]] std::optional<ThemeKind> ThemeKindFromName(const QString& name);
[[nodiscard]] QString ThemeKindName(ThemeKind kind);

}  // namespace holdwise
