// SPDX-License-Identifier: MIT
#include "statement_headings.h"

#include <QHash>
#include <QRegularExpression>
#include <algorithm>
#include <utility>

#include "own_table.h"
#include "records.h"
#include "statement_cells.h"

namespace holdwise {
namespace {

constexpr auto kPortfolio = StatementColumn::Portfolio;
constexpr auto kCode = StatementColumn::Code;
constexpr auto kName = StatementColumn::Name;
constexpr auto kQuantity = StatementColumn::Quantity;
constexpr auto kCost = StatementColumn::Cost;
constexpr auto kMarket = StatementColumn::Market;
constexpr auto kDate = StatementColumn::Date;

struct HeadingWord {
  const char* word;  ///< in small letters, without blanks and unit
  StatementColumn column;
  bool isDoubtful = false;  ///< a cost: of one share or of all of them
};
/// Of several columns for the same the one whose word stands first is read. A quantity that can be sold, is frozen or
/// was bought today is no holding, and a price of the market is no cost.
constexpr HeadingWord kWords[] = {
    {"组合名称", kPortfolio},  {"组合", kPortfolio},      {"portfolio", kPortfolio},

    {"证券代码", kCode},       {"股票代码", kCode},       {"代码", kCode},           {"品种代码", kCode},
    {"产品代码", kCode},       {"ts_code", kCode},        {"symbol", kCode},         {"code", kCode},
    {"ticker", kCode},         {"stockcode", kCode},      {"stock_code", kCode},     {"securitycode", kCode},

    {"证券名称", kName},       {"股票名称", kName},       {"证券简称", kName},       {"股票简称", kName},
    {"名称", kName},           {"品种名称", kName},       {"产品名称", kName},       {"code_name", kName},
    {"stockname", kName},      {"stock_name", kName},     {"securityname", kName},   {"name", kName},

    {"当前持仓", kQuantity},   {"实际数量", kQuantity},   {"持仓数量", kQuantity},   {"持股数量", kQuantity},
    {"证券数量", kQuantity},   {"股票数量", kQuantity},   {"持有数量", kQuantity},   {"当前数量", kQuantity},
    {"当前拥股", kQuantity},   {"当前拥股数", kQuantity}, {"拥股数量", kQuantity},   {"参考持股", kQuantity},
    {"参考持仓", kQuantity},   {"股份余额", kQuantity},   {"证券余额", kQuantity},   {"股票余额", kQuantity},
    {"当前余额", kQuantity},   {"库存数量", kQuantity},   {"持仓股数", kQuantity},   {"持仓量", kQuantity},
    {"持股数", kQuantity},     {"持仓", kQuantity},       {"持股", kQuantity},       {"股数", kQuantity},
    {"数量", kQuantity},       {"quantity", kQuantity},   {"shares", kQuantity},     {"qty", kQuantity},
    {"position", kQuantity},   {"holdings", kQuantity},

    {"成本价", kCost},         {"参考成本价", kCost},     {"持仓成本价", kCost},     {"单位成本", kCost},
    {"成本价格", kCost},       {"成本均价", kCost},       {"持仓均价", kCost},       {"买入成本价", kCost},
    {"买入均价", kCost},       {"买入价", kCost},         {"买入价格", kCost},       {"参考成本", kCost, true},
    {"持仓成本", kCost, true}, {"买入成本", kCost, true}, {"摊薄成本价", kCost},     {"摊薄成本", kCost, true},
    {"盈亏成本价", kCost},     {"盈亏成本", kCost, true}, {"保本价", kCost},         {"costprice", kCost},
    {"cost_price", kCost},     {"avgcost", kCost},        {"avg_cost", kCost},       {"averagecost", kCost},
    {"avgprice", kCost},       {"avg_price", kCost},      {"averageprice", kCost},   {"buyprice", kCost},
    {"buy_price", kCost},      {"purchaseprice", kCost},  {"cost", kCost, true},

    {"交易市场", kMarket},     {"证券市场", kMarket},     {"市场名称", kMarket},     {"交易所名称", kMarket},
    {"交易所", kMarket},       {"市场", kMarket},         {"exchange", kMarket},     {"market", kMarket},

    {"买入日期", kDate},       {"创建日期", kDate},
};

/// Behind all others.
constexpr HeadingWord kOwnWords[] = {{"价格", kCost}, {"price", kCost}, {"日期", kDate}, {"date", kDate}};

constexpr const char* kTradeWords[] = {"操作",     "买卖",     "买卖标志", "买卖方向", "买卖类别",
                                       "成交日期", "成交时间", "成交价格", "成交数量"};

constexpr std::array<const char*, kStatementColumns> kTitles = {"组合名称", "代码", "证券名称", "数量",
                                                                "成本价",   "市场", "买入日期"};

/// Without the unit that the column has anyway; another one stays and makes it another column.
QString WordOf(const QString& heading) {
  static const QRegularExpression kUnit(QStringLiteral("[(\\[](股|元|元/股|人民币|人民币元|rmb|cny)[)\\]]$"));
  return NormalisedHeading(heading).remove(kUnit);
}

bool IsTradeWord(const QString& word) {
  return std::any_of(std::begin(kTradeWords), std::end(kTradeWords),
                     [&word](const char* one) { return word == QString::fromUtf8(one); });
}

using Ranks = QHash<QString, std::pair<std::size_t, HeadingWord>>;

Ranks RanksOf(OwnWords ownWords) {
  Ranks ranks;
  for (const HeadingWord& word : kWords)
    ranks.insert(QString::fromUtf8(word.word), {static_cast<std::size_t>(ranks.size()), word});
  if (ownWords == OwnWords::Unknown) return ranks;
  for (const HeadingWord& word : kOwnWords)
    ranks.insert(QString::fromUtf8(word.word), {static_cast<std::size_t>(ranks.size()), word});
  return ranks;
}

}  // namespace

QString TitleOf(StatementColumn column) {
  return QString::fromUtf8(kTitles[static_cast<std::size_t>(column)]);
}

QStringList WordsOf(StatementColumn column) {
  QStringList words;
  for (const HeadingWord& word : kWords) {
    if (word.column == column) words << QString::fromUtf8(word.word);
  }
  return words;
}

bool StatementHeading::IsWhole() const {
  return Has(kCode) && Has(kQuantity) && Has(kCost) && tradeWord.isEmpty();
}

int StatementHeading::Count() const {
  return static_cast<int>(std::count_if(places.begin(), places.end(), [](const auto& of) { return !of.empty(); }));
}

StatementHeading ReadStatementHeading(const std::vector<std::string_view>& fields, OwnWords ownWords) {
  static const Ranks kRanks = RanksOf(OwnWords::Unknown);
  static const Ranks kRanksWithOwn = RanksOf(OwnWords::Known);
  const Ranks& ranks = ownWords == OwnWords::Known ? kRanksWithOwn : kRanks;
  StatementHeading heading;
  auto bestCost = static_cast<std::size_t>(ranks.size());
  for (std::size_t field = 0; field < fields.size(); ++field) {
    const QString text = PlainCell(fields[field]);
    heading.headings.push_back(text);
    if (heading.tradeWord.isEmpty() && IsTradeWord(WordOf(text))) heading.tradeWord = text;
    const auto found = ranks.constFind(WordOf(text));
    if (found == ranks.constEnd()) continue;
    const auto& [rank, word] = *found;
    if (!IsOwnWord(text)) heading.hasStatementWord = true;
    heading.places[static_cast<std::size_t>(word.column)].push_back({field, rank});
    if (word.column != kCost || rank >= bestCost) continue;
    bestCost = rank;
    heading.isCostDoubtful = word.isDoubtful;
  }
  for (auto& places : heading.places) {
    std::stable_sort(places.begin(), places.end(), [](const auto& a, const auto& b) { return a.rank < b.rank; });
  }
  return heading;
}

}  // namespace holdwise
