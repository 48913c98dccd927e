// SPDX-License-Identifier: MIT
#include "input_watch.h"

#include <signal.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <chrono>
#include <thread>

namespace holdwise {
namespace {

constexpr std::chrono::milliseconds kBetweenLooks{200};
constexpr std::chrono::milliseconds kStandsStill{1000};

volatile sig_atomic_t isAskedToEnd = 0;

void AskToEnd(int) {
  isAskedToEnd = 1;
}

}  // namespace

InputWatch::InputWatch(const std::vector<QString>& places) {
  for (const QString& place : places) {
    if (!place.isEmpty()) places_.push_back(place);
  }
  struct sigaction action = {};
  action.sa_handler = AskToEnd;
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
  known_ = Look();
}

bool InputWatch::WaitForChange() {
  Files last = known_;
  auto lastChange = std::chrono::steady_clock::now();
  while (isAskedToEnd == 0) {
    std::this_thread::sleep_for(kBetweenLooks);
    Files now = Look();
    if (now != last) {
      last = std::move(now);
      lastChange = std::chrono::steady_clock::now();
    } else if (last != known_ && std::chrono::steady_clock::now() - lastChange >= kStandsStill) {
      known_ = std::move(last);
      return true;
    }
  }
  return false;
}

InputWatch::Files InputWatch::Look() const {
  Files files;
  const auto add = [&files](const QString& path) {
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0) return;
    constexpr std::int64_t kNanoseconds = 1'000'000'000;
    files.emplace(path,
                  File{status.st_ino, status.st_size, status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec});
  };
  for (const QString& place : places_) {
    if (!QFileInfo(place).isDir()) {
      add(place);
      continue;
    }
    for (const QString& name : QDir(place).entryList({QStringLiteral("*.csv")}, QDir::Files, QDir::NoSort)) {
      add(place + u'/' + name);
    }
  }
  return files;
}

}  // namespace holdwise
