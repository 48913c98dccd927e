// SPDX-License-Identifier: MIT
#include "common/host/messages.h"

#include "common/host/host_access.h"

namespace holdwise {
namespace {

constexpr int kOkButton = 0;
constexpr int kOkAndCancel = 1;
constexpr int kQuestionStyle = 32;
constexpr int kNoticeStyle = 128;
constexpr int kOk = 1;

int Show(const QString& text, const QString& caption, int buttons, int style) {
  return ModuleHost().MessageBoxes().Vex_MessageBox(text, caption, buttons, style);
}

}  // namespace

void Tell(const QString& text, const QString& caption) {
  Show(text, caption, kOkButton, kNoticeStyle);
}

bool Agrees(const QString& question) {
  return Show(question, QStringLiteral("询问"), kOkAndCancel, kQuestionStyle) == kOk;
}

bool AgreesToNotice(const QString& notice) {
  return Show(notice, QStringLiteral("提示"), kOkAndCancel, kNoticeStyle) == kOk;
}

}  // namespace holdwise
