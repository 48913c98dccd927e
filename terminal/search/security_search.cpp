// SPDX-License-Identifier: MIT
#include "search/security_search.h"

#include <QList>
#include <algorithm>
#include <span>
#include <tuple>

namespace holdwise {
namespace {

constexpr int kDigits = 10;

enum Rank { kCodeStart, kNameStart, kNameInside, kCodeInside, kNotFound };

/// A text as it is compared: capitals of normal width without blanks.
QString Plain(const QString& text) {
  return text.normalized(QString::NormalizationForm_KC).toUpper().remove(QLatin1Char(' '));
}

/// The bit of a letter or digit; 0 of anything else.
std::uint64_t BitOf(QChar character) {
  if (character >= u'0' && character <= u'9') return 1ULL << (character.unicode() - u'0');
  if (character >= u'A' && character <= u'Z') return 1ULL << (character.unicode() - u'A' + kDigits);
  return 0;
}

std::vector<std::uint64_t> MasksOf(const QString& initials) {
  std::vector<std::uint64_t> masks;
  for (const QStringView character : QStringView(initials).split(u' ', Qt::SkipEmptyParts)) {
    std::uint64_t mask = 0;
    for (const QChar letter : character) mask |= BitOf(letter);
    masks.push_back(mask);
  }
  return masks;
}

/// Place in `masks` from which each typed bit is in its mask; -1 when there is none.
int FindMasks(std::span<const std::uint64_t> typed, std::span<const std::uint64_t> masks) {
  const auto found = std::search(masks.begin(), masks.end(), typed.begin(), typed.end(),
                                 [](std::uint64_t mask, std::uint64_t bit) { return (mask & bit) != 0; });
  return found == masks.end() ? -1 : static_cast<int>(found - masks.begin());
}

Rank RankAt(qsizetype place, Rank start, Rank inside) {
  return place < 0 ? kNotFound : place == 0 ? start : inside;
}

}  // namespace

SecuritySearch::SecuritySearch(std::vector<SecurityEntry> entries) : entries_(std::move(entries)) {
  keys_.reserve(entries_.size());
  for (const SecurityEntry& entry : entries_) keys_.push_back({Plain(entry.name), MasksOf(entry.initials)});
}

std::vector<const SecurityEntry*> SecuritySearch::Find(const QString& typed, std::size_t most) const {
  const QString text = Plain(typed);
  if (text.isEmpty()) return {};
  std::vector<std::uint64_t> bits;
  for (const QChar character : text) bits.push_back(BitOf(character));
  const bool areInitials = std::find(bits.begin(), bits.end(), 0) == bits.end();

  using Found = std::tuple<Rank, qsizetype, std::size_t>;  // rank, length of the name, place
  std::vector<Found> found;
  for (std::size_t place = 0; place < entries_.size(); ++place) {
    const Key& key = keys_[place];
    const Rank byCode = RankAt(entries_[place].code.indexOf(text), kCodeStart, kCodeInside);
    Rank byName = RankAt(key.name.indexOf(text), kNameStart, kNameInside);
    if (areInitials) byName = std::min(byName, RankAt(FindMasks(bits, key.masks), kNameStart, kNameInside));
    const Rank rank = std::min(byCode, byName);
    if (rank != kNotFound) found.emplace_back(rank, rank == byName ? key.name.size() : 0, place);
  }
  const std::size_t count = std::min(most, found.size());
  std::partial_sort(found.begin(), found.begin() + static_cast<std::ptrdiff_t>(count), found.end());
  std::vector<const SecurityEntry*> best;
  best.reserve(count);
  for (std::size_t rank = 0; rank < count; ++rank) best.push_back(&entries_[std::get<std::size_t>(found[rank])]);
  return best;
}

}  // namespace holdwise
