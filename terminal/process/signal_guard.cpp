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

/// Whoever started us may have asked that we outlive the session (nohup): what was ignored stays so.
bool IsIgnored(int signal) {
  struct sigaction action {};
  return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

sigset_t EndSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  for (const int signal : {SIGHUP, SIGQUIT}) {
    if (!IsIgnored(signal)) sigaddset(&signals, signal);
  }
  return signals;
}

void TakeSignals(sigset_t signals) {
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
  // Whoever reads our output may go before us; that is no reason to end without order.
  (void)std::signal(SIGPIPE, SIG_IGN);
  descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  std::thread(TakeSignals, signals).detach();
}

bool Requested() noexcept {
  return requested;
}
int Descriptor() noexcept {
  return descriptor;
}

}  // namespace holdwise::signal_guard
