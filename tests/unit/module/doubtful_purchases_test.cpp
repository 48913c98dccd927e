// SPDX-License-Identifier: MIT
#include "common/store/doubtful_purchases.h"

#include "engine_fixture.h"

namespace holdwise {
namespace {

class Doubtful : public EngineTest {
 protected:
  void AddPortfolio(int id, const QString& day, const char* level, const char* isClose, int saved = 1,
                    const char* knownTo = "20250102") {
    Run(QStringLiteral("insert into alg_commain (ID,COMNAME,ISFINISHED,SAVEFLAG,EDITDATE,ZSCLOSEPRICE,INDEXISCLOSE,"
                       "KNOWNTO) values (%1,'p%1',1,%2,%3,%4,%5,%6)")
            .arg(id)
            .arg(saved)
            .arg(day, QLatin1String(level), QLatin1String(isClose), QLatin1String(knownTo)));
  }
  void AddClose(int code, int date, const char* close, int type = 0) {
    Run(QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate,closeprice) values (%1,%2,%3,%4)")
            .arg(code)
            .arg(type)
            .arg(date)
            .arg(QLatin1String(close)));
  }
  static QStringList Lines() { return LinesOf(DoubtfulPurchases(Database())); }
};

TEST_F(Doubtful, APurchaseAfterTheMarketsDateIsSaid) {
  AddPortfolio(1, "'2024-05-29'", "3000", "null");  // the market's date
  AddPortfolio(2, "'2024-05-30'", "3000", "null");
  AddPortfolio(3, "'2024-05-30'", "3000", "null", 0);  // in the editor
  AddPortfolio(4, "null", "3000", "null");
  AddPortfolio(5, "'2025-01-02'", "3000", "null");
  AddPortfolio(6, "'2024-06-01'", "3000", "null", 1, "20240529");  // made on a day after the data's last
  AddPortfolio(7, "'2024-05-30'", "3000", "null", 1, "20240530");
  AddPortfolio(8, "'2024-05-30'", "3000", "null", 1, "null");  // not calculated yet
  EXPECT_EQ(Lines(), (QStringList{"p7：买入日期 2024-05-30 晚于行情日期 2024-05-29，请换用较新的数据目录",
                                  "p5：买入日期 2025-01-02 晚于行情日期 2024-05-29，请换用较新的数据目录",
                                  "p2：买入日期 2024-05-30 晚于行情日期 2024-05-29，请换用较新的数据目录"}));
  host_.dataCenter.currentDateText = QStringLiteral("2025-01-02");
  EXPECT_EQ(Lines(), QStringList());
  host_.dataCenter.currentDateText = QString();
  EXPECT_EQ(Lines(), QStringList()) << "what is not known is not compared";
}

TEST_F(Doubtful, ACorrectedCloseOfTheDayOfPurchaseIsSaid) {
  AddClose(1, 20240520, "3010.5");
  AddClose(1, 20240521, "3020.1249");
  AddClose(1, 20240522, "1", 1);     // a week
  AddClose(1000001, 20240523, "1");  // a stock
  AddPortfolio(1, "'2024-05-20'", "3000.25", "1");
  AddPortfolio(2, "'2024-05-20'", "3010.5", "1");      // as it was bought
  AddPortfolio(3, "'2024-05-20'", "3000.25", "null");  // bought in the course of the day
  AddPortfolio(4, "'2024-05-21'", "3020.12", "1");     // to two decimals
  AddPortfolio(5, "'2024-05-22'", "3000", "1");
  AddPortfolio(6, "'2024-05-23'", "3000", "1");
  AddPortfolio(7, "'2024-05-20'", "3000.25", "1", 0);  // in the editor
  AddPortfolio(8, "'soon'", "3000", "null");
  AddPortfolio(9, "null", "null", "null");
  EXPECT_EQ(Lines(), (QStringList{"p1：2024-05-20 的上证指数收盘已更正为 3010.50，组合仍按买入时保存的 3000.25 计算；"
                                  "要采用更正后的收盘，请删除组合后重新导入"}));
}

TEST_F(Doubtful, AFailedReadIsAnError) {
  Plan().FailCall(0);
  EXPECT_THROW((void)DoubtfulPurchases(Database()), Error);
}

}  // namespace
}  // namespace holdwise
