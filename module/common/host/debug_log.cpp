// SPDX-License-Identifier: MIT
#include "common/host/debug_log.h"

#include <exception>

#include "common/host/host_access.h"

namespace holdwise {

void LogFailure(const QString& unit, const QString& routine, const QString& text) {
  ModuleHost().Debug().WriteLog(QStringLiteral("Holdwise.bpl->") + unit + QStringLiteral("->") + routine +
                                QStringLiteral(" 发生错误!错误信息:") + text);
}

void LogCurrentException(const QString& unit, const QString& routine) {
  try {
    throw;
  } catch (const std::exception& error) {
    LogFailure(unit, routine, QString::fromUtf8(error.what()));
  } catch (...) {
    LogFailure(unit, routine, QStringLiteral("unknown exception"));
  }
}

}  // namespace holdwise
