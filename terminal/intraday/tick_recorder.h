// SPDX-License-Identifier: MIT
#pragma once
#include <QObject>
#include <QTimer>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "bus/data_down_role.h"
#include "datacentre/market_data.h"
#include "intraday/tick_store.h"

namespace holdwise {

/// What the quote service last said of a security's day; hundredths and shares as in ticks.h, unknown below 0.
struct DaySoFar {
  std::int64_t volume = Tick::kUnknown;
  std::int64_t amount = Tick::kUnknown;
  std::int64_t open = Tick::kUnknown;
  std::int64_t high = Tick::kUnknown;
  std::int64_t low = Tick::kUnknown;
};

/// Listens to the prices of the securities the terminal follows and keeps their ticks of the day: the indices, the
/// user's own stocks, what the plug-ins ask prices for and what is looked at, from then on, TickStore::kMostSecurities
/// at most; some of these places are kept for what is looked at. A tick has the market's own time where the quote
/// service tells it; else the clock's, on the data's own date only. User-interface thread.
class TickRecorder final : public QObject {
  Q_OBJECT

 public:
  /// So many are followed without having been looked at.
  static constexpr std::size_t kMostUnseen = TickStore::kMostSecurities - 50;

  /// All but the store's path must outlive it. @param path of the day's file; empty: nothing is kept for the next start
  TickRecorder(MessageBus& bus, const MarketData& data, ClockService& clock, DebugServers& log, const QString& path);

  /// Follows the indices and the user's own stocks, what was followed today before, and begins to listen.
  void Start();
  /// Follows a stock or an index that is looked at; not what is unknown or one too many. Nothing happens before Start.
  void Follow(int codeNumber) { FollowUpTo(TickStore::kMostSecurities, {codeNumber}); }
  /// The same with what somebody asks prices for.
  void FollowRequest(const TDMessage& request);

  [[nodiscard]] const std::vector<Tick>& TicksOf(int codeNumber) const { return store_.Of(codeNumber); }
  [[nodiscard]] DaySoFar DayOf(int codeNumber) const;
  /// Second of trading of the last reply that had one; none before.
  [[nodiscard]] std::optional<int> LastSecond() const { return lastSecond_; }
  [[nodiscard]] bool IsFollowed(int codeNumber) const { return followed_.contains(codeNumber); }

 Q_SIGNALS:
  /// A reply has come: ticks, days or the time are others.
  void Changed();

 private:
  /// Indices and stocks are asked for apart: a reply names six digits only, which can mean one of each.
  struct Group {
    std::unique_ptr<DataDownRole> role;
    std::map<QString, int> codeNumbers;  ///< by six digits
  };

  /// As long as there are fewer than `most`.
  void FollowUpTo(std::size_t most, const std::vector<int>& codeNumbers);
  void MakeRole(Group& group, const QString& name);
  void Subscribe();
  void Hear(const Group& group, const TDMessage& message);
  void HearEntry(const Group& group, const TDFieldSet& entry, std::optional<int> second);
  [[nodiscard]] std::optional<int> SecondOf(const TDMessage& message) const;
  void TellProblem();

  const MarketData& data_;
  ClockService& clock_;
  DebugServers& log_;
  TickStore store_;
  std::set<int> followed_;
  std::set<int> heard_;  ///< since Start
  std::map<int, DaySoFar> days_;
  std::optional<int> lastSecond_;
  bool isStarted_ = false;
  bool isProblemTold_ = false;
  QTimer subscribeSoon_;
  QTimer flush_;
  Group indices_, stocks_;  ///< last: their destructors cancel
};

}  // namespace holdwise
