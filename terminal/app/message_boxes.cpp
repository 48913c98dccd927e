#include "app/message_boxes.h"

#include <QMessageBox>
#include <QPushButton>
#include <cstdio>

namespace holdwise {
namespace {

constexpr int kOkCancel = 1;
constexpr int kQuestion = 32;
constexpr int kAnswerOk = 1;
constexpr int kAnswerCancel = 2;

}  // namespace

int MessageBoxes::Vex_MessageBox(const QString& text, const QString& caption, int buttons, int style) {
  QMessageBox box(style == kQuestion ? QMessageBox::Question : QMessageBox::Information, caption, text,
                  QMessageBox::NoButton, window_);
  box.setTextFormat(Qt::PlainText);
  QPushButton* ok = box.addButton(QStringLiteral("确定"), QMessageBox::AcceptRole);
  box.setDefaultButton(ok);
  if (buttons == kOkCancel) box.setEscapeButton(box.addButton(QStringLiteral("取消"), QMessageBox::RejectRole));
  box.exec();
  return box.clickedButton() == ok ? kAnswerOk : kAnswerCancel;
}

int PrintedMessages::Vex_MessageBox(const QString& text, const QString& caption, int buttons, int /*style*/) {
  PrintError(caption.isEmpty() ? text : caption + QStringLiteral("：") + text);
  return buttons == kOkCancel ? kAnswerCancel : kAnswerOk;
}

void PrintError(const QString& text) {
  std::fprintf(stderr, "%s\n", text.toUtf8().constData());
  std::fflush(stderr);
}

}  // namespace holdwise
