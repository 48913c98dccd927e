// SPDX-License-Identifier: MIT
#include "common/host/codes.h"

#include "common/host/host_access.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {

QString GetCodeCNum(const QString& code) {
  return code.right(6);
}

QString GetCodeNum(const QString& code) {
  if (code.isEmpty()) return code;
  const QString six = GetCodeCNum(code);
  const CodeNumServices& services = ModuleHost().CodeNums();
  if (services.IsFundOrBond(six) && services.IsKnownSecurity(six)) return code;
  return services.IsIndex(six) ? code : QStringLiteral("1") + six;
}

int CodeNumberOf(const QString& code) {
  return static_cast<int>(IntegerOr(GetCodeNum(code)));
}

}  // namespace holdwise
