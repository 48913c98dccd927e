// SPDX-License-Identifier: MIT
#include <QDir>
#include <QFile>
#include <QSet>
#include <algorithm>
#include <limits>
#include <unordered_map>
#include <unordered_set>

#include "datacentre/market_data.h"
#include "holdwise/packet/atomic_file.h"
#include "holdwise/packet/code_numbers.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/table_limits.h"
#include "holdwise/packet/text_file.h"
#include "own_stocks.h"
#include "table_reader.h"

namespace holdwise {
namespace {

constexpr int kFormat = 1;
constexpr char kOptionalStockGroup[] = "OptionalStock";
constexpr qsizetype kMostShownLines = 10;

/// The six digits as an integer, -1 when the text is anything else.
int SixDigitCode(const std::string& text) {
  if (text.size() != 6 || !std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; })) {
    return -1;
  }
  return std::stoi(text);
}

struct SecurityColumns {
  explicit SecurityColumns(const TableReader& file)
      : code(file.Column("code", ColumnType::Text)),
        name(file.Column("name", ColumnType::Text)),
        industry(file.Column("industry", ColumnType::Text, true)),
        market(file.Column("market", ColumnType::Integer)),
        listDate(file.Column("list_date", ColumnType::Integer, true)),
        aShare(file.Column("a_share", ColumnType::Integer)),
        pinyin(file.Table().FindColumn("pinyin") < 0 ? -1 : file.Column("pinyin", ColumnType::Text, true)) {}
  int code, name, industry, market, listDate, aShare;
  int pinyin;  ///< -1: none
};

struct SecurityRow {
  int digits = 0;
  std::string name;
  std::string industry;
  std::string initials;
  int market = 0;
  bool aShare = false;
};

/// What cannot be a security is refused.
SecurityRow ReadSecurity(const TableReader& file, const SecurityColumns& columns, int row) {
  SecurityRow read;
  const std::string code = file.Table().Utf8At(row, columns.code);
  read.digits = SixDigitCode(code);
  if (read.digits < 0) {
    file.Refuse(row, QStringLiteral("证券代码“%1”不是六位数字").arg(QString::fromStdString(code)));
  }
  if (IsIndexNumber(read.digits) && read.digits != kCompositeIndex) {
    file.Refuse(row, QStringLiteral("证券代码%1是指数代码").arg(QString::fromStdString(code)));
  }
  read.name = file.Table().Utf8At(row, columns.name);
  read.industry = file.Table().Utf8At(row, columns.industry);
  if (read.name.empty()) file.Refuse(row, QStringLiteral("证券名称为空"));
  if (columns.pinyin >= 0) read.initials = file.Table().Utf8At(row, columns.pinyin);
  const bool areInitials = std::all_of(read.initials.begin(), read.initials.end(), [](char c) {
    return c == ' ' || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
  });
  if (!areInitials) file.Refuse(row, QStringLiteral("拼音首字母无效"));
  if (std::max({read.name.size(), read.industry.size(), read.initials.size()}) >
      std::numeric_limits<std::uint16_t>::max()) {
    file.Refuse(row, QStringLiteral("证券名称、行业或拼音首字母过长"));
  }
  read.market = file.IntegerAt(row, columns.market);
  if (read.market != 1 && read.market != 2) file.Refuse(row, QStringLiteral("市场%1应为1或2").arg(read.market));
  const int flag = file.IntegerAt(row, columns.aShare);
  if (flag != 0 && flag != 1) file.Refuse(row, QStringLiteral("A股标志%1应为0或1").arg(flag));
  read.aShare = flag == 1;
  if (!file.Table().IsNull(row, columns.listDate) && !IsMarketDate(file.IntegerAt(row, columns.listDate))) {
    file.Refuse(row, QStringLiteral("上市日期%1无效").arg(file.IntegerAt(row, columns.listDate)));
  }
  return read;
}

}  // namespace

void MarketData::Load(const QString& folder) {
  const QDir dir(folder);
  folder_ = dir.absolutePath();
  const Market market = ReadMarket(dir.filePath(QStringLiteral("market.dat")));
  currentDate_ = market.currentDate;
  simulated_ = market.simulated;
  SetEdition(market.edition);
  LoadSecurities(dir.filePath(QStringLiteral("securities.dat")));
  LoadTradingDates(dir.filePath(QStringLiteral("trading_dates.dat")));
  {
    const WriteLock lock(mutex_);
    stockQuotes_.assign(securities_.size(), NowData{});
  }
  const std::vector<CodedQuote> quotes = ReadQuotes(dir.filePath(QStringLiteral("quotes.dat")), market.edition);
  ApplyQuotes(quotes);
  notices_.clear();
  LoadOptional(dir.filePath(QStringLiteral("accounts.dat")), &MarketData::LoadAccounts);
  LoadOptional(dir.filePath(QStringLiteral("groups.dat")), &MarketData::LoadGroups);
}

