// SPDX-License-Identifier: MIT
#pragma once
#include <QColor>
#include <QString>
#include <QStringList>
#include <optional>
#include <span>

namespace holdwise {

enum class ThemeKind { Dark, Light };

/// In which colours the user wants figures that rise and figures that fall.
enum class RiseFall { RedRises, GreenRises, Plain };

/// One row of the theme table: a key with its value in both themes (0xRRGGBB).
struct ThemeColor {
  const char* key;
  QRgb dark;
  QRgb light;
};

/// Every colour key this host knows in any case; static storage, any thread.
[[nodiscard]] std::span<const ThemeColor> ThemeColors();
/// Every picture key this host knows.
[[nodiscard]] QStringList ThemePictureKeys();
/// Value of a colour key; none for an unknown key. Keys are compared exactly.
[[nodiscard]] std::optional<QColor> FindThemeColor(ThemeKind kind, const QString& key);
/// The same for a key that is known to be in the table; magenta otherwise.
[[nodiscard]] QColor ThemeColorOf(ThemeKind kind, const char* key);

/// Colour of texts of figures that rise (fall), in the user's choice of colours; none where they are plain. On the
/// keys kRiseTextKey and kFallTextKey, which this host has while they are not.
[[nodiscard]] std::optional<QColor> RiseTextColor(ThemeKind kind, RiseFall choice);
[[nodiscard]] std::optional<QColor> FallTextColor(ThemeKind kind, RiseFall choice);
inline constexpr const char* kRiseTextKey = "Grid_RiseTxtColor";
inline constexpr const char* kFallTextKey = "Grid_FallTxtColor";

/// Of this host's own windows: texts that stand back (what cannot be chosen, what may be typed), and the ground of a
/// chosen entry or text. Rows of grids stay selected while the keys are elsewhere; theirs is quieter.
[[nodiscard]] QColor QuietTextColor(ThemeKind kind);
[[nodiscard]] QColor HighlightColor(ThemeKind kind);

/// "dark", "light" as the command line and the settings name them; none for any other text.
[[nodiscard]] std::optional<ThemeKind> ThemeKindFromName(const QString& name);
[[nodiscard]] QString ThemeKindName(ThemeKind kind);
/// "red", "green", "plain" as the settings name them: the colour of what rises; none for any other text.
[[nodiscard]] std::optional<RiseFall> RiseFallFromName(const QString& name);
[[nodiscard]] QString RiseFallName(RiseFall choice);

}  // namespace holdwise
