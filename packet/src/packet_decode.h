// SPDX-License-Identifier: MIT
#pragma once
#include <string_view>

#include "holdwise/packet/packet_file.h"
#include "holdwise/packet/result_set.h"

namespace holdwise {

class CborReader;
class MemoryBudget;

/// Reads the CBOR content of a packet back; docs/packet.cddl is its description.
class PacketDecoder {
 public:
  /// Not exactly one packet: Error(Corrupt); above a limit: Error(Refused).
  static ResultSet Decode(std::string_view content, const PacketLimits& limits);

 private:
  static void DecodeColumn(CborReader& reader, const PacketLimits& limits, MemoryBudget& budget, ResultSet& result);
};

}  // namespace holdwise
