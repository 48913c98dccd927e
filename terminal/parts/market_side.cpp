// SPDX-License-Identifier: MIT
#include "parts/market_side.h"

#include "bus/embedded_market.h"
#include "files/local_folder_source.h"
#include "process/background_thread.h"

namespace holdwise {

MarketSide::MarketSide(ProcessParts& process, TLocatDBOper& database, const QString& folder)
    : process_(process), data_(process.Clock(), process.Log(), database) {
  // Nobody else knows the data before Open has waited for this.
  loading_ = std::async(std::launch::async, [this, folder = folder.isEmpty() ? process.Asked().dataFolder : folder] {
    StepBehindTheWindow();
    data_.Load(folder);
  });
}

void MarketSide::Open() {
  if (connection_ != nullptr) return;
  loading_.get();
  data_.LoadOptionalStocks(process_.Asked().workFolder + QStringLiteral("/optional_stocks.txt"));
  files_ = std::make_unique<LocalFolderSource>(data_.Folder());
  const Options& asked = process_.Asked();
  SimulationSetting simulation;
  simulation.speed = asked.simulationSpeed;
  if (!asked.IsBatch()) simulation.stateFile = asked.workFolder + QStringLiteral("/simulation.dat");
  connection_ = std::make_unique<EmbeddedMarket>(data_, process_.Log(), simulation);
}

}  // namespace holdwise
