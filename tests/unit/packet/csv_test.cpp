// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <cmath>

#include "holdwise/packet/csv_reader.h"
#include "holdwise/packet/csv_result_set.h"
#include "holdwise/packet/text_file.h"
#include "packet_test_support.h"

namespace holdwise {
namespace {

using Record = std::vector<std::string>;

std::vector<Record> RecordsOf(std::string_view text, BlankLines blankLines = BlankLines::Skip, char separator = ',') {
  std::vector<Record> records;
  CsvReader reader(text, blankLines, separator);
  while (reader.Next()) records.emplace_back(reader.Fields().begin(), reader.Fields().end());
  return records;
}

TEST(CsvReader, PlainRecords) {
  const std::vector<Record> expected = {{"a", "b", "c"}, {"1", "", "3"}, {"", ""}};
  EXPECT_EQ(RecordsOf("a,b,c\n1,,3\n,\n"), expected);
  EXPECT_EQ(RecordsOf("a,b,c\r\n1,,3\r\n,\r\n"), expected);
  EXPECT_EQ(RecordsOf("a,b,c\n1,,3\n,"), expected);
  EXPECT_EQ(RecordsOf("\xEF\xBB\xBF"
                      "a,b,c\n1,,3\n,"),
            expected);
  EXPECT_EQ(RecordsOf(" a ,\tb,c\t \n1, ,3\n , "), expected);
}

TEST(CsvReader, BlankLines) {
  EXPECT_EQ(RecordsOf("\n\r\n a\n \t\n\nb\n\n"), (std::vector<Record>{{"a"}, {"b"}}));
  EXPECT_EQ(RecordsOf("a\n\n \nb\n", BlankLines::Keep), (std::vector<Record>{{"a"}, {""}, {""}, {"b"}}));
  EXPECT_TRUE(RecordsOf("").empty());
  EXPECT_TRUE(RecordsOf("\n\n").empty());
}

TEST(CsvReader, OtherSeparators) {
  const std::vector<Record> expected = {{"a,b", "c", ""}, {"", "1", "2,3"}, {"x\ty;z", "\"", "e"}};
  EXPECT_EQ(RecordsOf("a,b; c ;\r\n;1;2,3\n\"x\ty;z\" ;\"\"\"\"; e", BlankLines::Skip, ';'), expected);
  EXPECT_EQ(RecordsOf("a,b\t c \t\r\n\t1\t2,3\n\"x\ty;z\" \t\"\"\"\"\t e", BlankLines::Skip, '\t'), expected);
  // A tab parts fields even where only blanks stand before it.
  EXPECT_EQ(RecordsOf("\t\t\"q\"\t\t\n", BlankLines::Skip, '\t'), (std::vector<Record>{{"", "", "q", "", ""}}));
}

TEST(CsvReader, QuotedFields) {
  EXPECT_EQ(RecordsOf("\"a,b\",c\n"), (std::vector<Record>{{"a,b", "c"}}));
  EXPECT_EQ(RecordsOf("\"say \"\"yes\"\"\",\"\"\"\",\"\"\n"), (std::vector<Record>{{"say \"yes\"", "\"", ""}}));
  EXPECT_EQ(RecordsOf("\" a \" , \"b\"\r\nc"), (std::vector<Record>{{" a ", "b"}, {"c"}}));
  EXPECT_EQ(RecordsOf("\"two\r\nlines\",x\ny"), (std::vector<Record>{{"two\r\nlines", "x"}, {"y"}}));
  EXPECT_EQ(RecordsOf("a\"b,c\n"), (std::vector<Record>{{"a\"b", "c"}}));
  EXPECT_EQ(RecordsOf("\"a\","), (std::vector<Record>{{"a", ""}}));
  EXPECT_EQ(RecordsOf("\"a\",b\r\n"), (std::vector<Record>{{"a", "b"}}));
}

TEST(CsvReader, ManyUndoubledFieldsOfOneRecordStayValid) {
  std::string text;
  Record expected;
  for (int i = 0; i < 300; ++i) {
    text += (i == 0 ? "" : ",") + ("\"\"\"" + std::to_string(i) + "\"");
    expected.push_back("\"" + std::to_string(i));
  }
  EXPECT_EQ(RecordsOf(text), std::vector<Record>{expected});
}

TEST(CsvReader, LineNumbersAndQuotes) {
  CsvReader reader("a\n\n\"x\ny\",\n\"\",c\n");
  ASSERT_TRUE(reader.Next());
  EXPECT_EQ(reader.Line(), 1);
  ASSERT_TRUE(reader.Next());
  EXPECT_EQ(reader.Line(), 3);
  EXPECT_TRUE(reader.IsQuoted(0));
  EXPECT_FALSE(reader.IsQuoted(1));
  ASSERT_TRUE(reader.Next());
  EXPECT_EQ(reader.Line(), 5);
  EXPECT_TRUE(reader.IsQuoted(0));
  EXPECT_FALSE(reader.Next());
  EXPECT_FALSE(reader.Next());
}

TEST(CsvReader, BadQuotesNameTheLine) {
  for (const char* bad : {"a\n\"b", "a\n\"b\"\"", "a\n\"b\" c,d", "a\nx,\"b\"c\n"}) {
    CsvReader reader(bad);
    ASSERT_TRUE(reader.Next());
    EXPECT_EQ(CategoryOf([&] { (void)reader.Next(); }), ErrorCategory::Corrupt) << bad;
    EXPECT_EQ(reader.Line(), 2) << bad;
    EXPECT_FALSE(reader.Next()) << bad;
    std::string text;
    const QByteArray table = QByteArray("x:text,y:text\n") + QByteArray(bad).mid(2);
    EXPECT_EQ(CategoryOf([&] { (void)ResultSetFromCsv(table); }, &text), ErrorCategory::Corrupt) << bad;
    EXPECT_TRUE(text.starts_with("第 2 行：引号")) << text;
  }
}

TEST(CsvReader, GoesOnBehindALineWithCharactersBehindAQuote) {
  CsvReader reader("a,b\n\"1\"x,2\n\"3\n4\"x\n5,6\n\"7\"");
  ASSERT_TRUE(reader.Next());
  std::string text;
  EXPECT_EQ(CategoryOf([&] { (void)reader.Next(); }, &text), ErrorCategory::Corrupt);
  EXPECT_EQ(reader.Line(), 2);
  EXPECT_EQ(text, "引号之后有多余的字符");
  EXPECT_EQ(CategoryOf([&] { (void)reader.Next(); }, &text), ErrorCategory::Corrupt);
  EXPECT_EQ(reader.Line(), 3);
  EXPECT_EQ(text, "到第 4 行，引号之后有多余的字符");
  ASSERT_TRUE(reader.Next());
  EXPECT_EQ(reader.Line(), 5);
  EXPECT_EQ(reader.Fields(), (std::vector<std::string_view>{"5", "6"}));
  ASSERT_TRUE(reader.Next());
  EXPECT_EQ(reader.Fields(), (std::vector<std::string_view>{"7"}));
  EXPECT_FALSE(reader.Next());
}

TEST(CsvField, QuotesOnlyWhenNeeded) {
  const std::pair<const char*, const char*> cases[] = {
      {"plain", "plain"},   {"浦发银行", "浦发银行"}, {"a b", "a b"},
      {"", "\"\""},         {"a,b", "\"a,b\""},       {"say \"x\"", "\"say \"\"x\"\"\""},
      {"l\nm", "\"l\nm\""}, {" a", "\" a\""},         {"a\t", "\"a\t\""},
      {"a\r", "\"a\r\""},
  };
  for (const auto& [text, field] : cases) EXPECT_EQ(CsvField(QString::fromUtf8(text)), QString::fromUtf8(field));
  EXPECT_EQ(CsvField(QChar(0xFEFF) + QStringLiteral("a")), QLatin1Char('"') + QChar(0xFEFF) + QStringLiteral("a\""));
}

TEST(ShownText, HasNoControlCharactersAndIsNotLong) {
  EXPECT_EQ(ShownText(QStringLiteral("a b，中")), QStringLiteral("a b，中"));
  const char16_t controls[] = {u'a', 0, u'\n', 0x7F, 0x85, 0x9F, 0xA0};
  EXPECT_EQ(ShownText(QString(reinterpret_cast<const QChar*>(controls), 7)),
            QStringLiteral("a\\x00\\x0a\\x7f\\x85\\x9f") + QChar(0xA0));
  EXPECT_EQ(ShownText(QString(400, u'x')), QString(400, u'x'));
  EXPECT_EQ(ShownText(QString(401, u'x')), QString(400, u'x') + u'…');
}

TEST(TextFile, Utf8AndGb18030) {
  EXPECT_EQ(ToUtf8Text("abc"), "abc");
  EXPECT_EQ(ToUtf8Text("\xEF\xBB\xBF中"), "中");
  EXPECT_EQ(ToUtf8Text(QByteArray("\xD6\xD0\xB9\xFA,1")), "中国,1");     // python: '中国,1'.encode('gb18030')
  EXPECT_EQ(ToUtf8Text(QByteArray("\xD6\xD0\x94\x39\xFC\x36")), "中😀");  // python: '中😀'.encode('gb18030')
  EXPECT_EQ(ToUtf8Text({}), "");
}

/// Some characters outside the first plane have two bytes in GB18030 and four in UTF-8.
TEST(TextFile, Gb18030MayDouble) {
  // Four-byte characters are plain: python: ('😀\U00020087'.encode('gb18030'), '😀\U00020087'.encode())
  const QByteArray character = QByteArray("\x94\x39\xFC\x36").repeated(8) + QByteArray("\xFE\x51");
  EXPECT_EQ(ToUtf8Text(character.repeated(1000)),
            (QByteArray("😀").repeated(8) + QByteArray("\xF0\xA0\x82\x87")).repeated(1000));
}

TEST(TextFile, NeitherEncodingIsCorrupt) {
  for (const char* bad : {"\xFF\xFE"
                          "a",
                          "\xD6\xD0\xB9", "abc\xD6", "\x81\x20"}) {
    EXPECT_EQ(CategoryOf([&] { (void)ToUtf8Text(bad); }), ErrorCategory::Corrupt);
  }
}

/// All encoded by Python.
TEST(TextFile, WhatIsNotPlainlyOneOfTheTwoIsRefused) {
  const QByteArray whole = "组合名称,股票代码\n稳健一号,600000\n";
  for (qsizetype cut = 0; cut < whole.size(); ++cut) {
    if (static_cast<unsigned char>(whole[cut]) < 0x80) continue;
    QByteArray damaged = whole;
    damaged.remove(cut, 1);
    EXPECT_EQ(CategoryOf([&] { (void)ToUtf8Text(damaged); }), ErrorCategory::Corrupt) << "without byte " << cut;
    EXPECT_EQ(CategoryOf([&] { (void)ToUtf8Text("\xEF\xBB\xBF" + damaged); }), ErrorCategory::Corrupt);
  }
  const char* const big5[] = {"\xB2\xD5\xA6\x58\xA6\x57\xBA\xD9",                            // 組合名稱
                              "name,code\n\xC3\xAD\xB0\xB7\xA4\x40\xB8\xB9,600000\n",        // 穩健一號
                              "\xBB\xF9\xAD\xC8\xA7\xEB\xB8\xEA\xB2\xD5\xA6\x58,600000\n"};  // 價值投資組合
  for (const char* text : big5) EXPECT_EQ(CategoryOf([&] { (void)ToUtf8Text(text); }), ErrorCategory::Corrupt) << text;
  // "医药" in GB18030 is valid UTF-8 too; a byte-order mark or one Chinese character of UTF-8 decides.
  EXPECT_EQ(CategoryOf([&] { (void)ToUtf8Text("name\n\xD2\xBD\xD2\xA9\n"); }), ErrorCategory::Corrupt);
  EXPECT_EQ(ToUtf8Text("\xEF\xBB\xBF\xD2\xBD\xD2\xA9"), "\xD2\xBD\xD2\xA9");
  EXPECT_EQ(ToUtf8Text("中\xD2\xBD\xD2\xA9"), "中\xD2\xBD\xD2\xA9");
  EXPECT_EQ(ToUtf8Text("e\xCC\x81"), "e\xCC\x81");
  // "李堃的组合": a rare character among common ones.
  EXPECT_EQ(ToUtf8Text("\xC0\xEE\x88\xD2\xB5\xC4\xD7\xE9\xBA\xCF"), "李堃的组合");
}

TEST(TextFile, FileErrors) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("a.csv"));
  EXPECT_EQ(CategoryOf([&] { (void)ReadTextFile(path); }), ErrorCategory::NotFound);
  EXPECT_EQ(CategoryOf([&] { (void)ReadTextFile(folder.path()); }), ErrorCategory::Io);
  WriteFileAtomically(path, "12345", Durability::Replaceable);
  EXPECT_EQ(ReadTextFile(path, 5), "12345");
  EXPECT_EQ(CategoryOf([&] { (void)ReadTextFile(path, 4); }), ErrorCategory::Refused);
  WriteFileAtomically(path, "\xFF", Durability::Replaceable);
  std::string text;
  EXPECT_EQ(CategoryOf([&] { (void)ReadTextFile(path); }, &text), ErrorCategory::Corrupt);
  EXPECT_NE(text.find(path.toStdString()), std::string::npos);
}

