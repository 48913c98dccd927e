// SPDX-License-Identifier: MIT
#pragma once
#include <benchmark/benchmark.h>

#include <QApplication>

namespace holdwise::bench {

/// The whole of main(): the benchmarks on widgets that nobody sees.
inline int RunOffscreen(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

}  // namespace holdwise::bench
