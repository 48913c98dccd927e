#include "common/holding_rows.h"

#include "holdwise/packet/number_text.h"

namespace holdwise {

double NumberAt(const ResultSet& rows, int row, int column) {
  if (rows.IsNull(row, column)) return 0;
  if (rows.TypeOf(column) == ColumnType::Text) return RealOr(rows.TextAt(row, column));
  return rows.RealAt(row, column);
}

void StoreSumsByPortfolio(const ResultSet& holdings, const std::function<double(int row)>& term, TNameValueList& sums) {
  if (holdings.IsEmpty()) return;
  const int idColumn = holdings.Column("MAINID");
  QString id = holdings.TextAt(0, idColumn);
  double sum = 0;
  for (int row = 0; row < holdings.RowCount(); ++row) {
    const QString rowId = holdings.TextAt(row, idColumn);
    if (rowId != id) {
      sums.Set(id, ShortestText(sum));
      id = rowId;
      sum = 0;
    }
    sum += term(row);
  }
  sums.Set(id, ShortestText(sum));
}

}  // namespace holdwise
