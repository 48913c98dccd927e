// SPDX-License-Identifier: MIT
#include "process/background_thread.h"

#include <sys/resource.h>
#include <unistd.h>

namespace holdwise {
namespace {

/// A third of a normal thread's share when both want the same core: enough to go on beside a busy machine.
constexpr int kNice = 5;

}  // namespace

void StepBehindTheWindow() {
  // Linux keeps this value for each thread, not for the process.
  (void)setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), kNice);
}

}  // namespace holdwise
