#pragma once
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

#include "holdwise/sdk/database.h"

namespace holdwise {

struct BaseDataResult {
  QStringList warnings;    ///< one for each file that could not be used, naming it (Chinese)
  bool cancelled = false;  ///< `step` wanted no more
};

/// Replaces the statistics rows of the given stocks (code numbers) and of the three indices by those of the base-data
/// files under `dataFolder`/QMTL/TZZH/Day250, with literal statements on `database`, inside the caller's transaction. A
/// file that is missing, damaged or holds a value that is no number leaves its rows in the table as they are. `step`
/// runs before each file (there is one more than stocks). A failing statement throws what the database throws.
[[nodiscard]] BaseDataResult LoadBaseData(DatabaseStatements& database, const QString& dataFolder,
                                          const std::vector<int>& codeNumbers, const std::function<bool()>& step = {});

}  // namespace holdwise
