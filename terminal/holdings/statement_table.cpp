// SPDX-License-Identifier: MIT
#include "statement_table.h"

#include <QRegularExpression>
#include <algorithm>
#include <utility>

#include "holdings/portfolio_rules.h"
#include "holdwise/packet/text_file.h"
#include "portfolio_collector.h"
#include "records.h"
#include "security_names.h"
#include "statement_cells.h"

namespace holdwise {
namespace {

using Column = StatementColumn;

class StatementReader {
 public:
  StatementReader(const CodeNumServices& codes, const QString& freeName)
      : codes_(codes), freeName_(freeName), collector_(result_, codes) {}

  CsvPortfolios Read(std::string_view utf8, const FoundHeading& found) {
    result_.shape.isStatement = true;
    result_.shape.separator = found.separator;
    if (!found.heading.IsWhole()) {
      ReportLacking(found);
      return std::move(result_);
    }
    Records records(utf8, found.separator, &result_.problems);
    while (records.Next()) {
      if (records.Line() < found.line || records.IsEmpty()) continue;
      line_ = records.Line();
      if (line_ == found.line)
        TakeHeading(found.heading);
      else
        TakeRecord(records);
    }
    // What stands above the table is not read.
    std::erase_if(result_.problems, [&](const ImportProblem& one) { return one.line > 0 && one.line < found.line; });
    Finish();
    return std::move(result_);
  }

 private:
  /// Where in the file the reading is.
  enum class Place {
    InTable,
    BehindTable,    ///< behind the heading of a table of other things
    OnMargin,       ///< in a further table, of what was bought or sold on margin
    PerhapsBehind,  ///< behind a row of words, which may be such a heading
  };

  void Report(const QString& reason) { AddProblem(result_.problems, line_, reason); }
  [[nodiscard]] QString Cell(StatementColumn column) const {
    if (!heading_.Has(column)) return {};
    const std::size_t field = heading_.Of(column).front().field;
    return field < cells_.size() ? cells_[field] : QString();
  }

  void ReportLacking(const FoundHeading& found) {
    constexpr int kExamples = 3;
    if (const QString& word = found.heading.tradeWord; !word.isEmpty()) {
      return AddProblem(result_.problems, found.line,
                        QStringLiteral("表头有“%1”，看来是成交或委托的记录，不是持仓表：请改用券商软件导出的持仓；"
                                       "确是持仓时，删去这一列再导入")
                            .arg(word));
    }
    for (const StatementColumn column : {Column::Code, Column::Quantity, Column::Cost}) {
      if (found.heading.Has(column)) continue;
      AddProblem(result_.problems, found.line,
                 QStringLiteral("表头缺少%1列（例如“%2”）")
                     .arg(TitleOf(column), WordsOf(column).mid(0, kExamples).join(QStringLiteral("”“"))));
    }
  }

  void TakeRecord(const Records& records) {
    cells_.clear();
    for (const std::string_view field : records.Fields()) cells_.push_back(PlainCell(field));
    const std::optional<StatementCode> code = ReadStatementCode(Cell(Column::Code));
    if (code && place_ == Place::InTable) return TakeRow(*code);
    if (TakeIfHeading(records)) return;
    if (place_ == Place::BehindTable || (place_ == Place::OnMargin && !code)) return;
    if (place_ == Place::OnMargin) return TakeOnMargin(*code);
    if (!code) return TakeRowWithoutCode();
    Report(QStringLiteral("像是持仓，但是在第%1行的文字之后；是持仓就删去第%1行，不是就删去这一行").arg(wordsLine_));
  }

  bool TakeIfHeading(const Records& records) {
    constexpr int kFewest = 2;
    StatementHeading heading = ReadStatementHeading(records.Fields());
    if (heading.IsWhole()) {
      const bool isOnMargin = !heading.marginWord.isEmpty() && !hasMarginWord_;
      TakeHeading(std::move(heading));
      if (isOnMargin) place_ = Place::OnMargin;
      return true;
    }
    if (!heading.Has(Column::Code) || heading.Count() < kFewest) return false;
    place_ = Place::BehindTable;
    AddOther(QStringLiteral("另一张表的表头，到下一个持仓表头为止没有读"));
    return true;
  }

