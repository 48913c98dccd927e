// SPDX-License-Identifier: MIT
#include "holdwise/packet/text_pieces.h"

#include <algorithm>

#include "holdwise/packet/error.h"
#include "holdwise/packet/text_file.h"
#include "read_file.h"

namespace holdwise {

TextPieces::TextPieces(const QString& path, std::int64_t pieceBytes)
    : path_(path), pieceBytes_(pieceBytes), file_(std::make_unique<FileDescriptor>(OpenRegularFile(path, unread_))) {}

TextPieces::~TextPieces() = default;

bool TextPieces::Next(QByteArray& text) {
  if (hasEnded_) return false;
  std::int64_t end = -1;
  for (std::int64_t wanted = pieceBytes_; end < 0; wanted *= 2) {
    const std::int64_t left = unread_ + waiting_.size();
    Fill(left < wanted + pieceBytes_ ? left : wanted);
    end = unread_ == 0 ? waiting_.size() : EndOfPiece();
  }
  hasEnded_ = unread_ == 0;
  try {
    text = ToUtf8Text(waiting_.first(end));
  } catch (const Error& error) {
    throw Error(error.Category(), path_.toStdString() + "：" + error.what());
  }
  waiting_.remove(0, end);
  return true;
}

void TextPieces::Fill(std::int64_t bytes) {
  qsizetype filled = waiting_.size();
  waiting_.resize(std::max<qsizetype>(filled, bytes));
  while (filled < bytes) {
    const std::int64_t count = ReadSome(*file_, path_, waiting_.data() + filled, bytes - filled);
    unread_ = count == 0 ? 0 : unread_ - count;
    if (count == 0) break;
    filled += count;
  }
  waiting_.truncate(filled);
}

/// Behind the last line that ends outside quotes; -1 when there is none yet.
std::int64_t TextPieces::EndOfPiece() const {
  const qsizetype end = waiting_.lastIndexOf('\n') + 1;
  const bool isInQuotes = std::count(waiting_.begin(), waiting_.begin() + end, '"') % 2 != 0;
  if (waiting_.size() >= kMostPieceBytes) return end > 0 ? end : waiting_.size();
  return end > 0 && !isInQuotes ? end : -1;
}

}  // namespace holdwise
