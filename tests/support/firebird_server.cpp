// SPDX-License-Identifier: MIT
#include "firebird_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <stdexcept>

namespace holdwise::test {

namespace {

constexpr int kStartTimeoutMs = 30'000;
constexpr int kPauseMs = 20;
const QString kPassword = QStringLiteral("portfolio");

sockaddr_in LocalAddress(quint16 port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

quint16 FreePort() {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = LocalAddress(0);
  socklen_t size = sizeof address;
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  const bool isBound = ::bind(socket, generic, size) == 0 && ::getsockname(socket, generic, &size) == 0;
  ::close(socket);
  if (!isBound) throw std::runtime_error("no free port");
  return ntohs(address.sin_port);
}

bool Answers(quint16 port) {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = LocalAddress(port);
  const bool isConnected = ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  ::close(socket);
  return isConnected;
}

void Write(const QString& path, const QString& text) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0) throw std::runtime_error("cannot write");
}

QProcessEnvironment EnvironmentOf(const QString& root, const QString& locks) {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("FIREBIRD"), root);
  environment.insert(QStringLiteral("FIREBIRD_LOCK"), locks);
  return environment;
}

}  // namespace

QString FirebirdServer::Program() {
  const QString inBuild =
      QCoreApplication::applicationDirPath() + QStringLiteral("/../firebird-server/usr/sbin/firebird");
  for (const QString& program :
       {qEnvironmentVariable("HOLDWISE_FIREBIRD_SERVER"), inBuild, QStringLiteral("/usr/sbin/firebird")}) {
    if (QFileInfo(program).isExecutable() && QFileInfo(program).isFile()) return program;
  }
  return {};
}

FirebirdServer::FirebirdServer() : port_(FreePort()) {
  for (const char* name : {"root", "locks", "data"}) QDir(folder_.path()).mkpath(QString::fromLatin1(name));
  WriteConfiguration();
  MakeUser();
  Start();
}

FirebirdServer::~FirebirdServer() {
  Kill();
}

void FirebirdServer::WriteConfiguration() const {
  Write(Path(QStringLiteral("root/firebird.conf")),
        QStringLiteral("RemoteServicePort = %1\nRemoteBindAddress = 127.0.0.1\nSecurityDatabase = %2\n"
                       "AuthServer = Srp\nAuthClient = Srp\nUserManager = Srp\nWireCrypt = Enabled\n"
                       "ServerMode = Super\nIpcName = holdwise_test_%1\nDatabaseAccess = Full\n")
            .arg(port_)
            .arg(Path(QStringLiteral("root/security3.fdb"))));
  Write(Path(QStringLiteral("root/databases.conf")), {});
  Write(Path(QStringLiteral("root/plugins.conf")), {});
}

// The library reads its configuration once a process, so another one makes the user.
void FirebirdServer::MakeUser() const {
  QProcess child;
  child.setProcessChannelMode(QProcess::ForwardedChannels);
  child.setProcessEnvironment(EnvironmentOf(Path(QStringLiteral("root")), Path(QStringLiteral("locks"))));
  child.start(QCoreApplication::applicationDirPath() + QStringLiteral("/holdwise-database-child"),
              {QStringLiteral("user"), Path(QStringLiteral("root/security3.fdb")), kPassword});
  if (!child.waitForFinished(kStartTimeoutMs) || child.exitCode() != 0) throw std::runtime_error("no user was made");
}

void FirebirdServer::Start() {
  process_.setProcessChannelMode(QProcess::ForwardedChannels);
  process_.setProcessEnvironment(EnvironmentOf(Path(QStringLiteral("root")), Path(QStringLiteral("locks"))));
  // A test that crashes leaves no server behind.
  process_.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
  process_.start(Program(), {});
  QElapsedTimer timer;
  timer.start();
  while (!Answers(port_)) {
    if (process_.waitForFinished(kPauseMs) || timer.hasExpired(kStartTimeoutMs)) {
      throw std::runtime_error("the server does not start");
    }
  }
}

void FirebirdServer::Kill() {
  process_.kill();
  process_.waitForFinished(kStartTimeoutMs);
}

DatabaseTarget FirebirdServer::Target(const QString& name) const {
  return {QStringLiteral("127.0.0.1/%1:%2").arg(port_).arg(Path(QStringLiteral("data/") + name)),
          QStringLiteral("SYSDBA"), kPassword};
}

}  // namespace holdwise::test
