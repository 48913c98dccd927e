// SPDX-License-Identifier: MIT
#include "input_watch.h"

#include <signal.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <chrono>
#include <cstdio>
#include <thread>

namespace holdwise {
namespace {

constexpr std::chrono::milliseconds kBetweenLooks{200};
constexpr std::chrono::milliseconds kStandsStill{1000};

volatile sig_atomic_t isAskedToEnd = 0;

void AskToEnd(int) {
  isAskedToEnd = 1;
}

bool EndsWithLine(const QString& path) {
  QFile file(path);
  char last = 0;
  return file.open(QIODevice::ReadOnly) && file.size() > 0 && file.seek(file.size() - 1) && file.getChar(&last) &&
         (last == '\n' || last == '\r');
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
  known_ = Look({});
}

bool InputWatch::WaitForChange() {
  Files last = known_;
  QString said;
  auto lastChange = std::chrono::steady_clock::now();
  while (isAskedToEnd == 0) {
    std::this_thread::sleep_for(kBetweenLooks);
    Files now = Look(last);
    if (now != last) {
      last = std::move(now);
      lastChange = std::chrono::steady_clock::now();
    } else if (last != known_ && std::chrono::steady_clock::now() - lastChange >= kStandsStill) {
      if (const QString path = Unfinished(last); path.isEmpty()) {
        known_ = std::move(last);
        return true;
      } else if (path != said) {
        std::fprintf(stderr, "%s 的最后一行没有换行，像是还没写完，等它写完\n", path.toUtf8().constData());
        said = path;
      }
    }
  }
  return false;
}

QString InputWatch::Unfinished(const Files& now) const {
  for (const auto& [path, file] : now) {
    if (file.endsWithLine) continue;
    const auto before = known_.find(path);
    if (before == known_.end() || before->second.endsWithLine) return path;
  }
  return {};
}

InputWatch::Files InputWatch::Look(const Files& last) const {
  Files files;
  const auto add = [&files, &last](const QString& path) {
    const std::optional<FileState> state = FileStateOf(path);
    if (!state) return;
    File file{*state, false};
    const auto before = last.find(path);
    file.endsWithLine = before != last.end() && before->second.endsWithLine;
    if (before == last.end() || file != before->second) file.endsWithLine = EndsWithLine(path);
    files.emplace(path, file);
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