  /// The contracts of a margin account: what was bought with them stands among the holdings, too.
  void TakeOnMargin(const StatementCode& code) {
    result_.strangers.push_back(
        {line_, ShownText(What(code)),
         QStringLiteral("在表头有“%1”的另一张表里，看来是融资融券的合约，不是持仓").arg(heading_.marginWord)});
  }

  void TakeHeading(StatementHeading heading) {
    heading_ = std::move(heading);
    place_ = Place::InTable;
    TableShape& shape = result_.shape;
    if (shape.headingLine != 0) return;
    shape.headingLine = line_;
    hasMarginWord_ = !heading_.marginWord.isEmpty();
    result_.isNameFree = !heading_.Has(Column::Portfolio);
    std::vector<bool> isUsed(heading_.headings.size(), false);
    for (std::size_t column = 0; column < kStatementColumns; ++column) {
      const auto& places = heading_.places[column];
      if (places.empty()) continue;
      const std::size_t field = places.front().field;
      isUsed[field] = true;
      shape.used.emplace_back(heading_.headings[field], TitleOf(static_cast<StatementColumn>(column)));
    }
    for (std::size_t field = 0; field < isUsed.size(); ++field) {
      if (!isUsed[field] && !heading_.headings[field].isEmpty()) shape.unused << ShownText(heading_.headings[field]);
    }
    if (heading_.isCostDoubtful) shape.doubtfulCost = heading_.headings[heading_.Of(Column::Cost).front().field];
    if (result_.isNameFree && freeName_.isEmpty())
      AddProblem(result_.problems, 0, QStringLiteral("文件没有组合名称列，请用 --import-as 给组合起名"));
  }

  void AddOther(const QString& reason) {
    const auto text = std::find_if(cells_.begin(), cells_.end(), [](const QString& cell) { return !cell.isEmpty(); });
    result_.others.push_back({line_, text == cells_.end() ? QString() : ShownText(*text), reason});
  }

  /// Sums, remarks, the heading of something else; or a holding whose code is missing or broken, which is a problem.
  void TakeRowWithoutCode() {
    static const QRegularExpression kDigit(QStringLiteral("[0-9]"));
    static const QRegularExpression kLikeACode(QStringLiteral("\\A[0-9A-Za-z.]+\\z"));
    const auto filled =
        std::count_if(cells_.begin(), cells_.end(), [](const QString& cell) { return !cell.isEmpty(); });
    const bool isRule = std::all_of(cells_.begin(), cells_.end(), IsRule);
    const bool hasTotal = std::any_of(cells_.begin(), cells_.end(), IsTotal);
    const bool hasDigits =
        std::any_of(cells_.begin(), cells_.end(), [](const QString& cell) { return cell.contains(kDigit); });
    const QString code = Cell(Column::Code);
    if (isRule) return;
    if (hasTotal) return AddOther(QStringLiteral("合计"));
    if (filled == 1 && !(code.contains(kDigit) && kLikeACode.match(code).hasMatch()))
      return AddOther(QStringLiteral("说明"));
    if (!hasDigits) {
      place_ = Place::PerhapsBehind;
      wordsLine_ = line_;
      return AddOther(QStringLiteral("文字"));
    }
    const bool hasCode = code.contains(kDigit);
    if (place_ == Place::PerhapsBehind) return AddOther(QStringLiteral("不是持仓"));
    if (!hasCode && Cell(Column::Name).isEmpty() && IsNothing(code)) return AddOther(QStringLiteral("没有代码和名称"));
    if (!hasCode && IsNothing(Cell(Column::Quantity))) return AddOther(QStringLiteral("没有代码和数量"));
    Report(CodeFormProblem(code));
  }

  static bool IsRule(const QString& cell) {
    static const QRegularExpression kRule(QStringLiteral("\\A[-=_*~—─━·.]*\\z"));
    return kRule.match(cell).hasMatch();
  }

