// SPDX-License-Identifier: MIT
#pragma once
#include <memory>
#include <optional>

#include "bus/market_connection.h"
#include "datacentre/market_data.h"
#include "datacentre/quotes_watcher.h"
#include "holdwise/sdk/services.h"

namespace holdwise {

class InProcessBus;

/// How a simulated market is run.
struct SimulationSetting {
  double speed = 1;   ///< seconds of trading a second
  QString stateFile;  ///< where it is kept how far the day has come, for the next start; empty: nowhere
};

/// The market of one machine put together: an in-process bus over the quotes of the data folder, which follows the
/// folder (see QuotesWatcher) and, when the market is simulated, keeps the data centre's current data in step with the
/// bus. User-interface thread.
class EmbeddedMarket final : public MarketConnection {
  Q_OBJECT

 public:
  /// `data` is loaded; both must outlive it.
  EmbeddedMarket(MarketData& data, DebugServers& log, const SimulationSetting& simulation = {});
  /// Keeps how far a simulated day has come.
  ~EmbeddedMarket() override;

  [[nodiscard]] MessageBus& Bus() override;
  /// Serves the quotes of the data, unless some are served.
  void Connect() override;
  [[nodiscard]] QString QuotesProblem() const override;
  /// Of a simulated market.
  [[nodiscard]] std::optional<int> OwnSecondOfDay() const override;
  [[nodiscard]] QString LaterDate() const override { return data_.LaterDate(); }

 private:
  /// Returns the reason when the service refuses the quotes, which is logged and leaves the bus as it was. `isFirst`: a
  /// simulated day goes on where the last start left it.
  QString ServeQuotes(bool isFirst);
  void FollowSimulation();
  void KeepSimulation();
  void Tell(const QString& problem);

  MarketData& data_;
  DebugServers& log_;
  QString stateFile_;
  int stepsToKeep_ = 0;
  std::unique_ptr<InProcessBus> bus_;
  QuotesWatcher watcher_;
  QString problem_;  ///< as last told
};

}  // namespace holdwise
