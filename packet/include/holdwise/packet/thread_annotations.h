// SPDX-License-Identifier: MIT
#pragma once
#include <condition_variable>
#include <mutex>
#include <shared_mutex>

/// Words that say which lock guards what, for Clang's thread-safety analysis (preset "clang"); other compilers read
/// past them. A member is HOLDWISE_GUARDED_BY its lock, a function HOLDWISE_REQUIRES the lock that its caller holds.
#if defined(__clang__)
#define HOLDWISE_THREAD_ATTRIBUTE(attribute) __attribute__((attribute))
#else
#define HOLDWISE_THREAD_ATTRIBUTE(attribute)
#endif
#define HOLDWISE_CAPABILITY(name) HOLDWISE_THREAD_ATTRIBUTE(capability(name))
#define HOLDWISE_SCOPED_CAPABILITY HOLDWISE_THREAD_ATTRIBUTE(scoped_lockable)
/// Read and written with the lock held only; for a shared lock, read with it held in either way.
#define HOLDWISE_GUARDED_BY(lock) HOLDWISE_THREAD_ATTRIBUTE(guarded_by(lock))
#define HOLDWISE_REQUIRES(...) HOLDWISE_THREAD_ATTRIBUTE(requires_capability(__VA_ARGS__))
#define HOLDWISE_REQUIRES_SHARED(...) HOLDWISE_THREAD_ATTRIBUTE(requires_shared_capability(__VA_ARGS__))
/// The function takes the lock itself: the caller must not hold it.
#define HOLDWISE_EXCLUDES(...) HOLDWISE_THREAD_ATTRIBUTE(locks_excluded(__VA_ARGS__))
#define HOLDWISE_ACQUIRE(...) HOLDWISE_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define HOLDWISE_ACQUIRE_SHARED(...) HOLDWISE_THREAD_ATTRIBUTE(acquire_shared_capability(__VA_ARGS__))
#define HOLDWISE_RELEASE(...) HOLDWISE_THREAD_ATTRIBUTE(release_capability(__VA_ARGS__))
#define HOLDWISE_RELEASE_SHARED(...) HOLDWISE_THREAD_ATTRIBUTE(release_shared_capability(__VA_ARGS__))
#define HOLDWISE_RELEASE_EITHER(...) HOLDWISE_THREAD_ATTRIBUTE(release_generic_capability(__VA_ARGS__))

namespace holdwise {

/// std::mutex as the analysis knows it: one holder at a time; a thread must not take it twice. Held by MutexLock.
class HOLDWISE_CAPABILITY("mutex") Mutex {
 public:
  /// Waits until nobody else holds it.
  void Lock() HOLDWISE_ACQUIRE() { mutex_.lock(); }
  /// Only by the thread that holds it.
  void Unlock() HOLDWISE_RELEASE() { mutex_.unlock(); }

 private:
  friend class Signal;
  std::mutex mutex_;
};

/// Holds a mutex, which must outlive it, for its own life.
class HOLDWISE_SCOPED_CAPABILITY MutexLock {
 public:
  explicit MutexLock(Mutex& mutex) HOLDWISE_ACQUIRE(mutex) : mutex_(mutex) { mutex_.Lock(); }
  ~MutexLock() HOLDWISE_RELEASE() { mutex_.Unlock(); }
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

 private:
  Mutex& mutex_;
};

/// A wake-up for threads that wait with a Mutex given back meanwhile; one may wake for nothing.
class Signal {
 public:
  void Wait(Mutex& mutex) HOLDWISE_REQUIRES(mutex) {
    std::unique_lock lock(mutex.mutex_, std::adopt_lock);
    condition_.wait(lock);
    lock.release();
  }
  /// False when the time came first.
  template <typename Time>
  bool WaitUntil(Mutex& mutex, const Time& time) HOLDWISE_REQUIRES(mutex) {
    std::unique_lock lock(mutex.mutex_, std::adopt_lock);
    const bool isInTime = condition_.wait_until(lock, time) == std::cv_status::no_timeout;
    lock.release();
    return isInTime;
  }
  void TellAll() { condition_.notify_all(); }

 private:
  std::condition_variable condition_;
};

/// std::shared_mutex as the analysis knows it: one writer or several readers. Held by WriteLock and ReadLock.
class HOLDWISE_CAPABILITY("shared mutex") SharedMutex {
 public:
  /// Waits until nobody else holds it.
  void Lock() HOLDWISE_ACQUIRE() { mutex_.lock(); }
  void Unlock() HOLDWISE_RELEASE() { mutex_.unlock(); }
  /// Waits until nobody holds it for writing.
  void LockShared() HOLDWISE_ACQUIRE_SHARED() { mutex_.lock_shared(); }
  void UnlockShared() HOLDWISE_RELEASE_SHARED() { mutex_.unlock_shared(); }

 private:
  std::shared_mutex mutex_;
};

/// Holds a shared mutex, which must outlive it, for writing.
class HOLDWISE_SCOPED_CAPABILITY WriteLock {
 public:
  explicit WriteLock(SharedMutex& mutex) HOLDWISE_ACQUIRE(mutex) : mutex_(mutex) { mutex_.Lock(); }
  ~WriteLock() HOLDWISE_RELEASE() { mutex_.Unlock(); }
  WriteLock(const WriteLock&) = delete;
  WriteLock& operator=(const WriteLock&) = delete;

 private:
  SharedMutex& mutex_;
};

/// Holds a shared mutex, which must outlive it, for reading.
class HOLDWISE_SCOPED_CAPABILITY ReadLock {
 public:
  explicit ReadLock(SharedMutex& mutex) HOLDWISE_ACQUIRE_SHARED(mutex) : mutex_(mutex) { mutex_.LockShared(); }
  ~ReadLock() HOLDWISE_RELEASE_EITHER() { mutex_.UnlockShared(); }
  ReadLock(const ReadLock&) = delete;
  ReadLock& operator=(const ReadLock&) = delete;

 private:
  SharedMutex& mutex_;
};

}  // namespace holdwise
