// SPDX-License-Identifier: MIT
#include "common/host/messages.h"

#include "common/host/host_access.h"

namespace holdwise {
namespace {

using Box = MessageBoxService;

int Show(const QString& text, const QString& caption, int buttons, int style) {
  return ModuleHost().MessageBoxes().Vex_MessageBox(text, caption, buttons, style);
}

}  // namespace

void Tell(const QString& text, const QString& caption) {
  Show(text, caption, Box::kOkButton, Box::kNotice);
}

bool Agrees(const QString& question) {
  return Show(question, QStringLiteral("询问"), Box::kOkAndCancel, Box::kQuestion) == Box::kOk;
}

bool AgreesToNotice(const QString& notice) {
  return Show(notice, QStringLiteral("提示"), Box::kOkAndCancel, Box::kNotice) == Box::kOk;
}

}  // namespace holdwise
