// SPDX-License-Identifier: MIT
#pragma once
#include <algorithm>
#include <atomic>
#include <cstddef>
#include <exception>
#include <thread>
#include <vector>

#include "holdwise/packet/thread_annotations.h"

namespace holdwise {

/// Calls work(i) for every i below `count` on several threads and returns when all are done. The first exception stops
/// the handing out of further numbers and is thrown on to the caller.
template <typename Work>
void ParallelFor(std::size_t count, unsigned threads, const Work& work) {
  std::atomic<std::size_t> next = 0;
  struct {
    Mutex mutex;
    std::exception_ptr failure HOLDWISE_GUARDED_BY(mutex);
  } first;
  const auto run = [&] {
    for (std::size_t i = next.fetch_add(1); i < count; i = next.fetch_add(1)) {
      try {
        work(i);
      } catch (...) {
        const MutexLock lock(first.mutex);
        if (!first.failure) first.failure = std::current_exception();
        next = count;
      }
    }
  };
  {
    std::vector<std::jthread> workers;
    const std::size_t wanted = std::min<std::size_t>(std::max(1U, threads), count);
    for (std::size_t i = 0; i < wanted; ++i) workers.emplace_back(run);
  }
  const MutexLock lock(first.mutex);
  if (first.failure) std::rethrow_exception(first.failure);
}

/// Where none are wanted (0), as many as the machine runs at once, at least two.
inline unsigned ThreadsOr(unsigned wanted) {
  return wanted != 0 ? wanted : std::max(2U, std::thread::hardware_concurrency());
}

}  // namespace holdwise
