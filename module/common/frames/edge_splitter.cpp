// SPDX-License-Identifier: MIT
#include "edge_splitter.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "common/frames/frame_part.h"
#include "common/host/host_access.h"
#include "common/host/theme_colors.h"

namespace holdwise {
namespace {

constexpr int kLeastGrip = 2;  // on each side of the edge
constexpr int kMostGrip = 30;
constexpr QSize kBar{48, 2};

/// Lies over the edge: the part above it and what is below it are its upper and its lower margin.
class EdgeHandle : public QSplitterHandle {
 public:
  explicit EdgeHandle(QSplitter& owner) : QSplitterHandle(owner.orientation(), &owner) {}

 protected:
  // The margins of its own make the mouse's place another than the edge's, which the base knows nothing of.
  void mousePressEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton) grabbed_ = event->pos().y() - contentsMargins().top();
  }
  void mouseMoveEvent(QMouseEvent* event) override {
    if (event->buttons().testFlag(Qt::LeftButton))
      moveSplitter(parentWidget()->mapFromGlobal(event->globalPosition()).toPoint().y() - grabbed_);
  }
  void mouseReleaseEvent(QMouseEvent* /*event*/) override {}
  // The base would take the margins away.
  void resizeEvent(QResizeEvent* event) override {
    QWidget::resizeEvent(event);  // NOLINT(bugprone-parent-virtual-call)
  }
  void paintEvent(QPaintEvent* /*event*/) override {
    if (!underMouse()) return;
    const int above = contentsMargins().top();
    const QRect bar(QPoint((width() - kBar.width()) / 2, (above - kBar.height()) / 2), kBar);
    QPainter(this).fillRect(bar, ModuleHost().ColorTheme().Colors().ColorOf(theme::kTitleFont));
  }
  void enterEvent(QEnterEvent* /*event*/) override { update(); }
  void leaveEvent(QEvent* /*event*/) override { update(); }

 private:
  int grabbed_ = 0;  ///< pixels below the edge at which the mouse took hold of it
};

}  // namespace

EdgeSplitter::EdgeSplitter(FramePart& upper, FramePart& lower, QWidget* parent)
    : QSplitter(Qt::Vertical, parent), upper_(upper) {
  setHandleWidth(0);
  setChildrenCollapsible(false);
  addWidget(&upper);
  addWidget(&lower);
  setStretchFactor(0, 0);
  setStretchFactor(1, 1);
  upper.installEventFilter(this);
  connect(this, &QSplitter::splitterMoved, this, &EdgeSplitter::FitGrip);
}

QSplitterHandle* EdgeSplitter::createHandle() {
  auto* handle = new EdgeHandle(*this);
  handle->setContentsMargins(0, kLeastGrip, 0, kLeastGrip);
  return handle;
}

bool EdgeSplitter::eventFilter(QObject* watched, QEvent* event) {
  const auto type = event->type();
  const bool isLaidOut = type == QEvent::Resize || type == QEvent::Show || type == QEvent::LayoutRequest;
  // Once it has been.
  if (watched == &upper_ && isLaidOut) QMetaObject::invokeMethod(this, &EdgeSplitter::FitGrip, Qt::QueuedConnection);
  return QSplitter::eventFilter(watched, event);
}

void EdgeSplitter::FitGrip() {
  QWidget& edge = *handle(1);
  const int above = std::clamp(upper_.BlankBelow(), kLeastGrip, kMostGrip);
  edge.setContentsMargins(0, above, 0, kLeastGrip);
  edge.setGeometry(0, upper_.geometry().bottom() + 1 - above, width(), above + kLeastGrip);
}

}  // namespace holdwise
