// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <cstdint>
#include <string>
#include <string_view>

namespace holdwise {

/// One zstd frame with content checksum and content size. Above `maxFrameBytes`: Error(Refused).
QByteArray CompressFrame(std::string_view content, std::int64_t maxFrameBytes);
/// The content of bytes that are exactly one such frame. Otherwise Error(Corrupt); content above `maxContentBytes`:
/// Error(Refused) before memory is taken for it.
std::string DecompressFrame(const QByteArray& frame, std::int64_t maxContentBytes);

}  // namespace holdwise
