// SPDX-License-Identifier: MIT
#include "statement_cells.h"

#include <QRegularExpression>
#include <algorithm>

#include "holdwise/packet/code_text.h"
#include "holdwise/packet/number_text.h"
#include "records.h"

namespace holdwise {
namespace {

struct MarketWord {
  const char* word;
  StatementMarket market;
};
/// The first that is in the cell counts: 沪港通 is Hong Kong's, 沪深 is either.
constexpr MarketWord kMarketWords[] = {
    {"港", {0, true}},   {"HK", {0, true}},    {"北", {0, true}},    {"BJ", {0, true}},   {"BSE", {0, true}},
    {"三板", {0, true}}, {"股转", {0, true}},  {"基金", {0, true}},  {"债", {0, true}},   {"沪深", {0, false}},
    {"沪", {1, false}},  {"上海", {1, false}}, {"上证", {1, false}}, {"上A", {1, false}}, {"SH", {1, false}},
    {"SSE", {1, false}}, {"深", {2, false}},   {"SZ", {2, false}},
};

constexpr const char* kTotals[] = {"合计", "总计", "小计", "共计", "总和", "汇总", "total", "subtotal", "sum"};

/// Digits with or without thousands commas, and what stands behind a point.
const QRegularExpression& NumberForm() {
  static const QRegularExpression kForm(
      QStringLiteral("\\A(0|[1-9][0-9]{0,8}|[1-9][0-9]{0,2}(?:,[0-9]{3})+)(?:\\.([0-9]{1,10}))?\\z"));
  return kForm;
}

}  // namespace

QString PlainCell(std::string_view field) {
  QString cell = TextOf(field).trimmed();
  if (cell.startsWith(QStringLiteral("=\"")) && cell.endsWith(QLatin1Char('"')) && cell.size() > 2)
    return cell.mid(2, cell.size() - 3).trimmed();
  if (cell.startsWith(QLatin1Char('\''))) return cell.mid(1).trimmed();
  return cell;
}

bool IsNothing(const QString& cell) {
  static const QRegularExpression kDashes(QStringLiteral("\\A[-—–－]*\\z"));
  return kDashes.match(cell).hasMatch();
}

std::optional<QString> ReadShares(const QString& cell) {
  constexpr qsizetype kMostDigits = 9;
  static const QRegularExpression kUnit(QStringLiteral("\\s*股\\z"));
  static const QRegularExpression kZeros(QStringLiteral("\\A0*\\z"));
  if (cell.isEmpty()) return std::nullopt;
  if (IsNothing(cell)) return QStringLiteral("0");
  const auto match = NumberForm().match(QString(cell).remove(kUnit));
  if (!match.hasMatch() || !kZeros.match(match.captured(2)).hasMatch()) return std::nullopt;
  const QString digits = match.captured(1).remove(QLatin1Char(','));
  return digits.size() <= kMostDigits ? std::optional(digits) : std::nullopt;
}

std::optional<QString> ReadCost(const QString& cell) {
  constexpr qsizetype kMostDigits = 5;
  static const QRegularExpression kUnits(QStringLiteral("\\A[¥￥]\\s*|\\s*元\\z"));
  const auto match = NumberForm().match(QString(cell).remove(kUnits));
  if (!match.hasMatch()) return std::nullopt;
  QString price = match.captured(1).remove(QLatin1Char(','));
  if (price.size() > kMostDigits) return std::nullopt;
  if (!match.captured(2).isEmpty()) price += QLatin1Char('.') + match.captured(2);
  return RealOr(price) > 0 ? std::optional(price) : std::nullopt;
}

std::optional<StatementCode> ReadStatementCode(const QString& cell) {
  static const QRegularExpression kHongKong(
      QStringLiteral("\\A(?:HK\\.?)?(0[0-9]{4})(?:\\.HK)?\\z|\\A(?:HK\\.?)?([0-9]{5})\\.HK\\z"),
      QRegularExpression::CaseInsensitiveOption);
  if (const auto named = ParseNamedCode(cell.toStdString())) {
    const bool isOther = named->market != 0 && named->market != 1 && named->market != 2;
    return StatementCode{QString::fromStdString(named->digits), isOther ? 0 : named->market, isOther};
  }
  const auto match = kHongKong.match(cell);
  if (!match.hasMatch()) return std::nullopt;
  return StatementCode{match.captured(1) + match.captured(2), 0, true};
}

StatementMarket ReadStatementMarket(const QString& cell) {
  const QString text = cell.toUpper().replace(QStringLiteral("Ａ"), QStringLiteral("A"));
  const auto* const word =
      std::find_if(std::begin(kMarketWords), std::end(kMarketWords),
                   [&text](const MarketWord& one) { return text.contains(QString::fromUtf8(one.word)); });
  return word == std::end(kMarketWords) ? StatementMarket{} : word->market;
}

bool IsTotal(const QString& cell) {
  return std::any_of(std::begin(kTotals), std::end(kTotals), [&cell](const char* word) {
    return cell.startsWith(QString::fromUtf8(word), Qt::CaseInsensitive);
  });
}

}  // namespace holdwise
