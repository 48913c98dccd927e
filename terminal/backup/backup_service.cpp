// SPDX-License-Identifier: MIT
#include "backup/backup_service.h"

#include <atomic>
#include <cstdlib>
#include <exception>
#include <utility>

namespace holdwise::backup {
namespace {

constexpr std::chrono::milliseconds kLongestAtExit{2'000};

/// The service of the process, for the end by exit(): a window system that goes away ends the process so.
std::atomic<BackupService*> theService{nullptr};

void WriteAtExit() {
  if (BackupService* service = theService.load()) service->WriteNow(kLongestAtExit);
}

}  // namespace

BackupService::BackupService(UserDataServices& database, const BackupFolder& folder, ClockService& clock,
                             DebugServers& log, const Times& times)
    : database_(database), times_(times), writer_(folder, clock, log) {
  static const bool isRegistered = std::atexit(WriteAtExit) == 0;
  (void)isRegistered;
  // A folder without generations is one of before there were any.
  try {
    state_.newest = folder.Newest();
  } catch (const Error& error) {
    state_.problem = QString::fromUtf8(error.what());
  }
  if (!state_.newest) due_ = Clock::now() + times_.untilWritten;
  thread_ = std::thread([this] { Run(); });
  theService.store(this);
}

BackupService::~BackupService() {
  theService.store(nullptr);
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
  }
  wake_.notify_all();
  thread_.join();
}

void BackupService::BeforeChange() {
  {
    const std::lock_guard lock(mutex_);
    if (!byUser_ || Clock::now() - *byUser_ < times_.betweenCaptures) return;
  }
  try {
    PortfolioSet set = Read();
    const std::lock_guard lock(mutex_);
    captured_.push_back(std::move(set));
    byUser_.reset();
  } catch (const std::exception&) {  // the reading that is due soon says so
    return;
  }
  wake_.notify_all();
}

void BackupService::Changed(ChangedBy by) {
  {
    const std::lock_guard lock(mutex_);
    if (!due_) due_ = Clock::now() + times_.untilWritten;
    if (by == ChangedBy::User && !byUser_) byUser_ = Clock::now();
  }
  wake_.notify_all();
}

void BackupService::WriteNow(std::chrono::milliseconds longest) {
  std::unique_lock lock(mutex_);
  const unsigned number = ++asked_;
  wake_.notify_all();
  done_.wait_for(lock, longest, [&] { return served_ >= number; });
}

BackupState BackupService::State() const {
  const std::lock_guard lock(mutex_);
  return state_;
}

PortfolioSet BackupService::Read() {
  const std::unique_ptr<UserDataSession> session = database_.OpenSession();
  return ReadPortfolios(*session);
}

bool BackupService::IsDue() const {
  return isEnding_ || asked_ != served_ || !captured_.empty() || (due_ && Clock::now() >= *due_);
}

void BackupService::WaitUntilDue(std::unique_lock<std::mutex>& lock) {
  while (!IsDue()) {
    if (due_)
      wake_.wait_until(lock, *due_);
    else
      wake_.wait(lock);
  }
}

void BackupService::Run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    WaitUntilDue(lock);
    const bool isLast = isEnding_;
    Round(lock);
    if (isLast) return;
  }
}

/// Writes what was captured and, when that is due, what the database holds now. Holds the lock only between the steps.
void BackupService::Round(std::unique_lock<std::mutex>& lock) {
  const unsigned serving = asked_;
  const bool isRead = due_ && (isEnding_ || serving != served_ || Clock::now() >= *due_);
  std::vector<PortfolioSet> sets = std::exchange(captured_, {});
  if (isRead) {
    due_.reset();
    byUser_.reset();
  }
  lock.unlock();
  bool isDone = true;
  try {
    if (isRead) sets.push_back(Read());
  } catch (const std::exception& error) {
    writer_.CouldNotRead(QString::fromUtf8(error.what()));
    isDone = false;
  }
  for (const PortfolioSet& set : sets) isDone = writer_.Write(set) != BackupWriter::Outcome::Failed && isDone;
  const BackupState state = writer_.State();
  if (OnState && (isRead || !sets.empty())) OnState(state);
  lock.lock();
  if (isRead || !sets.empty()) state_ = state;
  if (!isDone && !due_) due_ = Clock::now() + times_.untilTriedAgain;
  served_ = serving;
  done_.notify_all();
}

}  // namespace holdwise::backup
