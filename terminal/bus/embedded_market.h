// SPDX-License-Identifier: MIT
#pragma once
#include <memory>

#include "bus/market_connection.h"
#include "datacentre/market_data.h"
#include "datacentre/quotes_watcher.h"
#include "holdwise/sdk/services.h"

namespace holdwise {

class InProcessBus;

/// The market of one machine put together: an in-process bus over the quotes of the data folder, which follows the
/// folder (see QuotesWatcher) and, when the market is simulated, keeps the data centre's current data in step with the
/// bus. User-interface thread.
class EmbeddedMarket final : public MarketConnection {
  Q_OBJECT

 public:
  /// `data` is loaded; both must outlive it.
  EmbeddedMarket(MarketData& data, DebugServers& log);
  ~EmbeddedMarket() override;

  [[nodiscard]] MessageBus& Bus() override;
  /// Serves the quotes of the data, unless some are served.
  void Connect() override;
  [[nodiscard]] QString QuotesProblem() const override;
  [[nodiscard]] QString LaterDate() const override { return data_.LaterDate(); }

 private:
  /// Returns the reason when the service refuses the quotes, which is logged and leaves the bus as it was.
  QString ServeQuotes();
  void FollowSimulation();
  void Tell(const QString& problem);

  MarketData& data_;
  DebugServers& log_;
  std::unique_ptr<InProcessBus> bus_;
  QuotesWatcher watcher_;
  QString problem_;  ///< as last told
};

}  // namespace holdwise
