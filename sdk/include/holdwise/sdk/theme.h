// SPDX-License-Identifier: MIT
#pragma once
#include <QColor>
#include <QPixmap>
#include <QString>
#include <optional>

class QLabel;

namespace holdwise {

/// Colours of the current theme by key. Unknown key: a visible stand-in colour (magenta) and a line in the debug log.
class IColorSet {
 public:
  virtual ~IColorSet() = default;
  /// The colour; always valid. Keys are compared exactly.
  [[nodiscard]] virtual QColor ColorOf(const QString& key) const = 0;
  /// The colour of a key that a theme need not have; none, and nothing is said, when it has not.
  [[nodiscard]] virtual std::optional<QColor> FindColor(const QString& /*key*/) const { return std::nullopt; }
};

/// Colours, and pictures assigned straight to an image control (stretched).
class IColorSet2 : public IColorSet {
 public:
  /// Gives the control the picture in its present size, to be called again when that or the theme changes. An unknown
  /// key: no picture and a line in the debug log.
  virtual void AssignPicture(const QString& key, QLabel& image) const = 0;
};

/// Pictures of the current theme by key.
class IImageSet2 {
 public:
  virtual ~IImageSet2() = default;
  /// The picture stretched to `size`, in device pixels; its own device pixel ratio is 1. Null for an unknown key, with
  /// a line in the debug log, and for an empty size.
  [[nodiscard]] virtual QPixmap PictureOf(const QString& key, const QSize& size) const = 0;
};

/// The host's colour theme; the user may change it at any time, then TAddressItem::ChangeColorTheme is called.
/// References stay valid for the life of the host; user-interface thread only.
class ColorThemeServices {
 public:
  virtual ~ColorThemeServices() = default;
  /// The colours; they follow the theme by themselves.
  [[nodiscard]] virtual const IColorSet2& Colors() const = 0;
  /// The pictures; likewise.
  [[nodiscard]] virtual const IImageSet2& Images() const = 0;
};

}  // namespace holdwise
