// SPDX-License-Identifier: MIT
#include "common/store/incomplete_portfolios.h"

#include <QHash>
#include <QSet>
#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

#include "common/host/codes.h"
#include "common/host/host_access.h"
#include "common/store/statements.h"
#include "holdwise/packet/dates.h"

namespace holdwise {
namespace {

constexpr std::size_t kMostHintLines = 20;
constexpr std::size_t kMostHintInputs = 5;
constexpr std::size_t kAll = SIZE_MAX;
/// By its name alone: 000001 is a stock's code, too.
const QString kIndexName = QStringLiteral("上证指数");

/// The index's code where the statistics are stored.
constexpr std::int64_t kIndexCode = 1;

struct Holding {
  std::int64_t code = 0;
  bool hasWeight = false;
};
using Holdings = std::vector<Holding>;

struct DailyRows {
  std::optional<int> end;  ///< none without any
  bool hasReturn = false;
  bool hasTwoDays = false;  ///< the index has a further day with a return after the first one
};
using DailyRowsByCode = QHash<std::int64_t, DailyRows>;

std::optional<int> NumberIn(const ResultSet& rows, int row, int column) {
  if (rows.IsNull(row, column)) return std::nullopt;
  return static_cast<int>(rows.IntegerAt(row, column));
}

DailyRowsByCode ReadDailyRows(DatabaseStatements& database, PortfolioSet portfolios) {
  const ResultSet rows = database.Query(sql::DailyRowsSince(portfolios == PortfolioSet::Saved,
                                                            database.Scalar(sql::kIndexFirstDay).integer,
                                                            database.Scalar(sql::kIndexLastButOne).integer));
  const int code = rows.Column("SECUCODE");
  const int end = rows.Column("WINDOWEND");
  const int hasReturn = rows.Column("HASRETURN");
  const int hasTwoDays = rows.Column("HASTWODAYS");
  DailyRowsByCode daily;
  for (int row = 0; row < rows.RowCount(); ++row) {
    daily.insert(rows.IntegerAt(row, code),
                 {NumberIn(rows, row, end), !rows.IsNull(row, hasReturn), !rows.IsNull(row, hasTwoDays)});
  }
  return daily;
}

QHash<QString, Holdings> ReadHoldings(DatabaseStatements& database, PortfolioSet portfolios) {
  const ResultSet rows =
      database.Query(portfolios == PortfolioSet::Saved ? sql::kSavedHoldings : sql::kUnsavedHoldings);
  const int id = rows.Column("MAINID");
  const int code = rows.Column("SECUCODE");
  const int weight = rows.Column("PZBL");
  QHash<QString, Holdings> holdings;
  for (int row = 0; row < rows.RowCount(); ++row) {
    holdings[rows.TextAt(row, id)].push_back(
        {rows.IntegerAt(row, code), !rows.IsNull(row, weight) && rows.RealAt(row, weight) != 0});
  }
  return holdings;
}

std::optional<MissingInput> Compare(const DailyRows& daily, int newest, const QString& code, const QString& name) {
  if (!daily.end) return MissingInput{Lack::NoStatistics, code, name, 0};
  if (*daily.end < newest) return MissingInput{Lack::OldStatistics, code, name, *daily.end};
  if (!daily.hasReturn) return MissingInput{Lack::NoReturn, code, name, 0};
  return std::nullopt;
}

/// What the data centre stands at, as far as it knows, and whether there is a deposit rate.
struct PresentData {
  bool hasRate = false;
  int lastDay = 0;
  std::optional<QSet<std::int64_t>> codes;  ///< those whose rows are of its edition
};

PresentData ReadPresentData(DatabaseStatements& database) {
  const TDataCenter& dataCenter = ModuleHost().DataCenter();
  PresentData present;
  present.hasRate = !database.Scalar(sql::kOneYearDepositRate).isNull;
  if (!dataCenter.TradingDates().empty()) present.lastDay = dataCenter.TradingDates().front();
  const QString edition = dataCenter.DataEdition();
  if (edition.isEmpty()) return present;
  const ResultSet rows = database.Query(sql::CodesOfEdition(edition));
  const int code = rows.Column("SECUCODE");
  present.codes.emplace();
  for (int row = 0; row < rows.RowCount(); ++row) present.codes->insert(rows.IntegerAt(row, code));
  return present;
}

/// What keeps a portfolio of holdings with returns from having figures, or figures with a deviation.
std::optional<Lack> LackOfDays(const Holdings& holdings, const DailyRowsByCode& daily) {
  const auto hasWeight = [](const Holding& one) { return one.hasWeight; };
  if (std::none_of(holdings.begin(), holdings.end(), hasWeight)) return Lack::NoWeights;
  bool hasReturn = false;
  for (const Holding& one : holdings) {
    if (!one.hasWeight) continue;
    const DailyRows rows = daily.value(one.code);
    if (rows.hasTwoDays) return std::nullopt;
    hasReturn = hasReturn || rows.hasReturn;
  }
  if (!hasReturn || !daily.value(kIndexCode).end) return std::nullopt;
  return Lack::OneReturn;
}

std::vector<MissingInput> MissingOf(const Holdings& holdings, const DailyRowsByCode& daily,
                                    const PresentData& present) {
  const DailyRows index = daily.value(kIndexCode);
  int newest = present.lastDay;
  if (newest == 0) {
    newest = index.end.value_or(0);
    for (const Holding& one : holdings) newest = std::max(newest, daily.value(one.code).end.value_or(0));
  }
  std::vector<MissingInput> missing;
  if (auto one = Compare(index, newest, QString(), kIndexName)) missing.push_back(*std::move(one));
  if (index.end && present.lastDay != 0 && *index.end > present.lastDay)
    missing.push_back({Lack::NewStatistics, {}, kIndexName, *index.end});
  for (const auto& [code, hasWeight] : holdings) {
    const QString digits = GetCodeCNum(QStringLiteral("%1").arg(code, 6, 10, QLatin1Char('0')));
    if (auto one = Compare(daily.value(code), newest, digits, ModuleHost().CodeNums().NameOf(digits)))
      missing.push_back(*std::move(one));
    else if (present.codes && !present.codes->contains(code))
      missing.push_back({Lack::OtherEdition, digits, ModuleHost().CodeNums().NameOf(digits), 0});
  }
  if (!holdings.empty()) {
    if (const auto lack = LackOfDays(holdings, daily)) missing.push_back({*lack, {}, {}, 0});
    if (!present.hasRate) missing.push_back({Lack::NoDepositRate, {}, {}, 0});
  }
  if (missing.empty()) missing.push_back({});
  return missing;
}

QString TextOf(const MissingInput& input) {
  QString security = input.name.isEmpty() ? input.code : input.name;
  if (!input.name.isEmpty() && !input.code.isEmpty()) security += QLatin1Char('(') + input.code + QLatin1Char(')');
  const QString date = QString::fromStdString(DateText(input.date));
  switch (input.lack) {
    case Lack::NotCalculated:
      break;
    case Lack::NoStatistics:
      return security + QStringLiteral("没有统计数据");
    case Lack::OldStatistics:
      return security + QStringLiteral("的统计数据只到 %1").arg(date);
    case Lack::NewStatistics:
      return security + QStringLiteral("的统计数据已到 %1，晚于行情日期，请重新启动终端").arg(date);
    case Lack::OtherEdition:
      return security + QStringLiteral("的统计数据没有随当前数据更新");
    case Lack::NoReturn:
      return security + QStringLiteral("还没有日收益率");
    case Lack::OneReturn:
      return QStringLiteral("只有一天的收益率，不能计算风险数据");
    case Lack::NoWeights:
      return QStringLiteral("各成分股的比例都是 0，不能计算风险数据");
    case Lack::NoDepositRate:
      return QStringLiteral("没有一年期定期存款利率，Alpha、夏普和特雷诺指数按无风险利率 0 计算");
    case Lack::NoPrice:
      return security + QStringLiteral("没有最新价");
    case Lack::NoPreviousClose:
      return security + QStringLiteral("没有昨收盘价");
    case Lack::NoWeekClose:
      return security + QStringLiteral("没有上周收盘价");
    case Lack::NoMonthClose:
      return security + QStringLiteral("没有上月收盘价");
    case Lack::NoBeta:
      return security + QStringLiteral("没有贝塔系数，压力测试按 0 计算");
    case Lack::NoCost:
      return QStringLiteral("没有买入成本，回报率按 0 计算");
    case Lack::NoBuyIndex:
      return QStringLiteral("没有买入时的上证指数，市场回报率按 100% 计算");
    case Lack::BoughtLater:
      return QStringLiteral("买入日期 %1，请换用较新的数据目录").arg(input.found);
    case Lack::CorrectedIndex:
      return input.found;
  }
  return QStringLiteral("风险数据没有算完");
}

QString LineOf(const IncompletePortfolio& portfolio, std::size_t mostInputs) {
  QStringList texts;
  const std::size_t shown = std::min(mostInputs, portfolio.missing.size());
  for (std::size_t i = 0; i < shown; ++i) texts.append(TextOf(portfolio.missing[i]));
  QString line = portfolio.name + QStringLiteral("：") + texts.join(QStringLiteral("，"));
  if (shown < portfolio.missing.size()) line += QStringLiteral(" 等 %1 项").arg(portfolio.missing.size());
  return line;
}

}  // namespace

std::vector<IncompletePortfolio> IncompletePortfolios(DatabaseStatements& database, PortfolioSet set) {
  const ResultSet rows = database.Query(sql::IncompletePortfolios(set == PortfolioSet::Saved));
  if (rows.IsEmpty()) return {};
  const int id = rows.Column("ID");
  const int name = rows.Column("COMNAME");
  const int date = rows.Column("CALCDATE");
  const DailyRowsByCode daily = ReadDailyRows(database, set);
  const QHash<QString, Holdings> holdings = ReadHoldings(database, set);
  const PresentData present = ReadPresentData(database);
  std::vector<IncompletePortfolio> portfolios;
  for (int row = 0; row < rows.RowCount(); ++row) {
    const QString key = rows.TextAt(row, id);
    portfolios.push_back({key, rows.TextAt(row, name), NumberIn(rows, row, date).value_or(0),
                          MissingOf(holdings.value(key), daily, present)});
  }
  return portfolios;
}

QString NoticeOf(const std::vector<IncompletePortfolio>& portfolios) {
  if (portfolios.empty()) return {};
  return QStringLiteral("%1 个组合的数据不完整").arg(portfolios.size());
}

QStringList LinesOf(const std::vector<IncompletePortfolio>& portfolios) {
  QStringList lines;
  for (const IncompletePortfolio& portfolio : portfolios) lines.append(LineOf(portfolio, kAll));
  return lines;
}

QString HintOf(const std::vector<IncompletePortfolio>& portfolios) {
  QStringList lines;
  const std::size_t shown = std::min(kMostHintLines, portfolios.size());
  for (std::size_t i = 0; i < shown; ++i) lines.append(LineOf(portfolios[i], kMostHintInputs));
  if (shown < portfolios.size()) lines.append(QStringLiteral("……共 %1 个组合").arg(portfolios.size()));
  return lines.join(QLatin1Char('\n'));
}

}  // namespace holdwise