TEST(CsvResultSet, WritesHeadingsNullsAndEmptyTexts) {
  ResultSet set;
  set.AddColumn("code", ColumnType::Integer);
  set.AddColumn("名,称", ColumnType::Text);
  set.AddColumn("p", ColumnType::Real);
  set.AddColumn("at", ColumnType::DateTime);
  for (int row = 0; row < 2; ++row) set.AppendRow();
  set.SetInteger(0, 0, -7);
  set.SetText(0, 1, "");
  set.SetReal(0, 2, 0.1);
  set.SetDateTime(0, 3, 1704207845123);
  EXPECT_EQ(ResultSetToCsv(set).toStdString(),
            "code:integer,\"名,称:text\",p:real,at:datetime\n-7,\"\",0.1,2024-01-02 15:04:05.123\n,,,\n");
}

TEST(CsvResultSet, RoundTrip) {
  ResultSet set = SampleSet();
  set.SetText(0, 2, "a,\"b\"\r\n c ");
  set.SetText(1, 2, " ");
  set.SetDateTime(1, 3, -1);
  set.SetDateTime(2, 3, 253402300799999);
  set.SetDateTime(4, 3, -62135596800000);
  EXPECT_TRUE(ResultSetFromCsv(ResultSetToCsv(set)) == set);
}