  void TakeRow(const StatementCode& code) {
    if (!HasAllFields() || !IsSaidOnce(code)) return;
    const QString quantity = Cell(Column::Quantity);
    const std::optional<QString> shares = ReadShares(quantity);
    if (shares == QStringLiteral("0")) {
      CompareQuantities(*shares);
      result_.sold.push_back({line_, ShownText(What(code)), QStringLiteral("数量为%1").arg(ShownText(quantity))});
      return;
    }
    const StatementMarket market = ReadStatementMarket(Cell(Column::Market));
    if (code.isOther || market.isOther) {
      const QString where = market.isOther ? Cell(Column::Market) : KindOfStranger(code.sixDigits);
      result_.strangers.push_back({line_, ShownText(What(code)), ShownText(where)});
      return;
    }
    if (!collector_.IsHeld(code.sixDigits, Cell(Column::Name), line_)) return;
    const QString known = codes_.NameOf(CodeNumberText(code.sixDigits));
    if (IsNameOfOther(Cell(Column::Name), known)) {
      const QString reason =
          QStringLiteral("名称不是这只股票的，行情数据里%1叫“%2”；确是它时，把名称改成这个").arg(code.sixDigits, known);
      result_.strangers.push_back({line_, ShownText(What(code)), ShownText(reason)});
      return;
    }
    if (!shares) {
      Report(quantity.isEmpty() ? QStringLiteral("数量为空")
                                : QStringLiteral("数量“%1”不是0到999999999的整数").arg(quantity));
    }
    TakeHolding(code, market, shares);
  }

  void TakeHolding(const StatementCode& code, const StatementMarket& market, const std::optional<QString>& shares) {
    bool good = HasItsMarket(code, market) && shares.has_value();
    const std::optional<QString> cost = TakeCost();
    const QString name = heading_.Has(Column::Portfolio) ? Cell(Column::Portfolio) : freeName_;
    if (const QString problem = NameProblem(name); !problem.isEmpty()) {
      if (heading_.Has(Column::Portfolio)) Report(problem);
      collector_.CheckDate(Cell(Column::Date), line_);
      return;
    }
    CsvPortfolio& portfolio = collector_.RowOf(name, line_);
    good = collector_.TakeDate(portfolio, Cell(Column::Date), line_) && good;
    if (!collector_.IsFirst(portfolio, code.sixDigits, line_) || !good || !cost) return;
    CompareQuantities(*shares);
    CompareName(code.sixDigits);
    portfolio.holdings.push_back({line_, CodeNumberOf(code.sixDigits), *shares, *cost});
  }

  [[nodiscard]] QString What(const StatementCode& code) const {
    return heading_.Has(Column::Name) ? code.sixDigits + QLatin1Char(' ') + Cell(Column::Name) : code.sixDigits;
  }

  /// A row with more or fewer fields than the heading has may be shifted: thousands commas without quotes, say.
  bool HasAllFields() {
    const std::size_t wanted = heading_.headings.size();
    const bool isMore = std::any_of(cells_.begin() + static_cast<std::ptrdiff_t>(std::min(wanted, cells_.size())),
                                    cells_.end(), [](const QString& cell) { return !cell.isEmpty(); });
    const bool isLess =
        std::any_of(heading_.headings.begin() + static_cast<std::ptrdiff_t>(std::min(wanted, cells_.size())),
                    heading_.headings.end(), [](const QString& heading) { return !heading.isEmpty(); });
    if (!isMore && !isLess) return true;
    Report(QStringLiteral("有%1个字段，应为%2个").arg(cells_.size()).arg(wanted));
    return false;
  }

  /// Columns that say the same under several headings must agree.
  bool IsSaidOnce(const StatementCode& code) {
    for (const StatementHeading::Place& place : heading_.Of(Column::Code)) {
      const QString& cell = cells_[place.field];
      if (cell.isEmpty()) continue;
      const std::optional<StatementCode> other = ReadStatementCode(cell);
      if (other && other->sixDigits == code.sixDigits) continue;
      Report(QStringLiteral("两列代码“%1”和“%2”不同").arg(Cell(Column::Code), cell));
      return false;
    }
    for (const StatementColumn column : {Column::Quantity, Column::Cost}) {
      const StatementHeading::Place& first = heading_.Of(column).front();
      for (const StatementHeading::Place& place : heading_.Of(column)) {
        if (place.rank != first.rank || cells_[place.field] == cells_[first.field]) continue;
        Report(QStringLiteral("两列“%1”不同").arg(heading_.headings[first.field]));
        return false;
      }
    }
    return true;
  }

