// SPDX-License-Identifier: MIT
#include "common/host/debug_log.h"

#include "common/host/host_access.h"
#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

/// What the user can do something about, or wait for.
bool ConcernsUser(const std::exception& error) {
  const auto* known = dynamic_cast<const Error*>(&error);
  return IsPassing(error) || (known != nullptr && known->Category() == ErrorCategory::Refused);
}

}  // namespace

bool IsPassing(const std::exception& error) {
  const auto* known = dynamic_cast<const Error*>(&error);
  return known != nullptr && (known->Category() == ErrorCategory::Io || known->Category() == ErrorCategory::Busy);
}

void LogFailure(const QString& unit, const QString& routine, const QString& text) {
  ModuleHost().Debug().WriteLog(QStringLiteral("Holdwise.bpl->") + unit + QStringLiteral("->") + routine +
                                QStringLiteral(" 发生错误!错误信息:") + text);
}

void LogCurrentException(const QString& unit, const QString& routine) {
  try {
    throw;
  } catch (const std::exception& error) {
    const QString text = QString::fromUtf8(error.what());
    LogFailure(unit, routine, text);
    if (ConcernsUser(error)) ModuleHost().Debug().TellFailure(text);
  } catch (...) {
    LogFailure(unit, routine, QStringLiteral("unknown exception"));
  }
}

void LogDeletion(const QString& portfolioName) {
  const QString text = QStringLiteral("已删除组合“%1”，可用“文件→恢复…”找回").arg(portfolioName);
  ModuleHost().Debug().WriteLog(QStringLiteral("用户") + text);
  ModuleHost().Debug().TellOutcome(text);
}

}  // namespace holdwise
