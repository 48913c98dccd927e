// SPDX-License-Identifier: MIT
#include "portfolio_csv.h"

#include <QHash>
#include <QRegularExpression>
#include <QStringList>
#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "holdwise/packet/characters.h"
#include "holdwise/packet/csv_reader.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/error.h"
#include "holdwise/packet/text_file.h"

namespace holdwise {
namespace {

enum Column { kName, kCode, kQuantity, kPrice, kDate, kColumns };

/// Of the columns that must be there, which stand first.
constexpr std::array<const char*, kDate> kNeededTitles = {"名称", "代码", "数量", "价格"};

/// Heading without blanks, in small letters and with plain brackets.
QString Normalised(const QString& heading) {
  QString text = heading.toLower();
  text.replace(QStringLiteral("（"), QStringLiteral("(")).replace(QStringLiteral("）"), QStringLiteral(")"));
  text.remove(QRegularExpression(QStringLiteral("\\s")));
  return text;
}

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
  return kHeadings.value(Normalised(heading), -1);
}

bool IsNameCharacter(QChar c) {
  const char16_t u = c.unicode();
  return u >= 0x80 || (u >= u'0' && u <= u'9') || (u >= u'A' && u <= u'Z') || (u >= u'a' && u <= u'z') || u == u'(' ||
         u == u')' || u == u'-' || u == u'_';
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

/// The date a cell holds, 0 when it is empty, none when it is no date.
std::optional<int> DateIn(const QString& text) {
  if (text.isEmpty()) return 0;
  return ReadMarketDate(text.toStdString());
}

class Parser {
 public:
  explicit Parser(const CodeNumServices& codes) : codes_(codes) {}

  CsvPortfolios Parse(const QByteArray& csv) {
    const std::optional<QByteArray> text = Utf8(csv);
    if (text) {
      CsvReader reader(std::string_view(text->constData(), static_cast<std::size_t>(text->size())));
      Walk(reader);
    }
    for (const CsvPortfolio& portfolio : result_.portfolios) CheckSize(portfolio);
    std::stable_sort(result_.problems.begin(), result_.problems.end(),
                     [](const ImportProblem& a, const ImportProblem& b) { return a.line < b.line; });
    return std::move(result_);
  }

 private:
  void Report(int line, const QString& reason) { result_.problems.push_back({line, ShownText(reason)}); }

  std::optional<QByteArray> Utf8(const QByteArray& csv) {
    try {
      return ToUtf8Text(csv);
    } catch (const Error& error) {
      Report(0, QStringLiteral("文件无法读取：%1").arg(QString::fromUtf8(error.what())));
      return std::nullopt;
    }
  }

  /// The next record that can be read; those before it that cannot are reported.
  bool NextRecord(CsvReader& reader) {
    for (;;) {
      try {
        return reader.Next();
      } catch (const Error& error) {
        Report(static_cast<int>(reader.Line()), QString::fromUtf8(error.what()));
      }
    }
  }

  void Walk(CsvReader& reader) {
    const std::size_t before = result_.problems.size();
    if (!NextRecord(reader)) {
      Report(0, QStringLiteral("文件是空的"));
      return;
    }
    if (result_.problems.size() != before || !TakeHeading(reader)) return;
    bool any = false;
    while (NextRecord(reader)) {
      const auto& fields = reader.Fields();
      // Spreadsheets write the empty rows below a table as bare commas.
      if (std::all_of(fields.begin(), fields.end(), [](std::string_view field) { return field.empty(); })) continue;
      any = true;
      TakeRow(static_cast<int>(reader.Line()), fields);
    }
    if (!any) Report(0, QStringLiteral("文件只有表头，没有持股数据"));
  }

  bool TakeHeading(const CsvReader& reader) {
    const int line = static_cast<int>(reader.Line());
    const std::size_t before = result_.problems.size();
    columns_.fill(-1);
    int place = 0;
    for (const std::string_view field : reader.Fields()) {
      const QString heading = QString::fromUtf8(field.data(), static_cast<qsizetype>(field.size()));
      const int column = ColumnOf(heading);
      if (column < 0) {
        Report(line, QStringLiteral("表头第%1列“%2”不认识").arg(place + 1).arg(heading));
      } else if (int& slot = columns_[static_cast<std::size_t>(column)]; slot >= 0) {
        Report(line, QStringLiteral("表头第%1列“%2”重复").arg(place + 1).arg(heading));
      } else {
        slot = place;
      }
      ++place;
    }
    fieldCount_ = static_cast<std::size_t>(place);
    for (std::size_t column = 0; column < kNeededTitles.size(); ++column) {
      if (columns_[column] < 0) {
        Report(line, QStringLiteral("表头缺少“%1”列").arg(QString::fromUtf8(kNeededTitles[column])));
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
      if (columns_[column] < 0) continue;
      const std::string_view field = fields[static_cast<std::size_t>(columns_[column])];
      texts[column] = QString::fromUtf8(field.data(), static_cast<qsizetype>(field.size()));
    }
    const QString reasons[] = {NameProblem(texts[kName]), CodeProblem(texts[kCode], codes_),
                               QuantityProblem(texts[kQuantity]), PriceProblem(texts[kPrice])};
    bool good = true;
    for (const QString& reason : reasons) {
      if (reason.isEmpty()) continue;
      Report(line, reason);
      good = false;
    }
    if (!reasons[kName].isEmpty()) return;
    CsvPortfolio& portfolio = PortfolioNamed(texts[kName], line);
    ++portfolio.rows;
    if (!TakeDate(portfolio, texts[kDate], line)) good = false;
    if (!reasons[kCode].isEmpty()) return;
    const int codeNumber = (QLatin1Char('1') + texts[kCode]).toInt();
    if (const int earlier = LineOf(portfolio, codeNumber, line); earlier > 0) {
      Report(line, QStringLiteral("组合“%1”中股票%2与第%3行重复").arg(portfolio.name, texts[kCode]).arg(earlier));
      return;
    }
    if (good) portfolio.holdings.push_back({line, codeNumber, texts[kQuantity], texts[kPrice]});
  }

  /// The day of purchase is the portfolio's: all its rows name the same one, or none.
  bool TakeDate(CsvPortfolio& portfolio, const QString& text, int line) {
    const std::optional<int> date = DateIn(text);
    if (!date) {
      Report(line, QStringLiteral("日期“%1”不是形如2025-03-03的日期").arg(text));
      return false;
    }
    if (!portfolio.date) portfolio.date = date;
    if (portfolio.date == date) return true;
    Report(
        line,
        QStringLiteral("组合“%1”的日期与第%2行不同，一个组合只有一个买入日期").arg(portfolio.name).arg(portfolio.line));
    return false;
  }

  CsvPortfolio& PortfolioNamed(const QString& name, int line) {
    const auto [known, end] = std::pair(places_.constFind(name), places_.constEnd());
    if (known != end) return result_.portfolios[*known];
    places_.insert(name, result_.portfolios.size());
    result_.portfolios.push_back({name, line, std::nullopt, 0, {}});
    return result_.portfolios.back();
  }

  /// Line on which the portfolio named the stock before; 0 and remembered when this is the first.
  int LineOf(const CsvPortfolio& portfolio, int codeNumber, int line) {
    const auto key = std::pair(portfolio.line, codeNumber);
    const int earlier = seen_.value(key, 0);
    if (earlier == 0) seen_.insert(key, line);
    return earlier;
  }

  void CheckSize(const CsvPortfolio& portfolio) {
    if (portfolio.rows >= kMinHoldings && portfolio.rows <= kMaxHoldings) return;
    Report(portfolio.line, QStringLiteral("组合“%1”有%2只股票，应为%3到%4只")
                               .arg(portfolio.name)
                               .arg(portfolio.rows)
                               .arg(kMinHoldings)
                               .arg(kMaxHoldings));
  }

  const CodeNumServices& codes_;
  CsvPortfolios result_;
  std::array<int, kColumns> columns_{};
  std::size_t fieldCount_ = 0;
  QHash<QString, std::size_t> places_;
  QHash<std::pair<int, int>, int> seen_;  ///< (first line of the portfolio, code number) to line
};

}  // namespace

QString NameProblem(const QString& name) {
  if (name.isEmpty()) return QStringLiteral("组合名称为空");
  if (CharactersOf(name) > kMostNameCharacters) {
    return QStringLiteral("组合名称有%1个字符，最多%2个").arg(CharactersOf(name)).arg(kMostNameCharacters);
  }
  if (!FitsAsName(name)) return QStringLiteral("组合名称中的附加符号太多");
  const auto bad = std::find_if_not(name.begin(), name.end(), IsNameCharacter);
  if (bad == name.end() && HasInvisible(name))
    return QStringLiteral("组合名称“%1”含有换行、制表符等看不见的字符，请删去后再导入").arg(name);
  if (bad == name.end()) return {};
  return QStringLiteral("组合名称“%1”含有不允许的字符“%2”（只允许汉字、字母、数字和 ( ) - _）").arg(name, *bad);
}

QString CodeProblem(const QString& code, const CodeNumServices& codes) {
  static const QRegularExpression kDigits(QStringLiteral("\\A[0-9]+\\z"));
  if (code.isEmpty()) return QStringLiteral("股票代码为空");
  if (!kDigits.match(code).hasMatch()) return QStringLiteral("股票代码“%1”不是六位数字").arg(code);
  if (code.size() < 6) {
    return QStringLiteral("股票代码“%1”不足六位，前面的0可能被电子表格软件去掉了，请写全六位").arg(code);
  }
  if (code.size() > 6) return QStringLiteral("股票代码“%1”多于六位").arg(code);
  const QString codeNumber = QLatin1Char('1') + code;
  if (!codes.IsShanghaiStock(codeNumber) && !codes.IsShenzhenStock(codeNumber)) {
    return QStringLiteral("没有代码为%1的A股股票").arg(code);
  }
  return {};
}

CsvPortfolios ParsePortfolioCsv(const QByteArray& csv, const CodeNumServices& codes) {
  return Parser(codes).Parse(csv);
}

}  // namespace holdwise
