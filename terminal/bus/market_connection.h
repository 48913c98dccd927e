// SPDX-License-Identifier: MIT
#pragma once
#include <QObject>
#include <QString>
#include <optional>

#include "bus/message_bus.h"

namespace holdwise {

/// Where a terminal's live prices come from: the bus that its roles talk to, and word of whether the prices are the
/// latest. The market of one machine stands behind it as a bus server does. User-interface thread.
class MarketConnection : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  /// The bus, which lives as long as the connection; disconnected before Connect.
  [[nodiscard]] virtual MessageBus& Bus() = 0;
  /// Connects the bus and returns at once; the bus tells when it stands. Nothing happens while it is connected. Never
  /// throws: what keeps it from connecting is told by QuotesChanged.
  virtual void Connect() = 0;
  /// Why the prices are not the latest at this moment, in words for the user, also when nobody has been told yet; empty
  /// when they are.
  [[nodiscard]] virtual QString QuotesProblem() const = 0;
  /// The time of the market's own clock, in seconds since midnight; none when it has none (its prices are of the time
  /// that all have) and before it is connected.
  [[nodiscard]] virtual std::optional<int> OwnSecondOfDay() const = 0;
  /// The date (YYYY-MM-DD) of the data that could be had in the place of these, which are not the latest then, from a
  /// new connection over newly loaded data; empty when there are none. Changes with QuotesChanged.
  [[nodiscard]] virtual QString LaterDate() const = 0;

 Q_SIGNALS:
  /// The prices are the latest from now on (empty), or why they are not, in words for the user.
  void QuotesChanged(const QString& problem);
  /// The data may hold now what was missing before: the data folder was replaced or put back, or files came, went or
  /// were replaced below it. Figures that lacked something may be asked for again.
  void DataFolderChanged();
};

}  // namespace holdwise