  bool HasItsMarket(const StatementCode& code, const StatementMarket& market) {
    return collector_.HasItsMarket(code.sixDigits, code.market, Cell(Column::Code), line_) &&
           collector_.HasItsMarket(code.sixDigits, market.market, Cell(Column::Market), line_);
  }

  std::optional<QString> TakeCost() {
    const QString cell = Cell(Column::Cost);
    std::optional<QString> cost = ReadCost(cell);
    if (cost) return cost;
    if (IsNothing(cell)) {
      Report(QStringLiteral("成本价为空"));
    } else if (cell.startsWith(QLatin1Char('-'))) {
      Report(QStringLiteral("成本“%1”是负数：卖出过的股票摊薄后可能这样，请改成买入时的价格再导入").arg(cell));
    } else {
      Report(QStringLiteral("成本“%1”不是大于0、小于100000、最多十位小数的数").arg(cell));
    }
    return std::nullopt;
  }

  void CompareQuantities(const QString& shares) {
    const auto& places = heading_.Of(Column::Quantity);
    const bool isOther = std::any_of(places.begin() + 1, places.end(), [&](const StatementHeading::Place& place) {
      return ReadShares(cells_[place.field]).value_or(shares) != shares;
    });
    if (isOther) otherQuantities_ << QString::number(line_);
  }

  void CompareName(const QString& sixDigits) {
    const QString known = codes_.NameOf(CodeNumberText(sixDigits));
    if (MayBeSameName(Cell(Column::Name), known)) return;
    result_.remarks << ShownText(QStringLiteral("第 %1 行：%2 在文件里叫“%3”，行情数据里叫“%4”，请核对代码")
                                     .arg(QString::number(line_), sixDigits, Cell(Column::Name), known));
  }

  void Finish() {
    if (!otherQuantities_.isEmpty()) {
      result_.remarks << ShownText(QStringLiteral("数量按“%1”，另一列数量与它不同的有第 %2 行，请核对")
                                       .arg(heading_.headings[heading_.Of(Column::Quantity).front().field],
                                            otherQuantities_.join(QStringLiteral("、"))));
    }
    const bool isEmpty = result_.portfolios.empty() && result_.strangers.empty() && result_.problems.empty();
    if (isEmpty) {
      AddProblem(result_.problems, 0,
                 result_.sold.empty() ? QStringLiteral("文件只有表头，没有持股数据")
                                      : QStringLiteral("文件里所有股票的数量都是0，没有可以导入的持仓"));
    }
    collector_.Finish();
  }

  CsvPortfolios result_;
  const CodeNumServices& codes_;
  QString freeName_;
  PortfolioCollector collector_;
  StatementHeading heading_;
  Place place_ = Place::InTable;
  bool hasMarginWord_ = false;  ///< the table of the holdings
  int line_ = 0;
  int wordsLine_ = 0;
  std::vector<QString> cells_;
  QStringList otherQuantities_;
};

}  // namespace

std::optional<FoundHeading> FindStatementHeading(std::string_view utf8) {
  constexpr int kMostRecords = 200;  // above the table
  std::optional<FoundHeading> best;
  for (const char separator : {'\t', ',', ';'}) {
    Records records(utf8, separator, nullptr);
    for (int number = 0; number < kMostRecords && records.Next(); ++number) {
      StatementHeading heading = ReadStatementHeading(records.Fields());
      FoundHeading found{separator, records.Line(), std::move(heading)};
      if (found.heading.IsWhole()) return found;
      const bool isStatement = found.heading.hasStatementWord || !found.heading.tradeWord.isEmpty();
      if (!isStatement || found.heading.Count() < 2) continue;
      if (!best || found.heading.Count() > best->heading.Count()) best = std::move(found);
    }
  }
  return best;
}

CsvPortfolios ReadStatement(std::string_view utf8, const FoundHeading& found, const CodeNumServices& codes,
                            const QString& freeName) {
  return StatementReader(codes, freeName).Read(utf8, found);
}

}  // namespace holdwise
