// SPDX-License-Identifier: MIT
#include "zstd_frame.h"

#include <zstd.h>

#include <memory>
#include <new>

#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

constexpr int kLevel = 3;
/// Flags of the byte behind the magic number (RFC 8878, 3.1.1.1.1).
constexpr qsizetype kDescriptorAt = 4;
constexpr unsigned kChecksumFlag = 0x04;
constexpr unsigned kUnusedBits = 0x18;
/// A block of four bytes yields at most 128 KiB: a frame that promises more than that is lying.
constexpr std::uint64_t kMaxRatio = (128U << 10) / 4;

struct FreeContext {
  void operator()(ZSTD_CCtx* context) const noexcept { ZSTD_freeCCtx(context); }
};

[[noreturn]] void Corrupt(const std::string& what) {
  throw Error(ErrorCategory::Corrupt, "数据文件已损坏：" + what);
}

/// Content size of a frame whose header is as we write it.
std::uint64_t CheckedContentSize(const QByteArray& frame) {
  const auto size = static_cast<std::size_t>(frame.size());
  if (size == 0) Corrupt("文件是空的");
  const unsigned long long contentSize = ZSTD_getFrameContentSize(frame.constData(), size);
  if (contentSize == ZSTD_CONTENTSIZE_ERROR) Corrupt("不是数据文件或文件头不完整");
  if (contentSize == ZSTD_CONTENTSIZE_UNKNOWN) Corrupt("没有注明内容大小");
  const auto descriptor = static_cast<unsigned char>(frame.at(kDescriptorAt));
  if ((descriptor & kChecksumFlag) == 0) Corrupt("没有校验和");
  if ((descriptor & kUnusedBits) != 0) Corrupt("文件头有误");
  const std::size_t frameSize = ZSTD_findFrameCompressedSize(frame.constData(), size);
  if (ZSTD_isError(frameSize) != 0) Corrupt("内容不完整");
  if (frameSize != size) Corrupt("末尾有多余的内容");
  if (contentSize / kMaxRatio > size) Corrupt("注明的内容大小不可信");
  return contentSize;
}

}  // namespace

QByteArray CompressFrame(std::string_view content, std::int64_t maxFrameBytes) {
  const std::unique_ptr<ZSTD_CCtx, FreeContext> context(ZSTD_createCCtx());
  if (!context) throw std::bad_alloc();
  ZSTD_CCtx_setParameter(context.get(), ZSTD_c_compressionLevel, kLevel);
  ZSTD_CCtx_setParameter(context.get(), ZSTD_c_checksumFlag, 1);
  ZSTD_CCtx_setParameter(context.get(), ZSTD_c_contentSizeFlag, 1);
  QByteArray frame(static_cast<qsizetype>(ZSTD_compressBound(content.size())), Qt::Uninitialized);
  const std::size_t size = ZSTD_compress2(context.get(), frame.data(), static_cast<std::size_t>(frame.size()),
                                          content.data(), content.size());
  if (ZSTD_isError(size) != 0) {
    throw Error(ErrorCategory::Refused, std::string("数据无法压缩：") + ZSTD_getErrorName(size));
  }
  if (static_cast<std::int64_t>(size) > maxFrameBytes) {
    throw Error(ErrorCategory::Refused, "数据文件超出限制：压缩后有 " + std::to_string(size) + " 字节");
  }
  frame.resize(static_cast<qsizetype>(size));
  return frame;
}

std::string DecompressFrame(const QByteArray& frame, std::int64_t maxContentBytes) {
  const std::uint64_t contentSize = CheckedContentSize(frame);
  if (contentSize > static_cast<std::uint64_t>(maxContentBytes)) {
    throw Error(ErrorCategory::Refused, "数据文件超出限制：内容有 " + std::to_string(contentSize) + " 字节");
  }
  std::string content(contentSize, '\0');
  const std::size_t size =
      ZSTD_decompress(content.data(), content.size(), frame.constData(), static_cast<std::size_t>(frame.size()));
  if (ZSTD_isError(size) != 0) Corrupt(std::string("解压失败（") + ZSTD_getErrorName(size) + "）");
  if (size != contentSize) Corrupt("内容大小与注明的不符");
  return content;
}

}  // namespace holdwise
