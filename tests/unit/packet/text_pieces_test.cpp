// SPDX-License-Identifier: MIT
#include "holdwise/packet/text_pieces.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <vector>

#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

class TextPiecesTest : public testing::Test {
 protected:
  std::vector<QByteArray> Pieces(const QByteArray& bytes, std::int64_t pieceBytes) {
    QFile file(Path());
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    TextPieces pieces(Path(), pieceBytes);
    std::vector<QByteArray> read;
    for (QByteArray text; pieces.Next(text);) read.push_back(text);
    return read;
  }
  [[nodiscard]] QString Path() const { return folder_.filePath(QStringLiteral("a.csv")); }

  QTemporaryDir folder_;
};

TEST_F(TextPiecesTest, EndAtLineEndsAndMakeUpTheWhole) {
  EXPECT_EQ(Pieces("ab\ncd\nef\ngh\n", 4), (std::vector<QByteArray>{"ab\n", "cd\n", "ef\ngh\n"}));
  EXPECT_EQ(Pieces("ab\ncd", 4), (std::vector<QByteArray>{"ab\ncd"}));
  EXPECT_EQ(Pieces("abcdefghijk\nl\nm", 4), (std::vector<QByteArray>{"abcdefghijk\nl\nm"}))
      << "a line longer than a piece";
  EXPECT_EQ(Pieces("", 4), (std::vector<QByteArray>{""}));
  QByteArray lines;
  for (int i = 0; i < 5000; ++i) lines += QByteArray::number(i) + "\n";
  const std::vector<QByteArray> pieces = Pieces(lines, 1000);
  EXPECT_GT(pieces.size(), 10U);
  QByteArray whole;
  for (const QByteArray& piece : pieces) {
    EXPECT_TRUE(piece.endsWith('\n'));
    whole += piece;
  }
  EXPECT_EQ(whole, lines);
}

TEST_F(TextPiecesTest, DoNotEndInsideQuotes) {
  EXPECT_EQ(Pieces("a,\"b\nc\nd\"\nefgh\nijkl\nmnop\n", 5),
            (std::vector<QByteArray>{"a,\"b\nc\nd\"\n", "efgh\n", "ijkl\n", "mnop\n"}));
}

TEST_F(TextPiecesTest, AreUtf8WhateverTheFileIs) {
  // "日期" in GB18030, from the code table.
  const QByteArray gb18030 = "\xC8\xD5\xC6\xDA,1\n";
  EXPECT_EQ(Pieces(gb18030 + gb18030 + gb18030, 7), (std::vector<QByteArray>{"日期,1\n", "日期,1\n", "日期,1\n"}));
  EXPECT_EQ(Pieces("\xEF\xBB\xBF日期\n", 100), (std::vector<QByteArray>{"日期\n"}));
}

TEST_F(TextPiecesTest, NameTheFileThatCannotBeRead) {
  const auto category = [this](const QByteArray& bytes) {
    try {
      Pieces(bytes, 100);
    } catch (const Error& error) {
      EXPECT_TRUE(QString::fromUtf8(error.what()).startsWith(Path() + u'：')) << error.what();
      return static_cast<int>(error.Category());
    }
    return -1;
  };
  EXPECT_EQ(category(QByteArray("date\n\xFF\xFE\x80\x00", 9)), static_cast<int>(ErrorCategory::Corrupt));
  EXPECT_THROW(TextPieces(folder_.filePath(QStringLiteral("missing"))), Error);
  EXPECT_THROW(TextPieces(folder_.path()), Error);
}

}  // namespace
}  // namespace holdwise
