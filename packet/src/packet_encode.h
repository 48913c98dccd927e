// SPDX-License-Identifier: MIT
#pragma once
#include <string>

#include "holdwise/packet/packet_file.h"
#include "holdwise/packet/result_set.h"

namespace holdwise {

/// Writes a result set as the CBOR content of a packet; docs/packet.cddl is its description.
class PacketEncoder {
 public:
  /// Above a limit, or a real that is not finite: Error(Refused).
  static std::string Encode(const ResultSet& resultSet, const PacketLimits& limits);

 private:
  static void EncodeColumn(const ResultSet& resultSet, int index, const PacketLimits& limits, std::string& content);
};

}  // namespace holdwise
