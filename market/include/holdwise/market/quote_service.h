// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

#include "holdwise/packet/error.h"
#include "holdwise/packet/message.h"

namespace holdwise {

/// What has been traded since the day began; what is not known is not told to anybody.
struct DayTrade {
  static constexpr std::int64_t kUnknown = -1;
  std::int64_t volume = kUnknown;  ///< shares; of an index those of its stocks
  std::int64_t amount = kUnknown;  ///< hundredths of a yuan
  std::int64_t open = kUnknown;    ///< hundredths of a yuan (of a point), as the two below
  std::int64_t high = kUnknown;
  std::int64_t low = kUnknown;
  bool operator==(const DayTrade&) const = default;
};

/// Current price of a stock or an index, in yuan (points for an index), both prices with two decimals; 0 = no trade
/// yet.
struct Quote {
  int codeNumber = 0;  ///< 1600000 for stock 600000; 1, 399001, 399300 for the indices
  Decimal price;
  Decimal previousClose;
  DayTrade day{};
};

/// The service "L1_DIST": answers "SUB_HQ_CURRENT_PRICE" requests and says which subscribers are due a push. It moves
/// no bytes and has no clock; a bus hands requests in and carries replies out. Not thread-safe: one thread at a time.
class QuoteService {
 public:
  struct Push {
    std::uint64_t subscriber = 0;
    TDMessage message;
  };
  struct PriceChange {
    int codeNumber = 0;
    Decimal price;
    DayTrade day{};  ///< what is not known of it leaves what was
  };

  /// A code number that appears twice, or a price that is negative or not of two decimals: Error(Refused).
  explicit QuoteService(std::vector<Quote> quotes);

  /// Answers one request; never throws for its content. The reply has the request's profile and the fields `ErrCode`
  /// (uint32) and, when that is 0, `CURRENT_PRICET_LIST` (a sequence of {`CodeNum` six digits, `Price`}). As far as
  /// they are known, an entry has the day's `Volume` (int64, shares), `Amount`, `Open`, `High` and `Low` (decimals of
  /// two places) too, and the reply `MarketTime` (uint32, HHMMSS on the market's own clock); who does not know these
  /// fields passes over them.
  ///
  /// `CommandType` 0 subscribes: the listed securities replace what `subscriber` had under the same request name, and
  /// the reply holds their prices in the order asked, each once; securities unknown here are left out. `CommandType` 1
  /// cancels the subscription of that request name; the reply's list is empty. A request that is malformed (other
  /// service or type, field missing or of another type, code not six digits) changes nothing and gives ErrCode 1.
  [[nodiscard]] TDMessage Handle(std::uint64_t subscriber, const TDMessage& request);

  /// Replies due now: for each subscription of which a price or a volume has changed since its last reply, at most one
  /// a second, the full list. `nowMilliseconds` is any clock that never steps back.
  [[nodiscard]] std::vector<Push> CollectPushes(std::int64_t nowMilliseconds);

  /// Forgets everything about a subscriber (gone or disconnected).
  void Drop(std::uint64_t subscriber);

  /// False when the security is unknown. A price that is negative or not of two decimals: Error(Refused).
  bool SetPrice(int codeNumber, Decimal price);
  /// The same for many; unknown securities are skipped. All prices are checked before the first is set.
  void SetPrices(std::span<const PriceChange> changes);

  /// The time of the market's own clock, hours x 10000 + minutes x 100 + seconds, for the replies to come; none as long
  /// as this has not been called.
  void SetMarketTime(std::uint32_t time) { marketTime_ = time; }

  /// In the order given at construction, with current prices.
  [[nodiscard]] const std::vector<Quote>& Quotes() const noexcept { return quotes_; }
  [[nodiscard]] std::size_t SubscriptionCount() const noexcept { return subscriptions_.size(); }

 private:
  struct Subscription {
    TDRequestProfile profile;
    std::vector<int> positions;  // into quotes_
    std::uint64_t sentVersion = 0;
    std::optional<std::int64_t> pushedAt;
  };
  using SubscriptionKey = std::pair<std::uint64_t, QString>;

  [[nodiscard]] std::optional<std::vector<int>> Positions(const TDMessage& request) const;
  [[nodiscard]] TDMessage PriceList(const TDRequestProfile& profile, const std::vector<int>& positions) const;
  void Store(int position, const PriceChange& change);

  std::vector<Quote> quotes_;
  std::vector<TDFieldSet> entries_;       // ready list entry of each quote
  std::vector<std::uint64_t> changedIn_;  // version in which each quote changed last
  std::uint64_t version_ = 1;
  std::optional<std::uint32_t> marketTime_;
  std::unordered_map<int, int> byCodeNumber_;
  std::unordered_map<int, int> byBusCode_;  // market id x 1000000 + six digits
  std::map<SubscriptionKey, Subscription> subscriptions_;
};

}  // namespace holdwise
