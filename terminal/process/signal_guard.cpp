// SPDX-License-Identifier: MIT
#include "process/signal_guard.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdint>
#include <ctime>
#include <thread>

namespace holdwise::signal_guard {
namespace {

// Tools that end a whole process group send the signal twice at once; only a later one is a person's impatience.
constexpr timespec kSameWish{1, 0};
constexpr timespec kGrace{1, 500'000'000};

std::atomic<bool> requested = false;
std::atomic<int> descriptor = -1;

sigset_t EndSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  return signals;
}

void TakeSignals() {
  const sigset_t signals = EndSignals();
  int signal = 0;
  while (sigwait(&signals, &signal) != 0) {
  }
  requested = true;
  const std::uint64_t one = 1;
  [[maybe_unused]] const ssize_t written = write(descriptor, &one, sizeof one);
  nanosleep(&kSameWish, nullptr);
  constexpr timespec kNow{0, 0};
  while (sigtimedwait(&signals, nullptr, &kNow) > 0) {
  }
  sigtimedwait(&signals, nullptr, &kGrace);
  _exit(1);
}

}  // namespace

void Install() {
  const sigset_t signals = EndSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  std::thread(TakeSignals).detach();
}

bool Requested() noexcept {
  return requested;
}
int Descriptor() noexcept {
  return descriptor;
}

}  // namespace holdwise::signal_guard
