// SPDX-License-Identifier: MIT
#include "pasted_holdings.h"

#include <QRegularExpression>
#include <algorithm>
#include <string>

#include "holdwise/packet/csv_reader.h"
#include "holdwise/packet/error.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

constexpr double kPricesEnd = 10000;  // what can be typed ends there too
constexpr int kPriceDecimals = 2;
constexpr std::size_t kMostNamed = 10;

struct Line {
  int number = 0;
  QStringList cells;
  QString problem;  ///< why the line cannot be split into cells
};

/// Columns of the three figures, -1 = not there.
struct Places {
  int code = -1;
  int quantity = -1;
  int price = -1;
  int columns = 0;  ///< a line with more cells is not understood
  bool isGuessed = false;
};

QString Plain(QString cell) {
  cell = cell.trimmed();
  if (cell.size() >= 2 && cell.startsWith(u'"') && cell.endsWith(u'"')) cell = cell.mid(1, cell.size() - 2).trimmed();
  // A spreadsheet's mark of a text.
  if (cell.startsWith(u'\'')) cell.remove(0, 1);
  return cell;
}

std::vector<Line> TabLines(const QString& text) {
  static const QRegularExpression ends(QStringLiteral("\r\n|\r|\n"));
  std::vector<Line> lines;
  int number = 0;
  for (const QString& one : text.split(ends)) {
    ++number;
    if (one.trimmed().isEmpty()) continue;
    Line& line = lines.emplace_back(Line{number, {}, {}});
    for (const QString& cell : one.split(u'\t')) line.cells << Plain(cell);
  }
  return lines;
}

std::vector<Line> CommaLines(const QString& text) {
  const std::string utf8 = text.toStdString();
  CsvReader reader(utf8);
  std::vector<Line> lines;
  for (bool hasNext = true; hasNext;) {
    Line line;
    try {
      hasNext = reader.Next();
      for (const auto field : reader.Fields()) line.cells << Plain(QString::fromUtf8(field.data(), field.size()));
    } catch (const Error& error) {
      line.problem = QString::fromUtf8(error.what());
    }
    line.number = static_cast<int>(reader.Line());
    if (hasNext) lines.push_back(line);
  }
  return lines;
}

/// A title without its unit, blanks and capitals: "买入价(元)" is 买入价.
QString TitleIn(const QString& cell) {
  static const QRegularExpression unit(QStringLiteral("[(（].*$"));
  static const QRegularExpression blanks(QStringLiteral("[\\s_]"));
  return QString(cell).remove(unit).remove(blanks).toLower();
}

/// The column of the first of the titles that is there; -1 when none is. Whole titles: a total cost, a price change or
/// a quantity that is frozen are others.
int ColumnOf(const QStringList& titles, std::initializer_list<const char*> wanted) {
  for (const char* title : wanted) {
    if (const auto column = titles.indexOf(QString::fromUtf8(title)); column >= 0) return static_cast<int>(column);
  }
  return -1;
}

std::optional<Places> PlacesOfTitles(const QStringList& cells) {
  QStringList titles;
  for (const QString& cell : cells) titles << TitleIn(cell);
  Places places;
  places.code = ColumnOf(titles, {"代码", "证券代码", "股票代码", "code", "symbol", "ticker", "tscode", "stockcode"});
  places.quantity =
      ColumnOf(titles, {"数量", "股数", "持仓数量", "持股数量", "持仓", "持股", "股票余额", "证券数量", "当前持仓",
                        "实际数量", "库存数量", "quantity", "shares", "qty", "position", "volume"});
  // The price paid before any other.
  places.price = ColumnOf(titles, {"买入价",   "买入价格",  "成本价",  "买入均价", "成本均价",     "参考成本价",
                                   "持仓成本", "costprice", "avgcost", "cost",     "averagecost",  "avgprice",
                                   "buyprice", "price",     "价格",    "价",       "averageprice", "purchaseprice",
                                   "现价",     "市价",      "最新价",  "当前价",   "lastprice",    "last"});
  places.columns = static_cast<int>(cells.size());
  return places.code < 0 ? std::nullopt : std::optional(places);
}

