// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <optional>

#include "datacentre/market_data.h"
#include "holdwise/market/live_simulation.h"

namespace holdwise {

/// What tells the market of one data folder and date from another.
[[nodiscard]] QString SimulationIdentity(const MarketData& data);

/// Replaces the file by the state. Error(Io) when it cannot be written.
void WriteSimulation(const QString& path, const QString& identity, const LiveSimulation::State& state);
/// None when there is no such file, when it is of another market, or when it is not whole.
[[nodiscard]] std::optional<LiveSimulation::State> ReadSimulation(const QString& path, const QString& identity);

}  // namespace holdwise
