// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <zstd.h>

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <cmath>

#include "packet_test_support.h"

namespace holdwise {
namespace {

/// A device that fails in the middle.
class FailingDevice : public QIODevice {
 public:
  FailingDevice() { open(QIODevice::ReadWrite | QIODevice::Unbuffered); }

 protected:
  qint64 readData(char* data, qint64 size) override {
    if (reads_++ > 0) return -1;
    const qint64 given = std::min<qint64>(size, 10);
    std::fill_n(data, given, 'x');
    return given;
  }
  qint64 writeData(const char*, qint64 size) override { return writes_++ > 0 ? -1 : std::min<qint64>(size, 10); }

 private:
  int reads_ = 0;
  int writes_ = 0;
};

TEST(Packet, RoundTripOfAllTypesAndNulls) {
  const ResultSet set = SampleSet();
  const QByteArray bytes = EncodePacket(set);
  const ResultSet back = DecodePacket(bytes);
  EXPECT_TRUE(back == set);
  EXPECT_EQ(back.IntegerAt(0, 4), INT64_MIN);
  EXPECT_EQ(back.Utf8At(1, 2), "aé😀");
  EXPECT_TRUE(back.IsNull(7, 2));
  EXPECT_FALSE(back.IsNull(3, 2));
  EXPECT_EQ(EncodePacket(back), bytes);
}

TEST(Packet, RoundTripOfEveryIntegerWidth) {
  const std::int64_t edges[] = {0,        127,    128,        -128,         -129,          32767,         32768,
                                -32768,   -32769, 2147483647, 2147483648LL, -2147483648LL, -2147483649LL, INT64_MAX,
                                INT64_MIN};
  for (const std::int64_t edge : edges) {
    ResultSet set;
    set.AddColumn("v", ColumnType::Integer);
    set.AppendRow();
    set.AppendRow();
    set.SetInteger(0, 0, 1);
    set.SetInteger(1, 0, edge);
    EXPECT_TRUE(DecodePacket(EncodePacket(set)) == set) << edge;
  }
}

TEST(Packet, RoundTripOfEverySmallRowCountWithNulls) {
  for (int rows = 0; rows <= 25; ++rows) {
    ResultSet set;
    set.AddColumn("t", ColumnType::Text);
    set.AddColumn("r", ColumnType::Real);
    for (int row = 0; row < rows; ++row) {
      set.AppendRow();
      if (row % 3 != 0) set.SetText(row, 0, std::string(static_cast<std::size_t>(row), 'a'));
      if (row % 3 != 1) set.SetReal(row, 1, row);
    }
    EXPECT_TRUE(DecodePacket(EncodePacket(set)) == set) << rows;
  }
}

TEST(Packet, RoundTripWithoutColumns) {
  ResultSet set;
  EXPECT_TRUE(DecodePacket(EncodePacket(set)) == set);
  set.AppendRow();
  EXPECT_EQ(DecodePacket(EncodePacket(set)).RowCount(), 1);
}

TEST(Packet, FrameCarriesChecksumAndContentSize) {
  const QByteArray bytes = EncodePacket(SampleSet());
  EXPECT_EQ(bytes.first(4), QByteArray::fromHex("28b52ffd"));
  EXPECT_NE(bytes.at(4) & 0x04, 0);
  EXPECT_GT(ZSTD_getFrameContentSize(bytes.constData(), static_cast<std::size_t>(bytes.size())), 0U);
}

TEST(Packet, NotFiniteIsRefusedWithItsPlace) {
  for (const double bad : {double{NAN}, HUGE_VAL, -HUGE_VAL}) {
    ResultSet set;
    set.AddColumn("close", ColumnType::Real);
    set.AppendRow();
    set.AppendRow();
    set.SetReal(1, 0, bad);
    std::string text;
    EXPECT_EQ(CategoryOf([&] { (void)EncodePacket(set); }, &text), ErrorCategory::Refused);
    EXPECT_NE(text.find("“close”列第 2 行"), std::string::npos) << text;
  }
}

/// Writing with one limit one step too tight, and reading what was written without it, are both refused.
void ExpectLimit(PacketLimits enough, PacketLimits tight) {
  const ResultSet set = SampleSet();
  const QByteArray bytes = EncodePacket(set, enough);
  EXPECT_TRUE(DecodePacket(bytes, enough) == set);
  EXPECT_EQ(CategoryOf([&] { (void)EncodePacket(set, tight); }), ErrorCategory::Refused);
  EXPECT_EQ(CategoryOf([&] { (void)DecodePacket(bytes, tight); }), ErrorCategory::Refused);
}

TEST(PacketLimits, AreExact) {
  PacketLimits enough;
  PacketLimits tight;
  enough.columns = 5;
  tight.columns = 4;
  ExpectLimit(enough, tight);
  enough = tight = {};
  enough.rows = 10;
  tight.rows = 9;
  ExpectLimit(enough, tight);
  enough = tight = {};
  enough.nameBytes = 10;  // "closeprice"
  tight.nameBytes = 9;
  ExpectLimit(enough, tight);
  enough = tight = {};
  enough.textBytes = 12;  // four characters of three bytes
  tight.textBytes = 11;
  ExpectLimit(enough, tight);
  enough = tight = {};
  const QByteArray bytes = EncodePacket(SampleSet());
  enough.compressedBytes = bytes.size();
  tight.compressedBytes = bytes.size() - 1;
  ExpectLimit(enough, tight);
  enough = tight = {};
  enough.contentBytes =
      static_cast<std::int64_t>(ZSTD_getFrameContentSize(bytes.constData(), static_cast<std::size_t>(bytes.size())));
  tight.contentBytes = enough.contentBytes - 1;
  ExpectLimit(enough, tight);
}

TEST(PacketLimits, MemoryOfTheDecodedSet) {
  ResultSet set;
  set.AddColumn("small", ColumnType::Integer);  // one byte a value in the file, eight in memory
  for (int row = 0; row < 10'000; ++row) set.AppendRow();
  PacketLimits limits;
  limits.memoryBytes = 50'000;
  EXPECT_EQ(CategoryOf([&] { (void)DecodePacket(EncodePacket(set), limits); }), ErrorCategory::Refused);
  limits.memoryBytes = 100'000;
  EXPECT_EQ(DecodePacket(EncodePacket(set), limits).RowCount(), 10'000);
}

TEST(PacketStream, RoundTripFromThePosition) {
  QBuffer device;
  device.open(QIODevice::ReadWrite);
  device.write("ahead");
  WritePacket(device, SampleSet());
  device.seek(5);
  EXPECT_TRUE(ReadPacket(device) == SampleSet());
}

TEST(PacketStream, AboveTheLimitIsRefusedWithoutReadingOn) {
  QBuffer device;
  device.setData(QByteArray(5'000'000, 'x'));
  device.open(QIODevice::ReadOnly);
  PacketLimits limits;
  limits.compressedBytes = 1000;
  EXPECT_EQ(CategoryOf([&] { (void)ReadPacket(device, limits); }), ErrorCategory::Refused);
  EXPECT_EQ(device.pos(), 1001);
}

TEST(PacketStream, DeviceFailures) {
  FailingDevice reading;
  EXPECT_EQ(CategoryOf([&] { (void)ReadPacket(reading); }), ErrorCategory::Io);
  FailingDevice writing;
  EXPECT_EQ(CategoryOf([&] { WritePacket(writing, SampleSet()); }), ErrorCategory::Io);
  QBuffer closed;
  EXPECT_EQ(CategoryOf([&] { (void)ReadPacket(closed); }), ErrorCategory::Io);
  EXPECT_EQ(CategoryOf([&] { WritePacket(closed, SampleSet()); }), ErrorCategory::Io);
}

TEST(PacketFile, RoundTripAndNamesThePathInErrors) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("上证.dat"));
  WritePacketFile(path, SampleSet(), Durability::Lasting);
  EXPECT_TRUE(ReadPacketFile(path) == SampleSet());
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::Append));
  file.write("x");
  file.close();
  std::string text;
  EXPECT_EQ(CategoryOf([&] { (void)ReadPacketFile(path); }, &text), ErrorCategory::Corrupt);
  EXPECT_NE(text.find(path.toStdString()), std::string::npos);
}

