// SPDX-License-Identifier: MIT
#include "window/message_boxes.h"

#include <QApplication>
#include <QMessageBox>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>

#include "process/print.h"

namespace holdwise {
namespace {

using Box = MessageBoxService;

/// A sign in a disc: the style's own pictures are of another age and know no theme.
QPixmap Sign(QChar sign, const QWidget& widget) {
  constexpr int kSide = 40;
  constexpr int kTextPixels = 26;
  const qreal ratio = widget.devicePixelRatioF();
  QPixmap pixmap(QSize(kSide, kSide) * ratio);
  pixmap.setDevicePixelRatio(ratio);
  pixmap.fill(Qt::transparent);
  const QRect area(0, 0, kSide, kSide);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(widget.palette().highlight());
  painter.drawEllipse(area);
  QFont font = widget.font();
  font.setBold(true);
  font.setPixelSize(kTextPixels);
  painter.setFont(font);
  painter.setPen(widget.palette().highlightedText().color());
  painter.drawText(area, Qt::AlignCenter, sign);
  return pixmap;
}

}  // namespace

int MessageBoxes::Vex_MessageBox(const QString& text, const QString& caption, int buttons, int style) {
  QMessageBox box(style == Box::kQuestion ? QMessageBox::Question : QMessageBox::Information, caption, text,
                  QMessageBox::NoButton, window_);
  box.setTextFormat(Qt::PlainText);
  box.setIconPixmap(Sign(style == Box::kQuestion ? u'?' : u'i', box));
  QPushButton* ok = box.addButton(QStringLiteral("确定"), QMessageBox::AcceptRole);
  QPushButton* standard = ok;
  if (buttons == Box::kOkAndCancel) {
    QPushButton* cancel = box.addButton(QStringLiteral("取消"), QMessageBox::RejectRole);
    box.setEscapeButton(cancel);
    // A key that was meant for the list behind the question must not answer it.
    if (style == Box::kQuestion) standard = cancel;
  }
  box.setDefaultButton(standard);
  box.exec();
  return box.clickedButton() == ok ? Box::kOk : Box::kCancel;
}

QString AwaitedAnswer() {
  const QWidget* modal = QApplication::activeModalWidget();
  if (modal == nullptr) return {};
  return modal->windowTitle().isEmpty() ? QStringLiteral("Holdwise") : modal->windowTitle();
}

int PrintedMessages::Vex_MessageBox(const QString& text, const QString& caption, int buttons, int /*style*/) {
  PrintError(caption.isEmpty() ? text : caption + QStringLiteral("：") + text);
  return buttons == Box::kOkAndCancel ? Box::kCancel : Box::kOk;
}

}  // namespace holdwise
