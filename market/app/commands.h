// SPDX-License-Identifier: MIT
#pragma once
#include <cstdint>
#include <string>

#include "holdwise/market/proposals.h"

/// The commands of holdwise-market behind its command line. Each prints its result on standard output, what went wrong
/// on standard error, and returns the exit code; errors that stop it are thrown.
namespace holdwise {

struct BuildCommand {
  std::string bars;
  std::string indices;
  std::string securities;
  std::string industries;
  std::string factors;
  std::string dates;
  std::string rates;
  std::string quotes;
  std::string estimates;
  std::string accounts;
  std::string date;
  int days = 250;
  std::string out;
  bool isSimulated = false;
  bool replacesOtherKind = false;
  bool onlyChecks = false;
  bool watches = false;  ///< build again whenever the inputs have changed, until the process is asked to end
  ProposalOptions proposals;
};
int RunBuild(const BuildCommand& command);

struct SimulateCommand {
  int securities = 300;
  int days = 500;
  std::uint64_t seed = 1;
  std::string end = "2025-12-31";
  std::string out;
};
int RunSimulate(const SimulateCommand& command);

struct PacketCommand {
  std::string file;
  std::string out;
  int rows = 20;
};
int RunPacketShow(const PacketCommand& command);
int RunPacketToCsv(const PacketCommand& command);
int RunPacketFromCsv(const PacketCommand& command);

}  // namespace holdwise
