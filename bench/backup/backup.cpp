// SPDX-License-Identifier: MIT
// What a backup of 1,000 portfolios of ten holdings costs the thread that writes it: reading both tables, writing the
// file (flushed), reading it back; what the comparison of the database with it at each start costs; and what a restore
// into an empty database costs. With --check the exit code says whether the whole backup stays within its 100 ms.
#include <QCoreApplication>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <vector>

#include "app/first_look.h"
#include "backup/backup_folder.h"
#include "backup/portfolio_file.h"
#include "backup/restore.h"
#include "temp_database.h"

namespace {

using namespace holdwise;

constexpr int kPortfolios = 1000;
constexpr int kHoldings = 10;
constexpr int kRounds = 9;
constexpr double kMostMilliseconds = 100;

backup::PortfolioSet ManyPortfolios() {
  backup::PortfolioSet set;
  for (int id = 1; id <= kPortfolios; ++id) {
    backup::SavedPortfolio portfolio;
    portfolio.id = id;
    portfolio.name = QStringLiteral("稳健组合%1").arg(id);
    portfolio.date = QStringLiteral("2026-03-02");
    portfolio.indexLevel = 3123.45;
    portfolio.saveFlag = 1;
    for (int holding = 0; holding < kHoldings; ++holding) {
      const int number = (id - 1) * kHoldings + holding;
      portfolio.holdings.push_back({number + 1, id, 1600000 + number % 300, 100 + number, 1.0 / (3 + holding), 9.57});
    }
    set.portfolios.push_back(std::move(portfolio));
  }
  return set;
}

/// Least, middle and most of the rounds, in milliseconds.
struct Times {
  double least = 0, middle = 0, most = 0;
};

Times Measure(const std::function<void()>& work) {
  std::vector<double> rounds;
  for (int round = 0; round < kRounds; ++round) {
    const auto start = std::chrono::steady_clock::now();
    work();
    rounds.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
  }
  std::sort(rounds.begin(), rounds.end());
  return {rounds.front(), rounds[kRounds / 2], rounds.back()};
}

void Print(const char* what, const Times& times) {
  std::printf("%-44s %8.1f %8.1f %8.1f\n", what, times.least, times.middle, times.most);
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const bool isCheck = argc > 1 && std::strcmp(argv[1], "--check") == 0;
  test::TempDatabase database;
  const backup::PortfolioSet set = ManyPortfolios();
  backup::Restore(database.Service(), set, backup::RestoreExtent::Everything);
  const QTemporaryDir work;
  const backup::BackupFolder folder(work.path());
  const QDateTime now = QDateTime::currentDateTime();
  const QByteArray text = backup::PortfolioFileText(set);
  const backup::PortfolioSet none;

  std::printf("%d portfolios x %d holdings, ms              least   median     most\n", kPortfolios, kHoldings);
  const Times whole = Measure([&] {
    const auto session = database.Service().OpenSession();
    (void)folder.Write(backup::ReadPortfolios(*session), now);
  });
  Print("backup: read, write, flush, read back", whole);
  Print("  both tables", Measure([&] { (void)backup::ReadPortfolios(database.Service()); }));
  Print("  text of the file", Measure([&] { (void)backup::PortfolioFileText(set); }));
  Print("  the text read back", Measure([&] { (void)backup::ReadPortfolioText(text); }));
  if (isCheck) return whole.middle > kMostMilliseconds ? 1 : 0;
  Print("look at the start: both sides compared", Measure([&] {
          if (LookAtDatabase(database.Service(), folder, true).finding != FirstLook::Finding::Sound) std::abort();
        }));
  Print("restore into an empty database", Measure([&] {
          backup::Restore(database.Service(), none, backup::RestoreExtent::Everything);
          backup::Restore(database.Service(), set, backup::RestoreExtent::Everything);
        }));
  return 0;
}
