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

using Column = StatementColumn;

struct HeadingWord {
  const char* word;  ///< in small letters, without blanks and unit
  StatementColumn column;
  bool isDoubtful = false;  ///< a cost: of one share or of all of them
};
/// Of several columns for the same the one whose word stands first is read. A quantity that can be sold, is frozen or
/// was bought today is no holding, and a price of the market is no cost.
constexpr HeadingWord kWords[] = {
    {"组合名称", Column::Portfolio},  {"组合", Column::Portfolio},      {"portfolio", Column::Portfolio},

    {"证券代码", Column::Code},       {"股票代码", Column::Code},       {"代码", Column::Code},
    {"品种代码", Column::Code},       {"产品代码", Column::Code},       {"ts_code", Column::Code},
    {"symbol", Column::Code},         {"code", Column::Code},           {"ticker", Column::Code},
    {"stockcode", Column::Code},      {"stock_code", Column::Code},     {"securitycode", Column::Code},

    {"证券名称", Column::Name},       {"股票名称", Column::Name},       {"证券简称", Column::Name},
    {"股票简称", Column::Name},       {"名称", Column::Name},           {"品种名称", Column::Name},
    {"产品名称", Column::Name},       {"code_name", Column::Name},      {"stockname", Column::Name},
    {"stock_name", Column::Name},     {"securityname", Column::Name},   {"name", Column::Name},

    {"当前持仓", Column::Quantity},   {"实际数量", Column::Quantity},   {"持仓数量", Column::Quantity},
    {"持股数量", Column::Quantity},   {"证券数量", Column::Quantity},   {"股票数量", Column::Quantity},
    {"持有数量", Column::Quantity},   {"当前数量", Column::Quantity},   {"当前拥股", Column::Quantity},
    {"当前拥股数", Column::Quantity}, {"拥股数量", Column::Quantity},   {"参考持股", Column::Quantity},
    {"参考持仓", Column::Quantity},   {"股份余额", Column::Quantity},   {"证券余额", Column::Quantity},
    {"股票余额", Column::Quantity},   {"当前余额", Column::Quantity},   {"库存数量", Column::Quantity},
    {"持仓股数", Column::Quantity},   {"持仓量", Column::Quantity},     {"持股数", Column::Quantity},
    {"持仓", Column::Quantity},       {"持股", Column::Quantity},       {"股数", Column::Quantity},
    {"数量", Column::Quantity},       {"quantity", Column::Quantity},   {"shares", Column::Quantity},
    {"qty", Column::Quantity},        {"position", Column::Quantity},   {"holdings", Column::Quantity},

    {"成本价", Column::Cost},         {"参考成本价", Column::Cost},     {"持仓成本价", Column::Cost},
    {"单位成本", Column::Cost},       {"成本价格", Column::Cost},       {"成本均价", Column::Cost},
    {"持仓均价", Column::Cost},       {"买入成本价", Column::Cost},     {"买入均价", Column::Cost},
    {"买入价", Column::Cost},         {"买入价格", Column::Cost},       {"参考成本", Column::Cost, true},
    {"持仓成本", Column::Cost, true}, {"买入成本", Column::Cost, true}, {"摊薄成本价", Column::Cost},
    {"摊薄成本", Column::Cost, true}, {"盈亏成本价", Column::Cost},     {"盈亏成本", Column::Cost, true},
    {"保本价", Column::Cost},         {"costprice", Column::Cost},      {"cost_price", Column::Cost},
    {"avgcost", Column::Cost},        {"avg_cost", Column::Cost},       {"averagecost", Column::Cost},
    {"avgprice", Column::Cost},       {"avg_price", Column::Cost},      {"averageprice", Column::Cost},
    {"buyprice", Column::Cost},       {"buy_price", Column::Cost},      {"purchaseprice", Column::Cost},
    {"cost", Column::Cost, true},

    {"交易市场", Column::Market},     {"证券市场", Column::Market},     {"市场名称", Column::Market},
    {"交易所名称", Column::Market},   {"交易所", Column::Market},       {"市场", Column::Market},
    {"exchange", Column::Market},     {"market", Column::Market},

    {"买入日期", Column::Date},       {"创建日期", Column::Date},
};

/// Behind all others.
constexpr HeadingWord kOwnWords[] = {
    {"价格", Column::Cost}, {"price", Column::Cost}, {"日期", Column::Date}, {"date", Column::Date}};

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

bool IsMarginWord(const QString& word) {
  return word.startsWith(QStringLiteral("融资")) || word.startsWith(QStringLiteral("融券"));
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
  return Has(Column::Code) && Has(Column::Quantity) && Has(Column::Cost) && tradeWord.isEmpty();
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
    if (heading.marginWord.isEmpty() && IsMarginWord(WordOf(text))) heading.marginWord = text;
    const auto found = ranks.constFind(WordOf(text));
    if (found == ranks.constEnd()) continue;
    const auto& [rank, word] = *found;
    if (!IsOwnWord(text)) heading.hasStatementWord = true;
    heading.places[static_cast<std::size_t>(word.column)].push_back({field, rank});
    if (word.column != Column::Cost || rank >= bestCost) continue;
    bestCost = rank;
    heading.isCostDoubtful = word.isDoubtful;
  }
  for (auto& places : heading.places) {
    std::stable_sort(places.begin(), places.end(), [](const auto& a, const auto& b) { return a.rank < b.rank; });
  }
  return heading;
}

}  // namespace holdwise
