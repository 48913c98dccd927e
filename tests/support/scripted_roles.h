// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "holdwise/sdk/bus.h"
#include "holdwise/sdk/download.h"

namespace holdwise {

/// The test's end of a request role: what was sent, and the replies. It stays valid when the role is gone. Any thread.
class ScriptedDataDown {
 public:
  [[nodiscard]] QString ComponentName() const;
  [[nodiscard]] TDRequestProfile Profile() const;
  /// What was sent, in order. A command whose OnParameter threw is not among them.
  [[nodiscard]] std::vector<QString> Commands() const;
  [[nodiscard]] std::vector<TDMessage> Requests() const;
  [[nodiscard]] bool IsAlive() const;

  /// Runs the role's OnEndOfData on the calling thread. False, and nothing happens, when the role is gone. Calling it
  /// inside Send breaks the role's contract: std::logic_error.
  bool Deliver(const TDReply& reply);
  /// The same on a thread of its own, which has ended when this returns.
  bool DeliverOnOtherThread(const TDReply& reply);

 private:
  friend class ScriptedDataDownRole;
  mutable std::recursive_mutex lock_;  ///< held while an event runs: the role's destructor waits for it
  class ScriptedDataDownRole* role_ = nullptr;
  bool isSending_ = false;
  QString componentName_;
  TDRequestProfile profile_;
  std::vector<QString> commands_;
  std::vector<TDMessage> requests_;
};

class ScriptedDataDownRole final : public TDSBAsynDataDownRole {
 public:
  explicit ScriptedDataDownRole(std::shared_ptr<ScriptedDataDown> script);
  ~ScriptedDataDownRole() override;
  void SetComponentName(const QString& name) override;
  void SetProfile(const TDRequestProfile& profile) override;
  void Send(const QString& command) override;

 private:
  std::shared_ptr<ScriptedDataDown> script_;
};

/// A reply with error code 0 and these prices, in order.
[[nodiscard]] TDReply PriceReply(const std::vector<std::pair<QString, Decimal>>& prices);
/// A reply with an error code and no price list.
[[nodiscard]] TDReply ErrorReply(std::uint32_t errorCode);
[[nodiscard]] TDReply TimedOutReply();

/// The test's end of a download role. It stays valid when the role is gone. User-interface thread.
class ScriptedDownFile {
 public:
  explicit ScriptedDownFile(QString workFolder) : workFolder_(std::move(workFolder)) {}
  [[nodiscard]] const TDSBAsynDownFileRole::Settings& Settings() const { return settings_; }
  /// Every remote name asked for, in order.
  [[nodiscard]] const std::vector<QString>& Requests() const { return requests_; }
  /// Those without an event yet.
  [[nodiscard]] const std::vector<QString>& Pending() const { return pending_; }
  [[nodiscard]] bool IsAlive() const { return role_ != nullptr; }

  /// The three events. Each ends one pending request of that name; without one, or inside Request, the contract would
  /// be broken: std::logic_error. False, and nothing happens, when the role is gone.
  bool ReceiveFile(const QString& remoteName, int errorCode = TDSBAsynDownFileRole::kOk);
  bool ReceiveStream(const QString& remoteName, const QByteArray& content, int errorCode = TDSBAsynDownFileRole::kOk);
  bool Fail(const QString& remoteName, int errorCode);
  /// What a host must not do: an event nobody waits for, for instance a second time.
  bool ReceiveUnasked(const QString& remoteName, const QByteArray& content);
  bool ReceiveFileUnasked(const QString& remoteName);
  bool FailUnasked(const QString& remoteName, int errorCode);
  /// Writes the local copy, then ReceiveFile.
  bool WriteAndReceive(const QString& remoteName, const QByteArray& content);
  [[nodiscard]] QString LocalPath(const QString& remoteName) const;

 private:
  friend class ScriptedDownFileRole;
  bool TakePending(const QString& remoteName);

  QString workFolder_;
  class ScriptedDownFileRole* role_ = nullptr;
  bool isRequesting_ = false;
  TDSBAsynDownFileRole::Settings settings_;
  std::vector<QString> requests_;
  std::vector<QString> pending_;
};

class ScriptedDownFileRole final : public TDSBAsynDownFileRole {
 public:
  explicit ScriptedDownFileRole(std::shared_ptr<ScriptedDownFile> script);
  ~ScriptedDownFileRole() override;
  void Configure(const Settings& settings) override;
  void Request(const QString& remoteName) override;
  [[nodiscard]] QString LocalPath(const QString& remoteName) const override;

 private:
  std::shared_ptr<ScriptedDownFile> script_;
};

}  // namespace holdwise
