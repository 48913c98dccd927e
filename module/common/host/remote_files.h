// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

/// Remote names of the files that more than one page asks for.
namespace holdwise::remote_files {

inline const QString kFolder = QStringLiteral("QMTL\\TZZH\\");
inline const QString kCapitalTable = kFolder + QStringLiteral("ZNPZ.dat");
inline const QString kStockPool = kFolder + QStringLiteral("StockPool.dat");

}  // namespace holdwise::remote_files
