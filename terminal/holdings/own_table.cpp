// SPDX-License-Identifier: MIT
#include "own_table.h"

#include <QHash>
#include <QRegularExpression>
#include <algorithm>
#include <array>
#include <string_view>

#include "holdings/portfolio_rules.h"
#include "holdwise/packet/code_text.h"
#include "portfolio_collector.h"
#include "records.h"
#include "security_names.h"
#include "statement_cells.h"

namespace holdwise {
namespace {

enum Column { kName, kCode, kQuantity, kPrice, kDate, kColumns };

constexpr std::array<const char*, kColumns> kTitles = {"名称", "代码", "数量", "价格", "买入日期"};
/// The columns that must be there stand first.
constexpr std::size_t kNeeded = kDate;

int ColumnOf(const QString& heading) {
  static const QHash<QString, int> kHeadings = {
      {QStringLiteral("name"), kName},         {QStringLiteral("名称"), kName},
      {QStringLiteral("组合"), kName},         {QStringLiteral("组合名称"), kName},
      {QStringLiteral("code"), kCode},         {QStringLiteral("代码"), kCode},
      {QStringLiteral("股票代码"), kCode},     {QStringLiteral("证券代码"), kCode},
      {QStringLiteral("quantity"), kQuantity}, {QStringLiteral("数量"), kQuantity},
      {QStringLiteral("数量(股)"), kQuantity}, {QStringLiteral("股数"), kQuantity},
      {QStringLiteral("持股数量"), kQuantity}, {QStringLiteral("price"), kPrice},
      {QStringLiteral("价格"), kPrice},        {QStringLiteral("价格(元)"), kPrice},
      {QStringLiteral("买入价"), kPrice},      {QStringLiteral("买入价(元)"), kPrice},
      {QStringLiteral("买入价格"), kPrice},    {QStringLiteral("买入价格(元)"), kPrice},
      {QStringLiteral("date"), kDate},         {QStringLiteral("日期"), kDate},
      {QStringLiteral("买入日期"), kDate},     {QStringLiteral("创建日期"), kDate},
  };
  return kHeadings.value(NormalisedHeading(heading), -1);
}

/// What each field of a heading row stands for; -1: none of the columns.
std::vector<int> ColumnsOf(const std::vector<std::string_view>& fields) {
  std::vector<int> columns;
  columns.reserve(fields.size());
  for (const std::string_view field : fields) columns.push_back(ColumnOf(TextOf(field)));
  return columns;
}

bool IsNameOfAnything(const QString& heading) {
  const QString word = NormalisedHeading(heading);
  return word == QStringLiteral("名称") || word == QStringLiteral("name");
}

QString QuantityProblem(const QString& quantity) {
  static const QRegularExpression kWhole(QStringLiteral("\\A[1-9][0-9]{0,8}\\z"));
  if (quantity.isEmpty()) return QStringLiteral("数量为空");
  if (kWhole.match(quantity).hasMatch()) return {};
  return QStringLiteral("数量“%1”不是1到999999999的整数").arg(quantity);
}

QString PriceProblem(const QString& price) {
  static const QRegularExpression kAmount(QStringLiteral("\\A(0|[1-9][0-9]{0,4})(\\.[0-9]{1,2})?\\z"));
  static const QRegularExpression kZero(QStringLiteral("\\A0(\\.0{1,2})?\\z"));
  if (price.isEmpty()) return QStringLiteral("买入价为空");
  if (kAmount.match(price).hasMatch() && !kZero.match(price).hasMatch()) return {};
  return QStringLiteral("买入价“%1”不是大于0、小于100000、最多两位小数的数").arg(price);
}

class Parser {
 public:
  explicit Parser(const CodeNumServices& codes) : collector_(result_, codes) {}

  CsvPortfolios Parse(std::string_view utf8, char separator) {
    result_.shape.separator = separator;
    Records records(utf8, separator, &result_.problems);
    Walk(records);
    collector_.Finish();
    return std::move(result_);
  }

 private:
  void Report(int line, const QString& reason) { AddProblem(result_.problems, line, reason); }

  void Walk(Records& records) {
    const std::size_t before = result_.problems.size();
    if (!records.Next()) {
      Report(0, QStringLiteral("文件是空的"));
      return;
    }
    if (result_.problems.size() != before || !TakeHeading(records)) return;
    bool any = false;
    while (records.Next()) {
      if (records.IsEmpty()) continue;
      any = true;
      TakeRow(records.Line(), records.Fields());
    }
    if (!any) Report(0, QStringLiteral("文件只有表头，没有持股数据"));
  }

  bool TakeHeading(const Records& records) {
    const int line = records.Line();
    const std::size_t before = result_.problems.size();
    columns_.fill(-1);
    const std::vector<int> columns = ColumnsOf(records.Fields());
    fieldCount_ = columns.size();
    for (std::size_t place = 0; place < fieldCount_; ++place) {
      const QString heading = TextOf(records.Fields()[place]);
      if (columns[place] < 0) {
        Report(line, QStringLiteral("表头第%1列“%2”不认识").arg(place + 1).arg(heading));
      } else if (int& slot = columns_[static_cast<std::size_t>(columns[place])]; slot >= 0) {
        Report(line, QStringLiteral("表头第%1列“%2”重复").arg(place + 1).arg(heading));
      } else {
        slot = static_cast<int>(place);
        result_.shape.used.emplace_back(heading, QString::fromUtf8(kTitles[static_cast<std::size_t>(columns[place])]));
      }
    }
    result_.shape.headingLine = line;
    for (std::size_t column = 0; column < kNeeded; ++column) {
      if (columns_[column] < 0) {
        Report(line, QStringLiteral("表头缺少“%1”列").arg(QString::fromUtf8(kTitles[column])));
      }
    }
    return result_.problems.size() == before;
  }

