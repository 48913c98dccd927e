// SPDX-License-Identifier: MIT
#include "holdwise/packet/message.h"

#include <charconv>
#include <cmath>
#include <string>

#include "holdwise/packet/error.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {

double Decimal::ToDouble() const noexcept {
  // Both operands of the division are exact up to here, so its one rounding is the right one.
  constexpr std::int64_t kExactMantissa = 1LL << 53;
  static constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9, 1e10,
                                       1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20};
  if (mantissa >= -kExactMantissa && mantissa <= kExactMantissa && scale >= 0 && scale <= 20) {
    return static_cast<double>(mantissa) / kPowers[scale];
  }
  char text[48];
  char* end = std::to_chars(text, text + 24, mantissa).ptr;
  *end++ = 'e';
  end = std::to_chars(end, text + sizeof text, -static_cast<std::int64_t>(scale)).ptr;
  const std::optional<double> value = ParseReal(std::string_view(text, static_cast<std::size_t>(end - text)));
  return value.value_or(mantissa < 0 ? -HUGE_VAL : HUGE_VAL);
}

Decimal Decimal::FromDouble(double value, int scale) {
  if (!std::isfinite(value) || scale < 0 || scale > 9) {
    throw Error(ErrorCategory::Refused, "数值无法表示为定点小数");
  }
  std::string digits = FormatFixedUtf8(value, scale);
  if (scale > 0) digits.erase(digits.size() - static_cast<std::size_t>(scale) - 1, 1);
  const std::optional<std::int64_t> mantissa = ParseInteger(digits);
  if (!mantissa) throw Error(ErrorCategory::Refused, "数值过大，无法表示为定点小数：" + ShortestUtf8(value));
  return {*mantissa, scale};
}

void TDFieldSet::Set(const QByteArray& name, TDFieldValue value) {
  for (auto& [fieldName, fieldValue] : fields_) {
    if (fieldName == name) {
      fieldValue = std::move(value);
      return;
    }
  }
  fields_.emplace_back(name, std::move(value));
}

const TDFieldValue* TDFieldSet::Find(const char* name) const noexcept {
  for (const auto& [fieldName, fieldValue] : fields_) {
    if (fieldName == name) return &fieldValue;
  }
  return nullptr;
}

const std::uint32_t* TDFieldSet::Uint32(const char* name) const noexcept {
  return std::get_if<std::uint32_t>(Find(name));
}

const Decimal* TDFieldSet::DecimalValue(const char* name) const noexcept {
  return std::get_if<Decimal>(Find(name));
}

const QString* TDFieldSet::Text(const char* name) const noexcept {
  return std::get_if<QString>(Find(name));
}

const std::vector<TDFieldSet>* TDFieldSet::Sequence(const char* name) const noexcept {
  const TDSequence* sequence = std::get_if<TDSequence>(Find(name));
  return sequence != nullptr ? sequence->get() : nullptr;
}

}  // namespace holdwise
