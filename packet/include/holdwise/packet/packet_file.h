// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QIODevice>
#include <QString>
#include <cstdint>

#include "holdwise/packet/atomic_file.h"
#include "holdwise/packet/result_set.h"

/// The packet file: one result set as CBOR (RFC 8949) columns inside one zstd frame with content checksum and content
/// size. docs/packet.cddl describes the CBOR. Numeric columns are typed arrays (RFC 8746, little endian), so any
/// language with a CBOR and a zstd library reads them.
namespace holdwise {

/// Limits on what is accepted; anything above is Error(Refused) before memory is taken for it. These are those of any
/// packet; what a file of a known kind can be stands in table_limits.h.
struct PacketLimits {
  std::int64_t compressedBytes = 256LL << 20;
  std::int64_t contentBytes = 1024LL << 20;
  int columns = 1024;
  int rows = 20'000'000;
  int nameBytes = 128;
  int textBytes = 1 << 20;                  ///< one text value
  std::int64_t memoryBytes = 4096LL << 20;  ///< the values of a decoded set in memory
};

/// Serialises. Throws Error(Refused) when a limit is exceeded.
[[nodiscard]] QByteArray EncodePacket(const ResultSet& resultSet, const PacketLimits& limits = {});

/// Parses exactly one packet with nothing behind it. Damaged, truncated or hostile bytes: Error(Corrupt); above a
/// limit: Error(Refused). Never returns a partly filled set.
[[nodiscard]] ResultSet DecodePacket(const QByteArray& bytes, const PacketLimits& limits = {});

/// Stream form: the device is read to its end / written from its position. Device failure: Error(Io).
void WritePacket(QIODevice& device, const ResultSet& resultSet, const PacketLimits& limits = {});
[[nodiscard]] ResultSet ReadPacket(QIODevice& device, const PacketLimits& limits = {});

/// File form. Writing is atomic (temporary name in the same folder, rename), mode 0600 unless the file is replaceable
/// data; a failure leaves an earlier file untouched and throws Error(Io). A missing file is Error(NotFound), an
/// unreadable one Error(Io).
void WritePacketFile(const QString& path, const ResultSet& resultSet, Durability durability,
                     const PacketLimits& limits = {});
[[nodiscard]] ResultSet ReadPacketFile(const QString& path, const PacketLimits& limits = {});

}  // namespace holdwise
