// SPDX-License-Identifier: MIT
#include "packet_decode.h"
#include "properties.h"
#include "targets.h"
#include "zstd_frame.h"

namespace holdwise::fuzz {
namespace {

void RequireFileCategory(const Error& error) {
  Require(error.Category() == ErrorCategory::Corrupt || error.Category() == ErrorCategory::Refused,
          "bad bytes are corrupt or above a limit");
}

}  // namespace

void PacketFile(std::string_view input) {
  ResultSet resultSet;
  try {
    resultSet = DecodePacket(Raw(input), kSmallLimits);
  } catch (const Error& error) {
    return RequireFileCategory(error);
  }
  CheckAccepted(resultSet);
}

void PacketContent(std::string_view input) {
  ResultSet resultSet;
  try {
    resultSet = PacketDecoder::Decode(input, kSmallLimits);
  } catch (const Error& error) {
    return RequireFileCategory(error);
  }
  // Only the accepted ones take the dear way through the frame: it cannot turn a refused content into an accepted one.
  const QByteArray frame = CompressFrame(input, kSmallLimits.compressedBytes * 2);
  Require(DecodePacket(frame) == resultSet, "the frame changes nothing");
  CheckAccepted(resultSet);
}

}  // namespace holdwise::fuzz
