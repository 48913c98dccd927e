// SPDX-License-Identifier: MIT
#include "process/hand_over.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>
#include <QTimer>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>
#include <vector>

#include "holdwise/packet/error.h"
#include "holdwise/packet/system_error.h"

namespace holdwise {
namespace {

constexpr qsizetype kLongestCommand = 1 << 16;
constexpr int kAskMilliseconds = 100;
constexpr int kWaitingConnections = 16;
constexpr std::size_t kMostWithoutCommand = 32;
constexpr std::chrono::seconds kLongestTalk{5};
constexpr std::size_t kChunk = 1 << 12;
constexpr const char* kSocketName = "/terminal.socket";

QByteArray ToLine(const HandOverAnswer& answer) {
  return QJsonDocument(QJsonObject{{QStringLiteral("text"), answer.text}, {QStringLiteral("exit"), answer.exitCode}})
             .toJson(QJsonDocument::Compact) +
         '\n';
}

HandOverAnswer FromLine(const QByteArray& line) {
  const QJsonObject object = QJsonDocument::fromJson(line).object();
  return {object.value(QStringLiteral("text")).toString(), object.value(QStringLiteral("exit")).toInt(1)};
}

/// Calls `use(socket, address, length)` with the address of the socket of a work folder's terminal: bind or connect.
template <typename Use>
int AtAddress(const QString& workFolder, int socket, const Use& use) {
  const int folder = open(QFile::encodeName(workFolder).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) return -1;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  // A socket's name is limited to 107 bytes; the way through the descriptor is always short.
  const QByteArray name = QByteArrayLiteral("/proc/self/fd/") + QByteArray::number(folder) + kSocketName;
  std::memcpy(address.sun_path, name.constData(), static_cast<std::size_t>(name.size()) + 1);
  const int result = use(socket, reinterpret_cast<const sockaddr*>(&address), socklen_t{sizeof address});
  const int reason = errno;
  close(folder);
  errno = reason;
  return result;
}

/// What has arrived so far, appended. False at the end of the connection.
bool Receive(int socket, QByteArray& received) {
  std::array<char, kChunk> chunk{};
  const ssize_t count = recv(socket, chunk.data(), chunk.size(), MSG_DONTWAIT);
  if (count < 0) return errno == EAGAIN || errno == EINTR;
  received.append(chunk.data(), count);
  return count > 0;
}

/// As much as goes without waiting, taken from the front. False when nobody takes it any more.
bool Send(int socket, QByteArray& text) {
  const ssize_t count =
      send(socket, text.constData(), static_cast<std::size_t>(text.size()), MSG_NOSIGNAL | MSG_DONTWAIT);
  if (count < 0) return errno == EAGAIN || errno == EINTR;
  text.remove(0, count);
  return true;
}

/// The second start's end of the connection.
class Caller {
 public:
  Caller() : socket_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {}
  ~Caller() {
    if (socket_ >= 0) close(socket_);
  }
  Caller(const Caller&) = delete;
  Caller& operator=(const Caller&) = delete;

  [[nodiscard]] bool Connect(const QString& workFolder) const {
    return socket_ >= 0 && AtAddress(workFolder, socket_, connect) == 0;
  }
  /// Sends the line and waits for one; empty when the other side ended or the waiting was given up.
  [[nodiscard]] QByteArray Ask(QByteArray line, const std::function<bool()>& givenUp) const {
    QByteArray answer;
    while (!answer.contains('\n') && !givenUp()) {
      pollfd waited{socket_, static_cast<short>(line.isEmpty() ? POLLIN : POLLIN | POLLOUT), 0};
      if (poll(&waited, 1, kAskMilliseconds) <= 0) continue;
      if (!line.isEmpty() && !Send(socket_, line)) return {};
      if (!Receive(socket_, answer) && !answer.contains('\n')) return {};
    }
    return answer;
  }

