// SPDX-License-Identifier: MIT
#include "price_request.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>
#include <vector>

#include "common/host/codes.h"
#include "common/host/host_access.h"
#include "common/series/user_value.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

constexpr int kCodeLength = 6;

TDRequestProfile PriceProfile(const QString& requestName) {
  TDRequestProfile profile;
  profile.messageId = 67017;
  profile.messageTypeFieldName = QStringLiteral("MessageType");
  profile.messageType = QStringLiteral("SUB_HQ_CURRENT_PRICE");
  profile.requestName = requestName;
  profile.serviceMessageId = 95;
  profile.serviceNameField = QStringLiteral("SVCName");
  profile.serviceName = QStringLiteral("L1_DIST");
  profile.serviceDescriptionFile = QStringLiteral("L1_Dist.xml");
  profile.timeOutMilliseconds = 20000;
  return profile;
}

std::uint32_t WholeNumber(const QString& text, const char* what) {
  const auto number = ParseInteger(text);
  if (!number || *number < 0 || *number > INT32_MAX) {
    throw Error(ErrorCategory::Refused, std::string(what) + ": " + text.toStdString());
  }
  return static_cast<std::uint32_t>(*number);
}

TDFieldSet RequestEntry(const QString& item) {
  const QString market = item.chopped(std::min<qsizetype>(kCodeLength, item.size()));
  if (market.isEmpty()) throw Error(ErrorCategory::Refused, "市场类型为空");
  TDFieldSet entry;
  entry.Set("CodeNum", item.right(kCodeLength));
  entry.Set(
      "MarketType",
      std::uint32_t{ModuleHost().DataCenter().BusMarketId(static_cast<int>(WholeNumber(market, "not a market type")))});
  return entry;
}

QString TwoDigits(int number) {
  return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
}

}  // namespace

std::unique_ptr<TDSBAsynDataDownRole> MakePriceRole(const QString& componentName, const QString& requestName,
                                                    std::function<void(const TDReply&)> onReply) {
  auto role = ModuleHost().MakeDataDownRole();
  role->SetComponentName(componentName);
  role->SetProfile(PriceProfile(requestName));
  role->OnParameter = FillPriceRequest;
  role->OnEndOfData = std::move(onReply);
  return role;
}

QString SecurityList(const QStringList& codes) {
  const CodeNumServices& services = ModuleHost().CodeNums();
  QStringList items;
  items.reserve(codes.size());
  for (const QString& code : codes) items.append(TwoDigits(services.MarketTypeOf(code)) + GetCodeCNum(code));
  return items.join(QLatin1Char(','));
}

QString SubscribeCommand(const QString& securityList) {
  return QStringLiteral("0|") + securityList;
}

QString CancelCommand(const QString& securityList) {
  return QStringLiteral("1|") + securityList;
}

void FillPriceRequest(const QString& command, TDMessage& request) {
  const QStringList parts = command.split(QLatin1Char('|'));
  const QStringList items = parts.value(1).split(QLatin1Char(','));
  auto securities = std::make_shared<std::vector<TDFieldSet>>();
  securities->reserve(static_cast<std::size_t>(items.size()));
  for (const QString& item : items) securities->push_back(RequestEntry(item));
  request.fields.Set("CommandType", WholeNumber(parts.value(0), "not a command type"));
  request.fields.Set("L1_SECUCODESEQ", TDSequence(std::move(securities)));
}

bool StorePrices(const TDReply& reply, TNameValueList& prices) {
  if (reply.timedOut) return false;
  const TDFieldSet& fields = reply.message.fields;
  if (fields.Find("ErrCode") != nullptr) {
    const std::uint32_t* code = fields.Uint32("ErrCode");
    if (code == nullptr || *code != 0) return false;
  }
  const std::vector<TDFieldSet>* entries = fields.Sequence("CURRENT_PRICET_LIST");
  if (entries == nullptr) return false;
  TNameValueSnapshot previousCloses;
  prices.Reserve(std::max(prices.Count(), static_cast<int>(entries->size())));
  for (const TDFieldSet& entry : *entries) {
    const QString* code = entry.Text("CodeNum");
    const Decimal* price = entry.DecimalValue("Price");
    if (code == nullptr || price == nullptr) continue;
    if (!price->IsZero()) {
      prices.Set(*code, PriceText(*price));
      continue;
    }
    if (!previousCloses) previousCloses = PreviousCloses();
    prices.Set(*code, FormatFixed(RealOr(previousCloses->ValueOf(*code)), 2));
  }
  return true;
}

QString PriceText(const Decimal& price) {
  constexpr int kDecimals = 2;
  constexpr int kMostDigits = 18;  // 10^18 still fits 64 bits
  if (price.scale < 0 || price.scale > kDecimals + kMostDigits) return FormatFixed(price.ToDouble(), kDecimals);
  const bool negative = price.mantissa < 0;
  std::uint64_t digits = static_cast<std::uint64_t>(price.mantissa);
  if (negative) digits = ~digits + 1;
  for (int scale = price.scale; scale > kDecimals; --scale) {
    // Only the digit cut off last decides: half away from zero looks at the first dropped digit of the exact value.
    const bool last = scale == kDecimals + 1;
    digits = digits / 10 + (last && digits % 10 >= 5 ? 1 : 0);
  }
  if (digits == 0) return QStringLiteral("0.00");
  std::array<char, 32> text{};
  char* const first = text.data() + 1 + kDecimals;  // room for a sign and leading zeros
  char* last = std::to_chars(first, text.data() + text.size(), digits).ptr;
  for (int scale = price.scale; scale < kDecimals; ++scale) *last++ = '0';
  char* start = first;
  while (last - start <= kDecimals) *--start = '0';
  if (negative) *--start = '-';
  std::copy_backward(last - kDecimals, last, last + 1);
  *(last - kDecimals) = '.';
  return QString::fromLatin1(start, last + 1 - start);
}

}  // namespace holdwise
