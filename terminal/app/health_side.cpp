// SPDX-License-Identifier: MIT
#include "health_side.h"

#include <QDir>
#include <chrono>
#include <exception>

#include "database/firebird_user_data.h"
#include "parts/database_side.h"
#include "process/print.h"
#include "window/dialogs.h"

namespace holdwise {
namespace {

constexpr std::chrono::seconds kBetweenLooks{10};

class NoLog final : public DebugServers {
 public:
  void WriteLog(const QString& /*text*/) override {}
};

health::Facts FactsOf(const Options& options) {
  health::Facts facts;
  facts.now = QDateTime::currentDateTime();
  facts.workFolder = options.workFolder;
  facts.database = options.database;
  facts.isServer = DatabaseTarget::FromText(options.database).IsServer();
  if (!facts.isServer) facts.checkRecord = FirebirdUserData::CheckRecordOf(options.database);
  facts.dataFolder = options.dataFolder;
  return facts;
}

/// Of a database that has been found whole. Nothing is made, marked or brought up to date.
health::Comparison CompareAtRest(const Options& options) {
  if (DatabaseTarget::FromText(options.database).IsServer()) return health::Comparison::OfServer();
  try {
    const auto database = FirebirdUserData::OpenAsItIs(options.database, options.LockFolder());
    const FirstLook look =
        LookAtDatabase(*database, backup::BackupFolder(options.workFolder, options.database), database->WasClosed());
    const bool isWell = look.finding == FirstLook::Finding::Sound || look.finding == FirstLook::Finding::Newer;
    return {look.Line(), isWell};
  } catch (const std::exception& error) {
    return {QStringLiteral("没有比较：%1").arg(QString::fromUtf8(error.what())), false};
  }
}

void AddMarket(health::Facts& facts, const MarketData& data) {
  facts.dataDate = data.CurrentDateText();
  facts.dataEdition = data.DataEdition();
  facts.isSimulated = data.IsSimulated();
  facts.dataNotices = data.Notices();
}

}  // namespace

HealthSide::HealthSide(ProcessParts& process, WindowSide& window, const DatabaseGuard& guard,
                       const std::unique_ptr<MarketSide>& market, const std::unique_ptr<PageSide>& pages)
    : process_(process), window_(window), guard_(guard), market_(market), pages_(pages) {
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { Look(); });
  timer_.start(kBetweenLooks);
}

health::Table HealthSide::Now() const {
  health::Facts facts = FactsOf(process_.Asked());
  if (backupProblem) facts.backupProblem = backupProblem();
  facts.databaseProblem = window_.PlaceProblem();
  if (facts.databaseProblem.isEmpty()) facts.databaseProblem = guard_.Damage();
  facts.mirrorProblem = mirror_.Problem(facts.workFolder);
  facts.comparison = guard_.Comparison();
  if (market_ == nullptr) {
    facts.isDataAwaited = !process_.IsDataChosen() && QDir(facts.dataFolder).isEmpty();
    facts.dataProblem = QStringLiteral("不能使用，原因见窗口");
  } else {
    AddMarket(facts, market_->Data());
    facts.quotesProblem = market_->Connection().QuotesProblem();
  }
  if (pages_ != nullptr) {
    facts.plugins = pages_->PluginNames();
    facts.pluginProblems = pages_->Problems();
  }
  return health::TableOf(facts);
}

HandOverAnswer HealthSide::Answer() const {
  const health::Table table = Now();
  return {health::TextOf(table), health::ProblemsIn(table) == 0 ? 0 : 1};
}

void HealthSide::Show() const {
  ShowReport(&window_.Window(), QStringLiteral("状态"), health::TextOf(Now()));
}

void HealthSide::Look() {
  QStringList problems;
  for (const health::Row& row : Now()) {
    if (!row.isWell) problems.append(row.subject + QStringLiteral("：") + row.text);
  }
  window_.Window().SetHealthProblems(problems);
}

int CheckAtRest(const Options& asked) {
  Options options = asked;
  // As the next window will open it.
  const QString remembered = RememberedDataFolder(options.workFolder);
  if (options.command.dataFolder.isEmpty() && !remembered.isEmpty()) options.dataFolder = remembered;
  health::Facts facts = FactsOf(options);
  facts.mirrorProblem = health::MirrorReader().Problem(facts.workFolder);
  try {
    FirebirdUserData::Check(DatabaseTarget::FromText(options.database), options.LockFolder());
    facts.comparison = CompareAtRest(options);
  } catch (const std::exception& error) {
    facts.databaseProblem = QString::fromUtf8(error.what());
    facts.comparison.text = QStringLiteral("没有比较，数据库不能使用");
  }
  SystemClock clock;
  NoLog log;
  DatabaseSide none({});
  MarketData data(clock, log, none);
  try {
    data.Load(options.dataFolder);
    AddMarket(facts, data);
  } catch (const std::exception& error) {
    facts.dataProblem = QString::fromUtf8(error.what());
  }
  const health::Table table = health::TableOf(facts);
  PrintOut(health::TextOf(table));
  return health::ProblemsIn(table) == 0 ? 0 : 1;
}

}  // namespace holdwise
