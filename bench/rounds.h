// SPDX-License-Identifier: MIT
#pragma once
#include <benchmark/benchmark.h>

#include <chrono>
#include <string>
#include <vector>

namespace holdwise::bench {

/// Times `work` on the rows of one file, turn by turn; `undo` makes ready for the next turn and is not timed.
template <typename Work, typename Undo>
void Measure(benchmark::State& state, int rows, Work work, Undo undo) {
  for ([[maybe_unused]] auto turn : state) {
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(elapsed.count());
    undo();
  }
  state.SetItemsProcessed(state.iterations() * rows);
}

/// Runs what is registered with the rounds mixed, so that a slow moment of the machine meets every benchmark alike.
inline void RunInterleaved(int argc, char** argv, benchmark::BenchmarkReporter& reporter) {
  std::vector<char*> arguments(argv, argv + argc);
  std::string interleave = "--benchmark_enable_random_interleaving=true";
  arguments.insert(arguments.begin() + 1, interleave.data());
  int count = static_cast<int>(arguments.size());
  arguments.push_back(nullptr);
  benchmark::Initialize(&count, arguments.data());
  benchmark::RunSpecifiedBenchmarks(&reporter);
}

}  // namespace holdwise::bench
