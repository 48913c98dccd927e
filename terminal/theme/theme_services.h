// SPDX-License-Identifier: MIT
#pragma once
#include <QPalette>
#include <QString>
#include <functional>
#include <set>

#include "holdwise/sdk/services.h"
#include "holdwise/sdk/theme.h"
#include "theme/theme_table.h"

namespace holdwise {

/// The host's colour theme: two themes, switched live. User-interface thread only.
class ThemeServices : public ColorThemeServices, private IColorSet2, private IImageSet2 {
 public:
  /// @param debug log for unknown keys; must outlive the service
  ThemeServices(ThemeKind kind, DebugServers& debug);

  [[nodiscard]] const IColorSet2& Colors() const override { return *this; }
  [[nodiscard]] const IImageSet2& Images() const override { return *this; }

  [[nodiscard]] ThemeKind Kind() const noexcept { return kind_; }
  /// Switches the theme and calls OnChanged; nothing happens when it is the current one.
  void SetKind(ThemeKind kind);
  [[nodiscard]] RiseFall RiseFallColors() const noexcept { return riseFall_; }
  /// The same for the colours of what rises and falls.
  void SetRiseFall(RiseFall choice);
  /// Colour of a text that tells of a change: that of what rises or falls, the plain one for 0 and where they are
  /// plain.
  [[nodiscard]] QColor ColorOfChange(double change) const;
  /// Called after every switch.
  std::function<void()> OnChanged;
  /// Palette of the host's own window and of plain controls inside the frames.
  [[nodiscard]] QPalette WindowPalette() const;

 private:
  [[nodiscard]] QColor ColorOf(const QString& key) const override;
  [[nodiscard]] std::optional<QColor> FindColor(const QString& key) const override;
  void AssignPicture(const QString& key, QLabel& image) const override;
  [[nodiscard]] QPixmap PictureOf(const QString& key, const QSize& size) const override;
  void ReportUnknown(const QString& key) const;

  ThemeKind kind_;
  RiseFall riseFall_ = RiseFall::RedRises;
  DebugServers& debug_;
  mutable std::set<QString> reported_;  // a grid asks for a colour at every cell: one line a key is enough
};

}  // namespace holdwise
