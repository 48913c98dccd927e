// SPDX-License-Identifier: MIT
#pragma once
#include <future>
#include <memory>

#include "bus/market_connection.h"
#include "datacentre/market_data.h"
#include "files/file_source.h"
#include "parts/process_parts.h"

namespace holdwise {

/// The market as this terminal has it: the data centre, where its live prices come from and where its files come from.
/// A data folder that cannot be used is tried again with a new object. User-interface thread.
class MarketSide {
 public:
  /// Starts to read that data folder, else the one of the process, on a thread of its own. Both must outlive it.
  MarketSide(ProcessParts& process, TLocatDBOper& database, const QString& folder = {});

  /// Waits for the data folder and makes the rest; nothing happens when that is done. Throws what reading threw, and
  /// what the user's list of stocks did. Nothing else may be called before.
  void Open();

  [[nodiscard]] MarketData& Data() { return data_; }
  /// Where the live prices come from; not connected by Open.
  [[nodiscard]] MarketConnection& Connection() { return *connection_; }
  [[nodiscard]] FileSource& Files() { return *files_; }

 private:
  ProcessParts& process_;
  MarketData data_;
  std::future<void> loading_;  ///< after the data, so that it ends first
  std::unique_ptr<FileSource> files_;
  std::unique_ptr<MarketConnection> connection_;
};

}  // namespace holdwise
