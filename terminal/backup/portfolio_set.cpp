// SPDX-License-Identifier: MIT
#include "backup/portfolio_set.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "backup_statements.h"
#include "holdwise/packet/text_file.h"
#include "plausible.h"

namespace holdwise::backup {
namespace {

constexpr qsizetype kMostFindings = 100;

template <typename Row>
bool ById(const Row& left, const Row& right) {
  return left.id < right.id;
}

/// The rows of both tables, taken apart.
class RowReader {
 public:
  explicit RowReader(const ResultSet& rows) : rows_(rows) {}

  PortfolioSet Read() {
    PortfolioSet set;
    std::vector<SavedHolding> holdings;
    holdings.reserve(static_cast<std::size_t>(rows_.RowCount()));
    const int part = rows_.Column("PART");
    for (row_ = 0; row_ < rows_.RowCount(); ++row_) {
      if (rows_.IntegerAt(row_, part) == 0)
        set.portfolios.push_back(Portfolio());
      else
        holdings.push_back(Holding());
    }
    std::sort(set.portfolios.begin(), set.portfolios.end(), ById<SavedPortfolio>);
    std::sort(holdings.begin(), holdings.end(), ById<SavedHolding>);
    std::unordered_map<std::int64_t, std::size_t> places;
    for (std::size_t place = 0; place < set.portfolios.size(); ++place) places.emplace(set.portfolios[place].id, place);
    for (const SavedHolding& holding : holdings) {
      const auto place = places.find(holding.portfolioId);
      (place == places.end() ? set.orphans : set.portfolios[place->second].holdings).push_back(holding);
    }
    set.gaps = std::move(gaps_);
    return set;
  }

 private:
  SavedPortfolio Portfolio() {
    isHolding_ = false;
    SavedPortfolio portfolio;
    portfolio.id = Integer(id_, "ID");
    portfolio.name = Text(name_, "COMNAME");
    portfolio.date = Text(date_, "EDITDATE");
    portfolio.indexLevel = Real(real1_, "ZSCLOSEPRICE");
    portfolio.targetReturn = Real(real2_, "MBSYL");
    portfolio.saveFlag = Integer(number1_, "SAVEFLAG");
    if (!rows_.IsNull(row_, style_)) portfolio.style = rows_.TextAt(row_, style_);
    if (!rows_.IsNull(row_, number2_)) portfolio.isClose = rows_.IntegerAt(row_, number2_);
    if (!rows_.IsNull(row_, number3_)) portfolio.knownTo = rows_.IntegerAt(row_, number3_);
    return portfolio;
  }
  SavedHolding Holding() {
    isHolding_ = true;
    return {Integer(id_, "ID"),        Integer(number1_, "MAINID"), Integer(number2_, "SECUCODE"),
            Integer(number3_, "PZSL"), Real(real1_, "PZBL"),        Real(real2_, "BUYPRICE")};
  }

  /// `name` is the column's in its table, for what is said when it holds nothing.
  std::int64_t Integer(int column, const char* name) {
    return IsThere(column, name) ? rows_.IntegerAt(row_, column) : 0;
  }
  double Real(int column, const char* name) { return IsThere(column, name) ? rows_.RealAt(row_, column) : 0; }
  QString Text(int column, const char* name) { return IsThere(column, name) ? rows_.TextAt(row_, column) : QString(); }
  bool IsThere(int column, const char* name) {
    if (!rows_.IsNull(row_, column)) return true;
    gaps_.append(QStringLiteral("编号为%1的%2没有%3")
                     .arg(rows_.TextAt(row_, id_), isHolding_ ? QStringLiteral("持股") : QStringLiteral("组合"),
                          QString::fromLatin1(name)));
    return false;
  }

