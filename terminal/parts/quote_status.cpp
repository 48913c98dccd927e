// SPDX-License-Identifier: MIT
#include "parts/quote_status.h"

#include <QFileInfo>
#include <algorithm>
#include <utility>

#include "datacentre/beijing_time.h"
#include "intraday/trading_day.h"

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

/// Why prices do not move at that second of trading; empty when they do.
QString PauseWords(std::optional<int> traded, bool isSimulated) {
  if (!traded) return QStringLiteral("未开市，9:30 开市");
  if (*traded == kMorningSeconds) return QStringLiteral("午间休市，13:00 开市");
  if (*traded < kDaySeconds) return {};
  return isSimulated ? QStringLiteral("已收盘，稍后重新开市") : QStringLiteral("已收盘");
}

/// Not more than the market has been open without a break: what came before that is no sign of a feed that stands.
qint64 StoodStill(qint64 age, int traded) {
  return std::min<qint64>(age, traded < kMorningSeconds ? traded : traded - kMorningSeconds);
}

/// The day of the last opening there can have been: which working days are holidays is not known.
QDate LastOpening(const QDateTime& now) {
  constexpr int kFriday = 5;
  QDate day = now.time() < QTime(9, 30) ? now.date().addDays(-1) : now.date();
  while (day.dayOfWeek() > kFriday) day = day.addDays(-1);
  return day;
}

QuoteWords WordsOfAnotherDay(const QuoteFacts& facts) {
  QuoteWords words{QStringLiteral("行情日期 %1 · 不是今天的行情").arg(facts.date), facts.problem};
  if (words.reason.isEmpty() && QDate::fromString(facts.date, Qt::ISODate) < LastOpening(facts.now))
    words.reason = QStringLiteral("如果之后开过市，数据还没有更新");
  return words;
}

}  // namespace

QuoteWords WordsOf(const QuoteFacts& facts) {
  const QString day = QStringLiteral("行情日期 %1").arg(facts.date);
  const QString text = QStringLiteral("%1 · %2");
  const QString noPrice = QStringLiteral("还没有新价格");
  if (!facts.second && !facts.isSimulated) return WordsOfAnotherDay(facts);
  if (!facts.second) return {text.arg(day, noPrice), facts.problem};
  const QString ownTime = QStringLiteral("行情 ") + QTime::fromMSecsSinceStartOfDay(*facts.second * 1000).toString();
  const std::optional<int> traded = TradingSecondAt(*facts.second);
  if (const QString pause = PauseWords(traded, facts.isSimulated); !pause.isEmpty())
    return {text.arg(facts.isSimulated ? ownTime : day, pause), facts.problem};
  if (!facts.newest.isValid()) return {text.arg(day, noPrice), facts.problem};
  const qint64 age = std::max<qint64>(facts.newest.secsTo(facts.now), 0);
  const QString came = QStringLiteral("行情 ") + facts.newest.time().toString();
  QuoteWords words{text.arg(facts.isSimulated ? ownTime : came, SpanText(age) + QStringLiteral("前")), facts.problem};
  const qint64 stood = StoodStill(age, *traded);
  if (words.reason.isEmpty() && stood >= kStandsStillSeconds)
    words.reason = QStringLiteral("价格 %1没有变动，行情可能断了").arg(SpanText(stood));
  return words;
}

QuoteStatus::QuoteStatus(const MarketData& data, MarketConnection& connection, ClockService& clock, MainWindow& window)
    : data_(data), connection_(connection), clock_(clock), window_(window) {
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
  const bool isSimulated = data_.IsSimulated();
  const std::optional<int> second = isSimulated ? connection_.OwnSecondOfDay() : data_.SecondOfTradingDay();
  const QuoteWords words = WordsOf(
      {BeijingTime(clock_.Now()), BeijingTime(newest_), data_.CurrentDateText(), isSimulated, second, problem_});
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
