// SPDX-License-Identifier: MIT
#include "common/helpers/lists.h"

#include <algorithm>

#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

constexpr QChar kQuote = u'"';

/// Reads a delimited text item by item.
class DelimitedText {
 public:
  DelimitedText(const QString& text, QChar delimiter) : text_(text), delimiter_(delimiter) {}

  QStringList Items() {
    QStringList items;
    SkipBlanks();
    while (!AtEnd()) {
      items.append(Current() == kQuote ? QuotedItem() : PlainItem());
      SkipBlanks();
      if (AtEnd() || Current() != delimiter_) continue;
      ++position_;
      if (AtEnd()) items.append(QString());
      SkipBlanks();
    }
    return items;
  }

 private:
  [[nodiscard]] bool AtEnd() const { return position_ >= text_.size(); }
  [[nodiscard]] QChar Current() const { return text_.at(position_); }
  void SkipBlanks() {
    while (!AtEnd() && Current() <= u' ') ++position_;
  }

  QString PlainItem() {
    const qsizetype start = position_;
    while (!AtEnd() && Current() > u' ' && Current() != delimiter_) ++position_;
    return text_.sliced(start, position_ - start);
  }

  QString QuotedItem() {
    QString item;
    for (++position_; !AtEnd(); ++position_) {
      if (Current() == kQuote) {
        ++position_;
        if (AtEnd() || Current() != kQuote) return item;
      }
      item.append(Current());
    }
    return item;
  }

  const QString& text_;
  QChar delimiter_;
  qsizetype position_ = 0;
};

}  // namespace

void Quick_sort(std::span<std::int32_t> values, int highest) {
  if (highest <= 0) return;
  const auto count = static_cast<std::size_t>(highest) + 1;
  if (count > values.size()) throw Error(ErrorCategory::Refused, "sorting past the end of the values");
  std::sort(values.begin(), values.begin() + highest + 1);
}

QStringList StrToStringList(const QString& text, QChar delimiter) {
  return DelimitedText(text, delimiter).Items();
}

}  // namespace holdwise
