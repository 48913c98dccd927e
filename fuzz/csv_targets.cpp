// SPDX-License-Identifier: MIT
#include <QUtf8StringView>
#include <algorithm>
#include <string>
#include <vector>

#include "holdwise/packet/csv_reader.h"
#include "holdwise/packet/csv_result_set.h"
#include "holdwise/packet/text_file.h"
#include "properties.h"
#include "targets.h"

namespace holdwise::fuzz {
namespace {

using Records = std::vector<std::vector<std::string>>;

struct ReadRecords {
  Records records;
  bool isWhole = true;  ///< false: the text ended in an Error(Corrupt)
};

ReadRecords ReadAll(std::string_view text, BlankLines blankLines) {
  const auto lines = 1 + std::count(text.begin(), text.end(), '\n');
  ReadRecords read;
  CsvReader reader(text, blankLines);
  std::int64_t lastLine = 0;
  try {
    while (reader.Next()) {
      Require(reader.Line() > lastLine && reader.Line() <= lines, "records begin on lines of the text, in order");
      lastLine = reader.Line();
      read.records.emplace_back(reader.Fields().begin(), reader.Fields().end());
      Require(!read.records.back().empty(), "a record has a field");
    }
  } catch (const Error& error) {
    Require(error.Category() == ErrorCategory::Corrupt, "an unreadable line is corrupt");
    read.isWhole = false;
  }
  return read;
}

std::string Written(const Records& records) {
  std::string csv;
  for (const std::vector<std::string>& record : records) {
    for (std::size_t i = 0; i < record.size(); ++i) {
      if (i > 0) csv += ',';
      ResultSet cell;  // keeps every character on the way to Qt's text
      cell.AddColumn("text", ColumnType::Text);
      cell.SetText(cell.AppendRow(), 0, std::string_view(record[i]));
      csv += CsvField(cell.TextAt(0, 0)).toStdString();
    }
    csv += '\n';
  }
  return csv;
}

void CheckRecords(std::string_view text) {
  for (const BlankLines blankLines : {BlankLines::Skip, BlankLines::Keep}) {
    const ReadRecords read = ReadAll(text, blankLines);
    const ReadRecords again = ReadAll(Written(read.records), blankLines);
    Require(again.isWhole && again.records == read.records, "records come back from their CSV");
  }
}

/// Not every text is plainly GB18030; what is taken as such comes back.
void RequireBackFromGb18030(const QByteArray& gb, const QByteArray& text) {
  try {
    Require(ToUtf8Text(gb) == text, "a text comes back from GB18030");
  } catch (const Error& error) {
    Require(error.Category() == ErrorCategory::Corrupt, "a text that could be something else is corrupt");
  }
}

}  // namespace

void CsvTexts(std::string_view input) {
  QByteArray text;
  try {
    text = ToUtf8Text(Raw(input));
  } catch (const Error& error) {
    return Require(error.Category() == ErrorCategory::Corrupt, "an unknown encoding is corrupt");
  }
  Require(QUtf8StringView(text).isValidUtf8(), "a text is UTF-8");
  if (!text.startsWith("\xEF\xBB\xBF")) {
    if (const auto gb = ToGb18030(text)) RequireBackFromGb18030(*gb, text);
    Require(ToUtf8Text("\xEF\xBB\xBF" + text) == text, "a byte-order mark is no part of a text");
  }
  CheckRecords(View(text));
  ResultSet resultSet;
  try {
    resultSet = ResultSetFromCsv(text);
  } catch (const Error& error) {
    return Require(error.Category() == ErrorCategory::Refused || error.Category() == ErrorCategory::Corrupt,
                   "a bad table is refused or corrupt");
  }
  const auto isLong = [&resultSet](int column) {
    return resultSet.ColumnName(column).size() > static_cast<std::size_t>(PacketLimits().nameBytes);
  };
  for (int column = 0; column < resultSet.ColumnCount(); ++column) {
    if (isLong(column)) return;
  }
  CheckAccepted(resultSet);
}

}  // namespace holdwise::fuzz
