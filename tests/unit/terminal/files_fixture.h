// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "files/down_file_role.h"
#include "files/local_folder_source.h"

namespace holdwise {

using Role = TDSBAsynDownFileRole;

inline void WriteFile(const QString& path, const QByteArray& bytes) {
  QDir().mkpath(QFileInfo(path).path());
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  ASSERT_EQ(file.write(bytes), bytes.size());
}

inline QByteArray Bytes(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

inline int ModeOf(const QString& path) {
  struct stat status {};
  return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? static_cast<int>(status.st_mode & 0777) : -1;
}

/// Answers when told to, or after a delay.
class ScriptedSource final : public FileSource {
 public:
  struct Call {
    QString path;
    bool mayCompress = false;
  };
  [[nodiscard]] std::unique_ptr<Fetch> Start(const QString& path, bool mayCompress,
                                             std::function<void(FetchResult)> done) override {
    calls.push_back({path, mayCompress});
    auto fetch = std::make_unique<DelayedFetch>();
    DelayedFetch* raw = fetch.get();
    raw->open = &openFetches;
    ++openFetches;
    if (delay >= 0) {
      QTimer::singleShot(delay, raw, [answer = answer, done = std::move(done)] {
        const auto call = done;
        call(answer);
      });
    }
    return fetch;
  }
  int delay = 0;  ///< ms; below 0: never
  FetchResult answer{Role::kOk, "content"};
  std::vector<Call> calls;
  int openFetches = 0;

 private:
  class DelayedFetch final : public QObject, public Fetch {
   public:
    ~DelayedFetch() override { --*open; }
    int* open = nullptr;
  };
};

/// A role that writes down its events.
class FilesTest : public testing::Test {
 protected:
  void Make(FileSource& source, const Role::Settings& settings = {}) {
    DownFileHints hints;
    hints.onWaiting = [this](const QString& name, bool waiting) {
      hints_ += QStringLiteral("%1 %2").arg(waiting ? QStringLiteral("wait") : QStringLiteral("end"), name);
    };
    hints.onFailed = [this](const QString& name, int code) {
      hints_ += QStringLiteral("fail %1 %2").arg(name).arg(code);
    };
    hints.onAnyFailure = [this](const QString& name, int code) {
      if (code == Role::kUnwritable) hints_ += QStringLiteral("unwritable %1").arg(name);
    };
    role_ = std::make_unique<DownFileRole>(source, work_.path(), hints);
    role_->Configure(settings);
    role_->OnReciveAFile = [this](const QString& name, int code) {
      events_ += QStringLiteral("file %1 %2").arg(name).arg(code);
    };
    role_->OnReciveStearm = [this](const QString& name, int code, const QByteArray& content) {
      events_ += QStringLiteral("stream %1 %2 %3").arg(name).arg(code).arg(QString::fromUtf8(content));
    };
    role_->OnReciveAFileFail = [this](const QString& name, int code) {
      events_ += QStringLiteral("failed %1 %2").arg(name).arg(code);
    };
  }
  bool Events(int count) {
    return QTest::qWaitFor([&] { return events_.size() >= count; }, 30000);
  }
  /// The single event of one request.
  QString Event(const QString& remoteName) {
    events_.clear();
    role_->Request(remoteName);
    EXPECT_TRUE(events_.isEmpty());  // never inside Request
    EXPECT_TRUE(Events(1));
    QTest::qWait(20);
    EXPECT_EQ(events_.size(), 1);
    return events_.value(0);
  }
  [[nodiscard]] QString Work(const QString& path) const { return work_.filePath(path); }
  [[nodiscard]] QString Remote(const QString& path) const { return remote_.filePath(path); }

  QTemporaryDir work_;
  QTemporaryDir remote_;
  QStringList events_;
  QStringList hints_;
  std::unique_ptr<DownFileRole> role_;
};

}  // namespace holdwise
