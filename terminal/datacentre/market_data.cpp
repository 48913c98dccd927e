// SPDX-License-Identifier: MIT
#include "datacentre/market_data.h"

#include <algorithm>

#include "datacentre/beijing_time.h"
#include "holdwise/packet/code_numbers.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

constexpr int kAllAShares = 10;
constexpr int kShanghai = 1;
constexpr int kShenzhen = 2;

/// First letters of kIndexNames.
constexpr const char* kIndexInitials[kIndexCount] = {"S Z Z S", "S Z C Z", "H S 3 0 0"};

/// Code number that a text stands for, 0 when it stands for none: "1" and the two Shenzhen index codes, else six digits
/// or "1" and six digits.
int CodeNumberOf(const QString& text) {
  const bool allDigits = std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
  if (!allDigits || text.isEmpty()) return 0;
  const int number = static_cast<int>(IntegerOr(text.left(8)));
  if (text.size() == 1) return number == kCompositeIndex ? number : 0;
  if (text.size() == 6) return number != kCompositeIndex && IsIndexNumber(number) ? number : kStockBase + number;
  return text.size() == 7 && number >= kStockBase && number < 2 * kStockBase ? number : 0;
}

}  // namespace

MarketData::MarketData(ClockService& clock, DebugServers& log, TLocatDBOper& localDatabase)
    : clock_(clock), log_(log), localDatabase_(localDatabase) {}

MarketData::~MarketData() = default;

void MarketData::ApplyQuotes(const std::vector<CodedQuote>& quotes) {
  {
    const WriteLock lock(mutex_);
    for (const CodedQuote& quote : quotes) {
      if (NowData* slot = Slot(quote.codeNumber)) *slot = quote.now;
    }
  }
  Q_EMIT QuotesChanged();
}

std::vector<CodedQuote> MarketData::Quotes() const {
  std::vector<CodedQuote> quotes;
  quotes.reserve(securities_.size() + std::size(kIndexNumbers));
  const ReadLock lock(mutex_);
  for (const int index : kIndexNumbers) {
    const NowData& now = indexQuotes_[IndexPlace(index)];
    if (now.currentPrice > 0) quotes.push_back({index, now});
  }
  for (std::size_t place = 0; place < securities_.size(); ++place) {
    if (stockQuotes_[place].currentPrice > 0) quotes.push_back({securities_[place].codeNumber, stockQuotes_[place]});
  }
  return quotes;
}

bool MarketData::IsFundOrBond(const QString& /*code*/) const {
  return false;  // the security master of a data folder holds stocks only
}

bool MarketData::IsKnownSecurity(const QString& code) const {
  return FindStock(code) != nullptr;
}

bool MarketData::IsIndex(const QString& code) const {
  return IsIndexNumber(CodeNumberOf(code));
}

bool MarketData::IsCodeNumber(const QString& text) const {
  return text.size() == 7 && FindStock(text) != nullptr;
}

bool MarketData::IsShanghaiStock(const QString& codeNumber) const {
  const Security* stock = FindStock(codeNumber);
  return stock != nullptr && stock->aShare && stock->market == kShanghai;
}

bool MarketData::IsShenzhenStock(const QString& codeNumber) const {
  const Security* stock = FindStock(codeNumber);
  return stock != nullptr && stock->aShare && stock->market == kShenzhen;
}

QString MarketData::NameOf(const QString& code) const {
  if (const int index = IndexPlace(CodeNumberOf(code)); index >= 0) return QString::fromUtf8(kIndexNames[index]);
  const Security* stock = FindStock(code);
  return stock != nullptr ? Text(stock->nameOffset, stock->nameBytes) : QString();
}

QString MarketData::InitialsOf(int codeNumber) const {
  if (const int index = IndexPlace(codeNumber); index >= 0) return QString::fromLatin1(kIndexInitials[index]);
  const int place = IndexOfSecurity(codeNumber);
  if (place < 0) return {};
  const Security& security = securities_[static_cast<std::size_t>(place)];
  return Text(security.nameOffset + security.nameBytes, security.initialsBytes);
}

QString MarketData::IndustryOf(int codeNumber) const {
  const int place = IndexOfSecurity(codeNumber);
  if (place < 0) return {};
  const Security& security = securities_[static_cast<std::size_t>(place)];
  return Text(security.industryOffset, security.industryBytes);
}

