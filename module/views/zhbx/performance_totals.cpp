// SPDX-License-Identifier: MIT
#include "performance_totals.h"

#include <QStringList>
#include <algorithm>

#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

constexpr int kDecimals = 2;

/// A sum of the rows that bring something to it.
struct Sum {
  double value = 0;
  int rows = 0;
  QStringList without;  ///< names of the others

  void AddIf(bool isKnown, double summand, const QString& name) {
    if (!isKnown) return without.append(name);
    value += summand;
    ++rows;
  }
  [[nodiscard]] QString Text() const { return rows == 0 ? QStringLiteral("—") : FormatFixed(value, kDecimals); }
};

/// "“甲”、“乙”等 7 个组合".
QString NamesOf(const QStringList& names, const QString& what) {
  constexpr qsizetype kMostNames = 5;
  const auto shown = names.first(std::min(kMostNames, names.size()));
  const QString text = QStringLiteral("“%1”").arg(shown.join(QStringLiteral("”、“")));
  return shown.size() < names.size() ? text + QStringLiteral("等 %1 %2").arg(names.size()).arg(what) : text;
}

QString RemarkOn(const QStringList& names, const QString& what, const QString& lack) {
  return names.isEmpty() ? QString() : NamesOf(names, what) + lack;
}

}  // namespace

std::vector<Total> TotalsOf(const std::vector<TotalInput>& rows, const QString& what) {
  if (rows.empty()) return {};
  Sum value, day, gain;
  double cost = 0;
  QStringList partial;
  for (const TotalInput& row : rows) {
    const bool isKnown = row.value != 0;
    const bool isWhole = isKnown && !row.isPartial;
    if (isKnown && row.isPartial) partial.append(row.name);
    value.AddIf(isKnown, row.value, row.name);
    day.AddIf(isWhole && row.previousValue != 0, row.value - row.previousValue, row.name);
    gain.AddIf(isWhole && row.cost != 0, row.value - row.cost, row.name);
    if (isWhole) cost += row.cost;
  }
  QStringList onValue{RemarkOn(value.without, what, QStringLiteral("没有现价，没有计入市值")),
                      RemarkOn(partial, what, QStringLiteral("有股票没有现价，市值没有计入这些股票"))};
  onValue.removeAll(QString());
  const QString onDay = RemarkOn(day.without, what, QStringLiteral("缺少现价或昨收盘价，没有计入日盈亏"));
  const QString onGain = RemarkOn(gain.without, what, QStringLiteral("缺少现价或买入价，没有计入总盈亏和收益率"));
  const QString rate = gain.rows == 0 ? QStringLiteral("—") : FormatFixed(gain.value / cost * 100, kDecimals);
  return {{value.Text(), false, onValue.join(QLatin1Char('\n'))},
          {day.Text(), true, onDay},
          {gain.Text(), true, onGain},
          {rate, true, onGain}};
}

}  // namespace holdwise
