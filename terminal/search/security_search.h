// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringView>
#include <cstdint>
#include <vector>

namespace holdwise {

/// A security as it can be looked for.
struct SecurityEntry {
  int codeNumber = 0;
  QString code;      ///< six digits
  QString name;      ///< as shown
  QString initials;  ///< capital letters and digits by which each character of the name can be typed, the characters
                     ///< apart by a blank ("Y HX"); empty: only found by code and name
};

/// Finds securities by code, by name and by the first letters of its pinyin. Any one thread at a time.
class SecuritySearch {
 public:
  /// The order of `entries` is the last rule of the ranking.
  explicit SecuritySearch(std::vector<SecurityEntry> entries);

  /// What is found for a typed text, best first, at most `most`; nothing for a text of blanks. Full-width and small
  /// letters count as capitals, blanks not at all. Ranking: digits at the start of the code; then a name that begins
  /// with the text, or whose characters' initials do, the shorter name first; then a name with it inside, the shorter
  /// first; then digits inside the code. Valid as long as the search.
  [[nodiscard]] std::vector<const SecurityEntry*> Find(const QString& typed, std::size_t most) const;

 private:
  struct Key {
    QString name;                      ///< as a typed text is read
    std::vector<std::uint64_t> masks;  ///< a bit a letter or digit, for each character of the name
  };

  std::vector<SecurityEntry> entries_;
  std::vector<Key> keys_;  ///< parallel to entries_
};

}  // namespace holdwise