/// Of four cells the second may be a name. Of three it may not: what cannot be read would shift the others.
Places PlacesWithoutTitles(const QStringList& cells) {
  const bool hasName = cells.size() > 3 && !cells[1].isEmpty() && cells[1].front().isLetter();
  const int behind = hasName ? 2 : 1;
  return {.code = 0, .quantity = behind, .price = behind + 1, .columns = behind + 2, .isGuessed = true};
}

struct Code {
  QString six;
  QString market;  ///< "SH", "SZ" or empty
};

/// None when the cell has not the form of a code.
std::optional<Code> CodeOf(const QString& cell) {
  static const QRegularExpression form(QStringLiteral("^(?:(SH|SZ)[.]?)?([0-9]{1,6})(?:[.](SH|SS|XSHG|SZ|XSHE))?$"),
                                       QRegularExpression::CaseInsensitiveOption);
  const auto match = form.match(cell);
  if (!match.hasMatch()) return std::nullopt;
  const QString before = match.captured(1).toUpper();
  const QString behind = match.captured(3).toUpper();
  const QString suffix = behind == QStringLiteral("SS") || behind == QStringLiteral("XSHG") ? QStringLiteral("SH")
                         : behind == QStringLiteral("XSHE")                                 ? QStringLiteral("SZ")
                                                                                            : behind;
  if (!before.isEmpty() && !suffix.isEmpty() && before != suffix) return std::nullopt;
  return Code{match.captured(2).rightJustified(6, u'0'), before.isEmpty() ? suffix : before};
}

/// A cell as a message quotes it: running text is cut.
QString Quotable(const QString& cell) {
  constexpr int kMost = 24;
  return cell.size() <= kMost ? cell : cell.left(kMost) + QStringLiteral("…");
}

/// The digits of a number that may have grouping commas and a currency sign; empty when it is none.
QString NumberIn(QString cell) {
  static const QRegularExpression form(
      QStringLiteral("^[0-9]{1,3}(?:,[0-9]{3})+(?:[.][0-9]*)?$|^[0-9]+(?:[.][0-9]*)?$"));
  if (cell.startsWith(u'¥') || cell.startsWith(u'￥')) cell = cell.mid(1).trimmed();
  if (!form.match(cell).hasMatch()) return {};
  cell.remove(u',');
  // 1000.00 is as whole as 1000, and 12.340 has two decimals.
  static const QRegularExpression idleZeros(QStringLiteral("[.]?0*$"));
  if (cell.contains(u'.')) cell.remove(idleZeros);
  return cell;
}

/// Reads lines one by one into the result.
class Reader {
 public:
  Reader(const QStringList& present, const StockLookup& lookup, PastedHoldings& result)
      : known_(present), room_(kMostHoldings - static_cast<int>(present.size())), lookup_(lookup), result_(result) {}

  void Read(const Line& line, const Places& places) {
    const QString cell = line.cells.value(places.code);
    HoldingRow row;
    QString problem = line.problem;
    if (problem.isEmpty()) problem = ReadCode(cell, row);
    if (problem.isEmpty() && places.isGuessed && MayBeNumbered(line)) {
      problem = QStringLiteral("看不出哪一个是代码，请写全六位代码或加上标题行");
    }
    if (problem.isEmpty() && TooManyCells(line, places)) {
      problem = QStringLiteral("列数多于“代码、数量、价格”，无法判断");
    }
    if (problem.isEmpty()) problem = ReadQuantity(line.cells.value(places.quantity), row);
    if (problem.isEmpty()) problem = ReadPrice(line.cells.value(places.price), row);
    if (problem.isEmpty()) problem = Place(row);
    if (problem.isEmpty()) return;
    QString what = Quotable(cell);
    if (!row.name.isEmpty()) what += QLatin1Char(' ') + row.name;
    result_.refused.push_back({line.number, what, problem});
  }

