// SPDX-License-Identifier: MIT
#include "common/host/messages.h"

#include "common/host/host_access.h"

namespace holdwise {

void Tell(const QString& text) {
  constexpr int kOkButton = 0;
  constexpr int kNoticeStyle = 128;
  ModuleHost().MessageBoxes().Vex_MessageBox(text, QStringLiteral("提示"), kOkButton, kNoticeStyle);
}

bool Agrees(const QString& question) {
  constexpr int kOkAndCancel = 1;
  constexpr int kQuestionStyle = 32;
  constexpr int kOk = 1;
  return ModuleHost().MessageBoxes().Vex_MessageBox(question, QStringLiteral("询问"), kOkAndCancel, kQuestionStyle) ==
         kOk;
}

}  // namespace holdwise
