// SPDX-License-Identifier: MIT
#include "command_runner.h"

#include <QTimer>
#include <utility>

namespace holdwise {

void CommandRunner::Run(const Command& command, HandOverServer::Answer answer) {
  jobs_.push_back({command, std::move(answer)});
  QTimer::singleShot(0, this, [this] { Next(); });
}

void CommandRunner::Next() {
  if (isBusy_ || jobs_.empty()) return;
  isBusy_ = true;
  const Job job = std::move(jobs_.front());
  jobs_.pop_front();
  Carry(job);
}

void CommandRunner::Carry(const Job& job) {
  const Command& command = job.command;
  if (command.theme) targets_.setTheme(*command.theme);
  const bool goes = !command.address.isEmpty() || !command.parameter.isEmpty();
  if (goes && !targets_.goTo(command.address, command.parameter)) {
    const QString what = command.address.isEmpty()
                             ? QStringLiteral("没有投资组合页面，不能打开“%1”。").arg(command.parameter)
                             : QStringLiteral("没有地址“%1”。").arg(command.address);
    return End(job, {what, kUnknownAddressExitCode});
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
  if (answer.exitCode != 0) return End(job, answer);
  if (command.exportFolder.isEmpty()) {
    targets_.raise();
    return End(job, answer);
  }
  targets_.exportViews(command, [this, job, before = answer.text](const HandOverAnswer& exported) {
    const QString text = before.isEmpty() ? exported.text : before + QLatin1Char('\n') + exported.text;
    End(job, {text, exported.exitCode});
  });
}

void CommandRunner::End(const Job& job, const HandOverAnswer& answer) {
  isBusy_ = false;
  job.answer(answer);
  QTimer::singleShot(0, this, [this] { Next(); });
}

}  // namespace holdwise
