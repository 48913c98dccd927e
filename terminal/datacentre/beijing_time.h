// SPDX-License-Identifier: MIT
#pragma once
#include <QDateTime>

namespace holdwise {

/// The same moment on the exchanges' clock, which knows no summer time; invalid for an invalid one.
[[nodiscard]] inline QDateTime BeijingTime(const QDateTime& moment) {
  constexpr int kOffsetSeconds = 8 * 3600;
  return moment.isValid() ? moment.toOffsetFromUtc(kOffsetSeconds) : moment;
}

}  // namespace holdwise