void MarketData::LoadOptional(const QString& path, void (MarketData::*load)(const QString&)) {
  if (!QFile::exists(path)) return;
  try {
    (this->*load)(path);
  } catch (const Error& error) {
    Notice(QStringLiteral("没有采用可选文件。%1").arg(QString::fromUtf8(error.what())));
  }
}

void MarketData::Notice(const QString& text) {
  notices_ += text;
  log_.WriteLog(text);
}

MarketData::Market MarketData::ReadMarket(const QString& path) {
  const TableReader file(path, kMarketLimits);
  const int date = file.Column("current_date", ColumnType::Integer);
  const int simulated = file.Column("simulated", ColumnType::Integer);
  const int format = file.Column("format", ColumnType::Integer);
  if (file.RowCount() != 1) file.Refuse(1, QStringLiteral("只应有一行数据"));
  if (file.IntegerAt(0, format) != kFormat) {
    file.Refuse(0,
                QStringLiteral("数据是格式版本%1的，本终端需要版本%2：请用与本终端一起安装的 holdwise-market 重新生成")
                    .arg(file.IntegerAt(0, format))
                    .arg(kFormat));
  }
  const int currentDate = file.IntegerAt(0, date);
  if (!IsMarketDate(currentDate)) file.Refuse(0, QStringLiteral("日期%1无效").arg(currentDate));
  const int flag = file.IntegerAt(0, simulated);
  if (flag != 0 && flag != 1) file.Refuse(0, QStringLiteral("模拟标志%1应为0或1").arg(flag));
  return {currentDate, flag == 1, file.Edition()};
}

void MarketData::SetEdition(const QString& edition) {
  const WriteLock lock(mutex_);
  edition_ = edition;
}

void MarketData::ReloadQuotes() {
  laterDate_ = 0;
  const QDir dir(folder_);
  const Market market = ReadMarket(dir.filePath(QStringLiteral("market.dat")));
  if (market.currentDate != currentDate_) {
    if (market.currentDate > currentDate_) laterDate_ = market.currentDate;
    throw Error(ErrorCategory::Refused,
                QStringLiteral("数据文件夹“%1”已换成日期%2的数据，%3")
                    .arg(QDir::toNativeSeparators(folder_), QString::fromStdString(DateText(market.currentDate)),
                         laterDate_ == 0 ? QStringLiteral("重新启动终端后生效") : QStringLiteral("还没有换上"))
                    .toStdString());
  }
  SetEdition(market.edition);
  ApplyQuotes(ReadQuotes(dir.filePath(QStringLiteral("quotes.dat")), market.edition));
}

QString MarketData::LaterDate() const {
  return laterDate_ == 0 ? QString() : QString::fromStdString(DateText(laterDate_));
}

void MarketData::LoadSecurities(const QString& path) {
  const TableReader file(path, kSecuritiesLimits);
  const SecurityColumns columns(file);
  securities_.clear();
  securities_.reserve(static_cast<std::size_t>(file.RowCount()));
  texts_.clear();
  std::unordered_map<std::string, std::uint32_t> industries;  // a hundred or so industries serve all securities
  for (int row = 0; row < file.RowCount(); ++row) {
    const SecurityRow read = ReadSecurity(file, columns, row);
    Security security;
    security.codeNumber = kStockBase + read.digits;
    security.market = static_cast<std::uint8_t>(read.market);
    security.aShare = read.aShare;
    security.nameOffset = static_cast<std::uint32_t>(texts_.size());
    security.nameBytes = static_cast<std::uint16_t>(read.name.size());
    security.initialsBytes = static_cast<std::uint16_t>(read.initials.size());
    texts_ += read.name;
    texts_ += read.initials;
    const auto [known, isNew] = industries.try_emplace(read.industry, static_cast<std::uint32_t>(texts_.size()));
    if (isNew) texts_ += read.industry;
    security.industryOffset = known->second;
    security.industryBytes = static_cast<std::uint16_t>(read.industry.size());
    securities_.push_back(security);
  }
  texts_.shrink_to_fit();
  std::sort(securities_.begin(), securities_.end(),
            [](const Security& a, const Security& b) { return a.codeNumber < b.codeNumber; });
  const auto twice =
      std::adjacent_find(securities_.begin(), securities_.end(),
                         [](const Security& a, const Security& b) { return a.codeNumber == b.codeNumber; });
  if (twice != securities_.end()) {
    const std::string codeText = std::to_string(twice->codeNumber).substr(1);
    int row = file.RowCount() - 1;  // the second of the two
    while (file.Table().Utf8At(row, columns.code) != codeText) --row;
    file.Refuse(row, QStringLiteral("证券代码%1重复").arg(QString::fromStdString(codeText)));
  }
}

