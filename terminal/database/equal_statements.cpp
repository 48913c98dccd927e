#include "database/equal_statements.h"

#include <algorithm>
#include <array>

namespace holdwise::firebird {

namespace {

struct Pair {
  std::string_view shape;
  std::string_view equal;
};

/// The outer joins settle which table comes first; the engine would choose the other one.
constexpr std::array<Pair, 3> kPairs = {{
    {"select * from alg_comdetail where MainID in (select ID from alg_commain where SAVEFLAG = ?) order by MainID",
     "select d.* from alg_commain m left join alg_comdetail d on d.MAINID = m.ID where m.SAVEFLAG = ? and d.MAINID is "
     "not null order by m.ID"},
    {"select MainID,SecuCode,PZSL from alg_comdetail where MainID in (select ID from alg_commain where SAVEFLAG = ?) "
     "order by MainID",
     "select d.MAINID, d.SECUCODE, d.PZSL from alg_commain m left join alg_comdetail d on d.MAINID = m.ID where "
     "m.SAVEFLAG = ? and d.MAINID is not null order by m.ID"},
    {"select SECUCODE, CLOSEPRICE from ALG_STOCKSTATISTIC where HqType = ? and  SECUCODE in (select distinct SECUCODE "
     "from alg_comdetail) and HqDate >= ? and HqDate <= ?",
     "select s.SECUCODE, s.CLOSEPRICE from (select distinct SECUCODE from alg_comdetail) h join ALG_STOCKSTATISTIC s "
     "on s.SECUCODE = h.SECUCODE where s.HqType = ? and s.HqDate >= ? and s.HqDate <= ?"},
}};

}  // namespace

std::string_view EqualStatement(std::string_view shape) {
  const auto* found = std::find_if(kPairs.begin(), kPairs.end(), [&](const Pair& pair) { return pair.shape == shape; });
  return found == kPairs.end() ? shape : found->equal;
}

}  // namespace holdwise::firebird
