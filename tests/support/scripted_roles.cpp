// SPDX-License-Identifier: MIT
#include "scripted_roles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <stdexcept>
#include <thread>

#include "holdwise/packet/error.h"

namespace holdwise {

QString ScriptedDataDown::ComponentName() const {
  const std::lock_guard guard(lock_);
  return componentName_;
}

TDRequestProfile ScriptedDataDown::Profile() const {
  const std::lock_guard guard(lock_);
  return profile_;
}

std::vector<QString> ScriptedDataDown::Commands() const {
  const std::lock_guard guard(lock_);
  return commands_;
}

std::vector<TDMessage> ScriptedDataDown::Requests() const {
  const std::lock_guard guard(lock_);
  return requests_;
}

bool ScriptedDataDown::IsAlive() const {
  const std::lock_guard guard(lock_);
  return role_ != nullptr;
}

bool ScriptedDataDown::Deliver(const TDReply& reply) {
  const std::lock_guard guard(lock_);
  if (isSending_) throw std::logic_error("a reply inside Send");
  if (role_ == nullptr) return false;
  // A copy, because the event may free the role.
  const auto onEndOfData = role_->OnEndOfData;
  if (onEndOfData) onEndOfData(reply);
  return true;
}

bool ScriptedDataDown::DeliverOnOtherThread(const TDReply& reply) {
  bool delivered = false;
  std::thread bus([&] { delivered = Deliver(reply); });
  bus.join();
  return delivered;
}

ScriptedDataDownRole::ScriptedDataDownRole(std::shared_ptr<ScriptedDataDown> script) : script_(std::move(script)) {
  const std::lock_guard guard(script_->lock_);
  script_->role_ = this;
}

ScriptedDataDownRole::~ScriptedDataDownRole() {
  const std::lock_guard guard(script_->lock_);
  script_->role_ = nullptr;
}

void ScriptedDataDownRole::SetComponentName(const QString& name) {
  const std::lock_guard guard(script_->lock_);
  script_->componentName_ = name;
}

void ScriptedDataDownRole::SetProfile(const TDRequestProfile& profile) {
  const std::lock_guard guard(script_->lock_);
  script_->profile_ = profile;
}

void ScriptedDataDownRole::Send(const QString& command) {
  const std::lock_guard guard(script_->lock_);
  TDMessage request;
  request.profile = script_->profile_;
  script_->isSending_ = true;
  try {
    if (OnParameter) OnParameter(command, request);
  } catch (...) {
    script_->isSending_ = false;
    throw;
  }
  script_->isSending_ = false;
  script_->commands_.push_back(command);
  script_->requests_.push_back(std::move(request));
}

TDReply PriceReply(const std::vector<std::pair<QString, Decimal>>& prices) {
  auto list = std::make_shared<std::vector<TDFieldSet>>();
  for (const auto& [code, price] : prices) {
    TDFieldSet entry;
    entry.Set("CodeNum", code);
    entry.Set("Price", price);
    list->push_back(std::move(entry));
  }
  TDReply reply = ErrorReply(0);
  reply.message.fields.Set("CURRENT_PRICET_LIST", TDSequence(std::move(list)));
  return reply;
}

TDReply ErrorReply(std::uint32_t errorCode) {
  TDReply reply;
  reply.message.fields.Set("ErrCode", errorCode);
  return reply;
}

TDReply TimedOutReply() {
  TDReply reply;
  reply.timedOut = true;
  return reply;
}

bool ScriptedDownFile::TakePending(const QString& remoteName) {
  if (isRequesting_) throw std::logic_error("an event inside Request");
  if (role_ == nullptr) return false;
  const auto found = std::find(pending_.begin(), pending_.end(), remoteName);
  if (found == pending_.end()) throw std::logic_error("no pending request of " + remoteName.toStdString());
  pending_.erase(found);
  return true;
}

bool ScriptedDownFile::ReceiveFile(const QString& remoteName, int errorCode) {
  if (!TakePending(remoteName)) return false;
  const auto event = role_->OnReciveAFile;
  if (event) event(remoteName, errorCode);
  return true;
}

bool ScriptedDownFile::ReceiveStream(const QString& remoteName, const QByteArray& content, int errorCode) {
  if (!TakePending(remoteName)) return false;
  const auto event = role_->OnReciveStearm;
  if (event) event(remoteName, errorCode, content);
  return true;
}

bool ScriptedDownFile::Fail(const QString& remoteName, int errorCode) {
  if (!TakePending(remoteName)) return false;
  const auto event = role_->OnReciveAFileFail;
  if (event) event(remoteName, errorCode);
  return true;
}

bool ScriptedDownFile::ReceiveUnasked(const QString& remoteName, const QByteArray& content) {
  if (role_ == nullptr) return false;
  const auto event = role_->OnReciveStearm;
  if (event) event(remoteName, TDSBAsynDownFileRole::kOk, content);
  return true;
}

bool ScriptedDownFile::ReceiveFileUnasked(const QString& remoteName) {
  if (role_ == nullptr) return false;
  const auto event = role_->OnReciveAFile;
  if (event) event(remoteName, TDSBAsynDownFileRole::kOk);
  return true;
}

bool ScriptedDownFile::FailUnasked(const QString& remoteName, int errorCode) {
  if (role_ == nullptr) return false;
  const auto event = role_->OnReciveAFileFail;
  if (event) event(remoteName, errorCode);
  return true;
}

bool ScriptedDownFile::WriteAndReceive(const QString& remoteName, const QByteArray& content) {
  const QString path = LocalPath(remoteName);
  QDir().mkpath(QFileInfo(path).path());
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
    throw Error(ErrorCategory::Io, "cannot write " + path.toStdString());
  }
  file.close();
  return ReceiveFile(remoteName);
}

QString ScriptedDownFile::LocalPath(const QString& remoteName) const {
  const QString relative = QString(remoteName).replace(QLatin1Char('\\'), QLatin1Char('/'));
  const QStringList steps = relative.split(QLatin1Char('/'));
  const bool leaves = relative.isEmpty() || relative.startsWith(QLatin1Char('/')) ||
                      relative.contains(QLatin1Char(':')) || steps.contains(QStringLiteral(".."));
  return leaves ? QString() : workFolder_ + relative;
}

ScriptedDownFileRole::ScriptedDownFileRole(std::shared_ptr<ScriptedDownFile> script) : script_(std::move(script)) {
  script_->role_ = this;
}

ScriptedDownFileRole::~ScriptedDownFileRole() {
  script_->role_ = nullptr;
}

void ScriptedDownFileRole::Configure(const Settings& settings) {
  script_->settings_ = settings;
}

void ScriptedDownFileRole::Request(const QString& remoteName) {
  script_->isRequesting_ = true;
  script_->requests_.push_back(remoteName);
  script_->pending_.push_back(remoteName);
  script_->isRequesting_ = false;
}

QString ScriptedDownFileRole::LocalPath(const QString& remoteName) const {
  return script_->LocalPath(remoteName);
}

}  // namespace holdwise
