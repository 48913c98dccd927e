// SPDX-License-Identifier: MIT
#pragma once
#include <QChar>
#include <QString>
#include <QStringList>

/// From an amount of capital to the number of stocks it is spread over, and what may be typed as one. Capitals are in
/// ten-thousands of yuan. Pure, any thread.
namespace holdwise::allocation {

/// By a capital table, whose entries are "count,limit" with growing limits: the count of the first limit that covers
/// the capital, and the last one's when none does. What is no number counts as 0. An empty table gives 0.
[[nodiscard]] int StockCountBy(const QStringList& table, double capital);
/// By the fixed table, for want of another.
[[nodiscard]] int FixedStockCount(double capital);

/// Does the entry take the key ('\b' backspace, '\r' Enter)? `length`: characters that it holds; `caret`: where the
/// selection begins, or the caret stands.
[[nodiscard]] bool IsCapitalKey(QChar key, qsizetype length, int caret);
/// Is the text an amount that can be asked for: digits with at most one ".", above 0 and below 100,000?
[[nodiscard]] bool IsCapital(const QString& text);
/// What the entry takes, as a regular expression.
inline const QString kCapitalCharacters = QStringLiteral("[.0-9]*");

}  // namespace holdwise::allocation
