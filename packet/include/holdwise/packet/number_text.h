// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringView>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Numbers as texts, made and read in this one place. No locale anywhere. All functions are pure and thread-safe.
namespace holdwise {

/// Strict reading of a decimal number: optional sign, digits with an optional ".", optional exponent; at least one
/// digit. No blanks, no thousands marks, no trailing characters, no "nan"/"inf"/hex; a value that overflows a double is
/// refused. Empty text is refused.
[[nodiscard]] std::optional<double> ParseReal(std::string_view text) noexcept;
[[nodiscard]] std::optional<double> ParseReal(QStringView text) noexcept;
/// Strict reading of a whole number: optional sign and digits, within 64 bits.
[[nodiscard]] std::optional<std::int64_t> ParseInteger(std::string_view text) noexcept;
[[nodiscard]] std::optional<std::int64_t> ParseInteger(QStringView text) noexcept;
/// Reading with a default: exactly the strict reading, else the default.
[[nodiscard]] double RealOr(QStringView text, double fallback = 0) noexcept;
[[nodiscard]] std::int64_t IntegerOr(QStringView text, std::int64_t fallback = 0) noexcept;

/// Fixed number of decimals (0 to 12), half away from zero on the exact value of the double. A result that prints as
/// zero carries no minus sign. Not finite: "0" with the asked decimals.
[[nodiscard]] QString FormatFixed(double value, int decimals);
[[nodiscard]] std::string FormatFixedUtf8(double value, int decimals);
/// The shortest decimal text that reads back equal; plain notation for magnitudes from 1e-7 to below 1e17 and for zero,
/// exponent notation outside. Not finite: throws Error(Refused).
[[nodiscard]] QString ShortestText(double value);
[[nodiscard]] std::string ShortestUtf8(double value);
/// The double nearest to the value written with so many significant digits (1 to 17): its shortest text has no more.
/// Not finite: unchanged.
[[nodiscard]] double RoundToDigits(double value, int digits) noexcept;
/// "%.6D": at least six digits, zero-padded.
[[nodiscard]] QString SixDigits(std::int64_t value);

}  // namespace holdwise
