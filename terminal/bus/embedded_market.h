#pragma once
#include "bus/in_process_bus.h"
#include "datacentre/market_data.h"
#include "datacentre/quotes_watcher.h"

namespace holdwise {

/// The market of one machine put together: an in-process bus over the quotes of the data folder, which follows
/// quotes.dat and, when the market is simulated, keeps the data centre's current data in step with the bus.
/// User-interface thread.
class EmbeddedMarket final : public QObject {
  Q_OBJECT

 public:
  /// `data` is loaded; both must outlive it.
  EmbeddedMarket(MarketData& data, DebugServers& log);

  [[nodiscard]] InProcessBus& Bus() { return bus_; }
  /// Serves the quotes of the data: the bus is connected from now on. Quotes that the service refuses are logged, and
  /// the bus stays as it was. Returns the reason, empty when they are served.
  QString ServeQuotes();

 Q_SIGNALS:
  /// quotes.dat has changed; empty when its quotes are served, else why the earlier ones stay.
  void QuotesChanged(const QString& problem);

 private:
  void FollowSimulation();

  MarketData& data_;
  DebugServers& log_;
  InProcessBus bus_;
  QuotesWatcher watcher_;
};

}  // namespace holdwise
