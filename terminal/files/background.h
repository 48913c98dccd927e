#pragma once
#include <QFutureWatcher>
#include <QPromise>
#include <QThreadPool>
#include <functional>
#include <memory>
#include <utility>

namespace holdwise {

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
  pool.start([promise, work = std::move(work)] {
    promise->addResult(work());
    promise->finish();
  });
  return watcher;
}

}  // namespace holdwise
