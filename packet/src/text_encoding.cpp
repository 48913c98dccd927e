// SPDX-License-Identifier: MIT
#include "text_encoding.h"

#include <QUtf8StringView>
#include <algorithm>

namespace holdwise {
namespace {

constexpr std::int64_t kPlainForEachOdd = 8;
constexpr std::int64_t kPlainForEachRare = 1;

unsigned char At(const QByteArray& bytes, qsizetype place) {
  return place < bytes.size() ? static_cast<unsigned char>(bytes[place]) : 0;
}

bool IsIn(unsigned char byte, unsigned char first, unsigned char last) {
  return byte >= first && byte <= last;
}

/// How a text looks when it is read as UTF-8.
struct AsUtf8 {
  std::int64_t longOnes = 0;  ///< characters of three and four bytes, where Chinese stands
  std::int64_t strayBytes = 0;
  std::int64_t firstStray = 0;  ///< 1-based; 0: none
};

/// Bytes of the well-formed character that begins there; 0 when none does.
int LengthAt(const QByteArray& bytes, qsizetype place) {
  const unsigned char lead = At(bytes, place);
  const int length = IsIn(lead, 0xC2, 0xDF) ? 2 : IsIn(lead, 0xE0, 0xEF) ? 3 : IsIn(lead, 0xF0, 0xF4) ? 4 : 0;
  if (length == 0 || place + length > bytes.size()) return 0;
  return QUtf8StringView(bytes.constData() + place, length).isValidUtf8() ? length : 0;
}

AsUtf8 ReadAsUtf8(const QByteArray& bytes) {
  AsUtf8 read;
  for (qsizetype place = 0; place < bytes.size();) {
    const int length = At(bytes, place) < 0x80 ? 1 : LengthAt(bytes, place);
    if (length > 2) ++read.longOnes;
    if (length == 0) {
      ++read.strayBytes;
      if (read.firstStray == 0) read.firstStray = place + 1;
    }
    place += std::max(length, 1);
  }
  return read;
}

/// How it looks as GB18030: plain are the ideographs of the national standard's two levels, its punctuation, numerals
/// and full-width letters, and characters of four bytes, which nothing else writes so. Rare ideographs that Big5 cannot
/// be mistaken for may stand among them; odd is where most of Big5 falls.
struct AsGb18030 {
  std::int64_t plain = 0;
  std::int64_t common = 0;  ///< of those, the ideographs of the first level
  std::int64_t rare = 0;
  std::int64_t odd = 0;
};

AsGb18030 ReadAsGb18030(const QByteArray& bytes) {
  AsGb18030 read;
  for (qsizetype place = 0; place < bytes.size();) {
    const unsigned char lead = At(bytes, place);
    const unsigned char trail = At(bytes, place + 1);
    if (lead < 0x80) {
      ++place;
    } else if (IsIn(trail, '0', '9')) {
      ++read.plain;
      place += 4;
    } else {
      const bool isPlain = IsIn(trail, 0xA1, 0xFE) && (IsIn(lead, 0xA1, 0xA3) || IsIn(lead, 0xB0, 0xF7));
      ++(isPlain ? read.plain : IsIn(lead, 0x81, 0xA0) && trail >= 0x40 ? read.rare : read.odd);
      if (isPlain && IsIn(lead, 0xB0, 0xD7)) ++read.common;
      place += 2;
    }
  }
  return read;
}

}  // namespace

EncodingFound FindEncoding(const QByteArray& bytes) {
  constexpr unsigned char kFirstLongLead = 0xE0;
  const auto isAscii = [](char byte) { return static_cast<unsigned char>(byte) < 0x80; };
  if (std::all_of(bytes.begin(), bytes.end(), isAscii)) return {};
  const bool hasMark = bytes.startsWith("\xEF\xBB\xBF");
  if (QUtf8StringView(bytes).isValidUtf8()) {
    const bool hasLong = std::any_of(bytes.begin(), bytes.end(),
                                     [](char byte) { return static_cast<unsigned char>(byte) >= kFirstLongLead; });
    if (hasMark || hasLong) return {};
    const AsGb18030 gb = ReadAsGb18030(bytes);
    return {
        gb.common > 0 && gb.common == gb.plain && gb.rare + gb.odd == 0 ? TextEncoding::Ambiguous : TextEncoding::Utf8,
        0};
  }
  const AsUtf8 utf8 = ReadAsUtf8(bytes);
  // A cut or changed character leaves a few stray bytes among whole characters; GB18030 has hardly a whole one.
  if (hasMark || utf8.longOnes * 3 >= utf8.strayBytes) return {TextEncoding::Damaged, utf8.firstStray};
  const AsGb18030 gb = ReadAsGb18030(bytes);
  return {gb.odd * kPlainForEachOdd + gb.rare * kPlainForEachRare <= gb.plain ? TextEncoding::Gb18030
                                                                              : TextEncoding::Unknown,
          utf8.firstStray};
}

}  // namespace holdwise
