// SPDX-License-Identifier: MIT
#include "process/start_again.h"

#include <unistd.h>

#include <QFile>
#include <QThread>
#include <cstdio>
#include <utility>
#include <vector>

#include "process/print.h"

namespace holdwise {
namespace {

constexpr const char* kLeftOut = "HOLDWISE_PLUGINS_LEFT_OUT";
constexpr QLatin1Char kBetween('/');  // is in no file's name

void Become(QList<QByteArray> words) {
  std::vector<char*> argv;
  argv.reserve(static_cast<std::size_t>(words.size()) + 1);
  for (QByteArray& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  // With their locks, whoever has opened them.
  ::close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
  std::fflush(nullptr);
  ::execv("/proc/self/exe", argv.data());
  PrintError(QStringLiteral("终端没有能重新启动，请再启动一次。"));
}

QList<QByteArray> WordsOfThisStart() {
  QFile file(QStringLiteral("/proc/self/cmdline"));
  if (!file.open(QIODevice::ReadOnly)) return {};
  QList<QByteArray> words = file.readAll().split('\0');
  words.removeLast();  // after the last one's end
  return words;
}

QList<QByteArray> WordsWithoutWork(const Options& options) {
  QList<QByteArray> words{"holdwise-terminal", "--work", options.workFolder.toUtf8()};
  const Command& command = options.command;
  const QString speed = options.simulationSpeed == 1 ? QString() : QString::number(options.simulationSpeed);
  for (const auto& [name, value] : {std::pair<const char*, QString>{"--data", command.dataFolder},
                                    {"--db", command.database},
                                    {"--speed", speed},
                                    {"--address", command.address},
                                    {"--parameter", command.parameter}}) {
    if (!value.isEmpty()) words << name << value.toUtf8();
  }
  return words;
}

}  // namespace

void StartAgain(const Options& options) {
  Become(WordsWithoutWork(options));
}

void StartAgainWithout(const QString& file, const Options& options) {
  qputenv(kLeftOut, (PluginsLeftOut() << file).join(kBetween).toUtf8());
  const bool hasBegun = QThread::currentThread()->loopLevel() > 0;
  Become(hasBegun ? WordsWithoutWork(options) : WordsOfThisStart());
  ::_exit(1);
}

QStringList PluginsLeftOut() {
  return qEnvironmentVariable(kLeftOut).split(kBetween, Qt::SkipEmptyParts);
}

}  // namespace holdwise
