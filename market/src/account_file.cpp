// SPDX-License-Identifier: MIT
#include <cmath>
#include <map>

#include "beijing_lines.h"
#include "headings.h"
#include "holdwise/market/market_rules.h"
#include "holdwise/market/reference_files.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

/// A line, and of which day its figures are.
struct DatedAccount {
  int date = 0;
  Account account;
};

// A figure of yuan a share: a loss is below zero. The reason why it cannot be used; none when `value` is set.
std::optional<QString> ReadFigure(const CsvTable& table, AccountColumn column, const char* title, double& value) {
  constexpr double kLargest = 1e6;
  const std::string_view text = table.Field(column);
  const QString name = QString::fromUtf8(title);
  if (IsBlankCell(text)) return name + QStringLiteral("缺失");
  const std::optional<double> number = ParseReal(text);
  if (!number) return name + QStringLiteral("不是数字“%1”").arg(FieldText(text));
  if (std::fabs(*number) >= kLargest) return name + QStringLiteral("过大“%1”").arg(FieldText(text));
  value = *number;
  return std::nullopt;
}

std::optional<QString> ReadDay(const CsvTable& table, int& date) {
  const std::string_view text = table.Field(kAccountDate);
  if (!table.Has(kAccountDate)) return std::nullopt;
  const std::optional<int> day = ReadTimedDate(text);
  if (!day) return QStringLiteral("日期无法识别“%1”").arg(FieldText(text));
  date = *day;
  return std::nullopt;
}

std::optional<QString> ReadLine(const CsvTable& table, DatedAccount& line) {
  if (auto reason = ReadDay(table, line.date)) return reason;
  if (auto reason = ReadFigure(table, kAccountEarnings, "每股收益", line.account.earnings)) return reason;
  if (auto reason = ReadFigure(table, kAccountNetAssets, "每股净资产", line.account.netAssets)) return reason;
  const std::string_view shares = table.Field(kAccountShares);
  if (IsBlankCell(shares)) return std::nullopt;
  const std::optional<double> number = ParseReal(shares);
  if (!number || *number < 0) return QStringLiteral("总股本不是数字或为负数“%1”").arg(FieldText(shares));
  line.account.totalShares = *number;
  return std::nullopt;
}

}  // namespace

std::vector<Account> ReadAccounts(const QString& path, const std::unordered_set<int>& known, int date,
                                  std::vector<Rejection>& rejections, QString* understood) {
  CsvTable table(path, AccountColumns());
  std::map<int, DatedAccount> latest;
  BeijingLines beijing;
  while (table.Next()) {
    const std::string_view codeText = table.Field(kAccountCode);
    if (beijing.Take(codeText, path, table.Line())) continue;
    const std::optional<std::string> code = ParseStockCode(codeText);
    DatedAccount line;
    if (!code) {
      table.Reject(QStringLiteral("不是沪深证券代码“%1”").arg(FieldText(codeText)));
      continue;
    }
    line.account.codeNumber = CodeNumberOfStock(*code);
    if (!known.contains(line.account.codeNumber)) continue;
    if (const auto reason = ReadLine(table, line)) {
      table.Reject(*reason);
      continue;
    }
    if (line.date > date) continue;
    const auto [place, isNew] = latest.emplace(line.account.codeNumber, line);
    if (isNew) continue;
    if (line.date == place->second.date && line.account != place->second.account) {
      table.Reject(QStringLiteral("代码 %1 重复，数值不同").arg(FieldText(codeText)));
    } else if (line.date > place->second.date) {
      place->second = line;
    }
  }
  table.MoveRejectionsTo(rejections);
  beijing.AddTo(rejections);
  if (understood != nullptr) *understood = table.Understood();
  std::vector<Account> accounts;
  accounts.reserve(latest.size());
  for (const auto& [codeNumber, line] : latest) accounts.push_back(line.account);
  return accounts;
}

}  // namespace holdwise
