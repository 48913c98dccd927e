// SPDX-License-Identifier: MIT
#include "common/host/debug_log.h"

#include <exception>

#include "common/host/host_access.h"
#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

/// No space, no file, no connection, a lock, a name that cannot be used: what the user can do something about, or wait
/// for.
bool ConcernsUser(const Error& error) {
  return error.Category() == ErrorCategory::Io || error.Category() == ErrorCategory::Busy ||
         error.Category() == ErrorCategory::Refused;
}

}  // namespace

void LogFailure(const QString& unit, const QString& routine, const QString& text) {
  ModuleHost().Debug().WriteLog(QStringLiteral("Holdwise.bpl->") + unit + QStringLiteral("->") + routine +
                                QStringLiteral(" 发生错误!错误信息:") + text);
}

void LogCurrentException(const QString& unit, const QString& routine) {
  try {
    throw;
  } catch (const Error& error) {
    const QString text = QString::fromUtf8(error.what());
    LogFailure(unit, routine, text);
    if (ConcernsUser(error)) ModuleHost().Debug().TellFailure(text);
  } catch (const std::exception& error) {
    LogFailure(unit, routine, QString::fromUtf8(error.what()));
  } catch (...) {
    LogFailure(unit, routine, QStringLiteral("unknown exception"));
  }
}

void LogDeletion(const QString& portfolioName) {
  ModuleHost().Debug().WriteLog(QStringLiteral("用户已删除组合“%1”，可用“文件→恢复…”找回").arg(portfolioName));
}

}  // namespace holdwise