  const ResultSet& rows_;
  int row_ = 0;
  QStringList gaps_;
  bool isHolding_ = false;
  const int id_ = rows_.Column("ID"), number1_ = rows_.Column("N1"), number2_ = rows_.Column("N2"),
            number3_ = rows_.Column("N3"), real1_ = rows_.Column("R1"), real2_ = rows_.Column("R2"),
            name_ = rows_.Column("COMNAME"), style_ = rows_.Column("ZHFG"), date_ = rows_.Column("EDITDATE");
};

/// Collects what is wrong, a text each.
class Findings {
 public:
  void Add(const QString& text) {
    if (texts_.size() < kMostFindings)
      texts_.append(ShownText(text));
    else
      ++more_;
  }
  [[nodiscard]] QStringList Take() {
    if (more_ > 0) texts_.append(QStringLiteral("另有%1处").arg(more_));
    return std::move(texts_);
  }

 private:
  QStringList texts_;
  int more_ = 0;
};

QString Called(const SavedPortfolio& portfolio) {
  return QStringLiteral("组合“%1”（编号%2）").arg(portfolio.name).arg(portfolio.id);
}

void CheckAll(const PortfolioSet& set, Findings& findings) {
  for (const QString& gap : set.gaps) findings.Add(gap);
  for (const SavedHolding& orphan : set.orphans)
    findings.Add(QStringLiteral("编号为%1的持股属于不存在的组合（编号%2）").arg(orphan.id).arg(orphan.portfolioId));
  std::unordered_set<std::int64_t> portfolioIds;
  std::unordered_set<std::int64_t> holdingIds;
  for (const SavedPortfolio& portfolio : set.portfolios) {
    for (const QString& problem : HeaderProblems(portfolio)) findings.Add(Called(portfolio) + problem);
    if (portfolio.holdings.empty()) findings.Add(Called(portfolio) + QStringLiteral("没有持股"));
    if (!portfolioIds.insert(portfolio.id).second)
      findings.Add(QStringLiteral("编号为%1的组合不止一个").arg(portfolio.id));
    for (const SavedHolding& holding : portfolio.holdings) {
      for (const QString& problem : HoldingProblems(holding))
        findings.Add(Called(portfolio) + QStringLiteral("中编号为%1的持股").arg(holding.id) + problem);
      if (!holdingIds.insert(holding.id).second) findings.Add(QStringLiteral("编号为%1的持股不止一个").arg(holding.id));
    }
  }
}

}  // namespace

int PortfolioSet::HoldingCount() const {
  std::size_t count = 0;
  for (const SavedPortfolio& portfolio : portfolios) count += portfolio.holdings.size();
  return static_cast<int>(count);
}

bool IsEnteredAlike(const PortfolioSet& left, const PortfolioSet& right) {
  const auto entered = [](PortfolioSet set) {
    for (SavedPortfolio& portfolio : set.portfolios) portfolio.isClose = portfolio.knownTo = std::nullopt;
    return set;
  };
  return entered(left) == entered(right);
}

PortfolioSet ReadPortfolios(DatabaseStatements& database) {
  const ResultSet rows = database.Query(sql::kAllRows);
  return RowReader(rows).Read();
}

Generators ReadGenerators(DatabaseStatements& database) {
  const ResultSet row = database.Query(sql::kGenerators);
  return {row.IntegerAt(0, row.Column("MAINGEN")), row.IntegerAt(0, row.Column("DETAILGEN"))};
}

QStringList ProblemsOf(const PortfolioSet& set) {
  Findings findings;
  CheckAll(set, findings);
  return findings.Take();
}

QStringList ProblemsOf(const PortfolioSet& set, const Generators& generators) {
  Findings findings;
  CheckAll(set, findings);
  for (const SavedPortfolio& portfolio : set.portfolios) {
    if (portfolio.id > generators.portfolio)
      findings.Add(Called(portfolio) + QStringLiteral("的编号大于最后发出的编号%1").arg(generators.portfolio));
    for (const SavedHolding& holding : portfolio.holdings) {
      if (holding.id <= generators.holding) continue;
      findings.Add(Called(portfolio) +
                   QStringLiteral("中持股的编号%1大于最后发出的编号%2").arg(holding.id).arg(generators.holding));
    }
  }
  return findings.Take();
}

}  // namespace holdwise::backup
