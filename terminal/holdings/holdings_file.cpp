// SPDX-License-Identifier: MIT
#include "holdings/holdings_file.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "holdwise/packet/error.h"
#include "holdwise/packet/text_file.h"
#include "own_table.h"
#include "records.h"
#include "statement_table.h"

namespace holdwise {
namespace {

constexpr char kSeparators[] = {',', '\t', ';'};

struct NoTable {
  std::string_view start;
  const char* what;
};
/// Files that are called a table and are no text.
constexpr NoTable kNoTables[] = {
    {"PK\x03\x04", "Excel 工作簿"},
    {"\xD0\xCF\x11\xE0", "Excel 工作簿"},
    {"<html", "网页"},
    {"<!DOCTYPE", "网页"},
    {"<table", "网页"},
    {"<?xml", "XML 文件"},
};

CsvPortfolios Refused(const QString& reason) {
  CsvPortfolios refused;
  AddProblem(refused.problems, 0, reason);
  return refused;
}

/// A first record that is the heading of the documents' table, and what it is as that of a statement.
struct FoundOwn {
  OwnHeading own;
  FoundHeading statement;
};

std::optional<FoundOwn> FindOwnHeading(std::string_view utf8) {
  for (const char separator : kSeparators) {
    Records records(utf8, separator, nullptr);
    if (!records.Next()) continue;
    const std::optional<OwnHeading> own = ReadOwnHeading(records.Fields());
    if (!own) continue;
    const OwnWords words = own->isAlone ? OwnWords::Known : OwnWords::Unknown;
    return FoundOwn{*own, {separator, records.Line(), ReadStatementHeading(records.Fields(), words)}};
  }
  return std::nullopt;
}

bool IsStatement(const FoundOwn& found, std::string_view utf8, const CodeNumServices& codes, const QString& freeName) {
  if (!found.statement.heading.tradeWord.isEmpty()) return true;
  if (freeName.isEmpty() || found.own.names == OwnNames::OfPortfolios) return false;
  return found.own.names == OwnNames::None || IsNamedAfterStocks(utf8, found.statement.separator, codes);
}

CsvPortfolios ReadTable(std::string_view utf8, const CodeNumServices& codes, const QString& freeName) {
  if (const std::optional<FoundOwn> found = FindOwnHeading(utf8)) {
    if (IsStatement(*found, utf8, codes, freeName)) return ReadStatement(utf8, found->statement, codes, freeName);
    return ReadOwnTable(utf8, found->statement.separator, codes);
  }
  if (const std::optional<FoundHeading> found = FindStatementHeading(utf8))
    return ReadStatement(utf8, *found, codes, freeName);
  return ReadOwnTable(utf8, kSeparators[0], codes);
}

}  // namespace

QString NoTableProblem(const QByteArray& bytes) {
  const std::string_view content(bytes.constData(), static_cast<std::size_t>(bytes.size()));
  const auto* const none = std::find_if(std::begin(kNoTables), std::end(kNoTables),
                                        [content](const NoTable& one) { return content.starts_with(one.start); });
  if (none == std::end(kNoTables)) return {};
  return QStringLiteral("这是%1，不是文本表格：请用电子表格软件打开，另存为 CSV（UTF-8）后再导入")
      .arg(QString::fromUtf8(none->what));
}

CsvPortfolios ParsePortfolioCsv(const QByteArray& csv, const CodeNumServices& codes, const QString& freeName) {
  if (const QString problem = NoTableProblem(csv); !problem.isEmpty()) return Refused(problem);
  try {
    const QByteArray text = ToUtf8Text(csv);
    return ReadTable(std::string_view(text.constData(), static_cast<std::size_t>(text.size())), codes, freeName);
  } catch (const Error& error) {
    return Refused(QStringLiteral("文件无法读取：%1").arg(QString::fromUtf8(error.what())));
  }
}

}  // namespace holdwise