  void TakeRow(int line, const std::vector<std::string_view>& fields) {
    if (fields.size() != fieldCount_) {
      Report(line, QStringLiteral("有%1个字段，应为%2个").arg(fields.size()).arg(fieldCount_));
      return;
    }
    std::array<QString, kColumns> texts;
    for (std::size_t column = 0; column < texts.size(); ++column) {
      if (columns_[column] >= 0) texts[column] = TextOf(fields[static_cast<std::size_t>(columns_[column])]);
    }
    const std::optional<NamedCode> code = ParseNamedCode(texts[kCode].toStdString());
    const QString reasons[] = {NameProblem(texts[kName]), code ? QString() : CodeFormProblem(texts[kCode]),
                               QuantityProblem(texts[kQuantity]), PriceProblem(texts[kPrice])};
    bool good = true;
    for (const QString& reason : reasons) {
      if (reason.isEmpty()) continue;
      Report(line, reason);
      good = false;
    }
    const QString digits = code ? QString::fromStdString(code->digits) : QString();
    const bool isHeld = code && IsHeld(digits, code->market, line);
    if (isHeld && !collector_.HasItsMarket(digits, code->market, texts[kCode], line)) good = false;
    if (!reasons[kName].isEmpty()) {
      collector_.CheckDate(texts[kDate], line);
      return;
    }
    CsvPortfolio& portfolio = collector_.RowOf(texts[kName], line);
    if (!collector_.TakeDate(portfolio, texts[kDate], line)) good = false;
    if (!isHeld || !collector_.IsFirst(portfolio, digits, line) || !good) return;
    portfolio.holdings.push_back({line, CodeNumberOf(digits), texts[kQuantity], texts[kPrice]});
  }

  bool IsHeld(const QString& digits, int market, int line) {
    constexpr int kBeijing = 3;
    if (market != kBeijing) return collector_.IsHeld(digits, {}, line);
    result_.strangers.push_back({line, digits, KindOfStranger(digits)});
    return false;
  }

  CsvPortfolios result_;
  PortfolioCollector collector_;
  std::array<int, kColumns> columns_{};
  std::size_t fieldCount_ = 0;
};

}  // namespace

QString NormalisedHeading(const QString& heading) {
  static const QRegularExpression kBlanks(QStringLiteral("\\s"));
  QString text = heading.toLower();
  text.replace(QStringLiteral("（"), QStringLiteral("(")).replace(QStringLiteral("）"), QStringLiteral(")"));
  text.remove(kBlanks);
  return text;
}

bool IsOwnWord(const QString& heading) {
  return ColumnOf(heading) >= 0;
}

std::optional<OwnHeading> ReadOwnHeading(const std::vector<std::string_view>& fields) {
  const std::vector<int> columns = ColumnsOf(fields);
  const auto isThere = [&columns](int column) { return std::count(columns.begin(), columns.end(), column) != 0; };
  OwnHeading heading{OwnNames::None, !isThere(-1)};
  for (std::size_t place = 0; place < columns.size(); ++place) {
    if (columns[place] == kName)
      heading.names = IsNameOfAnything(TextOf(fields[place])) ? OwnNames::OfAnything : OwnNames::OfPortfolios;
  }
  const bool isOwn = isThere(kCode) && isThere(kQuantity) && isThere(kPrice) && (isThere(kName) || heading.isAlone);
  return isOwn ? std::optional(heading) : std::nullopt;
}

CsvPortfolios ReadOwnTable(std::string_view utf8, char separator, const CodeNumServices& codes) {
  return Parser(codes).Parse(utf8, separator);
}

bool IsNamedAfterStocks(std::string_view utf8, char separator, const CodeNumServices& codes) {
  Records records(utf8, separator, nullptr);
  std::array<std::size_t, kColumns> places{};
  if (!records.Next()) return false;
  const std::vector<int> columns = ColumnsOf(records.Fields());
  for (std::size_t place = 0; place < columns.size(); ++place)
    if (columns[place] >= 0) places[static_cast<std::size_t>(columns[place])] = place;
  QHash<QString, QString> codeOfName;
  bool any = false;
  while (records.Next()) {
    const auto& fields = records.Fields();
    if (fields.size() <= std::max(places[kName], places[kCode])) continue;
    const std::optional<StatementCode> code = ReadStatementCode(PlainCell(fields[places[kCode]]));
    const QString name = PlainCell(fields[places[kName]]);
    if (!code || name.isEmpty()) continue;
    const auto known = codeOfName.constFind(name);
    if (known != codeOfName.constEnd() && *known != code->sixDigits) return false;
    codeOfName.insert(name, code->sixDigits);
    any = any || IsStocksName(name, codes.NameOf(CodeNumberText(code->sixDigits)));
  }
  return any;
}

}  // namespace holdwise
