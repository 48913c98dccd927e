// SPDX-License-Identifier: MIT
#pragma once
#include <QBasicTimer>
#include <QObject>
#include <deque>
#include <functional>
#include <optional>

#include "process/command_line.h"
#include "process/hand_over.h"

namespace holdwise {

/// What a command can make the terminal do.
struct CommandTargets {
  std::function<void(ThemeKind)> setTheme;
  /// An empty address is the one with views. False when there is no such address.
  std::function<bool(const QString& address, const QString& parameter)> goTo;
  std::function<HandOverAnswer(const QString& file)> restorePortfolios;
  /// The command's import file, as the command wants it.
  std::function<HandOverAnswer(const Command& command)> importPortfolios;
  std::function<HandOverAnswer(const QString& file)> backUpPortfolios;
  /// Into the command's export folder, with its inputs set. Answers later.
  std::function<void(const Command& command, HandOverServer::Answer)> exportViews;
  /// Brings the window to the user's eyes.
  std::function<void()> raise;
  /// Title of the dialog that the user has to answer before anything else; empty when there is none.
  std::function<QString()> awaitedAnswer = [] { return QString(); };
};

/// Carries commands out one after the other, each in the order theme, address, restore, import, backup, export; the
/// first step that fails ends its command. One that would have to wait until the user has answered a dialog is refused
/// after a second: an export, for which the views would not get ready meanwhile, and all that wait for one that is
/// being carried out and asks. User-interface thread.
class CommandRunner : public QObject {
 public:
  static constexpr int kUnknownAddressExitCode = 2;

  explicit CommandRunner(CommandTargets targets) : targets_(std::move(targets)) {}
  /// `answer` is called once, when the command has ended; from the event loop, never inside Run.
  void Run(const Command& command, HandOverServer::Answer answer);
  /// Nothing is being carried out, and nothing waits.
  [[nodiscard]] bool IsIdle() const { return !isBusy_ && jobs_.empty(); }

 protected:
  void timerEvent(QTimerEvent* event) override;

 private:
  struct Job {
    Command command;
    HandOverServer::Answer answer;
  };
  void Next();
  void Carry(const Job& job);
  /// Carries a command out; none while its export still runs, which ends it.
  [[nodiscard]] std::optional<HandOverAnswer> Result(const Job& job);
  void End(const Job& job, const HandOverAnswer& answer);
  [[nodiscard]] bool MayBegin(const Job& job) const;
  void Watch();
  void Refuse(const QString& title);

  CommandTargets targets_;
  std::deque<Job> jobs_;
  bool isBusy_ = false;
  QString askedBefore_;  ///< the awaited answer when the present command began, which does not wait for it
  QBasicTimer looks_;    ///< while commands wait
  int asking_ = 0;       ///< looks in a row at which the first of them was kept by a dialog
};

}  // namespace holdwise
