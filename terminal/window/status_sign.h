// SPDX-License-Identifier: MIT
#pragma once
#include <QToolButton>

#include "theme/theme_services.h"

namespace holdwise {

/// A word in the status bar. While it is one that can be asked (SetAsked), it looks so under the mouse, Tab visits it,
/// and a click, Space or Enter is told as clicked(); a plain text else. Words that are too long for its place end in
/// dots. User-interface thread only.
class StatusSign : public QToolButton {
 public:
  StatusSign(const QString& name, QWidget* parent);

  /// Shown as it stands.
  void SetWords(const QString& words);
  [[nodiscard]] QString Words() const;
  /// What is known of it, as it stands, under the mouse and for a reader of the screen; where it can be asked, that a
  /// click tells more.
  void SetStory(const QString& story);
  void SetAsked(bool isAsked);
  /// In the theme's amber, or as the window's other texts.
  void SetAmber(bool isAmber, const ThemeServices& theme);
  [[nodiscard]] bool IsAmber() const { return autoFillBackground(); }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  bool isAsked_ = false;
  QString story_;
};

}  // namespace holdwise