void MarketData::LoadTradingDates(const QString& path) {
  const TableReader file(path, kTradingDatesLimits);
  const int date = file.Column("date", ColumnType::Integer);
  tradingDates_.clear();
  int previous = 0;
  for (int row = 0; row < file.RowCount(); ++row) {
    const int value = file.IntegerAt(row, date);
    if (!IsMarketDate(value)) file.Refuse(row, QStringLiteral("交易日%1无效").arg(value));
    if (value <= previous) file.Refuse(row, QStringLiteral("交易日%1没有按先后顺序排列").arg(value));
    previous = value;
    if (value <= currentDate_) tradingDates_.push_back(value);
  }
  if (tradingDates_.empty()) file.Refuse(0, QStringLiteral("没有不晚于当前日期%1的交易日").arg(currentDate_));
  std::reverse(tradingDates_.begin(), tradingDates_.end());
  tradingDates_.shrink_to_fit();
}

std::vector<CodedQuote> MarketData::ReadQuotes(const QString& path, const QString& edition) const {
  const TableReader file(path, kSecuritiesLimits);
  // Quotes that others keep up to date need not name one.
  file.RequireEdition(edition);
  const int code = file.Column("code_number", ColumnType::Integer);
  const int price = file.Column("price", ColumnType::Real);
  const int previousClose = file.Column("prev_close", ColumnType::Real);
  std::vector<CodedQuote> quotes;
  quotes.reserve(static_cast<std::size_t>(file.RowCount()));
  QSet<int> seen;
  seen.reserve(file.RowCount());
  int skipped = 0;
  for (int row = 0; row < file.RowCount(); ++row) {
    const CodedQuote quote{file.IntegerAt(row, code), {file.RealAt(row, price), file.RealAt(row, previousClose)}};
    if (seen.contains(quote.codeNumber)) file.Refuse(row, QStringLiteral("代码%1重复").arg(quote.codeNumber));
    seen.insert(quote.codeNumber);
    if (quote.now.currentPrice <= 0) file.Refuse(row, QStringLiteral("代码%1的价格不大于零").arg(quote.codeNumber));
    if (quote.now.previousClose < 0) file.Refuse(row, QStringLiteral("代码%1的昨收价为负").arg(quote.codeNumber));
    if (IsIndexNumber(quote.codeNumber) || IndexOfSecurity(quote.codeNumber) >= 0) {
      quotes.push_back(quote);
    } else {
      ++skipped;
    }
  }
  LogSkipped(path, skipped);
  return quotes;
}

void MarketData::LoadAccounts(const QString& path) {
  const TableReader file(path, kSecuritiesLimits, true);
  const int code = file.Column("code_number", ColumnType::Integer);
  const int eps = file.Column("eps", ColumnType::Real);
  const int netAsset = file.Column("net_asset_per_share", ColumnType::Real);
  const int shares = file.Column("total_shares", ColumnType::Real);
  std::vector<Account> accounts;
  int skipped = 0;
  for (int row = 0; row < file.RowCount(); ++row) {
    const Account account{file.IntegerAt(row, code),
                          {file.RealAt(row, eps), file.RealAt(row, netAsset), file.RealAt(row, shares)}};
    if (account.info.totalShares < 0) file.Refuse(row, QStringLiteral("代码%1的总股本为负").arg(account.codeNumber));
    if (IndexOfSecurity(account.codeNumber) >= 0) {
      accounts.push_back(account);
    } else {
      ++skipped;
    }
  }
  LogSkipped(path, skipped);
  std::sort(accounts.begin(), accounts.end(),
            [](const Account& a, const Account& b) { return a.codeNumber < b.codeNumber; });
  const auto twice = std::adjacent_find(accounts.begin(), accounts.end(), [](const Account& a, const Account& b) {
    return a.codeNumber == b.codeNumber;
  });
  if (twice != accounts.end()) {
    int row = file.RowCount() - 1;
    while (file.IntegerAt(row, code) != twice->codeNumber) --row;
    file.Refuse(row, QStringLiteral("代码%1重复").arg(twice->codeNumber));
  }
  accounts_ = std::move(accounts);
}

