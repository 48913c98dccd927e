// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QString>
#include <cstdint>
#include <memory>

namespace holdwise {

class FileDescriptor;

/// A text file read piece by piece, whatever its size: CSV of which a record may stand on several lines, in quotes. Not
/// thread-safe.
class TextPieces {
 public:
  static constexpr std::int64_t kPieceBytes = 4LL << 20;
  static constexpr std::int64_t kMostPieceBytes = 64LL << 20;

  /// Opens the file. Missing: Error(NotFound); unreadable: Error(Io).
  /// @param pieceBytes about what a piece has; a file of less than twice as much is one piece, and the last of several
  /// has at least so much
  explicit TextPieces(const QString& path, std::int64_t pieceBytes = kPieceBytes);
  ~TextPieces();
  TextPieces(const TextPieces&) = delete;
  TextPieces& operator=(const TextPieces&) = delete;

  /// The next piece as UTF-8 without byte-order mark; false at the end. A piece ends at the end of a line, outside
  /// quotes; inside them only where no other end was found in kMostPieceBytes. An empty file has one piece, empty. The
  /// encoding is told as by ReadTextFile, of each piece for itself: neither: Error(Corrupt); unreadable: Error(Io).
  bool Next(QByteArray& text);

 private:
  void Fill(std::int64_t bytes);
  [[nodiscard]] std::int64_t EndOfPiece() const;

  QString path_;
  std::int64_t pieceBytes_;
  std::int64_t unread_ = 0;  // what the file has behind `waiting_`; set where file_ is opened
  std::unique_ptr<FileDescriptor> file_;
  QByteArray waiting_;
  bool hasEnded_ = false;
};

}  // namespace holdwise
