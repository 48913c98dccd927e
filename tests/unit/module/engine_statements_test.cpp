// SPDX-License-Identifier: MIT
#include "common_fixture.h"

namespace holdwise {
namespace {

/// The host prepares and recognises statements by their text, blanks included.
TEST(EngineStatements, KeepTheirTexts) {
  const std::vector<std::pair<QString, const char*>> cases = {
      {sql::kDeviations, "select distinct secucode,sylbzc from alg_stockstatistic where Hqtype = 0 order by secucode"},
      {sql::kSavedHoldings,
       "select * from alg_comdetail where MainID in (select ID from alg_commain where SAVEFLAG = 1) order by MainID"},
      {sql::IndexCloses(1),
       "select ClosePrice from ALG_STOCKSTATISTIC  where (SECUCODE=1) and (HqType = 0) order by HQDATE desc"},
      {sql::IndexOldCloses(399300),
       "select OldClosePrice from ALG_STOCKSTATISTIC  where (SECUCODE=399300) and (HqType = 0) order by HQDATE desc"},
      {sql::kCountUnfinished, "select Count(ID) from alg_commain where isFinished = 0"},
      {sql::kCountUnfinishedParts, "select count(ID) from alg_commain where isFinished = 0 "},
      {sql::kUnfinishedPortfolios, "select ID from alg_commain where isFinished = 0"},
      {sql::kUnfinishedCodes,
       "select distinct secucode from alg_comdetail a,alg_commain b where a.Mainid = b.Id and b.isFinished = 0"},
      {sql::kCountUnfinishedCodes,
       "select count(distinct secucode) from alg_comdetail a,alg_commain b where a.Mainid = b.Id and b.isFinished = "
       "0 "},
      {sql::FirstCalculation("2024-05-29"), "execute procedure INITFIRSTCALC('2024-05-29')"},
      {sql::CalculatePortfolio("12"), "execute procedure SP_GETBETA(1,12)"},
      {sql::LatestDayOf("1600000"),
       "select Max(HQDate) from alg_stockstatistic where hqtype = 0 and SecuCode = 1600000"},
      {sql::DeleteStatisticsBetween("1600000", 20240430, 20240527),
       "delete from alg_stockstatistic where secucode = 1600000 and hqdate between 20240430 and 20240527"},
      {sql::DeleteStatisticsBefore("20240529", "1600000"),
       "delete from alg_stockstatistic where hqdate < 20240529 and secucode = 1600000"},
      {sql::ClearLastDay("399001"), "update alg_stockstatistic set islastday = 0 where secucode = 399001"},
      {sql::TextLiteral("a'b''c"), "'a''b''''c'"},
      {sql::TextLiteral({}), "''"},
  };
  for (const auto& [statement, text] : cases) EXPECT_EQ(statement, QString::fromUtf8(text));
}

}  // namespace
}  // namespace holdwise