void MarketData::LoadGroups(const QString& path) {
  const TableReader file(path, kGroupsLimits, true);
  const int name = file.Column("name", ColumnType::Text);
  const int code = file.Column("code_number", ColumnType::Integer);
  std::map<QString, std::vector<int>> groups;
  int skipped = 0;
  for (int row = 0; row < file.RowCount(); ++row) {
    const QString groupName = file.Table().TextAt(row, name);
    const int codeNumber = file.IntegerAt(row, code);
    if (groupName.isEmpty()) file.Refuse(row, QStringLiteral("分组名称为空"));
    if (IndexOfSecurity(codeNumber) < 0) {
      ++skipped;
      continue;
    }
    std::vector<int>& members = groups[groupName];
    if (std::find(members.begin(), members.end(), codeNumber) != members.end()) {
      file.Refuse(row, QStringLiteral("分组“%1”中代码%2重复").arg(groupName).arg(codeNumber));
    }
    members.push_back(codeNumber);
  }
  LogSkipped(path, skipped);
  const WriteLock lock(mutex_);
  groups_ = std::move(groups);
}

void MarketData::LoadOptionalStocks(const QString& path) {
  optionalStocksPath_ = path;
  LoadOptional(path, &MarketData::ReadOptionalStocks);
}

void MarketData::SetOptionalStock(int codeNumber, bool isMember) {
  const QString group = QString::fromLatin1(kOptionalStockGroup);
  std::vector<int> members = GetGroupCodeNumList(group);
  const auto member = std::find(members.begin(), members.end(), codeNumber);
  if (IndexOfSecurity(codeNumber) < 0 || (member != members.end()) == isMember) return;
  const auto codeOf = [](int number) { return QByteArray::number(number).last(6); };
  QByteArray text;
  if (QFile::exists(optionalStocksPath_))
    text = ReadTextFile(optionalStocksPath_, kMostOwnStocksBytes);
  else  // until now the group was the data folder's
    for (const int number : members) text = WithOwnStock(text, codeOf(number));
  text = isMember ? WithOwnStock(text, codeOf(codeNumber)) : WithoutOwnStock(text, codeOf(codeNumber));
  WriteFileAtomically(optionalStocksPath_, text, Durability::Lasting);
  if (isMember)
    members.push_back(codeNumber);
  else
    members.erase(member);
  const WriteLock lock(mutex_);
  groups_[group] = std::move(members);
}

void MarketData::ReadOptionalStocks(const QString& path) {
  const QString text = QString::fromUtf8(ReadTextFile(path, kMostOwnStocksBytes));
  std::vector<int> members;
  std::unordered_set<int> seen;
  int line = 0;
  QStringList unused;
  for (const QString& raw : text.split(QLatin1Char('\n'))) {
    ++line;
    const QString code = raw.trimmed();
    if (code.isEmpty()) continue;
    const int digits = SixDigitCode(code.toStdString());
    const auto leaveOut = [&](const QString& reason) { unused += QStringLiteral("第%1行：%2").arg(line).arg(reason); };
    if (digits < 0) {
      leaveOut(QStringLiteral("“%1”不是六位股票代码").arg(ShownText(code)));
    } else if (IndexOfSecurity(kStockBase + digits) < 0) {
      leaveOut(QStringLiteral("没有代码为%1的股票").arg(code));
    } else if (!seen.insert(digits).second) {
      leaveOut(QStringLiteral("代码%1重复").arg(code));
    } else {
      members.push_back(kStockBase + digits);
    }
  }
  {
    const WriteLock lock(mutex_);
    groups_[QString::fromLatin1(kOptionalStockGroup)] = std::move(members);
  }
  if (unused.isEmpty()) return;
  const qsizetype count = unused.size();
  QString reasons = unused.first(std::min(count, kMostShownLines)).join(QStringLiteral("；"));
  if (count > kMostShownLines) reasons += QStringLiteral("；等共%1行").arg(count);
  Notice(QStringLiteral("自选股文件“%1”有没有采用的行，请改正。%2").arg(QDir::toNativeSeparators(path), reasons));
}

void MarketData::LogSkipped(const QString& path, int rows) const {
  if (rows == 0) return;
  log_.WriteLog(
      QStringLiteral("行情数据文件“%1”：跳过%2行，其证券不在证券表中").arg(QDir::toNativeSeparators(path)).arg(rows));
}

}  // namespace holdwise
