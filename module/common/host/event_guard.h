// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <utility>

#include "common/host/debug_log.h"

namespace holdwise {

/// Runs what an event, a timer or a signal of the widget library has asked for. An exception must not travel through
/// the library's own code, so it ends here as a line in the host's debug log. False when there was one.
template <typename Body>
bool GuardEvent(const QString& unit, const QString& routine, Body&& body) {
  try {
    std::forward<Body>(body)();
    return true;
  } catch (...) {
    LogCurrentException(unit, routine);
    return false;
  }
}

}  // namespace holdwise