int MarketData::MarketTypeOf(const QString& code) const {
  const int codeNumber = CodeNumberOf(code);
  if (IsIndexNumber(codeNumber)) return codeNumber == kCompositeIndex ? kShanghai : kShenzhen;
  const Security* stock = FindStock(code);
  return stock != nullptr ? stock->market : 0;
}

std::vector<int> MarketData::CodeNumbersOf(int category) const {
  std::vector<int> codeNumbers;
  if (category != kAllAShares) return codeNumbers;
  codeNumbers.reserve(securities_.size());
  for (const Security& security : securities_) {
    if (security.aShare) codeNumbers.push_back(security.codeNumber);
  }
  return codeNumbers;
}

void MarketData::SetCurrentCode(const QString& code) {
  {
    const WriteLock lock(mutex_);
    currentCode_ = code;
  }
  Q_EMIT CurrentCodeChanged(code);
}

QString MarketData::CurrentCode() const {
  const ReadLock lock(mutex_);
  return currentCode_;
}

QString MarketData::CurrentDateText() const {
  if (currentDate_ == 0) return {};
  return QString::fromStdString(DateText(currentDate_));
}

QString MarketData::DataEdition() const {
  const ReadLock lock(mutex_);
  return edition_;
}

NowData MarketData::StockNowData(int codeNumber) const {
  const int place = IndexOfSecurity(codeNumber);
  if (place < 0) return {};
  const ReadLock lock(mutex_);
  return stockQuotes_[static_cast<std::size_t>(place)];
}

NowData MarketData::IndexNowData(int indexNumber) const {
  const int place = IndexPlace(indexNumber);
  if (place < 0) return {};
  const ReadLock lock(mutex_);
  return indexQuotes_[place];
}

std::optional<AccountInfo> MarketData::StockAccountInfo(int codeNumber) const {
  const auto found = std::lower_bound(accounts_.begin(), accounts_.end(), codeNumber,
                                      [](const Account& account, int code) { return account.codeNumber < code; });
  if (found == accounts_.end() || found->codeNumber != codeNumber) return std::nullopt;
  return found->info;
}

std::vector<int> MarketData::GetGroupCodeNumList(const QString& groupName) const {
  const ReadLock lock(mutex_);
  const auto found = groups_.find(groupName);
  return found != groups_.end() ? found->second : std::vector<int>{};
}

std::optional<int> MarketData::SecondOfTradingDay() const {
  const QDateTime now = BeijingTime(clock_.Now());
  const QDate day = now.date();
  const int today = day.year() * 10000 + day.month() * 100 + day.day();
  if (today != currentDate_ || tradingDates_.empty() || tradingDates_.front() != today) return std::nullopt;
  return now.time().msecsSinceStartOfDay() / 1000;
}

bool MarketData::IsOpen() const {
  if (simulated_) return true;
  const std::optional<int> second = SecondOfTradingDay();
  if (!second) return false;
  const QTime time = QTime::fromMSecsSinceStartOfDay(*second * 1000);
  return (time >= QTime(9, 30) && time < QTime(11, 30)) || (time >= QTime(13, 0) && time < QTime(15, 0));
}

unsigned MarketData::BusMarketId(int marketType) const {
  return marketType == kShanghai || marketType == kShenzhen ? static_cast<unsigned>(marketType) : 0;
}

int MarketData::IndexOfSecurity(int codeNumber) const {
  const auto found = std::lower_bound(securities_.begin(), securities_.end(), codeNumber,
                                      [](const Security& security, int code) { return security.codeNumber < code; });
  if (found == securities_.end() || found->codeNumber != codeNumber) return -1;
  return static_cast<int>(found - securities_.begin());
}

const MarketData::Security* MarketData::FindStock(const QString& code) const {
  const int place = IndexOfSecurity(CodeNumberOf(code));
  return place >= 0 ? &securities_[static_cast<std::size_t>(place)] : nullptr;
}

QString MarketData::Text(std::uint32_t offset, std::uint16_t bytes) const {
  return QString::fromUtf8(texts_.data() + offset, bytes);
}

NowData* MarketData::Slot(int codeNumber) {
  if (const int index = IndexPlace(codeNumber); index >= 0) return &indexQuotes_[index];
  const int place = IndexOfSecurity(codeNumber);
  return place >= 0 ? &stockQuotes_[static_cast<std::size_t>(place)] : nullptr;
}

}  // namespace holdwise
