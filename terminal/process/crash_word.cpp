// SPDX-License-Identifier: MIT
#include "process/crash_word.h"

#include <unistd.h>

#include <csignal>
#include <initializer_list>

namespace holdwise {
namespace {

constexpr char kWord[] =
    "终端意外结束了。请再启动一次：启动时会完整检查数据库，损坏的可以用备份恢复；备份在工作目录的 backups 里。\n";

void Say(int signal) {
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kWord, sizeof kWord - 1);
  raise(signal);  // comes behind this handler, where nobody takes it any more
}

}  // namespace

void InstallCrashWord() {
  for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT}) {
    struct sigaction action {};
    if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) continue;
    action.sa_handler = Say;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(signal, &action, nullptr);
  }
}

}  // namespace holdwise
