// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <cstdint>

/// In which encoding a text is, told from its bytes. Pure.
namespace holdwise {

enum class TextEncoding {
  Utf8,       ///< valid, and nothing else that is likely
  Gb18030,    ///< plainly: what it would be is Chinese as people write it
  Damaged,    ///< UTF-8 with bytes missing or changed
  Ambiguous,  ///< valid UTF-8 and plain Chinese in GB18030 as well
  Unknown,    ///< neither: Big5, say
};

struct EncodingFound {
  TextEncoding encoding = TextEncoding::Utf8;
  std::int64_t badByte = 0;  ///< 1-based place of the first byte that is no UTF-8; 0 when all are
};

/// Gb18030 is a likelihood: whether every byte is valid in it, the conversion tells. A byte-order mark of UTF-8 rules
/// everything else out. A text of ASCII alone, or none, is Utf8.
[[nodiscard]] EncodingFound FindEncoding(const QByteArray& bytes);

}  // namespace holdwise
