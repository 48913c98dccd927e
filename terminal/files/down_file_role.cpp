// SPDX-License-Identifier: MIT
#include "files/down_file_role.h"

#include <QDir>
#include <QThreadPool>
#include <utility>

#include "background.h"
#include "work_file.h"

namespace holdwise {

/// One request after the other: fetch, store, event.
class DownFileRole::Worker final : public QObject {
 public:
  Worker(DownFileRole& role, FileSource& source, const QString& workFolder, DownFileHints hints)
      : role_(role), source_(source), workFolder_(workFolder), hints_(std::move(hints)) {
    timeOut_.setSingleShot(true);
    timeOut_.setTimerType(Qt::PreciseTimer);
    connect(&timeOut_, &QTimer::timeout, this, [this] { Finish(kTimedOut, {}); });
    waitHint_.setSingleShot(true);
    connect(&waitHint_, &QTimer::timeout, this, [this] { ShowWaiting(true); });
  }
  ~Worker() override { ShowWaiting(false); }

  void Configure(const Settings& settings) { settings_ = settings; }

  void Enqueue(const QString& remoteName) {
    queue_.push_back(remoteName);
    if (!busy_) Schedule();
  }

  [[nodiscard]] QString LocalPath(const QString& remoteName) const {
    const QString path = MapRemoteName(remoteName);
    return path.isEmpty() ? QString() : QDir(workFolder_).filePath(path);
  }

 private:
  void Schedule() {
    busy_ = true;
    QMetaObject::invokeMethod(this, &Worker::StartNext, Qt::QueuedConnection);
  }

  void StartNext() {
    remoteName_ = queue_.front();
    queue_.pop_front();
    path_ = MapRemoteName(remoteName_);
    isStream_ = settings_.isStream;
    if (path_.isEmpty()) {
      Finish(kRefused, {});
      return;
    }
    timeOut_.start(std::max(0, settings_.downWaitTimeOut));
    if (settings_.downWaitTips) waitHint_.start(std::max(0, settings_.downWaitStartTime));
    fetch_ = source_.Start(path_, settings_.isCompress, [this](const FetchResult& result) { Fetched(result); });
  }

  void Fetched(const FetchResult& result) {
    if (result.code != kOk || isStream_) {
      Finish(result.code, result.content);
      return;
    }
    timeOut_.stop();  // the transfer is done; what remains is the local disk
    store_ = std::make_unique<BackgroundWork<int>>(
        *QThreadPool::globalInstance(),
        [folder = workFolder_, path = path_, content = result.content] { return StoreWorkFile(folder, path, content); },
        [this](int code) { Finish(code, {}); });
  }

  void Finish(int code, const QByteArray& content) {
    timeOut_.stop();
    waitHint_.stop();
    ShowWaiting(false);
    fetch_.reset();
    store_.reset();
    const QString name = remoteName_;  // the events may destroy the role
    const QPointer<Worker> alive(this);
    if (code != kOk && settings_.downFailTips && hints_.onFailed) hints_.onFailed(name, code);
    if (alive && code != kOk && hints_.onAnyFailure) hints_.onAnyFailure(name, code);
    if (alive) Report(name, code, content);
    if (!alive) return;
    busy_ = false;
    if (!queue_.empty()) Schedule();
  }

  void Report(const QString& name, int code, const QByteArray& content) const {
    if (code != kOk) {
      if (const auto event = role_.OnReciveAFileFail) event(name, code);
    } else if (isStream_) {
      if (const auto event = role_.OnReciveStearm) event(name, code, content);
    } else {
      if (const auto event = role_.OnReciveAFile) event(name, code);
    }
  }

  void ShowWaiting(bool waiting) {
    if (waiting == showsWaiting_) return;
    showsWaiting_ = waiting;
    if (hints_.onWaiting) hints_.onWaiting(remoteName_, waiting);
  }

  DownFileRole& role_;
  FileSource& source_;
  QString workFolder_;
  DownFileHints hints_;
  Settings settings_;
  std::deque<QString> queue_;
  bool busy_ = false;
  QString remoteName_;  // of the request under way, as path_ and isStream_
  QString path_;
  bool isStream_ = false;
  bool showsWaiting_ = false;
  std::unique_ptr<Fetch> fetch_;
  std::unique_ptr<BackgroundWork<int>> store_;
  QTimer timeOut_;
  QTimer waitHint_;
};

DownFileRole::DownFileRole(FileSource& source, const QString& workFolder, DownFileHints hints)
    : worker_(std::make_unique<Worker>(*this, source, workFolder, std::move(hints))) {}
DownFileRole::~DownFileRole() = default;
void DownFileRole::Configure(const Settings& settings) {
  worker_->Configure(settings);
}
void DownFileRole::Request(const QString& remoteName) {
  worker_->Enqueue(remoteName);
}
QString DownFileRole::LocalPath(const QString& remoteName) const {
  return worker_->LocalPath(remoteName);
}

}  // namespace holdwise