TEST(PacketFile, MissingUnreadableEmptyAndNotAFile) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("a.dat"));
  std::string text;
  EXPECT_EQ(CategoryOf([&] { (void)ReadPacketFile(path); }, &text), ErrorCategory::NotFound);
  EXPECT_NE(text.find(path.toStdString()), std::string::npos);
  EXPECT_EQ(CategoryOf([&] { (void)ReadPacketFile(path + QStringLiteral("/b")); }), ErrorCategory::NotFound);
  EXPECT_EQ(CategoryOf([&] { (void)ReadPacketFile(folder.path()); }), ErrorCategory::Io);
  WriteFileAtomically(path, {}, Durability::Replaceable);
  EXPECT_EQ(CategoryOf([&] { (void)ReadPacketFile(path); }), ErrorCategory::Corrupt);
  const QString pipe = folder.filePath(QStringLiteral("pipe"));
  ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  EXPECT_EQ(CategoryOf([&] { (void)ReadPacketFile(pipe); }), ErrorCategory::Io);
  ASSERT_EQ(::chmod(QFile::encodeName(folder.path()).constData(), 0755), 0);
  ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), 0), 0);
  const WithoutRoot withoutRoot;
  EXPECT_EQ(CategoryOf([&] { (void)ReadPacketFile(path); }), ErrorCategory::Io);
}

TEST(PacketFile, AFileAboveTheLimitIsRefused) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("big.dat"));
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  ASSERT_TRUE(file.resize(300LL << 20));  // sparse
  EXPECT_EQ(CategoryOf([&] { (void)ReadPacketFile(path); }), ErrorCategory::Refused);
}

}  // namespace
}  // namespace holdwise
