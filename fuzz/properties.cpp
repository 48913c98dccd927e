// SPDX-License-Identifier: MIT
#include "properties.h"

#include <iconv.h>
#include <sys/mman.h>
#include <unistd.h>

#include <QUtf8StringView>
#include <bit>
#include <cstdint>

#include "holdwise/packet/csv_result_set.h"

namespace holdwise::fuzz {
namespace {

constexpr std::int64_t kFirstDateTime = -62'135'596'800'000;  // 0001-01-01 00:00:00.000
constexpr std::int64_t kLastDateTime = 253'402'300'799'999;   // 9999-12-31 23:59:59.999

const auto kNoConverter = std::bit_cast<iconv_t>(std::intptr_t{-1});  // as iconv_open reports failure

/// What ResultSetToCsv promises not to refuse. Reals are finite in everything a reader accepts.
bool HasCsvForm(const ResultSet& resultSet) {
  if (resultSet.ColumnCount() == 0) return false;
  for (int column = 0; column < resultSet.ColumnCount(); ++column) {
    if (resultSet.TypeOf(column) != ColumnType::DateTime) continue;
    for (const std::int64_t value : resultSet.Integers(column)) {
      if (value < kFirstDateTime || value > kLastDateTime) return false;
    }
  }
  return true;
}

void CheckCells(const ResultSet& resultSet) {
  for (int column = 0; column < resultSet.ColumnCount(); ++column) {
    for (int row = 0; row < resultSet.RowCount(); ++row) {
      const std::string text = resultSet.Utf8At(row, column);
      Require(QUtf8StringView(text.data(), static_cast<qsizetype>(text.size())).isValidUtf8(), "a cell is UTF-8");
      const QString shown = resultSet.TextAt(row, column);
      Require(shown.toStdString() == text && resultSet.ValueAt(row, column).ToText() == shown, "a cell has one text");
    }
  }
}

}  // namespace

QByteArray Raw(std::string_view input) {
  return QByteArray::fromRawData(input.data(), static_cast<qsizetype>(input.size()));
}

std::string_view View(const QByteArray& bytes) {
  return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

void CheckAccepted(const ResultSet& resultSet) {
  CheckCells(resultSet);
  const QByteArray packet = EncodePacket(resultSet);
  const ResultSet fromPacket = DecodePacket(packet);
  Require(fromPacket == resultSet, "a set comes back from its packet");
  Require(EncodePacket(fromPacket) == packet, "a set has one packet");
  if (!HasCsvForm(resultSet)) return;
  const QByteArray csv = ResultSetToCsv(resultSet);
  const ResultSet fromCsv = ResultSetFromCsv(csv);
  Require(fromCsv == resultSet, "a set comes back from its CSV");
  Require(ResultSetToCsv(fromCsv) == csv, "a set has one CSV");
}

std::optional<QByteArray> ToGb18030(const QByteArray& utf8) {
  const iconv_t converter = ::iconv_open("GB18030", "UTF-8");
  Require(converter != kNoConverter, "the system knows GB18030");
  QByteArray source = utf8;
  QByteArray gb(utf8.size() * 4 + 4, Qt::Uninitialized);
  char* from = source.data();
  char* to = gb.data();
  auto fromLeft = static_cast<std::size_t>(source.size());
  auto toLeft = static_cast<std::size_t>(gb.size());
  const bool isWhole = ::iconv(converter, &from, &fromLeft, &to, &toLeft) == 0;
  ::iconv_close(converter);
  gb.truncate(gb.size() - static_cast<qsizetype>(toLeft));
  if (!isWhole || QUtf8StringView(gb).isValidUtf8()) return std::nullopt;
  return gb;
}

MemoryFile::MemoryFile(std::string_view content) : descriptor_(::memfd_create("input", MFD_CLOEXEC)) {
  Require(descriptor_ >= 0, "the system has memory for a file");
  Require(::write(descriptor_, content.data(), content.size()) == static_cast<ssize_t>(content.size()),
          "a file in memory takes its content");
}

MemoryFile::~MemoryFile() {
  ::close(descriptor_);
}

QString MemoryFile::Path() const {
  return QStringLiteral("/proc/self/fd/%1").arg(descriptor_);
}

}  // namespace holdwise::fuzz
