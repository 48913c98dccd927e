// SPDX-License-Identifier: MIT
#pragma once
#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QRunnable>
#include <QThreadPool>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "holdwise/packet/thread_annotations.h"

#ifdef __SANITIZE_THREAD__
#include <sanitizer/tsan_interface.h>
#endif

namespace holdwise {

/// What a pool's thread is to do. The pool hands it over under a lock of Qt's, which the thread sanitizer cannot see,
/// so it is told.
class PoolWork final : public QRunnable {
 public:
  explicit PoolWork(std::function<void()> work) : work_(std::move(work)) {
#ifdef __SANITIZE_THREAD__
    __tsan_release(this);
#endif
  }
  void run() override {
#ifdef __SANITIZE_THREAD__
    __tsan_acquire(this);
#endif
    work_();
  }

 private:
  std::function<void()> work_;
};

/// Runs `work` on a thread of the pool and `done` with its result on the event loop of the thread that made the object.
/// Destroying the object first means that `done` is never called; the work itself runs on. `work` does not throw;
/// `done` may destroy the object. Not a QFuture: its shared state is given back under a count that no check of threads
/// sees.
template <typename Result>
class BackgroundWork final : public QObject {
 public:
  BackgroundWork(QThreadPool& pool, std::function<Result()> work, std::function<void(Result)> done)
      : shared_(std::make_shared<Shared>()), done_(std::move(done)) {
    shared_->receiver = this;
    // The pool deletes it.
    pool.start(new PoolWork([shared = shared_, work = std::move(work)] {
      Result result = work();
      const MutexLock lock(shared->mutex);
      if (!shared->receiver) return;
      shared->result = std::move(result);
      QCoreApplication::postEvent(shared->receiver, new QEvent(QEvent::User));
    }));
  }
  ~BackgroundWork() override {
    const MutexLock lock(shared_->mutex);
    shared_->receiver = nullptr;
  }
  BackgroundWork(const BackgroundWork&) = delete;
  BackgroundWork& operator=(const BackgroundWork&) = delete;

  bool event(QEvent* event) override {
    if (event->type() != QEvent::User) return QObject::event(event);
    const auto done = std::move(done_);
    done(Take());
    return true;
  }

 private:
  struct Shared {
    Mutex mutex;
    QObject* receiver HOLDWISE_GUARDED_BY(mutex) = nullptr;
    std::optional<Result> result HOLDWISE_GUARDED_BY(mutex);
  };
  [[nodiscard]] Result Take() {
    const MutexLock lock(shared_->mutex);
    return std::move(*shared_->result);
  }

  std::shared_ptr<Shared> shared_;
  std::function<void(Result)> done_;
};

}  // namespace holdwise
