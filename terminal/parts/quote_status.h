// SPDX-License-Identifier: MIT
#pragma once
#include <QDateTime>
#include <QObject>
#include <QTimer>
#include <optional>

#include "bus/market_connection.h"
#include "datacentre/market_data.h"
#include "window/main_window.h"

namespace holdwise {

/// What is known of the prices at a moment.
struct QuoteFacts {
  QDateTime now;     ///< on the exchanges' clock, as all times here
  QDateTime newest;  ///< when a price last came or moved; invalid: none has
  QString date;      ///< of the market, "YYYY-MM-DD"
  bool isSimulated = false;
  std::optional<int> second;  ///< since midnight, on the market's clock; none: today is not the market's date, or it is
                              ///< simulated and does not run
  QString problem;            ///< why the quotes are not followed; empty when they are
};
/// The status bar's words for it: age of the newest price while the market is open, else why prices stand still. Pure.
struct QuoteWords {
  QString text;
  QString reason;  ///< why it is not as it should be; empty when it is
};
[[nodiscard]] QuoteWords WordsOf(const QuoteFacts& facts);

/// Keeps the status bar's line about the prices and the three indices up to date, once a second. User-interface thread.
class QuoteStatus : public QObject {
 public:
  /// All outlive it.
  QuoteStatus(const MarketData& data, MarketConnection& connection, ClockService& clock, MainWindow& window);

 private:
  void Show();

  const MarketData& data_;
  const MarketConnection& connection_;
  ClockService& clock_;
  MainWindow& window_;
  QDateTime newest_;
  QString problem_;
  QTimer timer_;
};

}  // namespace holdwise
