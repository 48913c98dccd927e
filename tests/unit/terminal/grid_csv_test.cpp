// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "transfer/view_exporter.h"

namespace holdwise {
namespace {

TEST(GridCsv, HeadsUntitledColumnsWithTheirNumber) {
  const GridText grid{"g", {"名称", "", "a,b"}, {false, true, false}, {{"x\"y", "1", ""}, {"z", "2", "3"}}};
  EXPECT_EQ(GridToCsv(grid), QString("名称,#1,\"a,b\"\n\"x\"\"y\",1,\"\"\nz,2,3\n").toUtf8());
}

TEST(GridToCsvTest, WhatASpreadsheetWouldRunIsText) {
  GridText grid;
  grid.titles = QStringList{"=a"};
  for (const char* cell :
       {"=1+1", "+cmd", "-A1", "@SUM(A1)", "\tx", "-1.50", "+2.5%", "-1,234.5", "--", "-", "a=1", "-1e5"})
    grid.rows.push_back({QString::fromUtf8(cell)});
  EXPECT_EQ(GridToCsv(grid),
            "'=a\n'=1+1\n'+cmd\n'-A1\n'@SUM(A1)\n'\tx\n-1.50\n+2.5%\n\"-1,234.5\"\n--\n-\na=1\n-1e5\n");
}

}  // namespace
}  // namespace holdwise
