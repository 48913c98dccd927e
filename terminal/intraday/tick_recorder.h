// SPDX-License-Identifier: MIT
#pragma once
#include <QObject>
#include <QTimer>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "bus/data_down_role.h"
#include "datacentre/market_data.h"
#include "holdwise/packet/code_numbers.h"
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

/// Listens to the prices of the securities the investor follows and keeps their ticks of the day, from when on they are
/// followed: the indices, the one on the page, what is held, the user's own stocks and what has been looked at today,
/// in this order TickStore::kMostSecurities at most. When there are more, one that is before another takes its place,
/// that of the one which was looked at the longest time ago. A tick has the market's own time where the quote service
/// tells it; else the clock's, on the data's own date only. User-interface thread.
class TickRecorder final : public QObject {
  Q_OBJECT

 public:
  /// All but the store's path must outlive it. @param path of the day's file; empty: nothing is kept for the next start
  TickRecorder(MessageBus& bus, const MarketData& data, ClockService& clock, DebugServers& log, const QString& path);

  /// Follows the indices, the user's own stocks and what was followed today before, and begins to listen. Nothing below
  /// happens before.
  void Start();
  /// The security that is on the page from now on; nothing happens for one that is not known.
  void LookAt(int codeNumber);
  /// A request of prices as the plug-ins send it. Only the one for what is held makes a difference: pools of stocks to
  /// choose from are asked for whole.
  void HearRequest(const TDMessage& request);
  /// The user's own stocks may be others.
  void FollowOwnStocks();
  /// Hands the file what is not in it yet, and says in the log when that does not work and when it does again. Happens
  /// by itself every few seconds.
  void Flush();

  [[nodiscard]] const std::vector<Tick>& TicksOf(int codeNumber) const { return store_.Of(codeNumber); }
  [[nodiscard]] DaySoFar DayOf(int codeNumber) const;
  /// Second of trading of the last reply that had one; none before.
  [[nodiscard]] std::optional<int> LastSecond() const { return lastSecond_; }
  [[nodiscard]] bool IsFollowed(int codeNumber) const { return followed_.contains(codeNumber); }
  /// Has another taken its place, and its ticks with it, since Start?
  [[nodiscard]] bool HasLostItsPlace(int codeNumber) const { return replaced_.contains(codeNumber); }
  /// Does the file have the ticks, but for the last seconds?
  [[nodiscard]] bool IsSaved() const { return store_.Problem().isEmpty(); }

 Q_SIGNALS:
  /// A reply has come: ticks, days or the time are others. Or IsSaved is another.
  void Changed();

 private:
  /// Indices and stocks are asked for apart: a reply names six digits only, which can mean one of each.
  struct Group {
    std::unique_ptr<DataDownRole> role;
    std::map<QString, int> codeNumbers;  ///< by six digits
  };

  /// Why a security has a place; the later ones go before.
  enum class Claim { LookedAt, Own, Held, Shown, Index };
  using Rank = std::pair<Claim, int>;

  void MakeRole(Group& group, const QString& name);
  [[nodiscard]] Group& GroupOf(int codeNumber) { return IsIndexNumber(codeNumber) ? indices_ : stocks_; }
  [[nodiscard]] bool IsKnown(int codeNumber) const;
  [[nodiscard]] Rank RankOf(int codeNumber) const;
  void Follow(const std::vector<int>& codeNumbers);
  /// False when all that are there go before it.
  bool MakeRoomFor(int codeNumber);
  void Subscribe();
  void Hear(const Group& group, const TDMessage& message);
  void HearEntry(const Group& group, const TDFieldSet& entry, std::optional<int> second);
  [[nodiscard]] std::optional<int> SecondOf(const TDMessage& message) const;
  /// Is a reply of that second one to take, if need be as the first one of a clock that has been set back?
  [[nodiscard]] bool IsTimely(int second);

  const MarketData& data_;
  ClockService& clock_;
  DebugServers& log_;
  TickStore store_;
  std::set<int> followed_;
  std::set<int> own_, held_;
  int shown_ = 0;                ///< code number; 0: none yet
  std::map<int, int> lookedAt_;  ///< the how manieth look was the last one
  int looks_ = 0;
  std::set<int> replaced_;
  std::set<int> heard_;  ///< since Start
  std::map<int, DaySoFar> days_;
  std::optional<int> lastSecond_;
  bool wasBehind_ = false;  ///< the last reply had a time long ago
  bool isStarted_ = false;
  bool isProblemTold_ = false;
  QTimer subscribeSoon_;
  QTimer flush_;
  Group indices_, stocks_;  ///< last: their destructors cancel
};

}  // namespace holdwise
