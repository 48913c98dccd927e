// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "backup/backup_folder.h"
#include "backup/portfolio_file.h"
#include "backup/portfolio_set.h"
#include "backup/restore.h"
#include "injecting_user_data.h"
#include "scripted_host.h"
#include "temp_database.h"

namespace holdwise::backup {

/// What a test puts into the tables: as the plug-in's own statements write it, with figures as after a calculation.
class BackupTest : public testing::Test {
 protected:
  void Add(const QString& name, int holdings, const QString& style = QString()) {
    TransactionScope transaction(temp_.Service());
    const std::int64_t id = temp_.Service().Count(QStringLiteral("select gen_id(ALG_ROWID_MAIN,1) from rdb$database"));
    for (int holding = 0; holding < holdings; ++holding) {
      Do(QStringLiteral("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values "
                        "(gen_id(ALG_ROWID_DETAIL,1),%1,%2,%3,%4,%5)")
             .arg(id)
             .arg(1600000 + 7 * holding)
             .arg(100 * (holding + 1))
             .arg(1.0 / holdings, 0, 'g', 17)
             .arg(8.01 + holding, 0, 'g', 17));
    }
    Do(QStringLiteral("insert into alg_commain (ID,COMNAME,ZSCLOSEPRICE,MBSYL,FC,BETA,ISFINISHED,EDITDATE,SAVEFLAG) "
                      "values (%1,'%2',3123.45,0,0,0,0,'2026-03-02',%3)")
           .arg(id)
           .arg(QString(name).replace(QLatin1Char('\''), QStringLiteral("''")))
           .arg(id % 2));
    if (!style.isEmpty()) {
      Do(QStringLiteral("update alg_commain set ZHFG='%1',MBSYL=0.12,INDEXISCLOSE=1,KNOWNTO=20260303 where ID=%2")
             .arg(style)
             .arg(id));
    }
    transaction.Commit();
  }
  void AddThree() {
    Add(QStringLiteral("稳健一号"), 3, QStringLiteral("稳健型"));
    Add(QStringLiteral("=进取"), 2);
    Add(QStringLiteral("老张's，\"甲\""), 4, QStringLiteral(" "));
  }
  void Do(const QString& statement) { MustExecute(temp_.Service(), statement); }

  /// What a person has entered, as text, read by statements of the test's own.
  QString Everything() {
    return Dump(
               "select ID,COMNAME,ZHFG,ZSCLOSEPRICE,MBSYL,EDITDATE,SAVEFLAG,INDEXISCLOSE,KNOWNTO from alg_commain "
               "order by ID") +
           QLatin1Char('#') + Dump("select ID,MAINID,SECUCODE,PZSL,PZBL,BUYPRICE from alg_comdetail order by ID");
  }
  QString Dump(const char* sql) {
    return temp_.Lines(QString::fromUtf8(sql), u'|', QStringLiteral("null")).join(u'\n');
  }
  PortfolioSet Now() { return ReadPortfolios(temp_.Service()); }

  test::TempDatabase temp_;
  test::InjectingUserData database_{temp_.Service()};
};

}  // namespace holdwise::backup
