// SPDX-License-Identifier: MIT
#include "schema.h"

#include <algorithm>
#include <cctype>

#include "database/engine/prepared_statement.h"

namespace holdwise::firebird {

namespace {

std::string_view Trimmed(std::string_view text) {
  static constexpr std::string_view kBlank = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kBlank);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlank) - first + 1);
}

std::string WithoutComments(std::string_view script) {
  std::string text(script);
  for (std::size_t begin = text.find("/*"); begin != std::string::npos; begin = text.find("/*", begin)) {
    const std::size_t end = text.find("*/", begin);
    text.erase(begin, end == std::string::npos ? end : end + 2 - begin);
  }
  return text;
}

bool NamesTerminator(std::string_view statement) {
  static constexpr std::string_view kSetTerm = "set term ";
  return statement.size() > kSetTerm.size() &&
         std::equal(kSetTerm.begin(), kSetTerm.end(), statement.begin(), [](char want, char have) {
           return want == static_cast<char>(std::tolower(static_cast<unsigned char>(have)));
         });
}

void Run(Status& status, Firebird::IAttachment& attachment, Transaction& transaction, std::string_view sql) {
  PreparedStatement(status, attachment, transaction, sql).Execute(transaction);
}

std::int64_t ReadNumber(Status& status, Firebird::IAttachment& attachment, std::string_view sql) {
  Transaction transaction(status, attachment, Transaction::Mode::ReadOnly);
  const ResultSet rows = PreparedStatement(status, attachment, transaction, sql).Read(transaction, 1);
  return rows.IsEmpty() ? 0 : rows.IntegerAt(0, 0);
}

std::int64_t VersionOf(Status& status, Firebird::IAttachment& attachment) {
  try {
    return ReadNumber(status, attachment, "select coalesce(max(version), 0) from holdwise_schema");
  } catch (const Error&) {  // asked only now: nearly every database has the table
    if (ReadNumber(status, attachment,
                   "select count(*) from rdb$relations where rdb$relation_name = 'HOLDWISE_SCHEMA'") != 0) {
      throw;
    }
  }
  // Its own transaction: the engine does not write rows into a table that is not committed.
  Transaction transaction(status, attachment, Transaction::Mode::ChangeWait);
  Run(status, attachment, transaction, "create table holdwise_schema (version integer not null primary key)");
  transaction.Commit();
  return 0;
}

}  // namespace

std::vector<std::string> SplitScript(std::string_view script) {
  const std::string text = WithoutComments(script);
  std::vector<std::string> statements;
  std::string terminator = ";";
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t end = std::min(text.find(terminator, at), text.size());
    const std::string_view statement = Trimmed(std::string_view(text).substr(at, end - at));
    at = end + terminator.size();
    if (NamesTerminator(statement)) {
      terminator = Trimmed(statement.substr(statement.find_last_of(" \t")));
    } else if (!statement.empty()) {
      statements.emplace_back(statement);
    }
  }
  return statements;
}

void UpgradeSchema(Status& status, Firebird::IAttachment& attachment, std::size_t target) {
  const std::int64_t version = VersionOf(status, attachment);
  const std::span<const std::string_view> files = SchemaFiles();
  if (version > static_cast<std::int64_t>(files.size())) {
    throw Error(ErrorCategory::Refused, "数据库由更新版本的程序建立（结构版本 " + std::to_string(version) +
                                            "，本程序支持到 " + std::to_string(files.size()) +
                                            "），请升级程序后再打开");
  }
  for (std::size_t next = static_cast<std::size_t>(version); next < std::min(target, files.size()); ++next) {
    Transaction transaction(status, attachment, Transaction::Mode::ChangeWait);
    for (const std::string& statement : SplitScript(files[next])) Run(status, attachment, transaction, statement);
    Run(status, attachment, transaction, "insert into holdwise_schema values (" + std::to_string(next + 1) + ")");
    transaction.Commit();
  }
}

}  // namespace holdwise::firebird
