// SPDX-License-Identifier: MIT
#include "holdwise/packet/packet_file.h"

#include <algorithm>

#include "packet_decode.h"
#include "packet_encode.h"
#include "read_file.h"
#include "zstd_frame.h"

namespace holdwise {
namespace {

constexpr qint64 kReadStep = 1 << 20;

[[noreturn]] void ThrowDeviceError(const char* what, const QIODevice& device) {
  throw Error(ErrorCategory::Io, what + device.errorString().toStdString());
}

/// To the end of the device; one byte above the limit is enough to know that there is too much.
QByteArray ReadToEnd(QIODevice& device, std::int64_t maxBytes) {
  if (!device.isReadable()) ThrowDeviceError("数据无法读取：", device);
  QByteArray bytes;
  while (bytes.size() <= maxBytes) {
    const qsizetype filled = bytes.size();
    const qint64 step = std::min<qint64>(kReadStep, maxBytes + 1 - filled);
    bytes.resize(filled + step);
    const qint64 count = device.read(bytes.data() + filled, step);
    if (count < 0 && !device.isSequential()) ThrowDeviceError("数据无法读取：", device);
    bytes.truncate(filled + std::max<qint64>(count, 0));
    if (count <= 0 && !(device.isSequential() && device.waitForReadyRead(-1))) return bytes;
  }
  throw Error(ErrorCategory::Refused, "数据文件超出限制：超过 " + std::to_string(maxBytes) + " 字节");
}

}  // namespace

QByteArray EncodePacket(const ResultSet& resultSet, const PacketLimits& limits) {
  return CompressFrame(PacketEncoder::Encode(resultSet, limits), limits.compressedBytes);
}

ResultSet DecodePacket(const QByteArray& bytes, const PacketLimits& limits) {
  if (bytes.size() > limits.compressedBytes) {
    throw Error(ErrorCategory::Refused, "数据文件超出限制：有 " + std::to_string(bytes.size()) + " 字节");
  }
  return PacketDecoder::Decode(DecompressFrame(bytes, limits.contentBytes), limits);
}

void WritePacket(QIODevice& device, const ResultSet& resultSet, const PacketLimits& limits) {
  const QByteArray bytes = EncodePacket(resultSet, limits);
  if (!device.isWritable()) ThrowDeviceError("数据无法写入：", device);
  qint64 written = 0;
  while (written < bytes.size()) {
    const qint64 count = device.write(bytes.constData() + written, bytes.size() - written);
    if (count <= 0) ThrowDeviceError("数据无法写入：", device);
    written += count;
  }
}

ResultSet ReadPacket(QIODevice& device, const PacketLimits& limits) {
  return DecodePacket(ReadToEnd(device, limits.compressedBytes), limits);
}

void WritePacketFile(const QString& path, const ResultSet& resultSet, Durability durability,
                     const PacketLimits& limits) {
  WriteFileAtomically(path, EncodePacket(resultSet, limits), durability);
}

ResultSet ReadPacketFile(const QString& path, const PacketLimits& limits) {
  const QByteArray bytes = ReadWholeFile(path, limits.compressedBytes);
  try {
    return DecodePacket(bytes, limits);
  } catch (const Error& error) {
    throw Error(error.Category(), path.toStdString() + "：" + error.what());
  }
}

}  // namespace holdwise
