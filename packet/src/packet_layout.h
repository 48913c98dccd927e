// SPDX-License-Identifier: MIT
#pragma once
#include <array>
#include <bit>
#include <cstdint>
#include <string_view>

/// Names and numbers of the packet content; see docs/packet.cddl.
namespace holdwise {

static_assert(std::endian::native == std::endian::little, "typed arrays are copied as they lie in memory");

inline constexpr std::string_view kFormatName = "holdwise.packet";
inline constexpr std::uint64_t kFormatVersion = 1;
inline constexpr std::uint64_t kPacketEntries = 4;
inline constexpr std::uint64_t kColumnEntries = 3;  ///< one more with nulls

inline constexpr std::string_view kKeyFormat = "format";
inline constexpr std::string_view kKeyVersion = "version";
inline constexpr std::string_view kKeyRows = "rows";
inline constexpr std::string_view kKeyColumns = "columns";
inline constexpr std::string_view kKeyName = "name";
inline constexpr std::string_view kKeyType = "type";
inline constexpr std::string_view kKeyValues = "values";
inline constexpr std::string_view kKeyNulls = "nulls";

/// In the order of ColumnType.
inline constexpr std::array<std::string_view, 4> kTypeNames = {"integer", "real", "text", "datetime"};

/// Typed arrays of RFC 8746.
inline constexpr std::uint64_t kTagInt8 = 72;
inline constexpr std::uint64_t kTagInt16 = 77;
inline constexpr std::uint64_t kTagInt32 = 78;
inline constexpr std::uint64_t kTagInt64 = 79;
inline constexpr std::uint64_t kTagFloat64 = 86;

/// Bytes of the null bitmap: row r is bit r % 8 (lowest first) of byte r / 8.
constexpr std::size_t NullBytes(std::size_t rows) {
  return (rows + 7) / 8;
}

}  // namespace holdwise
