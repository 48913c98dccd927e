// SPDX-License-Identifier: MIT
#include "process/hand_over.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <atomic>
#include <cstring>
#include <deque>
#include <future>

#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

constexpr int kLongMilliseconds = 30000;

bool Never() {
  return false;
}

class HandOverTest : public ::testing::Test {
 protected:
  /// Asked from a thread of its own, while this one serves the running terminal's events.
  std::optional<HandOverAnswer> Ask(const Command& command) {
    auto asked = std::async(std::launch::async, [this, command] { return HandOver(folder_.path(), command, Never); });
    Serve([&asked] { return asked.wait_for(std::chrono::seconds(0)) == std::future_status::ready; });
    return asked.get();
  }
  template <typename Until>
  static void Serve(const Until& until) {
    EXPECT_TRUE(QTest::qWaitFor(until, kLongMilliseconds));
  }
  /// A stranger's connection that sends `bytes`.
  int Connect(const QByteArray& bytes) {
    const int stranger = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(folder_.path() + "/terminal.socket");
    std::memcpy(address.sun_path, name.constData(), static_cast<std::size_t>(name.size()) + 1);
    EXPECT_EQ(connect(stranger, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(send(stranger, bytes.constData(), static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL), bytes.size());
    return stranger;
  }

  QTemporaryDir folder_;
};

TEST_F(HandOverTest, NobodyAnswersWhereNoTerminalRuns) {
  EXPECT_FALSE(HandOver(folder_.path(), {}, Never).has_value());
  EXPECT_FALSE(HandOver(folder_.path() + "/none", {}, Never).has_value());
}

TEST_F(HandOverTest, TheCommandArrivesWholeAndTheAnswerComesBack) {
  HandOverServer server(folder_.path());
  Command taken;
  server.OnCommand = [&taken](const Command& command, const HandOverServer::Answer& answer) {
    taken = command;
    answer({"第一行\n第二行", 7});
  };
  const std::optional<HandOverAnswer> answer = Ask({ThemeKind::Light, "投资组合", "p", "/a b.csv", "/out", {}, {}});
  ASSERT_TRUE(answer.has_value());
  EXPECT_EQ(answer->text, "第一行\n第二行");
  EXPECT_EQ(answer->exitCode, 7);
  EXPECT_EQ(taken.theme, ThemeKind::Light);
  EXPECT_EQ(taken.address, "投资组合");
  EXPECT_EQ(taken.importFile, "/a b.csv");
}

TEST_F(HandOverTest, AnAnswerLongerThanTheSocketHoldsComesBackWhole) {
  HandOverServer server(folder_.path());
  const QString text(1'000'000, u'行');
  server.OnCommand = [&text](const Command& /*command*/, const HandOverServer::Answer& answer) { answer({text, 1}); };
  const std::optional<HandOverAnswer> answer = Ask({});
  ASSERT_TRUE(answer.has_value());
  EXPECT_TRUE(answer->text == text);
}

TEST_F(HandOverTest, TwoCommandsAtOnceEachGetTheirOwnAnswerThoughItComesLater) {
  HandOverServer server(folder_.path());
  std::vector<std::pair<Command, HandOverServer::Answer>> taken;
  server.OnCommand = [&taken](const Command& command, HandOverServer::Answer answer) {
    taken.emplace_back(command, std::move(answer));
  };
  const auto ask = [this](const QString& address) {
    return std::async(std::launch::async, [this, address] {
      return HandOver(folder_.path(), Command{{}, address, {}, {}, {}, {}, {}}, Never);
    });
  };
  auto first = ask("a");
  auto second = ask("b");
  Serve([&taken] { return taken.size() == 2; });
  ASSERT_EQ(taken.size(), 2U);
  for (const auto& [command, answer] : taken) answer({command.address, 0});
  EXPECT_EQ(first.get()->text, "a");
  EXPECT_EQ(second.get()->text, "b");
}

TEST_F(HandOverTest, ATerminalThatEndsLeavesTheOtherSideWithAClearText) {
  auto server = std::make_unique<HandOverServer>(folder_.path());
  HandOverServer::Answer late;
  server->OnCommand = [&late](const Command& /*command*/, HandOverServer::Answer answer) { late = std::move(answer); };
  auto asked = std::async(std::launch::async, [this] { return HandOver(folder_.path(), {}, Never); });
  Serve([&late] { return late != nullptr; });
  server.reset();
  const std::optional<HandOverAnswer> answer = asked.get();
  ASSERT_TRUE(answer.has_value());
  EXPECT_EQ(answer->text, "正在运行的终端没有回答就结束了。");
  EXPECT_EQ(answer->exitCode, 1);
  late({"too late", 0});  // must do no harm
  EXPECT_FALSE(QFile::exists(folder_.path() + "/terminal.socket"));
}

TEST_F(HandOverTest, WaitingIsGivenUpWhenAsked) {
  const HandOverServer server(folder_.path());  // its events are never served
  std::atomic<int> asked = 0;
  const std::optional<HandOverAnswer> answer = HandOver(folder_.path(), {}, [&asked] { return ++asked > 2; });
  ASSERT_TRUE(answer.has_value());
  EXPECT_EQ(answer->text, "已取消。");
}

TEST_F(HandOverTest, WhatIsNoCommandIsRefusedAndTheNextOneIsServed) {
  HandOverServer server(folder_.path());
  server.OnCommand = [](const Command& /*command*/, const HandOverServer::Answer& answer) { answer({"good", 0}); };
  const int silent = Connect("");
  const int endless = Connect(QByteArray(1 << 16, 'x'));
  send(endless, "x", 1, MSG_NOSIGNAL);
  const int gone = Connect("{\"half");
  close(gone);
  const int stranger = Connect("no command\n");
  QByteArray heard(1 << 12, '\0');
  Serve([stranger, &heard] {
    return recv(stranger, heard.data(), static_cast<std::size_t>(heard.size()), MSG_DONTWAIT | MSG_PEEK) > 0;
  });
  EXPECT_TRUE(heard.contains("命令无法识别"));
  // The one that never ended its line has been shut out.
  Serve([endless, &heard] {
    const ssize_t count = recv(endless, heard.data(), static_cast<std::size_t>(heard.size()), MSG_DONTWAIT);
    return count == 0 || (count < 0 && errno == ECONNRESET);
  });
  EXPECT_EQ(Ask({})->text, "good");
  for (const int socket : {silent, endless, stranger}) close(socket);
}

TEST_F(HandOverTest, AKeyOrValueThatIsNotKnownIsRefused) {
  HandOverServer server(folder_.path());
  int taken = 0;
  server.OnCommand = [&taken](const Command& /*command*/, const HandOverServer::Answer& answer) {
    ++taken;
    answer({"good", 0});
  };
  for (const char* line : {R"({"address":"a","delete":"all"})", R"({"theme":"blue"})", R"({"address":7})"}) {
    const int stranger = Connect(QByteArray(line) + '\n');
    QByteArray heard(1 << 12, '\0');
    Serve([stranger, &heard] {
      return recv(stranger, heard.data(), static_cast<std::size_t>(heard.size()), MSG_DONTWAIT | MSG_PEEK) > 0;
    });
    EXPECT_TRUE(heard.contains("命令无法识别")) << line;
    close(stranger);
  }
  EXPECT_EQ(taken, 0);
}

/// The descriptors this process has open.
qsizetype OpenDescriptors() {
  return QDir("/proc/self/fd").entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size();
}

TEST_F(HandOverTest, AThousandThatHoldOnToTheLineChangeNothing) {
  HandOverServer server(folder_.path());
  server.OnCommand = [](const Command& /*command*/, const HandOverServer::Answer& answer) { answer({"good", 0}); };
  std::deque<int> strangers;
  const qsizetype before = OpenDescriptors();
  for (int number = 0; number < 1000; ++number) {
    strangers.push_back(Connect("{\"half"));
    QCoreApplication::processEvents();
    if (strangers.size() > 100) {  // the test's own ends, which it may have only so many of
      close(strangers.front());
      strangers.pop_front();
    }
  }
  EXPECT_EQ(Ask({})->text, "good");
  EXPECT_LE(OpenDescriptors() - before - static_cast<qsizetype>(strangers.size()), 40);
  for (const int stranger : strangers) close(stranger);
}

TEST_F(HandOverTest, AConnectionWithoutACommandEndsAfterFiveSeconds) {
  HandOverServer server(folder_.path());
  const int silent = Connect("{\"half");
  QElapsedTimer timer;
  timer.start();
  char byte = 0;
  Serve([silent, &byte] { return recv(silent, &byte, 1, MSG_DONTWAIT) == 0; });
  EXPECT_GE(timer.elapsed(), 4000);
  EXPECT_LE(timer.elapsed(), 8000);
  close(silent);
}

TEST_F(HandOverTest, ACommandWhoseSenderHasGoneIsNotCarriedOut) {
  HandOverServer server(folder_.path());
  bool isTaken = false;
  server.OnCommand = [&isTaken](const Command& /*command*/, const HandOverServer::Answer& answer) {
    isTaken = true;
    answer({"done", 0});
  };
  close(Connect(Command{{}, "a", {}, {}, {}, {}, {}}.ToJson() + '\n'));
  QTest::qWait(300);
  EXPECT_FALSE(isTaken);
}

TEST_F(HandOverTest, WhatADeadTerminalLeftBehindIsReplaced) {
  QFile left(folder_.path() + "/terminal.socket");
  ASSERT_TRUE(left.open(QIODevice::WriteOnly));
  left.close();
  HandOverServer server(folder_.path());
  server.OnCommand = [](const Command& /*command*/, const HandOverServer::Answer& answer) { answer({"new", 0}); };
  EXPECT_EQ(Ask({})->text, "new");
}

TEST_F(HandOverTest, AFolderWithALongNameHasASocketToo) {
  QString folder = folder_.path();
  for (int part = 0; part < 3; ++part) folder += '/' + QString(60, u'名').left(60);
  ASSERT_TRUE(QDir().mkpath(folder));
  HandOverServer server(folder);
  server.OnCommand = [](const Command& /*command*/, const HandOverServer::Answer& answer) { answer({"long", 0}); };
  auto asked = std::async(std::launch::async, [&folder] { return HandOver(folder, {}, Never); });
  Serve([&asked] { return asked.wait_for(std::chrono::seconds(0)) == std::future_status::ready; });
  EXPECT_EQ(asked.get()->text, "long");
}

TEST_F(HandOverTest, AFolderThatIsNotThereIsAClearError) {
  try {
    const HandOverServer server(folder_.path() + "/none");
    FAIL() << "no error";
  } catch (const Error& error) {
    EXPECT_EQ(error.Category(), ErrorCategory::Io);
    EXPECT_NE(std::string(error.what()).find("通信端点"), std::string::npos);
  }
}

}  // namespace
}  // namespace holdwise
