// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <cstdint>

namespace holdwise {

/// The user's own list of stocks as a file: one six-digit code a line, in order; what else a line may hold is no stock
/// of the list, but is kept.
inline constexpr std::int64_t kMostOwnStocksBytes = 8LL << 20;  ///< a line a security would take a tenth

/// Without the lines that hold nothing but that code; all others as they were.
[[nodiscard]] QByteArray WithoutOwnStock(const QByteArray& text, const QByteArray& code);
/// The stock on a line of its own at the end.
[[nodiscard]] QByteArray WithOwnStock(const QByteArray& text, const QByteArray& code);

}  // namespace holdwise
