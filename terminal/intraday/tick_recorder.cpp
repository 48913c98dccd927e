// SPDX-License-Identifier: MIT
#include "intraday/tick_recorder.h"

#include <QFileInfo>
#include <utility>

#include "holdwise/packet/code_numbers.h"
#include "holdwise/packet/number_text.h"
#include "intraday/trading_day.h"

namespace holdwise {
namespace {

constexpr int kBeijingOffsetSeconds = 8 * 3600;
constexpr int kFlushMilliseconds = 5000;
/// A day that goes back by more than this has been set back; less is a late reply.
constexpr int kSetBackSeconds = 60;
const QString kOwnStocks = QStringLiteral("OptionalStock");

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
    : data_(data), clock_(clock), log_(log), store_(path, IdentityOf(data)) {
  indices_.role = std::make_unique<DataDownRole>(bus);
  stocks_.role = std::make_unique<DataDownRole>(bus);
  MakeRole(indices_, QStringLiteral("INTRADAYINDICES"));
  MakeRole(stocks_, QStringLiteral("INTRADAYSTOCKS"));
  subscribeSoon_.setSingleShot(true);
  subscribeSoon_.callOnTimeout(this, &TickRecorder::Subscribe);
  flush_.callOnTimeout(this, [this] {
    store_.Flush();
    TellProblem();
  });
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
  FollowUpTo(kMostUnseen, {std::begin(kIndexNumbers), std::end(kIndexNumbers)});
  FollowUpTo(kMostUnseen, data_.GetGroupCodeNumList(kOwnStocks));
  FollowUpTo(TickStore::kMostSecurities, store_.CodeNumbers());
  flush_.start(kFlushMilliseconds);
}

void TickRecorder::FollowUpTo(std::size_t most, const std::vector<int>& codeNumbers) {
  if (!isStarted_) return;
  for (const int codeNumber : codeNumbers) {
    const bool isKnown = IsIndexNumber(codeNumber) || data_.IsKnownSecurity(QString::number(codeNumber));
    if (!isKnown || followed_.size() >= most || !followed_.insert(codeNumber).second) continue;
    (IsIndexNumber(codeNumber) ? indices_ : stocks_)
        .codeNumbers.emplace(SixDigits(codeNumber % kStockBase), codeNumber);
    if (!subscribeSoon_.isActive()) subscribeSoon_.start(0);
  }
}

void TickRecorder::FollowRequest(const TDMessage& request) {
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
  FollowUpTo(kMostUnseen, codeNumbers);
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
  const QDateTime now = clock_.Now().toOffsetFromUtc(kBeijingOffsetSeconds);
  const QDate day = now.date();
  if (day.year() * 10000 + day.month() * 100 + day.day() != data_.CurrentDate()) return std::nullopt;
  return TradingSecondAt(now.time().msecsSinceStartOfDay() / 1000);
}

void TickRecorder::Hear(const Group& group, const TDMessage& message) {
  const std::vector<TDFieldSet>* list = message.fields.Sequence("CURRENT_PRICET_LIST");
  if (list == nullptr) return;
  const std::optional<int> second = SecondOf(message);
  if (second) {
    if (data_.IsSimulated() && store_.LastSecond() > *second + kSetBackSeconds) store_.DropAfter(*second);
    lastSecond_ = second;
  }
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

void TickRecorder::TellProblem() {
  if (store_.Problem().isEmpty() || std::exchange(isProblemTold_, true)) return;
  log_.WriteLog(store_.Problem());
}

}  // namespace holdwise
