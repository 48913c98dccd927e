// SPDX-License-Identifier: MIT
#include "holdwise/market/quote_service.h"

#include <algorithm>
#include <string>

#include "holdwise/market/market_rules.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

constexpr std::int64_t kPushIntervalMilliseconds = 1000;
constexpr std::uint32_t kSubscribe = 0;
constexpr std::uint32_t kCancel = 1;
constexpr std::uint32_t kMalformed = 1;
constexpr int kBusCodeBase = 1'000'000;
constexpr int kPriceDecimals = 2;

// Shared by all field sets, so that an entry costs no allocation for its names.
const QByteArray& CodeField() {
  static const QByteArray name("CodeNum");
  return name;
}
const QByteArray& PriceField() {
  static const QByteArray name("Price");
  return name;
}

/// A field of the day and where its number stands.
struct DayField {
  QByteArray name;
  std::int64_t DayTrade::*number;
};
const std::vector<DayField>& DayFields() {
  static const std::vector<DayField> fields{{"Volume", &DayTrade::volume},
                                            {"Amount", &DayTrade::amount},
                                            {"Open", &DayTrade::open},
                                            {"High", &DayTrade::high},
                                            {"Low", &DayTrade::low}};
  return fields;
}

/// Puts what is known of `news` into `day` and its fields into the entry; false when nothing is new.
bool TakeDay(const DayTrade& news, DayTrade& day, TDFieldSet& entry) {
  bool isNew = false;
  for (const DayField& field : DayFields()) {
    const std::int64_t number = news.*field.number;
    if (number < 0 || number == day.*field.number) continue;
    day.*field.number = number;
    entry.Set(field.name,
              field.number == &DayTrade::volume ? TDFieldValue(number) : TDFieldValue(Decimal{number, kPriceDecimals}));
    isNew = true;
  }
  return isNew;
}

// On the bus the Shanghai Composite is 000001 of Shanghai and stock 000001 is of Shenzhen.
int BusCode(int codeNumber) {
  const QString digits = SixDigits(codeNumber % kBusCodeBase);
  const bool isStock = codeNumber >= kBusCodeBase;
  const int market = isStock ? MarketOfStock(digits.toStdString()) : (codeNumber == kIndexNumbers[0] ? 1 : 2);
  return market * kBusCodeBase + codeNumber % kBusCodeBase;
}

void CheckPrice(int codeNumber, const Decimal& price) {
  if (price.scale == 2 && price.mantissa >= 0) return;
  throw Error(ErrorCategory::Refused, "行情价格必须为非负且两位小数，代码 " + std::to_string(codeNumber));
}

TDMessage Answer(const TDRequestProfile& profile, std::uint32_t errorCode) {
  TDMessage reply;
  reply.profile = profile;
  reply.fields.Set("ErrCode", errorCode);
  return reply;
}

}  // namespace

QuoteService::QuoteService(std::vector<Quote> quotes) : quotes_(std::move(quotes)) {
  entries_.resize(quotes_.size());
  changedIn_.assign(quotes_.size(), version_);
  for (int i = 0; i < static_cast<int>(quotes_.size()); ++i) {
    const Quote& quote = quotes_[static_cast<std::size_t>(i)];
    CheckPrice(quote.codeNumber, quote.price);
    CheckPrice(quote.codeNumber, quote.previousClose);
    if (!byCodeNumber_.emplace(quote.codeNumber, i).second) {
      throw Error(ErrorCategory::Refused, "行情中代码重复：" + std::to_string(quote.codeNumber));
    }
    byBusCode_.emplace(BusCode(quote.codeNumber), i);
    TDFieldSet& entry = entries_[static_cast<std::size_t>(i)];
    entry.Set(CodeField(), SixDigits(quote.codeNumber % kBusCodeBase));
    entry.Set(PriceField(), quote.price);
    DayTrade day;
    TakeDay(quote.day, day, entry);
  }
}

