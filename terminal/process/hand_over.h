// SPDX-License-Identifier: MIT
#pragma once
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <functional>
#include <optional>

#include "process/command_line.h"

namespace holdwise {

/// Answer of a running terminal to a command that was handed over.
struct HandOverAnswer {
  QString text;
  int exitCode = 0;
};

/// The running terminal's side: takes one command a connection and answers when it has been carried out. A connection
/// has 5 s for its command and 5 s for each step of taking the answer; of those without a command the last 32 are kept;
/// a command whose sender has gone when it is read is not carried out. On the system's own sockets: Qt's network
/// library would cost every start a millisecond for these two lines of text. User-interface thread.
class HandOverServer {
 public:
  using Answer = std::function<void(const HandOverAnswer&)>;
  /// `OnCommand` must call its answer exactly once, now or later; answering after the other side has gone is harmless.
  std::function<void(const Command& command, Answer answer)> OnCommand;

  /// The caller holds the work folder's lock: what a dead terminal left behind is removed.
  /// Error(Io) when the socket cannot be made.
  explicit HandOverServer(const QString& workFolder);
  ~HandOverServer();
  HandOverServer(const HandOverServer&) = delete;
  HandOverServer& operator=(const HandOverServer&) = delete;

 private:
  class Connection;
  void TakeConnection();
  void TakeCommand(const QByteArray& line, Connection& connection);

  const QString workFolder_;
  QObject connections_;  ///< owns those that are open
  int listener_ = -1;
  std::optional<QSocketNotifier> notifier_;
};

/// The second start's side: hands the command to the running terminal and waits for the answer, for as long as that
/// terminal lives. None when nobody answers on the socket (it is starting or ending). Any thread.
/// @param givenUp asked several times a second; true gives the waiting up
[[nodiscard]] std::optional<HandOverAnswer> HandOver(const QString& workFolder, const Command& command,
                                                     const std::function<bool()>& givenUp);

}  // namespace holdwise
