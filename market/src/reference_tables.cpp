// SPDX-License-Identifier: MIT
#include "holdwise/market/reference_tables.h"

#include "holdwise/market/market_rules.h"
#include "holdwise/market/pinyin.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

void NameInFirstRow(ResultSet& table, const char* name, const QString& text) {
  const int column = table.AddColumn(name, ColumnType::Text);
  if (!table.IsEmpty()) table.SetText(0, column, text);
}

}  // namespace

ResultSet SecuritiesTable(const std::vector<Security>& securities) {
  ResultSet table;
  const int code = table.AddColumn("code", ColumnType::Text);
  const int name = table.AddColumn("name", ColumnType::Text);
  const int industry = table.AddColumn("industry", ColumnType::Text);
  const int market = table.AddColumn("market", ColumnType::Integer);
  const int listDate = table.AddColumn("list_date", ColumnType::Integer);
  const int aShare = table.AddColumn("a_share", ColumnType::Integer);
  const int pinyin = table.AddColumn("pinyin", ColumnType::Text);
  table.Reserve(static_cast<int>(securities.size()));
  for (const Security& security : securities) {
    const int row = table.AppendRow();
    table.SetText(row, code, security.code);
    table.SetText(row, name, security.name);
    table.SetText(row, industry, security.industry);
    table.SetInteger(row, market, security.market);
    if (security.listDate != 0) table.SetInteger(row, listDate, security.listDate);
    table.SetInteger(row, aShare, IsAShare(security.code) ? 1 : 0);
    table.SetText(row, pinyin, PinyinInitials(QString::fromStdString(security.name)));
  }
  return table;
}

ResultSet TradingDatesTable(const std::vector<int>& dates) {
  ResultSet table;
  const int column = table.AddColumn("date", ColumnType::Integer);
  table.Reserve(static_cast<int>(dates.size()));
  for (const int date : dates) table.SetInteger(table.AppendRow(), column, date);
  return table;
}

ResultSet AccountsTable(const std::vector<Account>& accounts) {
  constexpr double kScale = 10'000;
  ResultSet table;
  const int code = table.AddColumn("code_number", ColumnType::Integer);
  const int earnings = table.AddColumn("eps", ColumnType::Real);
  const int netAssets = table.AddColumn("net_asset_per_share", ColumnType::Real);
  const int shares = table.AddColumn("total_shares", ColumnType::Real);
  table.Reserve(static_cast<int>(accounts.size()));
  for (const Account& account : accounts) {
    const int row = table.AppendRow();
    table.SetInteger(row, code, account.codeNumber);
    table.SetReal(row, earnings, account.earnings * kScale);
    table.SetReal(row, netAssets, account.netAssets * kScale);
    table.SetReal(row, shares, account.totalShares * kScale);
  }
  return table;
}

void NameEdition(ResultSet& table, const QString& edition) {
  NameInFirstRow(table, "edition", edition);
}

void NameProposals(ResultSet& table, const QString& proposals) {
  NameInFirstRow(table, "proposals", proposals);
}

ResultSet InterestRateTable(const DepositRates& rates, int madeOn) {
  constexpr std::int64_t kMillisecondsPerDay = 86'400'000;
  ResultSet table;
  const int id = table.AddColumn("ID", ColumnType::Integer);
  const int sourceId = table.AddColumn("SOURCEID", ColumnType::Integer);
  const int sourceDb = table.AddColumn("SOURCEDB", ColumnType::Text);
  const int sourceTable = table.AddColumn("SOURCETABLE", ColumnType::Text);
  const int updateId = table.AddColumn("UPDATEID", ColumnType::Integer);
  const int createdAt = table.AddColumn("CTIME", ColumnType::DateTime);
  const int updatedAt = table.AddColumn("UPTIME", ColumnType::DateTime);
  const int isValid = table.AddColumn("ISVAILD", ColumnType::Text);
  const int remark = table.AddColumn("REMARK", ColumnType::Text);
  const int type = table.AddColumn("DEPOSITTYPE", ColumnType::Text);
  const int term = table.AddColumn("TERM", ColumnType::Text);
  const int changeDate = table.AddColumn("INTERESTCHANGEDATE", ColumnType::DateTime);
  const int interest = table.AddColumn("INTEREST", ColumnType::Real);
  const int interestCode = table.AddColumn("INTERESTCODE", ColumnType::Text);
  for (const DepositRate& rate : rates.rates) {
    const int row = table.AppendRow();
    table.SetInteger(row, id, row + 1);
    table.SetInteger(row, sourceId, row + 1);
    table.SetText(row, sourceDb, std::string_view("holdwise-market"));
    table.SetText(row, sourceTable, std::string_view("deposit_rates"));
    table.SetInteger(row, updateId, 1);
    table.SetDateTime(row, createdAt, DayNumber(madeOn) * kMillisecondsPerDay);
    table.SetDateTime(row, updatedAt, DayNumber(madeOn) * kMillisecondsPerDay);
    table.SetText(row, isValid, std::string_view("1"));
    table.SetText(row, remark, std::string_view());
    table.SetText(row, type, rate.type);
    table.SetText(row, term, rate.term);
    table.SetDateTime(row, changeDate, DayNumber(rates.effectiveDate) * kMillisecondsPerDay);
    table.SetReal(row, interest, rate.percent);
    table.SetText(row, interestCode, rate.rateCode);
  }
  return table;
}

ResultSet EstimateTable(const std::vector<EstimateValue>& values) {
  ResultSet table;
  const int code = table.AddColumn("SECUCODE", ColumnType::Text);
  const int id = table.AddColumn("ID", ColumnType::Integer);
  const int price = table.AddColumn("PRICE", ColumnType::Text);
  table.Reserve(static_cast<int>(values.size()));
  for (const EstimateValue& value : values) {
    const int row = table.AppendRow();
    table.SetText(row, code, value.code);
    table.SetInteger(row, id, row + 1);
    table.SetText(row, price, ShortestUtf8(value.price));
  }
  return table;
}

}  // namespace holdwise
