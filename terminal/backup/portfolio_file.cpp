// SPDX-License-Identifier: MIT
#include "backup/portfolio_file.h"

#include <QCryptographicHash>
#include <algorithm>
#include <array>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "holdwise/packet/csv_reader.h"
#include "holdwise/packet/csv_result_set.h"
#include "holdwise/packet/entry_limits.h"
#include "holdwise/packet/number_text.h"
#include "holdwise/packet/text_file.h"
#include "plausible.h"

namespace holdwise::backup {
namespace {

enum Column {
  kName,
  kCode,
  kQuantity,
  kPrice,
  kDate,
  kPortfolioId,
  kLevel,
  kIsClose,
  kSaveFlag,
  kStyle,
  kReturn,
  kKnownTo,
  kHoldingId,
  kWeight,
  kColumns
};
constexpr std::array<const char*, kColumns> kTitles = {"组合名称",   "股票代码", "数量(股)",   "买入价(元)", "买入日期",
                                                       "组合编号",   "上证指数", "指数为收盘", "保存标志",   "组合风格",
                                                       "目标收益率", "行情止于", "持股编号",   "比例"};
/// Columns in which all rows of a portfolio are alike.
constexpr std::array<bool, kColumns> kIsOfPortfolio = {true, false, false, false, true, true,  true,
                                                       true, true,  true,  true,  true, false, false};
constexpr const char* kByteOrderMark = "\xEF\xBB\xBF";
constexpr const char* kLastLineTitle = "合计";
constexpr int kCodeDigits = 6;
constexpr std::size_t kMostProblems = 100;
constexpr std::int64_t kMaxFileBytes = 256LL << 20;
constexpr int kLastLineFields = 4;

QByteArray WithoutMark(const QByteArray& text) {
  return text.startsWith(kByteOrderMark) ? text.mid(qstrlen(kByteOrderMark)) : text;
}

QByteArray Heading() {
  QByteArray line;
  for (const char* title : kTitles) line += QByteArray(line.isEmpty() ? "" : ",") + title;
  return line + '\n';
}

/// A text that a spreadsheet would run begins with one of these.
bool NeedsQuote(const QString& text) {
  static const QString kRun = QStringLiteral("=+-@\t\r'");
  return !text.isEmpty() && kRun.contains(text.front());
}

std::string TextField(const QString& text) {
  return CsvField(NeedsQuote(text) ? QLatin1Char('\'') + text : text).toStdString();
}

std::string OrNothing(const std::optional<std::int64_t>& value) {
  return value ? std::to_string(*value) : std::string();
}

/// Six digits for a stock's code number; anything else as it stands, which does not read back.
std::string CodeField(std::int64_t code) {
  const bool isStock = code >= kStockBase && code <= kLargestStockNumber;
  return isStock ? std::to_string(code).substr(1) : '?' + std::to_string(code);
}

/// A portfolio's columns, which stand in each of its rows: those between price and number of the holding, and the name.
struct HeaderFields {
  std::string name;
  std::string rest;
};

HeaderFields FieldsOf(const SavedPortfolio& portfolio) {
  const std::string style = portfolio.style ? TextField(*portfolio.style) : std::string();
  HeaderFields fields{TextField(portfolio.name), TextField(portfolio.date)};
  for (const std::string& field :
       {std::to_string(portfolio.id), ShortestUtf8(portfolio.indexLevel), OrNothing(portfolio.isClose),
        std::to_string(portfolio.saveFlag), style, ShortestUtf8(portfolio.targetReturn), OrNothing(portfolio.knownTo)})
    fields.rest += ',' + field;
  return fields;
}

void AddRow(std::string& text, const HeaderFields& header, const SavedHolding& holding) {
  text.append(header.name).append(1, ',').append(CodeField(holding.code));
  text.append(1, ',').append(std::to_string(holding.quantity));
  text.append(1, ',').append(ShortestUtf8(holding.buyPrice));
  text.append(1, ',').append(header.rest);
  text.append(1, ',').append(std::to_string(holding.id));
  text.append(1, ',').append(ShortestUtf8(holding.weight)).append(1, '\n');
}

/// Against accidents, not against people.
QByteArray ChecksumOf(const QByteArray& text) {
  constexpr qsizetype kDigits = 16;
  return QCryptographicHash::hash(text, QCryptographicHash::Md5).toHex().left(kDigits);
}

QByteArray LastLineOf(const PortfolioSet& set, const QByteArray& rows) {
  QByteArray line = kLastLineTitle;
  for (const QByteArray& field :
       {QByteArray::number(set.portfolios.size()), QByteArray::number(set.HoldingCount()), "x" + ChecksumOf(rows)})
    line += ',' + field;
  return line + QByteArray(kColumns - kLastLineFields, ',') + '\n';
}

QString Shown(std::string_view field) {
  return QString::fromUtf8(field.data(), static_cast<qsizetype>(field.size()));
}

QString TextOf(std::string_view field) {
  QString text = Shown(field);
  if (text.startsWith(QLatin1Char('\''))) text.remove(0, 1);
  return text;
}

/// A value of a row that cannot be read.
struct BadValue {
  Column column;
};

class Reader {
 public:
  explicit Reader(QByteArray text)
      : text_(std::move(text)), csv_(std::string_view(text_.constData(), static_cast<std::size_t>(text_.size()))) {}

