// SPDX-License-Identifier: MIT
#pragma once
#include <QStringList>
#include <QWidget>
#include <functional>

#include "theme/theme_services.h"

namespace holdwise {

/// The row of address tabs on top of the window. A tab is chosen with the mouse or, when the bar has the focus, with
/// the arrow keys.
class AddressBar : public QWidget {
 public:
  /// `theme` must outlive it.
  explicit AddressBar(const ThemeServices& theme, QWidget* parent = nullptr);

  void SetNames(const QStringList& names);
  /// Marks the tab of that name; none when the name has no tab.
  void SetCurrent(const QString& name);
  [[nodiscard]] QRect TabRect(int index) const;

  /// The user has chosen a tab, also the current one again.
  std::function<void(const QString& name)> OnChosen;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  [[nodiscard]] int TabAt(const QPoint& point) const;
  void Choose(int index);
  void PaintTab(QPainter& painter, int index) const;

  const ThemeServices& theme_;
  QStringList names_;
  int current_ = -1;
  int hovered_ = -1;
};

}  // namespace holdwise