 private:
  const int socket_;
};

}  // namespace

/// One second start: its command comes, the answer goes, and the connection ends. Deletes itself.
class HandOverServer::Connection final : public QObject {
 public:
  Connection(int socket, HandOverServer& server)
      : QObject(&server.connections_),
        socket_(socket),
        server_(server),
        reader_(socket, QSocketNotifier::Read),
        writer_(socket, QSocketNotifier::Write) {
    writer_.setEnabled(false);
    connect(&reader_, &QSocketNotifier::activated, this, [this] { Read(); });
    connect(&writer_, &QSocketNotifier::activated, this, [this] { Write(); });
    connect(&patience_, &QTimer::timeout, this, &Connection::End);
    patience_.setSingleShot(true);
    patience_.start(kLongestTalk);
  }
  ~Connection() override {
    reader_.setEnabled(false);
    writer_.setEnabled(false);
    close(socket_);
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  void Reply(const HandOverAnswer& answer) {
    answer_ = ToLine(answer);
    Write();
  }
  [[nodiscard]] bool HasCommand() const { return hasCommand_; }

 private:
  void Read() {
    const bool isOpen = Receive(socket_, received_);
    if (!isOpen || received_.size() > kLongestCommand) return End();
    const qsizetype end = received_.indexOf('\n');
    if (end < 0 || std::exchange(hasCommand_, true)) return;
    patience_.stop();  // from here on it is this side that is waited for
    // Whoever has gone by now was told that nobody answered: nothing may happen afterwards.
    if (!Receive(socket_, received_)) return End();
    server_.TakeCommand(received_.left(end), *this);
  }
  void Write() {
    if (!Send(socket_, answer_) || answer_.isEmpty()) return End();
    writer_.setEnabled(true);
    patience_.start(kLongestTalk);
  }
  void End() {
    patience_.stop();
    reader_.setEnabled(false);
    writer_.setEnabled(false);
    deleteLater();
  }

  const int socket_;
  HandOverServer& server_;
  QSocketNotifier reader_;
  QSocketNotifier writer_;
  QTimer patience_;
  QByteArray received_;
  QByteArray answer_;
  bool hasCommand_ = false;
};

HandOverServer::HandOverServer(const QString& workFolder)
    : workFolder_(workFolder), listener_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
  QFile::remove(workFolder_ + QLatin1String(kSocketName));
  if (listener_ < 0 || AtAddress(workFolder_, listener_, bind) != 0 || listen(listener_, kWaitingConnections) != 0) {
    const QString reason = QString::fromStdString(SystemReason(errno));
    if (listener_ >= 0) close(listener_);
    const QString text = QStringLiteral("工作目录“%1”中不能建立通信端点：%2").arg(workFolder_, reason);
    throw Error(ErrorCategory::Io, text.toStdString());
  }
  notifier_.emplace(listener_, QSocketNotifier::Read);
  QObject::connect(&*notifier_, &QSocketNotifier::activated, &connections_, [this] { TakeConnection(); });
}

HandOverServer::~HandOverServer() {
  notifier_.reset();
  close(listener_);
  QFile::remove(workFolder_ + QLatin1String(kSocketName));
}

void HandOverServer::TakeConnection() {
  const int accepted = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
  if (accepted < 0) return;
  // Those that only hold on to the line give way, or they would take the process's descriptors.
  std::vector<QObject*> silent;
  for (QObject* connection : connections_.children()) {
    if (!static_cast<Connection*>(connection)->HasCommand()) silent.push_back(connection);
  }
  if (silent.size() >= kMostWithoutCommand) delete silent.front();
  new Connection(accepted, *this);  // connections_ owns it
}

void HandOverServer::TakeCommand(const QByteArray& line, Connection& connection) {
  const std::optional<Command> command = Command::FromJson(line);
  const Answer answer = [guarded = QPointer<Connection>(&connection)](const HandOverAnswer& given) {
    if (!guarded.isNull()) guarded->Reply(given);
  };
  if (!command || !OnCommand)
    answer({QStringLiteral("命令无法识别。"), 1});
  else
    OnCommand(*command, answer);
}

std::optional<HandOverAnswer> HandOver(const QString& workFolder, const Command& command,
                                       const std::function<bool()>& givenUp) {
  const Caller caller;
  if (!caller.Connect(workFolder)) return std::nullopt;
  const QByteArray line = caller.Ask(command.ToJson() + '\n', givenUp);
  if (!line.isEmpty()) return FromLine(line);
  if (givenUp()) return HandOverAnswer{QStringLiteral("已取消。"), 1};
  return HandOverAnswer{QStringLiteral("正在运行的终端没有回答就结束了。"), 1};
}

}  // namespace holdwise
