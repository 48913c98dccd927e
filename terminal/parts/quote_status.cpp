// SPDX-License-Identifier: MIT
#include "parts/quote_status.h"

#include <QFileInfo>
#include <utility>

namespace holdwise {
namespace {

constexpr int kShowMilliseconds = 1000;
constexpr qint64 kStandsStillSeconds = 60;
constexpr qint64 kMinute = 60;
constexpr qint64 kHour = 60 * kMinute;

QString SpanText(qint64 seconds) {
  if (seconds < kMinute) return QStringLiteral("%1 秒").arg(seconds);
  if (seconds < kHour) return QStringLiteral("%1 分钟").arg(seconds / kMinute);
  return QStringLiteral("%1 小时").arg(seconds / kHour);
}

}  // namespace

QuoteWords WordsOf(const QuoteFacts& facts) {
  QuoteWords words{{}, facts.problem};
  if (!facts.isOpen || !facts.newest.isValid()) {
    words.text = QStringLiteral("行情日期 %1 · %2")
                     .arg(facts.date, facts.isOpen ? QStringLiteral("还没有新价格") : QStringLiteral("休市"));
    return words;
  }
  const qint64 age = std::max<qint64>(facts.newest.secsTo(facts.now), 0);
  words.text = QStringLiteral("行情 %1 · %2前").arg(facts.newest.toString(QStringLiteral("HH:mm:ss")), SpanText(age));
  if (words.reason.isEmpty() && age >= kStandsStillSeconds)
    words.reason = QStringLiteral("价格 %1没有变动，行情可能断了").arg(SpanText(age));
  return words;
}

QuoteStatus::QuoteStatus(const MarketData& data, MarketConnection& connection, ClockService& clock, MainWindow& window)
    : data_(data), clock_(clock), window_(window) {
  // What a file of quotes has been written with is as new as the file; those of a simulation move at once.
  if (!data.IsSimulated()) newest_ = QFileInfo(data.Folder() + QStringLiteral("/quotes.dat")).lastModified();
  connect(&data, &MarketData::QuotesChanged, this, [this] { newest_ = clock_.Now(); });
  connect(&connection, &MarketConnection::QuotesChanged, this, [this](const QString& problem) {
    problem_ = problem;
    Show();
  });
  timer_.callOnTimeout(this, [this] { Show(); });
  timer_.start(kShowMilliseconds);
  Show();
}

void QuoteStatus::Show() {
  const QuoteWords words = WordsOf({clock_.Now(), newest_, data_.CurrentDateText(), data_.IsOpen(), problem_});
  window_.SetQuotes(words.text, words.reason);
  constexpr std::pair<int, const char*> kIndices[] = {{1, "上证"}, {399001, "深成"}, {399300, "沪深300"}};
  std::vector<IndexLevel> levels;
  for (const auto& [number, name] : kIndices) {
    const NowData level = data_.IndexNowData(number);
    levels.push_back({QString::fromUtf8(name), level.currentPrice, level.previousClose});
  }
  window_.SetIndices(levels);
}

}  // namespace holdwise
