#pragma once
#include <QColor>
#include <QPixmap>
#include <QString>

class QLabel;

namespace holdwise {

/// Colours of the current theme by key. Unknown key: a visible stand-in colour (magenta) and a line in the debug log.
class IColorSet {
 public:
  virtual ~IColorSet() = default;
  [[nodiscard]] virtual QColor ColorOf(const QString& key) const = 0;
};

/// Colours, and pictures assigned straight to an image control (stretched).
class IColorSet2 : public IColorSet {
 public:
  virtual void AssignPicture(const QString& key, QLabel& image) const = 0;
};

/// Pictures of the current theme by key; a null picture for an unknown key. `size` is the wanted size in device pixels.
class IImageSet2 {
 public:
  virtual ~IImageSet2() = default;
  [[nodiscard]] virtual QPixmap PictureOf(const QString& key, const QSize& size) const = 0;
};

/// The host's colour theme; the user may change it at any time, then TAddressItem::ChangeColorTheme is called.
/// References stay valid for the life of the host; user-interface thread only.
class ColorThemeServices {
 public:
  virtual ~ColorThemeServices() = default;
  [[nodiscard]] virtual const IColorSet2& Colors() const = 0;
  [[nodiscard]] virtual const IImageSet2& Images() const = 0;
};

}  // namespace holdwise
