// SPDX-License-Identifier: MIT
#include "import_saved.h"

#include <QHash>

#include "backup/portfolio_file.h"
#include "backup/restore.h"
#include "holdings/portfolio_rules.h"
#include "import_checks.h"
#include "import_preview.h"

namespace holdwise {
namespace {

constexpr int kCodeDigits = 6;

/// What keeps a whole portfolio of the file from being added here; empty when nothing does.
QStringList ProblemsOf(const backup::SavedPortfolio& portfolio, const TakenNames& taken,
                       const ImportServices& services) {
  const QString problem = NameProblem(portfolio.name);
  QStringList problems{problem.isEmpty() ? taken.ProblemOf(portfolio.name) : problem};
  for (const backup::SavedHolding& holding : portfolio.holdings)
    problems.append(CodeProblem(QString::number(holding.code).right(kCodeDigits), services.codes));
  problems.removeAll(QString());
  return problems;
}

std::vector<ImportProblem> Check(const backup::ReadFile& file, const ImportServices& services) {
  std::vector<ImportProblem> problems;
  QHash<QString, int> firstLines;
  const TakenNames taken(services.database);
  for (std::size_t place = 0; place < file.set.portfolios.size(); ++place) {
    const backup::SavedPortfolio& portfolio = file.set.portfolios[place];
    const int line = static_cast<int>(file.lines[place]);
    for (const QString& reason : ProblemsOf(portfolio, taken, services)) problems.push_back({line, reason});
    if (const int earlier = firstLines.value(portfolio.name); earlier != 0)
      problems.push_back({line, QStringLiteral("组合名称“%1”与第%2行重复").arg(portfolio.name).arg(earlier)});
    firstLines.insert(portfolio.name, line);
  }
  if (file.set.portfolios.empty()) problems.push_back({0, QStringLiteral("文件只有表头，没有持股数据")});
  return problems;
}

QString PreviewText(const backup::PortfolioSet& set) {
  std::vector<PreviewedPortfolio> portfolios;
  portfolios.reserve(set.portfolios.size());
  for (const backup::SavedPortfolio& portfolio : set.portfolios) {
    PreviewedPortfolio previewed{portfolio.name, portfolio.holdings.size()};
    for (const backup::SavedHolding& holding : portfolio.holdings)
      previewed.cost += static_cast<double>(holding.quantity) * holding.buyPrice;
    portfolios.push_back(std::move(previewed));
  }
  QStringList lines{QStringLiteral("从本程序导出的 %1 个组合：").arg(set.portfolios.size())};
  return (lines + LinesOf(portfolios)).join(QLatin1Char('\n'));
}

}  // namespace

ImportResult ImportSaved(const QByteArray& csv, const ImportServices& services, const ImportProgress& progress,
                         const ImportOptions& options) {
  const backup::ReadFile file = backup::ReadPortfolioText(csv, backup::LastLine::MayLack);
  std::vector<ImportProblem> problems;
  for (const backup::FileProblem& problem : file.problems)
    problems.push_back({static_cast<int>(problem.line), problem.reason});
  if (problems.empty()) problems = Check(file, services);
  if (problems.empty() && !options.name.isEmpty()) problems.push_back(NamesStandThere());
  if (!problems.empty()) return Refused(std::move(problems));

  if (options.ask && !options.ask({PreviewText(file.set), {}, 0})) return Cancelled();
  RequireNoQuestion(services.database);
  ImportResult result;
  std::vector<int> stocks;
  const int total = static_cast<int>(file.set.portfolios.size());
  TransactionScope transaction(services.database);
  for (const backup::SavedPortfolio& portfolio : file.set.portfolios) {
    if (progress && !progress(result.portfolios, total)) return Cancelled();
    backup::AddAsNew(services.database, portfolio);
    ++result.portfolios;
    result.holdings += static_cast<int>(portfolio.holdings.size());
    for (const backup::SavedHolding& holding : portfolio.holdings) stocks.push_back(static_cast<int>(holding.code));
  }
  if (progress && !progress(total, total)) return Cancelled();
  transaction.Commit();
  result.warnings = UnpricedStocks(std::move(stocks), services.dataCentre);
  return result;
}

}  // namespace holdwise
