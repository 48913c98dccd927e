// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <zstd.h>

#include <QCborStreamWriter>
#include <QtEndian>
#include <cmath>
#include <cstring>
#include <functional>

#include "packet_test_support.h"

namespace holdwise {
namespace {

using Writer = QCborStreamWriter;

QByteArray Compressed(const QByteArray& content, bool checksum = true, bool contentSize = true) {
  ZSTD_CCtx* context = ZSTD_createCCtx();
  ZSTD_CCtx_setParameter(context, ZSTD_c_checksumFlag, checksum ? 1 : 0);
  ZSTD_CCtx_setParameter(context, ZSTD_c_contentSizeFlag, contentSize ? 1 : 0);
  QByteArray frame(static_cast<qsizetype>(ZSTD_compressBound(static_cast<std::size_t>(content.size()))), '\0');
  frame.resize(static_cast<qsizetype>(ZSTD_compress2(context, frame.data(), static_cast<std::size_t>(frame.size()),
                                                     content.constData(), static_cast<std::size_t>(content.size()))));
  ZSTD_freeCCtx(context);
  return frame;
}

QByteArray Content(const std::function<void(Writer&)>& write) {
  QByteArray content;
  Writer writer(&content);
  write(writer);
  return content;
}

void Text(Writer& writer, const char* text) {
  writer.append(QLatin1String(text));
}

/// A whole packet; `columns` writes the columns themselves.
QByteArray Crafted(quint64 rows, quint64 columnCount, const std::function<void(Writer&)>& columns,
                   const char* format = "holdwise.packet", quint64 version = 1) {
  return Content([&](Writer& writer) {
    writer.startMap(4);
    Text(writer, "format");
    Text(writer, format);
    Text(writer, "version");
    writer.append(version);
    Text(writer, "rows");
    writer.append(rows);
    Text(writer, "columns");
    writer.startArray(columnCount);
    columns(writer);
    if (columnCount != 0) writer.endArray();
  });
}

struct CraftedColumn {
  QByteArray name = "a";
  const char* type = "integer";
  std::function<void(Writer&)> values = {};
  QByteArray nulls = {};
};

void WriteColumn(Writer& writer, const CraftedColumn& column) {
  writer.startMap(column.nulls.isNull() ? 3 : 4);
  Text(writer, "name");
  writer.appendTextString(column.name.constData(), column.name.size());
  Text(writer, "type");
  Text(writer, column.type);
  Text(writer, "values");
  column.values(writer);
  if (!column.nulls.isNull()) {
    Text(writer, "nulls");
    writer.append(column.nulls);
  }
  writer.endMap();
}

std::function<void(Writer&)> Typed(quint64 tag, const QByteArray& bytes) {
  return [tag, bytes](Writer& writer) {
    writer.append(QCborTag(tag));
    writer.append(bytes);
  };
}

std::function<void(Writer&)> Texts(const QList<QByteArray>& texts) {
  return [texts](Writer& writer) {
    writer.startArray(static_cast<quint64>(texts.size()));
    for (const QByteArray& text : texts) writer.appendTextString(text.constData(), text.size());
    writer.endArray();
  };
}

QByteArray OneColumn(quint64 rows, const CraftedColumn& column) {
  return Crafted(rows, 1, [&column](Writer& writer) { WriteColumn(writer, column); });
}

QByteArray Double(double value) {
  QByteArray bytes(8, '\0');
  qToLittleEndian(value, bytes.data());
  return bytes;
}

void ExpectCorrupt(const QByteArray& content, const char* what) {
  std::string text;
  EXPECT_EQ(CategoryOf([&] { (void)DecodePacket(Compressed(content)); }, &text), ErrorCategory::Corrupt) << what;
  EXPECT_NE(text.find("数据文件已损坏"), std::string::npos) << text;
}

TEST(PacketDamage, CraftedContentThatIsRightIsRead) {
  const ResultSet set = DecodePacket(Compressed(
      OneColumn(3, {.values = Typed(77, QByteArray::fromHex("0100ff7f0000")), .nulls = QByteArray("\x04", 1)})));
  EXPECT_EQ(set.Integers(0), (std::vector<std::int64_t>{1, 32767, 0}));
  EXPECT_TRUE(set.IsNull(2, 0));
  EXPECT_EQ(DecodePacket(Compressed(OneColumn(1, {.type = "real", .values = Typed(86, Double(1.5))}))).RealAt(0, 0),
            1.5);
  EXPECT_EQ(DecodePacket(Compressed(OneColumn(1, {.type = "text", .values = Texts({"甲"})}))).Utf8At(0, 0), "甲");
  EXPECT_EQ(DecodePacket(Compressed(Crafted(5, 0, [](Writer& writer) { writer.endArray(); }))).RowCount(), 5);
}

TEST(PacketDamage, EveryTruncation) {
  const QByteArray bytes = EncodePacket(SampleSet());
  for (qsizetype size = 0; size < bytes.size(); ++size) {
    EXPECT_EQ(CategoryOf([&] { (void)DecodePacket(bytes.first(size)); }), ErrorCategory::Corrupt) << size;
  }
}

TEST(PacketDamage, EveryBitFlip) {
  const ResultSet set = SampleSet();
  const QByteArray bytes = EncodePacket(set);
  qsizetype undetected = 0;
  for (qsizetype bit = 0; bit < bytes.size() * 8; ++bit) {
    QByteArray damaged = bytes;
    damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ 1 << bit % 8);
    try {
      EXPECT_TRUE(DecodePacket(damaged) == set) << "bit " << bit;
      ++undetected;
    } catch (const Error&) {
    }
  }
  // The frame format has a few bits that change nothing; a set that is read all the same must be the right one.
  EXPECT_LT(undetected, bytes.size() * 8 / 100);
}

TEST(PacketDamage, EveryTruncationAndByteOfTheContentUnderAValidChecksum) {
  QByteArray content(1 << 16, '\0');
  const QByteArray bytes = EncodePacket(SampleSet());
  content.resize(static_cast<qsizetype>(ZSTD_decompress(content.data(), static_cast<std::size_t>(content.size()),
                                                        bytes.constData(), static_cast<std::size_t>(bytes.size()))));
  for (qsizetype size = 0; size < content.size(); ++size) ExpectCorrupt(content.first(size), "shorter");
  ExpectCorrupt(content + '\0', "longer");
  for (qsizetype at = 0; at < content.size(); ++at) {
    for (const int value : {0x00, 0x1B, 0x5B, 0x5F, 0x7F, 0x9B, 0xBF, 0xFF}) {
      QByteArray changed = content;
      changed[at] = static_cast<char>(value);
      try {
        const ResultSet set = DecodePacket(Compressed(changed));
        EXPECT_EQ(set.RowCount(), 10);  // a changed value or name: still whole
        EXPECT_EQ(set.ColumnCount(), 5);
      } catch (const Error&) {
      }
    }
  }
}

TEST(PacketDamage, FramesThatAreNotOurs) {
  const QByteArray content = OneColumn(1, {.values = Typed(72, "a")});
  const QByteArray frame = Compressed(content);
  const QByteArray skippable = QByteArray::fromHex("502a4d180400000061626364");
  const std::pair<const char*, QByteArray> cases[] = {
      {"empty", {}},
      {"no checksum", Compressed(content, false)},
      {"no content size", Compressed(content, true, false)},
      {"byte behind", frame + 'x'},
      {"second frame", frame + frame},
      {"skippable frame behind", frame + skippable},
      {"skippable frame ahead", skippable + frame},
      {"not zstd", "PK\x03\x04 something else"},
      {"plain content", content},
      {"nothing inside", Compressed({})},
      // Magic, 8-byte size with checksum and single segment, 512 MiB promised, one empty block, checksum.
      {"promises too much", QByteArray::fromHex("28b52ffde4000000200000000001000099e9d851")},
  };
  for (const auto& [what, bytes] : cases) {
    EXPECT_EQ(CategoryOf([&bytes = bytes] { (void)DecodePacket(bytes); }), ErrorCategory::Corrupt) << what;
  }
}

TEST(PacketDamage, WrongHeader) {
  const auto none = [](Writer& writer) { writer.endArray(); };
  ExpectCorrupt(Crafted(0, 0, none, "other.packet"), "format");
  ExpectCorrupt(Crafted(0, 0, none, "holdwise.packet", 2), "version");
  ExpectCorrupt(Content([](Writer& writer) { writer.append(1); }), "not a map");
  ExpectCorrupt(Content([](Writer& writer) {
                  writer.startMap();
                  writer.endMap();
                }),
                "indefinite map");
  ExpectCorrupt(Crafted(0, 0, none).replace("rows", "roms"), "key");
  ExpectCorrupt(Crafted(0, 0, none) + '\0', "byte behind");
}

TEST(PacketDamage, HugeCountsAreNotBelieved) {
  for (const quint64 huge : {quint64{20'000'001}, quint64{1} << 32, ~quint64{0}}) {
    EXPECT_EQ(CategoryOf([&] { (void)DecodePacket(Compressed(Crafted(huge, 0, [](Writer& w) { w.endArray(); }))); }),
              ErrorCategory::Refused);
  }
  const auto columns = [](const char* head) {
    QByteArray content = Crafted(0, 0, [](Writer& w) { w.endArray(); });
    content.chop(1);
    return content + QByteArray::fromHex(head);
  };
  ExpectCorrupt(columns("81"), "one column promised, none there");
  ExpectCorrupt(columns("9903e8"), "1000 columns promised, none there");
  EXPECT_EQ(CategoryOf([&] { (void)DecodePacket(Compressed(columns("9bffffffffffffffff"))); }), ErrorCategory::Refused);
  // Twenty million rows promised by a column of one value.
  ExpectCorrupt(OneColumn(20'000'000, {.values = Typed(72, "a")}), "integers");
  ExpectCorrupt(OneColumn(20'000'000, {.type = "real", .values = Typed(86, Double(1))}), "reals");
  ExpectCorrupt(OneColumn(20'000'000, {.type = "text", .values = Texts({"a"})}), "texts");
  QByteArray endsEarly = OneColumn(20'000'000, {.type = "text", .values = Texts({"a"})});
  endsEarly.replace("values\x81", "values" + QByteArray::fromHex("9a01312d00"));
  ExpectCorrupt(endsEarly, "an array that ends early");
}

TEST(PacketDamage, CountsThatDisagree) {
  ExpectCorrupt(OneColumn(2, {.values = Typed(72, "a")}), "one value for two rows");
  ExpectCorrupt(OneColumn(1, {.values = Typed(72, "ab")}), "two values for one row");
  ExpectCorrupt(OneColumn(1, {.values = Typed(79, "1234567")}), "seven bytes of eight");
  ExpectCorrupt(OneColumn(1, {.type = "text", .values = Texts({"a", "b"})}), "two texts for one row");
  ExpectCorrupt(OneColumn(9, {.values = Typed(72, QByteArray(9, 0)), .nulls = "\xFF"}), "null bits short");
  ExpectCorrupt(OneColumn(1, {.values = Typed(72, QByteArray(1, '\0')), .nulls = QByteArray("\x01\x00", 2)}),
                "null bytes behind");
  ExpectCorrupt(OneColumn(1, {.values = Typed(72, QByteArray(1, '\0')), .nulls = "\x03"}), "null bits behind");
  ExpectCorrupt(OneColumn(0, {.values = Typed(72, ""), .nulls = "\x01"}), "nulls of no row");
}

TEST(PacketDamage, WrongTypes) {
  ExpectCorrupt(OneColumn(1, {.values = Typed(86, Double(1))}), "reals in an integer column");
  ExpectCorrupt(OneColumn(1, {.type = "real", .values = Typed(79, Double(1))}), "integers in a real column");
  ExpectCorrupt(OneColumn(1, {.type = "real", .values = Typed(82, Double(1))}), "big-endian reals");
  ExpectCorrupt(OneColumn(1, {.type = "text", .values = Typed(72, "a")}), "bytes in a text column");
  ExpectCorrupt(OneColumn(1, {.type = "text",
                              .values =
                                  [](Writer& w) {
                                    w.startArray(1);
                                    w.append(nullptr);
                                    w.endArray();
                                  }}),
                "null in a text column");
  ExpectCorrupt(OneColumn(1, {.type = "blob", .values = Typed(72, "a")}), "unknown type");
  ExpectCorrupt(OneColumn(1, {.values = [](Writer& w) { w.append(QByteArray("a")); }}), "no tag");
  ExpectCorrupt(OneColumn(1, {.values = Typed(24, "a")}), "other tag");
}

TEST(PacketDamage, ForbiddenValues) {
  for (const double bad : {double{NAN}, HUGE_VAL, -HUGE_VAL}) {
    ExpectCorrupt(OneColumn(1, {.type = "real", .values = Typed(86, Double(bad))}), "not finite");
    ExpectCorrupt(OneColumn(1, {.type = "real", .values = Typed(86, Double(bad)), .nulls = "\x01"}),
                  "hidden by a null");
  }
  ExpectCorrupt(OneColumn(1, {.values = Typed(72, "a"), .nulls = "\x01"}), "value under a null");
  ExpectCorrupt(OneColumn(1, {.type = "text", .values = Texts({"a"}), .nulls = "\x01"}), "text under a null");
  ExpectCorrupt(OneColumn(1, {.type = "text", .values = Texts({"\xC3\x28"})}), "text that is not UTF-8");
  ExpectCorrupt(OneColumn(1, {.name = "\xFF", .values = Typed(72, "a")}), "name that is not UTF-8");
  ExpectCorrupt(OneColumn(1, {.name = "", .values = Typed(72, "a")}), "no name");
  ExpectCorrupt(Crafted(1, 2,
                        [](Writer& writer) {
                          WriteColumn(writer, {.name = "close", .values = Typed(72, "a")});
                          WriteColumn(writer, {.name = "Close", .values = Typed(72, "a")});
                        }),
                "the same name twice");
}

TEST(PacketDamage, NamesTheColumn) {
  std::string text;
  (void)CategoryOf(
      [] {
        (void)DecodePacket(
            Compressed(OneColumn(1, {.name = "收盘", .type = "real", .values = Typed(86, Double(NAN))})));
      },
      &text);
  EXPECT_NE(text.find("第 1 列“收盘”"), std::string::npos) << text;
}

TEST(PacketDamage, DeepNesting) {
  ExpectCorrupt(QByteArray(1'000'000, '\x81'), "arrays");
  ExpectCorrupt(QByteArray(1'000'000, '\xC1'), "tags");
  ExpectCorrupt(OneColumn(1, {.type = "text",
                              .values =
                                  [](Writer& w) {
                                    for (int i = 0; i < 100'000; ++i) w.startArray(1);
                                    for (int i = 0; i < 100'000; ++i) w.endArray();
                                  }}),
                "arrays in a column");
}

}  // namespace
}  // namespace holdwise
