// SPDX-License-Identifier: MIT
#pragma once
#include <QPointer>
#include <QWidget>
#include <functional>

#include "holdwise/sdk/services.h"

namespace holdwise {

/// The part of the window in which addresses show their frames, one at a time. Frames are not owned: one that is taken
/// away (parent none) or destroyed leaves the area empty.
class WorkArea : public QWidget, public PlugSystemInfo {
 public:
  using QWidget::QWidget;
  ~WorkArea() override;

  void ShowFrame(QWidget* frame) override;
  void RefreshWorkArea(QWidget* part) override;
  /// The frame now shown; null when none.
  [[nodiscard]] QWidget* Frame() const;

  /// Called once, when the first frame has been painted.
  std::function<void()> OnFirstPaint;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QPointer<QWidget> frame_;
};

}  // namespace holdwise