TDMessage QuoteService::Handle(std::uint64_t subscriber, const TDMessage& request) {
  const TDRequestProfile& profile = request.profile;
  const std::uint32_t* command = request.fields.Uint32("CommandType");
  const std::optional<std::vector<int>> positions = Positions(request);
  const bool isAddressed =
      profile.messageType == QStringLiteral("SUB_HQ_CURRENT_PRICE") && profile.serviceName == QStringLiteral("L1_DIST");
  if (!isAddressed || command == nullptr || *command > kCancel || !positions) return Answer(profile, kMalformed);

  const SubscriptionKey key(subscriber, profile.requestName);
  if (*command == kSubscribe) {
    Subscription& subscription = subscriptions_[key];
    subscription.profile = profile;
    subscription.positions = *positions;
    subscription.sentVersion = version_;
    return PriceList(profile, *positions);
  }
  subscriptions_.erase(key);
  return PriceList(profile, {});
}

std::optional<std::vector<int>> QuoteService::Positions(const TDMessage& request) const {
  const std::vector<TDFieldSet>* securities = request.fields.Sequence("L1_SECUCODESEQ");
  if (securities == nullptr) return std::nullopt;
  std::vector<int> positions;
  positions.reserve(std::min(securities->size(), quotes_.size()));
  std::vector<bool> isTaken(quotes_.size());
  for (const TDFieldSet& security : *securities) {
    const QString* code = security.Text("CodeNum");
    const std::uint32_t* market = security.Uint32("MarketType");
    if (code == nullptr || market == nullptr || code->size() != 6) return std::nullopt;
    int digits = 0;
    for (const QChar c : *code) {
      if (c < u'0' || c > u'9') return std::nullopt;
      digits = digits * 10 + (c.unicode() - u'0');
    }
    if (*market != 1 && *market != 2) continue;
    const auto found = byBusCode_.find(static_cast<int>(*market) * kBusCodeBase + digits);
    if (found == byBusCode_.end() || isTaken[static_cast<std::size_t>(found->second)]) continue;
    isTaken[static_cast<std::size_t>(found->second)] = true;
    positions.push_back(found->second);
  }
  return positions;
}

TDMessage QuoteService::PriceList(const TDRequestProfile& profile, const std::vector<int>& positions) const {
  auto list = std::make_shared<std::vector<TDFieldSet>>();
  list->reserve(positions.size());
  for (const int position : positions) list->push_back(entries_[static_cast<std::size_t>(position)]);
  TDMessage reply = Answer(profile, 0);
  if (marketTime_) reply.fields.Set("MarketTime", *marketTime_);
  reply.fields.Set("CURRENT_PRICET_LIST", TDSequence(std::move(list)));
  return reply;
}

std::vector<QuoteService::Push> QuoteService::CollectPushes(std::int64_t nowMilliseconds) {
  std::vector<Push> pushes;
  for (auto& [key, subscription] : subscriptions_) {
    if (subscription.sentVersion == version_) continue;
    if (subscription.pushedAt && nowMilliseconds - *subscription.pushedAt < kPushIntervalMilliseconds) continue;
    const std::uint64_t sent = subscription.sentVersion;
    const bool isChanged = std::any_of(subscription.positions.begin(), subscription.positions.end(), [&](int position) {
      return changedIn_[static_cast<std::size_t>(position)] > sent;
    });
    subscription.sentVersion = version_;
    if (!isChanged) continue;
    subscription.pushedAt = nowMilliseconds;
    pushes.push_back({key.first, PriceList(subscription.profile, subscription.positions)});
  }
  return pushes;
}

void QuoteService::Drop(std::uint64_t subscriber) {
  std::erase_if(subscriptions_, [subscriber](const auto& item) { return item.first.first == subscriber; });
}

bool QuoteService::SetPrice(int codeNumber, Decimal price) {
  CheckPrice(codeNumber, price);
  const auto found = byCodeNumber_.find(codeNumber);
  if (found == byCodeNumber_.end()) return false;
  Store(found->second, {codeNumber, price});
  return true;
}

void QuoteService::SetPrices(std::span<const PriceChange> changes) {
  for (const PriceChange& change : changes) CheckPrice(change.codeNumber, change.price);
  for (const PriceChange& change : changes) {
    const auto found = byCodeNumber_.find(change.codeNumber);
    if (found != byCodeNumber_.end()) Store(found->second, change);
  }
}

void QuoteService::Store(int position, const PriceChange& change) {
  const auto at = static_cast<std::size_t>(position);
  const bool hasTraded = TakeDay(change.day, quotes_[at].day, entries_[at]);
  if (quotes_[at].price == change.price && !hasTraded) return;
  quotes_[at].price = change.price;
  entries_[at].Set(PriceField(), change.price);
  changedIn_[at] = ++version_;
}

}  // namespace holdwise
