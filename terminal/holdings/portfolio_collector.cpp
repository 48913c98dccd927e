// SPDX-License-Identifier: MIT
#include "portfolio_collector.h"

#include "holdings/portfolio_rules.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/entry_limits.h"
#include "holdwise/packet/text_file.h"
#include "records.h"

namespace holdwise {
namespace {

/// The date a cell holds, 0 when it is empty, none when it is no date.
std::optional<int> DateIn(const QString& text) {
  if (text.isEmpty()) return 0;
  return ReadMarketDate(text.toStdString());
}

}  // namespace

CsvPortfolio& PortfolioCollector::RowOf(const QString& name, int line) {
  const auto place = places_.constFind(name);
  const bool isKnown = place != places_.constEnd();
  const std::size_t number = isKnown ? *place : result_.portfolios.size();
  if (!isKnown) {
    places_.insert(name, number);
    result_.portfolios.push_back({name, line, std::nullopt, 0, {}});
  }
  CsvPortfolio& portfolio = result_.portfolios[number];
  ++portfolio.rows;
  return portfolio;
}

bool PortfolioCollector::CheckDate(const QString& text, int line) {
  const bool isDate = DateIn(text).has_value();
  if (!isDate) AddProblem(result_.problems, line, QStringLiteral("日期“%1”不是形如2025-03-03的日期").arg(text));
  return isDate;
}

bool PortfolioCollector::TakeDate(CsvPortfolio& portfolio, const QString& text, int line) {
  if (!CheckDate(text, line)) return false;
  const std::optional<int> date = DateIn(text);
  if (!portfolio.date) portfolio.date = date;
  if (portfolio.date == date) return true;
  AddProblem(
      result_.problems, line,
      QStringLiteral("组合“%1”的日期与第%2行不同，一个组合只有一个买入日期").arg(portfolio.name).arg(portfolio.line));
  return false;
}

bool PortfolioCollector::IsFirst(const CsvPortfolio& portfolio, const QString& sixDigits, int line) {
  const auto key = std::pair(portfolio.line, sixDigits.toInt());
  const int earlier = seen_.value(key, 0);
  if (earlier == 0) {
    seen_.insert(key, line);
    return true;
  }
  AddProblem(result_.problems, line,
             QStringLiteral("组合“%1”中股票%2与第%3行重复").arg(portfolio.name, sixDigits).arg(earlier));
  return false;
}

bool PortfolioCollector::HasItsMarket(const QString& sixDigits, int market, const QString& cell, int line) {
  if (market == 0 || market == codes_.MarketTypeOf(CodeNumberText(sixDigits))) return true;
  AddProblem(result_.problems, line, QStringLiteral("“%1”写的市场不是股票%2的市场").arg(cell, sixDigits));
  return false;
}

bool PortfolioCollector::IsHeld(const QString& sixDigits, const QString& name, int line) {
  if (IsHeldStock(sixDigits, codes_)) return true;
  const QString what = name.isEmpty() ? sixDigits : sixDigits + QLatin1Char(' ') + name;
  result_.strangers.push_back({line, ShownText(what), KindOfStranger(sixDigits)});
  return false;
}

void PortfolioCollector::Finish() {
  for (const CsvPortfolio& portfolio : result_.portfolios) {
    if (portfolio.rows <= kMostHoldings) continue;
    AddProblem(result_.problems, portfolio.line,
               QStringLiteral("组合“%1”有%2只股票，应为%3到%4只")
                   .arg(portfolio.name)
                   .arg(portfolio.rows)
                   .arg(kMinHoldings)
                   .arg(kMostHoldings));
  }
  SortByLine(result_.problems);
}

}  // namespace holdwise
