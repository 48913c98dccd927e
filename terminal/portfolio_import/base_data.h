#pragma once
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

#include "holdwise/sdk/database.h"

namespace holdwise {

/// Replaces the statistics rows of the given stocks (code numbers) and of the three indices by those of the base-data
/// files under `dataFolder`/QMTL/TZZH/Day250, with literal statements on `database`, inside the caller's transaction. A
/// file that is missing, damaged or holds a value that is no number leaves its security's rows as they are and is named
/// in the returned warnings (Chinese). `step` runs before each file; false ends the loading with Error(Refused). A
/// failing statement throws what the database throws.
[[nodiscard]] QStringList LoadBaseData(DatabaseStatements& database, const QString& dataFolder,
                                       const std::vector<int>& codeNumbers, const std::function<bool()>& step = {});

}  // namespace holdwise
