// SPDX-License-Identifier: MIT
#pragma once
#include <QPixmap>
#include <QSize>
#include <QString>

#include "theme/theme_table.h"

namespace holdwise {

/// Paints the picture of a key at the wanted size in device pixels. Unknown key or empty size: a null picture.
/// User-interface thread only.
[[nodiscard]] QPixmap PaintThemePicture(ThemeKind kind, const QString& key, const QSize& size);

}  // namespace holdwise