  ReadFile Read(LastLine lastLine) {
    try {
      if (!csv_.Next() || !IsHeading()) {
        Report(QStringLiteral("第一行不是组合备份文件的表头"));
        return Take();
      }
      while (!hasLastLine_ && csv_.Next()) TakeRow();
      if (hasLastLine_ && csv_.Next()) Report(QStringLiteral("“合计”行之后还有内容"));
    } catch (const Error& error) {
      Report(QString::fromUtf8(error.what()));
    }
    if (!hasLastLine_ && lastLine == LastLine::Needed && read_.problems.empty())
      Report(QStringLiteral("文件不完整，没有“合计”行"), 0);
    if (read_.problems.empty()) Finish();
    return Take();
  }

 private:
  void Report(const QString& reason) { Report(reason, csv_.Line()); }
  void Report(const QString& reason, std::int64_t line) {
    if (read_.problems.size() < kMostProblems)
      read_.problems.push_back({line, ShownText(reason)});
    else
      ++more_;
  }

  ReadFile Take() {
    if (!read_.problems.empty()) read_.set = {};
    std::stable_sort(read_.problems.begin(), read_.problems.end(),
                     [](const FileProblem& left, const FileProblem& right) { return left.line < right.line; });
    if (more_ > 0) read_.problems.push_back({0, QStringLiteral("另有%1处").arg(more_)});
    return std::move(read_);
  }

  [[nodiscard]] bool IsHeading() const {
    const auto& fields = csv_.Fields();
    return std::equal(fields.begin(), fields.end(), kTitles.begin(), kTitles.end());
  }

  void TakeRow() {
    const auto& fields = csv_.Fields();
    if (fields.size() != kColumns)
      return Report(QStringLiteral("有%1个字段，应为%2个").arg(fields.size()).arg(static_cast<int>(kColumns)));
    if (IsLastLine()) return TakeLastLine();
    try {
      if (SavedPortfolio* portfolio = PortfolioOfRow()) TakeHolding(*portfolio);
    } catch (const BadValue& bad) {
      Report(QStringLiteral("%1“%2”不能读取")
                 .arg(QString::fromUtf8(kTitles[bad.column]), Shown(fields[static_cast<std::size_t>(bad.column)])));
    }
  }

  /// Most rows say of their portfolio what the row above says: that is compared, not read again.
  SavedPortfolio* PortfolioOfRow() {
    std::string header;
    for (std::size_t column = 0; column < kColumns; ++column) {
      if (!kIsOfPortfolio[column]) continue;
      header.append(1, csv_.IsQuoted(column) ? '"' : ',').append(csv_.Fields()[column]);
    }
    if (!lastHeader_.empty() && header == lastHeader_) return &read_.set.portfolios[lastPlace_];
    lastHeader_.clear();
    SavedPortfolio portfolio = Portfolio();
    SavedPortfolio* known = Known(portfolio);
    if (known == nullptr) return nullptr;
    lastHeader_ = std::move(header);
    lastPlace_ = static_cast<std::size_t>(known - read_.set.portfolios.data());
    return known;
  }

  /// The portfolio of the row; null, and reported, when the row says something else of it than its first one.
  SavedPortfolio* Known(SavedPortfolio& portfolio) {
    const auto [place, isNew] = places_.emplace(portfolio.id, read_.set.portfolios.size());
    if (isNew) {
      for (const QString& problem : HeaderProblems(portfolio))
        Report(QStringLiteral("组合“%1”%2").arg(portfolio.name, problem));
      read_.set.portfolios.push_back(std::move(portfolio));
      firstLines_.push_back(csv_.Line());
      return &read_.set.portfolios.back();
    }
    SavedPortfolio& known = read_.set.portfolios[place->second];
    std::vector<SavedHolding> holdings = std::exchange(known.holdings, {});
    const bool isSame = portfolio == known;
    known.holdings = std::move(holdings);
    if (isSame) return &known;
    Report(QStringLiteral("编号为%1的组合在这一行与第%2行写得不同").arg(known.id).arg(firstLines_[place->second]));
    return nullptr;
  }

  SavedPortfolio Portfolio() {
    SavedPortfolio portfolio;
    portfolio.name = Text(kName);
    portfolio.date = Text(kDate);
    portfolio.id = Integer(kPortfolioId);
    portfolio.indexLevel = Real(kLevel);
    portfolio.isClose = OptionalInteger(kIsClose);
    portfolio.saveFlag = Integer(kSaveFlag);
    if (!IsNothing(kStyle)) portfolio.style = Text(kStyle);
    portfolio.targetReturn = Real(kReturn);
    portfolio.knownTo = OptionalInteger(kKnownTo);
    return portfolio;
  }

