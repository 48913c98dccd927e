// SPDX-License-Identifier: MIT
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

/// The part of CBOR (RFC 8949) that packet files use: unsigned integers, byte and text strings of definite length,
/// arrays, maps and tags. Nothing nests by recursion, so no input can exhaust the stack.
namespace holdwise {

enum class CborMajor : std::uint8_t { Unsigned = 0, Bytes = 2, Text = 3, Array = 4, Map = 5, Tag = 6 };

/// Appends items to a string.
class CborWriter {
 public:
  explicit CborWriter(std::string& out) : out_(out) {}
  void Head(CborMajor major, std::uint64_t value);
  void Text(std::string_view utf8);
  void Bytes(std::string_view bytes);

 private:
  std::string& out_;
};

/// Reads items one after the other. Anything but the asked item throws Error(Corrupt) with the place set last. The
/// bytes must outlive the reader and the views it returns.
class CborReader {
 public:
  explicit CborReader(std::string_view bytes) : rest_(bytes) {}
  /// Names the part being read, for error texts.
  void SetPlace(std::string place) { place_ = std::move(place); }
  /// The value of an unsigned, the count of an array or map, the number of a tag.
  std::uint64_t Head(CborMajor major);
  std::string_view Bytes();
  /// Valid UTF-8.
  std::string_view Text();
  /// A text that must be exactly this.
  void Key(std::string_view key);
  /// Bytes not yet read; every item takes at least one.
  [[nodiscard]] std::size_t Remaining() const noexcept { return rest_.size(); }
  [[noreturn]] void Corrupt(const std::string& what) const;
  [[noreturn]] void Refuse(const std::string& what) const;

 private:
  std::string_view Take(std::uint64_t size);

  std::string_view rest_;
  std::string place_;
};

}  // namespace holdwise
