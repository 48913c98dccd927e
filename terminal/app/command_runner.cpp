// SPDX-License-Identifier: MIT
#include "command_runner.h"

#include <QTimer>
#include <QTimerEvent>
#include <utility>
#include <vector>

#include "process/exception_text.h"

namespace holdwise {
namespace {

constexpr int kLookMilliseconds = 250;
constexpr int kLooksBeforeRefusal = 4;

}  // namespace

void CommandRunner::Run(const Command& command, HandOverServer::Answer answer) {
  jobs_.push_back({command, std::move(answer)});
  QTimer::singleShot(0, this, [this] { Next(); });
}

bool CommandRunner::MayBegin(const Job& job) const {
  return job.command.exportFolder.isEmpty() || targets_.awaitedAnswer().isEmpty();
}

void CommandRunner::Next() {
  if (isBusy_ || jobs_.empty() || !MayBegin(jobs_.front())) return Watch();
  isBusy_ = true;
  askedBefore_ = targets_.awaitedAnswer();
  const Job job = std::move(jobs_.front());
  jobs_.pop_front();
  Watch();
  Carry(job);
}

void CommandRunner::Carry(const Job& job) {
  std::optional<HandOverAnswer> answer;
  try {
    answer = Result(job);
  } catch (...) {
    answer = {QStringLiteral("命令没有执行完：%1").arg(TextOfCurrentException()), 1};
  }
  if (answer) End(job, *answer);
}

std::optional<HandOverAnswer> CommandRunner::Result(const Job& job) {
  const Command& command = job.command;
  if (command.theme) targets_.setTheme(*command.theme);
  const bool goes = !command.address.isEmpty() || !command.parameter.isEmpty();
  if (goes && !targets_.goTo(command.address, command.parameter)) {
    const QString what = command.address.isEmpty()
                             ? QStringLiteral("没有投资组合页面，不能打开“%1”。").arg(command.parameter)
                             : QStringLiteral("没有地址“%1”。").arg(command.address);
    return HandOverAnswer{what, kUnknownAddressExitCode};
  }
  HandOverAnswer answer;
  QStringList texts;
  const auto step = [&](const QString& file, const std::function<HandOverAnswer(const QString&)>& target) {
    if (file.isEmpty() || answer.exitCode != 0) return;
    answer = target(file);
    texts.append(answer.text);
  };
  step(command.restoreFile, targets_.restorePortfolios);
  step(command.importFile, [this, &command](const QString&) { return targets_.importPortfolios(command); });
  step(command.backupFile, targets_.backUpPortfolios);
  answer.text = texts.join(QLatin1Char('\n'));
  if (answer.exitCode != 0) return answer;
  if (command.exportFolder.isEmpty()) {
    targets_.raise();
    return answer;
  }
  targets_.exportViews(command, [this, job, before = answer.text](const HandOverAnswer& exported) {
    const QString text = before.isEmpty() ? exported.text : before + QLatin1Char('\n') + exported.text;
    End(job, {text, exported.exitCode});
  });
  return std::nullopt;
}

void CommandRunner::End(const Job& job, const HandOverAnswer& answer) {
  isBusy_ = false;
  // First: whoever takes the answer may show it and come back once it has been read.
  QTimer::singleShot(0, this, [this] { Next(); });
  job.answer(answer);
}

void CommandRunner::Watch() {
  if (jobs_.empty() || looks_.isActive()) return;
  asking_ = 0;
  looks_.start(kLookMilliseconds, this);
}

// Not a QTimer, which does not fire during an import.
void CommandRunner::timerEvent(QTimerEvent* event) {
  if (event->timerId() != looks_.timerId()) return QObject::timerEvent(event);
  if (jobs_.empty()) return looks_.stop();
  const QString title = targets_.awaitedAnswer();
  const bool isKept = !title.isEmpty() && (!isBusy_ || title != askedBefore_);
  if (!isBusy_ && !isKept) {
    looks_.stop();
    return Next();
  }
  asking_ = isKept ? asking_ + 1 : 0;
  if (asking_ >= kLooksBeforeRefusal) Refuse(title);
}

void CommandRunner::Refuse(const QString& title) {
  looks_.stop();
  const QString text =
      QStringLiteral("终端的窗口里开着“%1”，等用户回答，命令没有执行。请先回答或关闭它，再试一次。").arg(title);
  // The first one alone, when it only cannot begin: others may.
  const auto last = isBusy_ ? jobs_.end() : jobs_.begin() + 1;
  const std::vector<Job> refused(jobs_.begin(), last);
  jobs_.erase(jobs_.begin(), last);
  for (const Job& job : refused) job.answer({text, 1});
  QTimer::singleShot(0, this, [this] { Next(); });
}

}  // namespace holdwise
