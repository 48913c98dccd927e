// SPDX-License-Identifier: MIT
#include "process/start_trace.h"

#include <unistd.h>

#include <QFile>
#include <QtGlobal>
#include <cstdio>
#include <ctime>

namespace holdwise {

void TraceFirstPaint() {
  if (qgetenv("HOLDWISE_TRACE_START") != "1") return;
  QFile file(QStringLiteral("/proc/self/stat"));
  if (!file.open(QIODevice::ReadOnly)) return;
  // The start is field 22, counted in ticks since the machine's start; fields are counted behind the name, which may
  // hold blanks, so field 3 is the first.
  const QByteArray status = file.readAll();
  const QByteArray start = status.mid(status.lastIndexOf(')') + 2).split(' ').value(19);
  timespec now{};
  clock_gettime(CLOCK_BOOTTIME, &now);
  const double nowMilliseconds = static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
  const double startMilliseconds = start.toDouble() * 1e3 / static_cast<double>(sysconf(_SC_CLK_TCK));
  std::fprintf(stderr, "HOLDWISE_FIRST_PAINT_MS %.0f\n", nowMilliseconds - startMilliseconds);
  std::fflush(stderr);
}

}  // namespace holdwise
