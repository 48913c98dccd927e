#pragma once
#include <string>
#include <string_view>

#include "holdwise/packet/packet_file.h"
#include "holdwise/packet/result_set.h"

namespace holdwise {

class CborReader;
class MemoryBudget;

/// A result set as the CBOR content of a packet; docs/packet.cddl is its description.
class PacketCodec {
 public:
  /// Above a limit, or a real that is not finite: Error(Refused).
  static std::string Encode(const ResultSet& resultSet, const PacketLimits& limits);
  /// Not exactly one packet: Error(Corrupt); above a limit: Error(Refused).
  static ResultSet Decode(std::string_view content, const PacketLimits& limits);

 private:
  static void EncodeColumn(const ResultSet& resultSet, int index, const PacketLimits& limits, std::string& content);
  static void DecodeColumn(CborReader& reader, const PacketLimits& limits, MemoryBudget& budget, ResultSet& result);
};

}  // namespace holdwise
