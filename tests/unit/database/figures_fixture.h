// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "database_texts.h"
#include "temp_database.h"

namespace holdwise::test {

inline constexpr const char* kColumns[] = {"FC", "ZHBZC", "BETA", "ALPHA", "SHARP", "TREYNOR"};

class Figures : public testing::Test {
 protected:
  FirebirdUserData& Service() { return database_.Service(); }
  void AddIndexDays(const std::vector<double>& returns) {
    for (std::size_t i = 0; i < returns.size(); ++i) {
      Service().Execute(
          InsertStatistic({.code = 1, .date = 20260101 + static_cast<int>(i), .dailyReturn = returns[i]}));
    }
  }
  void AddDay(int code, int day, double value) {
    Service().Execute(InsertStatistic({.code = code, .date = 20260101 + day, .dailyReturn = value}));
  }
  void AddPortfolio() { Service().Execute(InsertPortfolio(1, QStringLiteral("甲"))); }
  void AddHolding(int code, const QString& weight) {
    Service().Execute(InsertHolding("1", QString::number(code), "100", weight));
  }
  void AddRate(const QString& percent) {
    Service().Execute(QStringLiteral(
        "insert into alg_rmbinterestrate (ID,DEPOSITTYPE,TERM,INTEREST) values (1,'定期存款整存整取','三个月',9)"));
    Service().Execute(
        QStringLiteral(
            "insert into alg_rmbinterestrate (ID,DEPOSITTYPE,TERM,INTEREST) values (2,'定期存款整存整取','一年',%1)")
            .arg(percent));
  }
  std::vector<double> Run() {
    EXPECT_EQ(Service().Execute(QStringLiteral("execute procedure SP_GETBETA(1,1)")), 1);
    const ResultSet row = Service().Query(QStringLiteral("select * from alg_commain where ID = 1"));
    EXPECT_EQ(row.IntegerAt(0, row.Column("ISFINISHED")), 1);
    std::vector<double> figures;
    for (const char* column : kColumns) figures.push_back(row.RealAt(0, row.Column(column)));
    return figures;
  }
  /// "CALCDATE,LACKING" of the portfolio.
  std::string Dates() {
    const ResultSet row = Service().Query(QStringLiteral("select CALCDATE, LACKING from alg_commain where ID = 1"));
    return (row.IsNull(0, 0) ? "none" : row.TextAt(0, 0).toStdString()) + "," + row.TextAt(0, 1).toStdString();
  }
  /// As the file of the index is taken in: its rows are replaced, here by the same ones.
  void ReloadIndex() {
    Service().StartTransaction();
    Service().Execute(QStringLiteral("delete from alg_stockstatistic where secucode = 1"));
    AddIndexDays({0.01, -0.01, 0.03});
    Service().Commit();
  }
  std::int64_t UnfinishedOn(const char* date) {
    Service().Execute(QStringLiteral("execute procedure INITFIRSTCALC('%1')").arg(QLatin1String(date)));
    return Service().Count(QStringLiteral("select Count(ID) from alg_commain where isFinished = 0"));
  }
  static void ExpectFigures(const std::vector<double>& found, const std::vector<double>& expected) {
    for (std::size_t i = 0; i < expected.size(); ++i) {
      EXPECT_NEAR(found[i], expected[i], std::abs(expected[i]) * 1e-9 + 1e-18) << kColumns[i];
    }
  }

 private:
  TempDatabase database_;
};

}  // namespace holdwise::test
