#include "app/hand_over.h"

#include <fcntl.h>
#include <unistd.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

constexpr qint64 kLongestCommand = 1 << 16;
constexpr int kAskMilliseconds = 100;

QByteArray ToLine(const HandOverAnswer& answer) {
  return QJsonDocument(QJsonObject{{QStringLiteral("text"), answer.text}, {QStringLiteral("exit"), answer.exitCode}})
             .toJson(QJsonDocument::Compact) +
         '\n';
}

HandOverAnswer FromLine(const QByteArray& line) {
  const QJsonObject object = QJsonDocument::fromJson(line).object();
  return {object.value(QStringLiteral("text")).toString(), object.value(QStringLiteral("exit")).toInt(1)};
}

}  // namespace

HandOverAddress::HandOverAddress(const QString& workFolder)
    : folder_(open(QFile::encodeName(workFolder).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC)),
      // A socket's name is limited to 107 bytes; the way through the descriptor is always short.
      name_(QStringLiteral("/proc/self/fd/%1/terminal.socket").arg(folder_)) {}

HandOverAddress::~HandOverAddress() {
  if (folder_ >= 0) close(folder_);
}

HandOverServer::HandOverServer(const QString& workFolder) : address_(workFolder) {
  QFile::remove(address_.Name());
  if (!server_.listen(address_.Name())) {
    const QString text = QStringLiteral("工作目录“%1”中不能建立通信端点：%2").arg(workFolder, server_.errorString());
    throw Error(ErrorCategory::Io, text.toStdString());
  }
  QObject::connect(&server_, &QLocalServer::newConnection, &server_, [this] {
    while (QLocalSocket* socket = server_.nextPendingConnection()) Take(socket);
  });
}

void HandOverServer::Take(QLocalSocket* socket) {
  QObject::connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
  QObject::connect(socket, &QLocalSocket::readyRead, socket, [this, socket] {
    if (!socket->canReadLine()) {
      if (socket->bytesAvailable() > kLongestCommand) socket->abort();
      return;
    }
    const std::optional<Command> command = Command::FromJson(socket->readLine());
    QObject::disconnect(socket, &QLocalSocket::readyRead, socket, nullptr);
    const Answer answer = [guarded = QPointer<QLocalSocket>(socket)](const HandOverAnswer& given) {
      if (guarded.isNull()) return;
      guarded->write(ToLine(given));
      guarded->disconnectFromServer();
    };
    if (!command || !OnCommand)
      answer({QStringLiteral("命令无法识别。"), 1});
    else
      OnCommand(*command, answer);
  });
}

std::optional<HandOverAnswer> HandOver(const QString& workFolder, const Command& command,
                                       const std::function<bool()>& givenUp) {
  const HandOverAddress address(workFolder);
  QLocalSocket socket;
  socket.connectToServer(address.Name());
  if (!socket.waitForConnected(kAskMilliseconds)) return std::nullopt;
  socket.write(command.ToJson() + '\n');
  while (!socket.canReadLine()) {
    if (givenUp()) return HandOverAnswer{QStringLiteral("已取消。"), 1};
    socket.waitForReadyRead(kAskMilliseconds);
    if (socket.state() != QLocalSocket::ConnectedState && !socket.canReadLine())
      return HandOverAnswer{QStringLiteral("正在运行的终端没有回答就结束了。"), 1};
  }
  return FromLine(socket.readLine());
}

}  // namespace holdwise