TEST(CsvResultSet, RoundTripOfOneColumnWithNulls) {
  ResultSet set;
  set.AddColumn("a:b", ColumnType::Text);
  for (int row = 0; row < 5; ++row) set.AppendRow();
  set.SetText(1, 0, "");
  set.SetText(3, 0, "x");
  EXPECT_TRUE(ResultSetFromCsv(ResultSetToCsv(set)) == set);
}

TEST(CsvResultSet, RoundTripOfByteOrderMarksThatAreMeant) {
  ResultSet set;
  set.AddColumn("\xEF\xBB\xBFname", ColumnType::Text);
  set.SetText(set.AppendRow(), 0, "\xEF\xBB\xBFtext");
  EXPECT_TRUE(ResultSetFromCsv(ResultSetToCsv(set)) == set);
}

TEST(CsvResultSet, ReadsWithByteOrderMarkAndBlankLines) {
  const ResultSet set = ResultSetFromCsv("\xEF\xBB\xBF\r\na:integer,b:real\r\n\r\n1,2.5\r\n\r\n");
  ASSERT_EQ(set.RowCount(), 1);
  EXPECT_EQ(set.IntegerAt(0, 0), 1);
  EXPECT_EQ(set.RealAt(0, 1), 2.5);
}

TEST(CsvResultSet, RefusesBadHeadingsAndValues) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "列头"},
      {"\n\n", "列头"},
      {"a\n1\n", "第 1 行第 1 列"},
      {"a:integer,b:number\n", "第 1 行第 2 列"},
      {"a:integer,A:real\n", "第 1 行第 2 列"},
      {":integer\n", "第 1 行第 1 列"},
      {"a:integer\n1\n1.5\n", "第 3 行“a”列"},
      {"a:integer\n99999999999999999999\n", "第 2 行“a”列"},
      {"a:real\n1,2\n", "第 2 行"},
      {"a:real,b:real\n1\n", "第 2 行"},
      {"a:real\nnan\n", "第 2 行“a”列"},
      {"a:real\n\"\"\n", "第 2 行“a”列"},
      {"a:datetime\n2024-02-30\n", "第 2 行“a”列"},
      {"a:datetime\n2024-1-2\n", "第 2 行“a”列"},
      {"a:datetime\n2024-01-02 24:00:00\n", "第 2 行“a”列"},
      {"a:datetime\n2024-01-02T10:00:00\n", "第 2 行“a”列"},
      {"a:datetime\n2024-01-02 10:00\n", "第 2 行“a”列"},
      {"a:text\n\xFF\n", "“a”列第 1 行"},
  };
  for (const auto& [csv, place] : cases) {
    std::string text;
    EXPECT_EQ(CategoryOf([&csv = csv] { (void)ResultSetFromCsv(csv); }, &text), ErrorCategory::Refused) << csv;
    EXPECT_NE(text.find(place), std::string::npos) << csv << " -> " << text;
  }
}

TEST(CsvResultSet, RefusesWhatTextCannotCarry) {
  EXPECT_EQ(CategoryOf([] { (void)ResultSetToCsv(ResultSet()); }), ErrorCategory::Refused);
  ResultSet set;
  set.AddColumn("r", ColumnType::Real);
  set.AddColumn("d", ColumnType::DateTime);
  set.AppendRow();
  set.SetReal(0, 0, NAN);
  EXPECT_EQ(CategoryOf([&] { (void)ResultSetToCsv(set); }), ErrorCategory::Refused);
  set.SetReal(0, 0, 1);
  for (const std::int64_t outside : {std::int64_t{253402300800000}, std::int64_t{-62135596800001}, INT64_MIN}) {
    set.SetDateTime(0, 1, outside);
    EXPECT_EQ(CategoryOf([&] { (void)ResultSetToCsv(set); }), ErrorCategory::Refused);
  }
}

}  // namespace
}  // namespace holdwise
