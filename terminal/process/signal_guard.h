// SPDX-License-Identifier: MIT
#pragma once

namespace holdwise {

/// Turns SIGTERM, SIGINT, SIGHUP (the session has ended) and SIGQUIT into a request for an orderly end; SIGHUP and
/// SIGQUIT stay ignored where the process was started so. The signals are blocked in every thread and taken by one
/// thread of its own, so no handler that a library installs behind our back ever runs. After the first signal the
/// process has 2.5 s; then, or at a further signal that comes a second later, that thread ends it at once with code 1
/// (transactions under way roll back at the next start).
namespace signal_guard {

/// First call in main, before any thread is started. From then on writing to a closed pipe is a failed write.
void Install();
/// Has an end been requested? Any thread.
[[nodiscard]] bool Requested() noexcept;
/// A descriptor that becomes readable with the first signal and stays so; -1 before Install.
[[nodiscard]] int Descriptor() noexcept;

}  // namespace signal_guard
}  // namespace holdwise
