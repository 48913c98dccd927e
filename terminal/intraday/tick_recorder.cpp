// SPDX-License-Identifier: MIT
#include "intraday/tick_recorder.h"

#include <QFileInfo>
#include <algorithm>

#include "datacentre/beijing_time.h"
#include "holdwise/packet/number_text.h"
#include "intraday/trading_day.h"

namespace holdwise {
namespace {

constexpr int kFlushMilliseconds = 5000;
/// A time that goes back by more than this has been set back; less is a late reply.
constexpr int kSetBackSeconds = 60;
const QString kOwnStocks = QStringLiteral("OptionalStock");
/// The request for the prices of what is held.
const QString kHeldRequest = QStringLiteral("TZZHHQCURRENTPRICE");

TDRequestProfile ProfileOf(const QString& name) {
  TDRequestProfile profile;
  profile.messageId = 67017;
  profile.messageTypeFieldName = QStringLiteral("MessageType");
  profile.messageType = QStringLiteral("SUB_HQ_CURRENT_PRICE");
  profile.requestName = name;
  profile.serviceMessageId = 95;
  profile.serviceNameField = QStringLiteral("SVCName");
  profile.serviceName = QStringLiteral("L1_DIST");
  profile.serviceDescriptionFile = QStringLiteral("L1_Dist.xml");
  return profile;
}

/// Hundredths of a decimal field; unknown without it.
std::int64_t HundredthsOf(const TDFieldSet& entry, const char* name) {
  const Decimal* value = entry.DecimalValue(name);
  if (value == nullptr) return Tick::kUnknown;
  return value->scale == 2 ? value->mantissa : Decimal::FromDouble(value->ToDouble(), 2).mantissa;
}

std::int64_t IntegerOf(const TDFieldSet& entry, const char* name) {
  const TDFieldValue* value = entry.Find(name);
  const auto* integer = value == nullptr ? nullptr : std::get_if<std::int64_t>(value);
  return integer == nullptr ? Tick::kUnknown : *integer;
}

/// What tells this market's day from others.
QString IdentityOf(const MarketData& data) {
  return data.CurrentDateText() + QLatin1Char('\n') +
         (data.IsSimulated() ? QFileInfo(data.Folder()).canonicalFilePath() : QString());
}

}  // namespace

TickRecorder::TickRecorder(MessageBus& bus, const MarketData& data, ClockService& clock, DebugServers& log,
                           const QString& path)
    : data_(data),
      clock_(clock),
      log_(log),
      store_(path, IdentityOf(data), [this](int codeNumber) { return IsKnown(codeNumber); }) {
  indices_.role = std::make_unique<DataDownRole>(bus);
  stocks_.role = std::make_unique<DataDownRole>(bus);
  MakeRole(indices_, QStringLiteral("INTRADAYINDICES"));
  MakeRole(stocks_, QStringLiteral("INTRADAYSTOCKS"));
  subscribeSoon_.setSingleShot(true);
  subscribeSoon_.callOnTimeout(this, &TickRecorder::Subscribe);
  flush_.callOnTimeout(this, &TickRecorder::Flush);
}

void TickRecorder::MakeRole(Group& group, const QString& name) {
  group.role->SetComponentName(name);
  group.role->SetProfile(ProfileOf(name));
  group.role->OnParameter = [this, &group](const QString& /*command*/, TDMessage& request) {
    auto securities = std::make_shared<std::vector<TDFieldSet>>();
    for (const auto& [digits, codeNumber] : group.codeNumbers) {
      TDFieldSet security;
      security.Set("CodeNum", digits);
      security.Set("MarketType", data_.BusMarketId(data_.MarketTypeOf(QString::number(codeNumber))));
      securities->push_back(std::move(security));
    }
    request.fields.Set("CommandType", std::uint32_t{0});
    request.fields.Set("L1_SECUCODESEQ", TDSequence(std::move(securities)));
  };
  group.role->OnEndOfData = [this, &group](const TDReply& reply) {
    if (!reply.timedOut) Hear(group, reply.message);
  };
}

void TickRecorder::Start() {
  isStarted_ = true;
  Follow({std::begin(kIndexNumbers), std::end(kIndexNumbers)});
  FollowOwnStocks();
  const std::vector<int> stored = store_.CodeNumbers();
  Follow(stored);
  for (const int codeNumber : stored)
    if (!IsFollowed(codeNumber)) store_.Forget(codeNumber);
  flush_.start(kFlushMilliseconds);
}

void TickRecorder::LookAt(int codeNumber) {
  if (!IsKnown(codeNumber)) return;
  shown_ = codeNumber;
  lookedAt_[codeNumber] = ++looks_;
  Follow({codeNumber});
}

void TickRecorder::FollowOwnStocks() {
  const std::vector<int> own = data_.GetGroupCodeNumList(kOwnStocks);
  own_ = {own.begin(), own.end()};
  Follow(own);
}

void TickRecorder::HearRequest(const TDMessage& request) {
  if (request.profile.requestName != kHeldRequest) return;
  const std::vector<TDFieldSet>* securities = request.fields.Sequence("L1_SECUCODESEQ");
  const std::uint32_t* command = request.fields.Uint32("CommandType");
  if (securities == nullptr || command == nullptr || *command != 0) return;
  std::vector<int> codeNumbers;
  for (const TDFieldSet& security : *securities) {
    const QString* digits = security.Text("CodeNum");
    const std::uint32_t* market = security.Uint32("MarketType");
    if (digits == nullptr || market == nullptr) continue;
    const int number = digits->toInt();
    const bool isStock = number == kCompositeIndex ? *market != data_.BusMarketId(1) : !IsIndexNumber(number);
    if (isStock) codeNumbers.push_back(kStockBase + number);  // the indices are followed in any case
  }
  held_ = {codeNumbers.begin(), codeNumbers.end()};
  Follow(codeNumbers);
}

bool TickRecorder::IsKnown(int codeNumber) const {
  if (codeNumber < kStockBase) return IsIndexNumber(codeNumber);  // six digits would be a stock's too
  return data_.IsKnownSecurity(QString::number(codeNumber));
}

TickRecorder::Rank TickRecorder::RankOf(int codeNumber) const {
  const auto looked = lookedAt_.find(codeNumber);
  const int look = looked == lookedAt_.end() ? 0 : looked->second;
  if (IsIndexNumber(codeNumber)) return {Claim::Index, look};
  if (codeNumber == shown_) return {Claim::Shown, look};
  if (held_.contains(codeNumber)) return {Claim::Held, look};
  return {own_.contains(codeNumber) ? Claim::Own : Claim::LookedAt, look};
}

void TickRecorder::Follow(const std::vector<int>& codeNumbers) {
  if (!isStarted_) return;
  for (const int codeNumber : codeNumbers) {
    if (followed_.contains(codeNumber) || !IsKnown(codeNumber) || !MakeRoomFor(codeNumber)) continue;
    followed_.insert(codeNumber);
    GroupOf(codeNumber).codeNumbers.emplace(SixDigits(codeNumber % kStockBase), codeNumber);
    if (!subscribeSoon_.isActive()) subscribeSoon_.start(0);
  }
}

bool TickRecorder::MakeRoomFor(int codeNumber) {
  if (followed_.size() < TickStore::kMostSecurities) return true;
  const int last =
      *std::min_element(followed_.begin(), followed_.end(), [this](int a, int b) { return RankOf(a) < RankOf(b); });
  if (RankOf(last) >= RankOf(codeNumber)) return false;
  if (!TicksOf(last).empty()) replaced_.insert(last);
  followed_.erase(last);
  heard_.erase(last);
  days_.erase(last);
  GroupOf(last).codeNumbers.erase(SixDigits(last % kStockBase));
  store_.Forget(last);
  return true;
}

void TickRecorder::Subscribe() {
  for (Group* group : {&indices_, &stocks_})
    if (!group->codeNumbers.empty()) group->role->Send(QString());
}

std::optional<int> TickRecorder::SecondOf(const TDMessage& message) const {
  if (const std::uint32_t* time = message.fields.Uint32("MarketTime")) {
    const std::optional<int> second = SecondOfDayOf(*time);
    return second ? TradingSecondAt(*second) : std::nullopt;
  }
  if (data_.IsSimulated()) return std::nullopt;  // its prices are of no time of this day
  const QDateTime now = BeijingTime(clock_.Now());
  const QDate day = now.date();
  if (day.year() * 10000 + day.month() * 100 + day.day() != data_.CurrentDate()) return std::nullopt;
  return TradingSecondAt(now.time().msecsSinceStartOfDay() / 1000);
}

bool TickRecorder::IsTimely(int second) {
  const bool isBehind = store_.LastSecond() > second + kSetBackSeconds;
  const bool wasBehind = std::exchange(wasBehind_, isBehind);
  if (!isBehind) return true;
  // A market that is no simulation goes back when its clock, or ours, was ahead. One reply alone may be a stray.
  if (!data_.IsSimulated() && !wasBehind) return false;
  store_.DropAfter(second);
  wasBehind_ = false;
  return true;
}

void TickRecorder::Hear(const Group& group, const TDMessage& message) {
  const std::vector<TDFieldSet>* list = message.fields.Sequence("CURRENT_PRICET_LIST");
  if (list == nullptr) return;
  const std::optional<int> second = SecondOf(message);
  if (second && !IsTimely(*second)) return;
  if (second) lastSecond_ = second;
  for (const TDFieldSet& entry : *list) HearEntry(group, entry, second);
  Q_EMIT Changed();
}

void TickRecorder::HearEntry(const Group& group, const TDFieldSet& entry, std::optional<int> second) {
  const QString* digits = entry.Text("CodeNum");
  const auto found = digits == nullptr ? group.codeNumbers.end() : group.codeNumbers.find(*digits);
  if (found == group.codeNumbers.end()) return;
  const int codeNumber = found->second;
  const DaySoFar day{IntegerOf(entry, "Volume"), HundredthsOf(entry, "Amount"), HundredthsOf(entry, "Open"),
                     HundredthsOf(entry, "High"), HundredthsOf(entry, "Low")};
  days_[codeNumber] = day;
  if (!second) return;
  const bool isFirst = heard_.insert(codeNumber).second;
  (void)store_.Add(codeNumber, {*second, HundredthsOf(entry, "Price"), day.volume, day.amount, isFirst});
}

DaySoFar TickRecorder::DayOf(int codeNumber) const {
  const auto found = days_.find(codeNumber);
  return found == days_.end() ? DaySoFar() : found->second;
}

void TickRecorder::Flush() {
  store_.Flush();
  if (isProblemTold_ != IsSaved()) return;
  isProblemTold_ = !IsSaved();
  log_.WriteLog(isProblemTold_ ? store_.Problem() : QStringLiteral("今天的分时数据又保存了，包括此前没有保存的"));
  Q_EMIT Changed();
}

}  // namespace holdwise
