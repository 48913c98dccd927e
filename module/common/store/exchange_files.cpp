// SPDX-License-Identifier: MIT
#include "common/store/exchange_files.h"

#include <optional>

#include "common/host/debug_log.h"
#include "common/host/host_access.h"
#include "common/store/database.h"
#include "common/store/statements.h"
#include "exchange_pair.h"
#include "exchange_rows.h"
#include "holdwise/packet/packet_file.h"
#include "holdwise/packet/table_limits.h"

namespace holdwise {
namespace {

const QString kUnit = QStringLiteral("Untcommon");

/// What the last LoadZHFile left to be said and done.
struct LoadState {
  QString problem;
  /// The pair was not read for a reason that may pass: an empty database must not take its place.
  bool isDue = false;
};

LoadState& State() {
  static LoadState state;
  return state;
}

struct Pair {
  ResultSet holdings;
  ResultSet portfolios;
};

Pair ReadPair() {
  return {ReadPacketFile(exchange::DetailPath(), kHoldingsLimits),
          ReadPacketFile(exchange::MergePath(), kPortfoliosLimits)};
}

/// Why the rows cannot be what a person has entered; empty when they can.
QString DoubtAbout(const Pair& pair) {
  try {
    exchange::RequirePlausible(pair.holdings, pair.portfolios);
    const QString name = exchange::WithoutHoldings(pair.holdings, pair.portfolios);
    return name.isEmpty() ? QString() : QStringLiteral("组合“%1”没有持股").arg(name);
  } catch (const Error& error) {
    return QString::fromUtf8(error.what());
  }
}

/// What is lost when a new pair takes the place of the one in the folder.
struct Loss {
  bool isAny = false;
  bool isUnreadable = false;  ///< nobody knows of what
  QString doubt;              ///< why it is no loss that a person can have meant; empty when it may be one
};

Loss LossBy(const Pair& next) {
  if (!exchange::HasAny()) return {};
  std::optional<Pair> earlier;
  try {
    earlier = ReadPair();
  } catch (const Error&) {
    return {true, true, {}};
  }
  const QString doubt = DoubtAbout(next);
  const bool wasSound = !earlier->portfolios.IsEmpty() && DoubtAbout(*earlier).isEmpty();
  if (wasSound && !doubt.isEmpty()) return {true, false, doubt};
  return {next.holdings.RowCount() < earlier->holdings.RowCount() ||
              next.portfolios.RowCount() < earlier->portfolios.RowCount(),
          false,
          {}};
}

void SavePair(const Pair& pair, const exchange::Identity& database) {
  if (exchange::IsOfAnother(exchange::OwnerOfPair(), database)) return;  // said when it was not read
  exchange::FinishInterruptedSave();
  if (State().isDue && pair.portfolios.IsEmpty() && pair.holdings.IsEmpty()) return;
  const Loss loss = LossBy(pair);
  const QString time = exchange::Replace(pair.holdings, pair.portfolios, loss.isAny);
  exchange::NoteOwner(database);
  if (time.isEmpty()) return;
  QString text = QStringLiteral("%1，原先的一份另存为 TZZHDetail.dat.%2.kept 和 TZZHMerge.dat.%2.kept")
                     .arg(loss.isUnreadable ? QStringLiteral("原先保存的组合文件读不出来，已重新写")
                                            : QStringLiteral("保存的组合比原先的少"),
                          time);
  if (!loss.doubt.isEmpty()) text = QStringLiteral("数据库里的组合可能已损坏：%1。").arg(loss.doubt) + text;
  ModuleHost().Debug().WriteLog(text);
  if (!loss.doubt.isEmpty()) ModuleHost().Debug().TellFailure(text);
}

/// May it be gone the next time, without anybody changing the files?
bool MayPass(const Error& error) {
  return IsPassing(error) || error.Category() == ErrorCategory::TimedOut;
}

void ImportPair(UserDataServices& database) {
  exchange::RequireBoth();
  const Pair pair = ReadPair();
  exchange::RequirePlausible(pair.holdings, pair.portfolios);
  TransactionScope transaction(database);
  exchange::Insert(database, pair.holdings, pair.portfolios);
  transaction.Commit();
}

/// Sets aside what can never be read, because the next save writes a new pair. @return what is said of it
QString SetAside(const QString& reason) {
  try {
    const QString time = exchange::SetAside();
    State().isDue = false;
    return QStringLiteral(
               "退出时保存的组合没有读入（%1）；文件已改名为 TZZHDetail.dat.%2.bad 和 TZZHMerge.dat.%2.bad，"
               "可用“文件→恢复…”从备份找回组合")
        .arg(reason, time);
  } catch (const Error& error) {
    return QStringLiteral("退出时保存的组合没有读入（%1），文件也没有能改名保留（%2）")
        .arg(reason, QString::fromUtf8(error.what()));
  }
}

[[noreturn]] void Refuse(const Error& error) {
  const QString reason = QString::fromUtf8(error.what());
  const bool isPassing = MayPass(error);
  State().problem = isPassing
                        ? QStringLiteral("退出时保存的组合这次没有读入（%1）；文件没有改动，下次启动再读").arg(reason)
                        : SetAside(reason);
  throw Error(isPassing ? error.Category() : ErrorCategory::Refused, State().problem.toStdString());
}

/// False when there is nothing to read.
bool LoadFiles(UserDataServices& database) {
  exchange::FinishInterruptedSave();
  if (!exchange::HasAny()) {
    State().isDue = false;
    return false;
  }
  const exchange::Identity owner = exchange::OwnerOfPair();
  if (exchange::IsOfAnother(owner, exchange::IdentityOf(database))) {
    const QString text =
        QStringLiteral("工作目录里保存的组合属于另一个数据库（%1），没有读入，退出时也不代替它").arg(owner.place);
    ModuleHost().Debug().WriteLog(text);
    ModuleHost().Debug().TellFailure(text);
    return false;
  }
  ImportPair(database);
  State().isDue = false;
  return true;
}

bool Load() {
  UserDataServices& database = Database();
  if (database.Count(sql::kCountHoldings) + database.Count(sql::kCountPortfolios) > 0) {
    State().isDue = false;
    return false;
  }
  try {
    return LoadFiles(database);
  } catch (const Error& error) {
    Refuse(error);
  }
}

}  // namespace

void SaveZHFile() {
  try {
    UserDataServices& database = Database();
    TransactionScope transaction(database);
    Pair pair;
    pair.holdings = database.Query(sql::kAllHoldings);
    pair.portfolios = database.Query(sql::kAllPortfolios);
    SavePair(pair, exchange::IdentityOf(database));
    transaction.Commit();
  } catch (...) {
    LogCurrentException(kUnit, QStringLiteral("SaveZHFile"));
  }
}

bool LoadZHFile() {
  State() = {{}, true};
  try {
    return Load();
  } catch (...) {
    LogCurrentException(kUnit, QStringLiteral("LoadZHFile"));
    return false;
  }
}

const QString& ExchangeProblem() {
  return State().problem;
}

}  // namespace holdwise
