#pragma once
#include <QLocalServer>
#include <QLocalSocket>
#include <QPointer>
#include <QString>
#include <functional>
#include <optional>

#include "app/command_line.h"

namespace holdwise {

/// Answer of a running terminal to a command that was handed over.
struct HandOverAnswer {
  QString text;
  int exitCode = 0;
};

/// Address of the socket of a work folder's terminal, reachable whatever the length of the folder's name. Keeps the
/// folder open as long as it lives.
class HandOverAddress {
 public:
  explicit HandOverAddress(const QString& workFolder);
  ~HandOverAddress();
  HandOverAddress(const HandOverAddress&) = delete;
  HandOverAddress& operator=(const HandOverAddress&) = delete;
  [[nodiscard]] const QString& Name() const { return name_; }

 private:
  int folder_ = -1;
  QString name_;
};

/// The running terminal's side: takes one command a connection and answers when it has been carried out.
/// User-interface thread.
class HandOverServer {
 public:
  using Answer = std::function<void(const HandOverAnswer&)>;
  /// `OnCommand` must call its answer exactly once, now or later; answering after the other side has gone is harmless.
  std::function<void(const Command& command, Answer answer)> OnCommand;

  /// The caller holds the work folder's lock: what a dead terminal left behind is removed.
  /// Error(Io) when the socket cannot be made.
  explicit HandOverServer(const QString& workFolder);

 private:
  void Take(QLocalSocket* socket);

  HandOverAddress address_;
  QLocalServer server_;
};

/// The second start's side: hands the command to the running terminal and waits for the answer, for as long as that
/// terminal lives. None when nobody answers on the socket (it is starting or ending). Needs a QCoreApplication.
/// @param givenUp asked several times a second; true gives the waiting up
[[nodiscard]] std::optional<HandOverAnswer> HandOver(const QString& workFolder, const Command& command,
                                                     const std::function<bool()>& givenUp);

}  // namespace holdwise