 private:
  QString ReadCode(const QString& cell, HoldingRow& row) const {
    const auto code = CodeOf(cell);
    if (!code) return QStringLiteral("不是股票代码");
    const auto stock = lookup_(code->six);
    if (!stock) return QStringLiteral("没有这只股票");
    const QString market = stock->isShanghai ? QStringLiteral("SH") : QStringLiteral("SZ");
    if (!code->market.isEmpty() && code->market != market) return QStringLiteral("这个市场没有这只股票");
    row.code = code->six;
    row.name = stock->name;
    return {};
  }
  /// Is a short code perhaps the number of the line, with the code behind it?
  [[nodiscard]] bool MayBeNumbered(const Line& line) const {
    constexpr int kDigits = 6;
    if (line.cells.constFirst().size() >= kDigits) return false;
    return std::any_of(line.cells.begin() + 1, line.cells.end(), [this](const QString& cell) {
      const auto code = cell.size() < kDigits ? std::nullopt : CodeOf(cell);
      return code && lookup_(code->six);
    });
  }
  static bool TooManyCells(const Line& line, const Places& places) {
    return std::any_of(line.cells.begin() + std::min<qsizetype>(places.columns, line.cells.size()), line.cells.end(),
                       [](const QString& cell) { return !cell.isEmpty(); });
  }
  static QString ReadQuantity(const QString& cell, HoldingRow& row) {
    constexpr int kMostDigits = 9;
    if (cell.isEmpty()) return {};
    const QString digits = NumberIn(cell);
    const auto whole = ParseInteger(digits);
    if (!whole || digits.size() > kMostDigits) return QStringLiteral("数量“%1”不是九位以内的整数").arg(Quotable(cell));
    row.quantity = QString::number(*whole);
    return {};
  }
  static QString ReadPrice(const QString& cell, HoldingRow& row) {
    if (cell.isEmpty()) return {};
    const QString digits = NumberIn(cell);
    const auto price = ParseReal(digits);
    const auto point = digits.indexOf(u'.');
    if (!price || *price >= kPricesEnd) return QStringLiteral("价格“%1”不是 10000 以内的正数").arg(Quotable(cell));
    if (point >= 0 && digits.size() - point - 1 > kPriceDecimals)
      return QStringLiteral("价格“%1”多于两位小数").arg(Quotable(cell));
    row.price = FormatFixed(*price, kPriceDecimals);
    return {};
  }
  QString Place(const HoldingRow& row) {
    if (known_.contains(row.code)) return QStringLiteral("在组合里已经存在");
    if (static_cast<int>(result_.rows.size()) >= room_) return QStringLiteral("组合最多 %1 只股票").arg(kMostHoldings);
    known_ << row.code;
    result_.rows.push_back(row);
    return {};
  }

  QStringList known_;
  int room_;
  const StockLookup& lookup_;
  PastedHoldings& result_;
};

}  // namespace

PastedHoldings ReadPastedHoldings(const QString& text, const QStringList& present, const StockLookup& lookup) {
  PastedHoldings result;
  const std::vector<Line> lines = text.contains(u'\t') ? TabLines(text) : CommaLines(text);
  if (lines.empty()) return result;
  const auto titles = PlacesOfTitles(lines.front().cells);
  Reader reader(present, lookup, result);
  for (auto line = lines.begin() + (titles ? 1 : 0); line != lines.end(); ++line) {
    reader.Read(*line, titles ? *titles : PlacesWithoutTitles(line->cells));
  }
  return result;
}

QString PasteMessage(const PastedHoldings& pasted) {
  if (pasted.rows.empty() && pasted.refused.empty()) {
    return QStringLiteral("剪贴板里没有持仓。请复制“代码、数量、价格”三列后再粘贴。");
  }
  if (pasted.refused.empty()) return {};
  QStringList lines{
      QStringLiteral("粘贴了 %1 只股票，%2 行没有采用：").arg(pasted.rows.size()).arg(pasted.refused.size())};
  for (const RefusedHolding& one : pasted.refused) {
    if (lines.size() > static_cast<qsizetype>(kMostNamed)) break;
    lines << QStringLiteral("第 %1 行 %2：%3").arg(QString::number(one.line), one.what, one.reason);
  }
  const auto unnamed = pasted.refused.size() - std::min(pasted.refused.size(), kMostNamed);
  if (unnamed > 0) lines << QStringLiteral("另有 %1 行。").arg(unnamed);
  return lines.join(QLatin1Char('\n'));
}

}  // namespace holdwise
