#pragma once
#include <QFutureWatcher>
#include <QPromise>
#include <QRunnable>
#include <QThreadPool>
#include <functional>
#include <memory>
#include <utility>

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

/// Runs `work` on a thread of the pool and `done` with its result on the calling thread's event loop. Destroying the
/// returned watcher first means that `done` is never called; the work itself runs on. `work` does not throw.
template <typename Result>
[[nodiscard]] std::unique_ptr<QFutureWatcher<Result>> RunInBackground(QThreadPool& pool, std::function<Result()> work,
                                                                      std::function<void(Result)> done) {
  auto promise = std::make_shared<QPromise<Result>>();
  auto watcher = std::make_unique<QFutureWatcher<Result>>();
  QObject::connect(watcher.get(), &QFutureWatcherBase::finished, watcher.get(),
                   [raw = watcher.get(), done = std::move(done)] {
                     // `done` may destroy the watcher and with it this closure.
                     const auto call = done;
                     call(raw->result());
                   });
  watcher->setFuture(promise->future());
  promise->start();
  // The pool deletes it.
  pool.start(new PoolWork([promise, work = std::move(work)] {
    promise->addResult(work());
    promise->finish();
  }));
  return watcher;
}

}  // namespace holdwise
