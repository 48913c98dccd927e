// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QString>
#include <cstdint>
#include <memory>
#include <utility>
#include <variant>
#include <vector>

/// Messages of the bus "DSB": named fields, sequences of field sets, and the addressing of a request. Plain value
/// types; thread-safe as const.
namespace holdwise {

/// Exact decimal: value = mantissa x 10^-scale.
struct Decimal {
  std::int64_t mantissa = 0;
  int scale = 0;
  [[nodiscard]] double ToDouble() const noexcept;
  [[nodiscard]] bool IsZero() const noexcept { return mantissa == 0; }
  /// Nearest decimal with that many digits after the point (0 to 9), half away from zero. A value that is not finite or
  /// does not fit: Error(Refused).
  [[nodiscard]] static Decimal FromDouble(double value, int scale);
  bool operator==(const Decimal&) const = default;
};

class TDFieldSet;
/// A sequence of field sets; shared and immutable once built.
using TDSequence = std::shared_ptr<const std::vector<TDFieldSet>>;
using TDFieldValue = std::variant<std::uint32_t, std::int64_t, Decimal, QString, TDSequence>;

/// Ordered named fields. Names are compared exactly. Setting a name again replaces its value.
class TDFieldSet {
 public:
  void Set(const QByteArray& name, TDFieldValue value);
  /// The value, or nullptr when the field is absent.
  [[nodiscard]] const TDFieldValue* Find(const char* name) const noexcept;
  /// Typed access: nullptr when the field is absent or of another type.
  [[nodiscard]] const std::uint32_t* Uint32(const char* name) const noexcept;
  [[nodiscard]] const Decimal* DecimalValue(const char* name) const noexcept;
  [[nodiscard]] const QString* Text(const char* name) const noexcept;
  /// The sequence, or nullptr when absent, of another type or empty of a value.
  [[nodiscard]] const std::vector<TDFieldSet>* Sequence(const char* name) const noexcept;
  [[nodiscard]] const std::vector<std::pair<QByteArray, TDFieldValue>>& Fields() const noexcept { return fields_; }

 private:
  std::vector<std::pair<QByteArray, TDFieldValue>> fields_;
};

/// Addressing of a request; constant for one role.
struct TDRequestProfile {
  std::uint32_t messageId = 0;
  QString messageTypeFieldName;  ///< "MessageType"
  QString messageType;           ///< "SUB_HQ_CURRENT_PRICE"
  QString requestName;
  std::uint32_t serviceMessageId = 0;
  QString serviceNameField;  ///< "SVCName"
  QString serviceName;       ///< "L1_DIST"
  QString serviceDescriptionFile;
  int timeOutMilliseconds = 20000;
};

/// A request or a reply: the addressing and the fields.
struct TDMessage {
  TDRequestProfile profile;
  TDFieldSet fields;
};

}  // namespace holdwise
