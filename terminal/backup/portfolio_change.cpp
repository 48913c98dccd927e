// SPDX-License-Identifier: MIT
#include "portfolio_change.h"

#include <QStringList>
#include <algorithm>
#include <map>

#include "holdwise/packet/code_numbers.h"
#include "holdwise/packet/entry_limits.h"
#include "holdwise/packet/number_text.h"
#include "holdwise/packet/text_file.h"

namespace holdwise::backup {
namespace {

constexpr qsizetype kMostChanges = 6;
const QString kNone = QStringLiteral("无");

QString Shown(const QString& text) {
  return ShownText(text);
}
QString Shown(double value) {
  return ShortestText(value);
}
QString Shown(std::int64_t value) {
  return QString::number(value);
}
template <typename Value>
QString Shown(const std::optional<Value>& value) {
  return value ? Shown(*value) : kNone;
}

/// Collects "what now → then" of what differs.
class Changes {
 public:
  template <typename Value>
  void Compare(const QString& what, const Value& now, const Value& then) {
    if (now != then) Add(what, Shown(now), Shown(then));
  }
  void Add(const QString& what, const QString& now, const QString& then) {
    texts_.append(QStringLiteral("%1 %2 → %3").arg(what, now, then));
  }
  [[nodiscard]] QString Text() const {
    QString text = QStringList(texts_.mid(0, kMostChanges)).join(QStringLiteral("；"));
    if (texts_.size() > kMostChanges) text += QStringLiteral("；另有%1处").arg(texts_.size() - kMostChanges);
    return text;
  }

 private:
  QStringList texts_;
};

QString CodeText(const SavedHolding& holding) {
  const bool isStock = holding.code >= kStockBase && holding.code <= kLargestStockNumber;
  return isStock ? SixDigits(holding.code - kStockBase) : QString::number(holding.code);
}

QString HoldingText(const SavedHolding& holding) {
  return QStringLiteral("%1股").arg(holding.quantity);
}

void CompareHolding(const SavedHolding& now, const SavedHolding& then, Changes& changes) {
  const QString code = CodeText(now);
  changes.Compare(code + QStringLiteral(" 代码"), code, CodeText(then));
  changes.Compare(code + QStringLiteral(" 数量"), now.quantity, then.quantity);
  changes.Compare(code + QStringLiteral(" 买入价"), now.buyPrice, then.buyPrice);
  changes.Compare(code + QStringLiteral(" 比例"), now.weight, then.weight);
}

void CompareHoldings(const SavedPortfolio& now, const SavedPortfolio& then, Changes& changes) {
  std::map<std::int64_t, const SavedHolding*> left;
  for (const SavedHolding& holding : now.holdings) left.emplace(holding.id, &holding);
  for (const SavedHolding& holding : then.holdings) {
    const auto place = left.find(holding.id);
    if (place == left.end()) {
      changes.Add(CodeText(holding), kNone, HoldingText(holding));
      continue;
    }
    CompareHolding(*place->second, holding, changes);
    left.erase(place);
  }
  for (const auto& [id, holding] : left) changes.Add(CodeText(*holding), HoldingText(*holding), kNone);
}

}  // namespace

QString ChangeText(const SavedPortfolio& now, const SavedPortfolio& then) {
  Changes changes;
  changes.Compare(QStringLiteral("名称"), now.name, then.name);
  changes.Compare(QStringLiteral("日期"), now.date, then.date);
  changes.Compare(QStringLiteral("上证指数"), now.indexLevel, then.indexLevel);
  changes.Compare(QStringLiteral("目标收益率"), now.targetReturn, then.targetReturn);
  changes.Compare(QStringLiteral("保存标志"), now.saveFlag, then.saveFlag);
  changes.Compare(QStringLiteral("组合风格"), now.style, then.style);
  changes.Compare(QStringLiteral("指数为收盘"), now.isClose, then.isClose);
  changes.Compare(QStringLiteral("行情止于"), now.knownTo, then.knownTo);
  CompareHoldings(now, then, changes);
  return QStringLiteral("“%1”：%2").arg(ShownText(then.name), changes.Text());
}

}  // namespace holdwise::backup
