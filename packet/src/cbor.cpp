// SPDX-License-Identifier: MIT
#include "cbor.h"

#include <QUtf8StringView>

#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

constexpr unsigned kOneByteFollows = 24;
constexpr unsigned kEightBytesFollow = 27;

}  // namespace

void CborWriter::Head(CborMajor major, std::uint64_t value) {
  const unsigned kind = static_cast<unsigned>(major) << 5;
  if (value < kOneByteFollows) {
    out_.push_back(static_cast<char>(kind | value));
    return;
  }
  unsigned lengthCode = kOneByteFollows;
  int bytes = 1;
  while (bytes < 8 && value >> (8 * bytes) != 0) {
    bytes *= 2;
    ++lengthCode;
  }
  out_.push_back(static_cast<char>(kind | lengthCode));
  for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) out_.push_back(static_cast<char>(value >> shift));
}

void CborWriter::Text(std::string_view utf8) {
  Head(CborMajor::Text, utf8.size());
  out_.append(utf8);
}

void CborWriter::Bytes(std::string_view bytes) {
  Head(CborMajor::Bytes, bytes.size());
  out_.append(bytes);
}

std::uint64_t CborReader::Head(CborMajor major) {
  const auto first = static_cast<unsigned char>(Take(1).front());
  if (first >> 5 != static_cast<unsigned>(major)) Corrupt("内容的类型不符");
  const unsigned lengthCode = first & 31U;
  if (lengthCode < kOneByteFollows) return lengthCode;
  if (lengthCode > kEightBytesFollow) Corrupt("长度不明");
  std::uint64_t value = 0;
  for (const char byte : Take(1ULL << (lengthCode - kOneByteFollows))) {
    value = value << 8 | static_cast<unsigned char>(byte);
  }
  return value;
}

std::string_view CborReader::Bytes() {
  return Take(Head(CborMajor::Bytes));
}

std::string_view CborReader::Text() {
  const std::string_view text = Take(Head(CborMajor::Text));
  if (!QUtf8StringView(text.data(), static_cast<qsizetype>(text.size())).isValidUtf8()) Corrupt("文本不是有效的 UTF-8");
  return text;
}

void CborReader::Key(std::string_view key) {
  if (Text() != key) Corrupt("缺少“" + std::string(key) + "”");
}

std::string_view CborReader::Take(std::uint64_t size) {
  if (size > rest_.size()) Corrupt("内容不完整");
  const std::string_view taken = rest_.substr(0, size);
  rest_.remove_prefix(size);
  return taken;
}

void CborReader::Corrupt(const std::string& what) const {
  throw Error(ErrorCategory::Corrupt, "数据文件已损坏：" + place_ + what);
}

void CborReader::Refuse(const std::string& what) const {
  throw Error(ErrorCategory::Refused, "数据文件超出限制：" + place_ + what);
}

}  // namespace holdwise
