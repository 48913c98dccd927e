// SPDX-License-Identifier: MIT
#include "backup/restore.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "backup_statements.h"
#include "portfolio_change.h"

namespace holdwise::backup {
namespace {

constexpr qsizetype kMostNames = 20;
constexpr qsizetype kMostChanges = 10;

/// A plan with what carries it out.
struct Work {
  RestorePlan plan;
  std::vector<std::int64_t> deleted;            ///< portfolio ids
  std::vector<const SavedPortfolio*> inserted;  ///< of the set
  PortfolioSet after;                           ///< what the tables hold then
};

/// Whether a missing portfolio meets nothing that is there.
class Room {
 public:
  explicit Room(const PortfolioSet& now) {
    for (const SavedPortfolio& portfolio : now.portfolios) {
      names_.insert(portfolio.name);
      for (const SavedHolding& holding : portfolio.holdings) holdings_.insert(holding.id);
    }
  }
  [[nodiscard]] bool IsFree(const SavedPortfolio& portfolio) const {
    return names_.count(portfolio.name) == 0 &&
           std::none_of(portfolio.holdings.begin(), portfolio.holdings.end(),
                        [this](const SavedHolding& holding) { return holdings_.count(holding.id) != 0; });
  }

 private:
  std::unordered_set<QString> names_;
  std::unordered_set<std::int64_t> holdings_;
};

void PlanBack(const SavedPortfolio& portfolio, const SavedPortfolio* there, const Room* room, Work& work) {
  if (there == nullptr && room != nullptr && !room->IsFree(portfolio)) {
    work.plan.leftOut.append(portfolio.name);
    return;
  }
  if (there == nullptr) {
    work.plan.added.append(portfolio.name);
  } else if (*there == portfolio) {
    ++work.plan.unchanged;
    work.after.portfolios.push_back(portfolio);
    return;
  } else if (room != nullptr) {
    ++work.plan.unchanged;
    work.after.portfolios.push_back(*there);
    return;
  } else {
    work.plan.changed.append(portfolio.name);
    if (work.plan.changes.size() < kMostChanges) work.plan.changes.append(ChangeText(*there, portfolio));
    work.deleted.push_back(portfolio.id);
  }
  work.inserted.push_back(&portfolio);
  work.after.portfolios.push_back(portfolio);
}

Work PlanWork(const PortfolioSet& now, const PortfolioSet& set, RestoreExtent extent) {
  Work work;
  const bool isMissingOnly = extent == RestoreExtent::MissingOnly;
  const Room room(now);
  std::unordered_map<std::int64_t, const SavedPortfolio*> there;
  for (const SavedPortfolio& portfolio : now.portfolios) there.emplace(portfolio.id, &portfolio);
  for (const SavedPortfolio& portfolio : set.portfolios) {
    const auto place = there.find(portfolio.id);
    PlanBack(portfolio, place == there.end() ? nullptr : place->second, isMissingOnly ? &room : nullptr, work);
    if (place != there.end()) there.erase(place);
  }
  for (const auto& [id, portfolio] : there) {
    if (isMissingOnly) {
      ++work.plan.unchanged;
      work.after.portfolios.push_back(*portfolio);
    } else {
      work.plan.removed.append(portfolio->name);
      work.deleted.push_back(id);
    }
  }
  work.plan.removed.sort();
  if (isMissingOnly) {
    work.after.orphans = now.orphans;
    work.after.gaps = now.gaps;
  } else {
    work.plan.orphans = static_cast<int>(now.orphans.size());
  }
  std::sort(work.after.portfolios.begin(), work.after.portfolios.end(),
            [](const SavedPortfolio& left, const SavedPortfolio& right) { return left.id < right.id; });
  return work;
}

void Insert(DatabaseStatements& database, const SavedPortfolio& portfolio) {
  for (const SavedHolding& holding : portfolio.holdings) MustExecute(database, sql::InsertHolding(holding));
  MustExecute(database, sql::InsertPortfolio(portfolio));
}

/// They only ever move on: a number given away before stays given away.
void MoveGenerators(DatabaseStatements& database, const PortfolioSet& set) {
  Generators largest;
  for (const SavedPortfolio& portfolio : set.portfolios) {
    largest.portfolio = std::max(largest.portfolio, portfolio.id);
    for (const SavedHolding& holding : portfolio.holdings) largest.holding = std::max(largest.holding, holding.id);
  }
  const Generators now = ReadGenerators(database);
  if (largest.portfolio > now.portfolio) MustExecute(database, sql::SetPortfolioGenerator(largest.portfolio));
  if (largest.holding > now.holding) MustExecute(database, sql::SetHoldingGenerator(largest.holding));
}

QString Line(const QString& what, const QStringList& names) {
  if (names.isEmpty()) return {};
  QString text = QStringLiteral("%1%2个组合：%3")
                     .arg(what)
                     .arg(names.size())
                     .arg(QStringList(names.mid(0, kMostNames)).join(QStringLiteral("、")));
  return names.size() > kMostNames ? text + QStringLiteral("等") : text;
}

}  // namespace

bool RestorePlan::IsNothing() const {
  return added.isEmpty() && changed.isEmpty() && removed.isEmpty() && orphans == 0;
}

QString RestorePlan::Text() const {
  QStringList lines{Line(QStringLiteral("恢复"), added), Line(QStringLiteral("改回"), changed)};
  lines << changes << Line(QStringLiteral("去掉"), removed)
        << Line(QStringLiteral("因名称或编号已被占用而不恢复"), leftOut);
  if (orphans > 0) lines.append(QStringLiteral("去掉%1条不属于任何组合的持股").arg(orphans));
  if (IsNothing()) lines.append(QStringLiteral("没有要改变的"));
  lines.append(QStringLiteral("不变的组合：%1个").arg(unchanged));
  lines.removeAll(QString());
  return lines.join(QLatin1Char('\n'));
}

RestorePlan PlanRestore(const PortfolioSet& now, const PortfolioSet& set, RestoreExtent extent) {
  return PlanWork(now, set, extent).plan;
}

RestorePlan Restore(UserDataServices& database, const PortfolioSet& set, RestoreExtent extent) {
  if (const QStringList problems = ProblemsOf(set); !problems.isEmpty())
    throw Error(ErrorCategory::Refused, problems.join(QLatin1Char('\n')).toStdString());
  if (database.InTransaction())
    throw Error(ErrorCategory::Busy, "终端窗口里有一个提问还没有回答（例如是否删除组合），请先回答它，再恢复一次");
  TransactionScope transaction(database);
  const Work work = PlanWork(ReadPortfolios(database), set, extent);
  if (work.plan.orphans > 0) MustExecute(database, sql::kDeleteOrphans);
  for (const std::int64_t id : work.deleted) {
    MustExecute(database, sql::DeleteHoldingsOf(id));
    MustExecute(database, sql::DeletePortfolio(id));
  }
  for (const SavedPortfolio* portfolio : work.inserted) Insert(database, *portfolio);
  MoveGenerators(database, work.after);
  if (ReadPortfolios(database) != work.after)
    throw Error(ErrorCategory::Corrupt, "恢复后读回的组合与备份不同，没有恢复");
  transaction.Commit();
  return work.plan;
}

void AddAsNew(DatabaseStatements& database, const SavedPortfolio& portfolio) {
  SavedPortfolio added = portfolio;
  added.id = database.Count(sql::kNextPortfolioId);
  for (SavedHolding& holding : added.holdings) {
    holding.id = database.Count(sql::kNextHoldingId);
    holding.portfolioId = added.id;
  }
  if (added.id <= 0) throw Error(ErrorCategory::Database, "数据库没有给出新的组合编号");
  Insert(database, added);
}

}  // namespace holdwise::backup
