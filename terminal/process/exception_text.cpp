// SPDX-License-Identifier: MIT
#include "process/exception_text.h"

#include <exception>

namespace holdwise {

QString TextOfCurrentException() {
  try {
    throw;
  } catch (const std::exception& error) {
    return QString::fromUtf8(error.what());
  } catch (...) {
    return QStringLiteral("原因不明");
  }
}

}  // namespace holdwise
