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
                             DebugServers& log, const Times& times, OnState onState)
    : database_(database), times_(times), folder_(folder), onState_(std::move(onState)), writer_(folder, clock, log) {
  static const bool isRegistered = std::atexit(WriteAtExit) == 0;
  (void)isRegistered;
  thread_ = std::thread([this] { Run(); });
  theService.store(this);
}

BackupService::~BackupService() {
  theService.store(nullptr);
  {
    const MutexLock lock(mutex_);
    isEnding_ = true;
  }
  wake_.TellAll();
  thread_.join();
}

void BackupService::BeforeChange() {
  {
    const MutexLock lock(mutex_);
    if (!byUser_ || Clock::now() - *byUser_ < times_.betweenCaptures) return;
  }
  try {
    PortfolioSet set = Read();
    const MutexLock lock(mutex_);
    captured_.push_back(std::move(set));
    byUser_.reset();
  } catch (const std::exception&) {  // the reading that is due soon says so
    return;
  }
  wake_.TellAll();
}

void BackupService::Changed(ChangedBy by) {
  {
    const MutexLock lock(mutex_);
    if (by == ChangedBy::User && !byUser_) byUser_ = Clock::now();
    if (due_) return;  // the thread waits for that already
    due_ = Clock::now() + times_.untilWritten;
  }
  wake_.TellAll();
}

bool BackupService::WriteNow(std::chrono::milliseconds longest) {
  const auto latest = Clock::now() + longest;
  const MutexLock lock(mutex_);
  const unsigned number = ++asked_;
  wake_.TellAll();
  while (served_ < number && done_.WaitUntil(mutex_, latest)) {
  }
  return served_ >= number;
}

BackupState BackupService::State() const {
  const MutexLock lock(mutex_);
  return state_;
}

PortfolioSet BackupService::Read() {
  const std::unique_ptr<UserDataSession> session = database_.OpenSession();
  return ReadPortfolios(*session);
}

/// A folder without generations is one of before there were any.
void BackupService::LookAtFolder() {
  BackupState found;
  try {
    found.newest = folder_.Newest();
  } catch (const Error& error) {
    found.problem = QString::fromUtf8(error.what());
  }
  const MutexLock lock(mutex_);
  if (!found.newest && !due_) due_ = Clock::now() + times_.untilWritten;
  state_ = std::move(found);
}

bool BackupService::IsDue() const {
  return isEnding_ || asked_ != served_ || !captured_.empty() || (due_ && Clock::now() >= *due_);
}

BackupService::Task BackupService::WaitForTask() {
  const MutexLock lock(mutex_);
  while (!IsDue()) {
    if (due_)
      wake_.WaitUntil(mutex_, *due_);
    else
      wake_.Wait(mutex_);
  }
  Task task{std::exchange(captured_, {}), false, asked_, isEnding_};
  task.isRead = due_ && (isEnding_ || asked_ != served_ || Clock::now() >= *due_);
  if (task.isRead) {
    due_.reset();
    byUser_.reset();
  }
  return task;
}

bool BackupService::Carry(Task& task) {
  bool isDone = true;
  try {
    if (task.isRead) task.sets.push_back(Read());
  } catch (const std::exception& error) {
    writer_.CouldNotRead(QString::fromUtf8(error.what()));
    isDone = false;
  }
  for (const PortfolioSet& set : task.sets) isDone = writer_.Write(set) != BackupWriter::Outcome::Failed && isDone;
  return isDone;
}

void BackupService::Finish(const Task& task, bool isDone) {
  const bool isTold = task.isRead || !task.sets.empty();
  if (onState_ && isTold) onState_(writer_.State());
  const MutexLock lock(mutex_);
  if (isTold) state_ = writer_.State();
  if (!isDone && !due_) due_ = Clock::now() + times_.untilTriedAgain;
  served_ = task.serving;
  done_.TellAll();
}

void BackupService::Run() {
  LookAtFolder();
  for (bool isLast = false; !isLast;) {
    Task task = WaitForTask();
    isLast = task.isLast;
    const bool isDone = Carry(task);
    Finish(task, isDone);
  }
}

}  // namespace holdwise::backup