  void TakeHolding(SavedPortfolio& portfolio) {
    const std::string_view code = Field(kCode);
    const auto number = ParseInteger(code);
    if (code.size() != kCodeDigits || !number || code.front() == '-' || code.front() == '+') throw BadValue{kCode};
    const SavedHolding holding{Integer(kHoldingId), portfolio.id,  kStockBase + *number,
                               Integer(kQuantity),  Real(kWeight), Real(kPrice)};
    for (const QString& problem : HoldingProblems(holding)) Report(QStringLiteral("持股") + problem);
    if (!holdingIds_.insert(holding.id).second) Report(QStringLiteral("持股编号%1重复").arg(holding.id));
    portfolio.holdings.push_back(holding);
  }

  [[nodiscard]] bool IsLastLine() const { return Field(kName) == kLastLineTitle && Field(kPortfolioId).empty(); }

  void TakeLastLine() {
    hasLastLine_ = true;
    const QByteArray rows = text_.left(text_.lastIndexOf('\n', text_.size() - 2) + 1);
    const bool isWhole = text_.mid(rows.size()) == LastLineOf(read_.set, rows);
    if (!isWhole)
      Report(QStringLiteral("文件不完整或者被改动过：内容与“合计”行不符（要导入手工改过的文件，请先删去“合计”行）"));
  }

  void Finish() {
    auto& portfolios = read_.set.portfolios;
    const auto byId = [](const auto& left, const auto& right) { return left.id < right.id; };
    std::sort(portfolios.begin(), portfolios.end(), byId);
    for (SavedPortfolio& portfolio : portfolios) {
      std::sort(portfolio.holdings.begin(), portfolio.holdings.end(), byId);
      read_.lines.push_back(firstLines_[places_.at(portfolio.id)]);
    }
  }

  [[nodiscard]] std::string_view Field(Column column) const { return csv_.Fields()[static_cast<std::size_t>(column)]; }
  [[nodiscard]] bool IsNothing(Column column) const {
    return Field(column).empty() && !csv_.IsQuoted(static_cast<std::size_t>(column));
  }
  [[nodiscard]] QString Text(Column column) const { return TextOf(Field(column)); }
  [[nodiscard]] std::int64_t Integer(Column column) const {
    const auto value = ParseInteger(Field(column));
    if (!value) throw BadValue{column};
    return *value;
  }
  [[nodiscard]] std::optional<std::int64_t> OptionalInteger(Column column) const {
    if (IsNothing(column)) return std::nullopt;
    return Integer(column);
  }
  [[nodiscard]] double Real(Column column) const {
    const auto value = ParseReal(Field(column));
    if (!value) throw BadValue{column};
    return *value;
  }

  const QByteArray text_;
  CsvReader csv_;
  ReadFile read_;
  std::vector<std::int64_t> firstLines_;
  std::unordered_map<std::int64_t, std::size_t> places_;
  std::unordered_set<std::int64_t> holdingIds_;
  std::string lastHeader_;  ///< the portfolio's fields in the row above; empty when that is not known
  std::size_t lastPlace_ = 0;
  bool hasLastLine_ = false;
  int more_ = 0;
};

}  // namespace

QByteArray PortfolioFileText(const PortfolioSet& set) {
  std::string text = Heading().toStdString();
  for (const SavedPortfolio& portfolio : set.portfolios) {
    const HeaderFields header = FieldsOf(portfolio);
    for (const SavedHolding& holding : portfolio.holdings) AddRow(text, header, holding);
    if (portfolio.holdings.empty()) text += header.name + ",,,," + header.rest + ",,\n";
  }
  for (const SavedHolding& orphan : set.orphans) {
    // The number of the portfolio that is not there, between empty columns.
    AddRow(text, {"", ',' + std::to_string(orphan.portfolioId) + ",,,,,,"}, orphan);
  }
  const QByteArray rows = QByteArray::fromStdString(text);
  return kByteOrderMark + rows + LastLineOf(set, rows);
}

ReadFile ReadPortfolioText(const QByteArray& text, LastLine lastLine) {
  return Reader(WithoutMark(text)).Read(lastLine);
}

bool IsPortfolioText(const QByteArray& text) {
  return WithoutMark(text).startsWith(Heading().trimmed());
}

PortfolioSet LoadPortfolioFile(const QString& path) {
  ReadFile file = ReadPortfolioText(ReadTextFile(path, kMaxFileBytes));
  if (file.problems.empty()) return std::move(file.set);
  QStringList lines{QStringLiteral("备份文件“%1”不能使用：").arg(path)};
  for (const FileProblem& problem : file.problems)
    lines.append(problem.line == 0 ? problem.reason
                                   : QStringLiteral("第%1行：%2").arg(problem.line).arg(problem.reason));
  throw Error(ErrorCategory::Corrupt, lines.join(QLatin1Char('\n')).toStdString());
}

}  // namespace holdwise::backup
