# SPDX-License-Identifier: MIT
"""Compares means, deviations and risk figures of a built data folder with numpy's over the bars it was built from.

Usage: check_figures.py SOURCE DATA_FOLDER DAYS
SOURCE is a market of made_up_market.py. Prints the number of compared values; exit code 1 on a difference.
"""
import os
import sys

from check_statistics import columns_of
from made_up_market import DAY, INDICES, MONTH, WEEK, Market

TOLERANCE = 1e-9
RISK_FILES = dict(zip(INDICES, ("SH.dat", "SZ.dat", "HS.dat")))


def main():
    source, data, days = sys.argv[1:4]
    market = Market(source, int(days))
    values, worst = 0, 0.0

    def compare(label, got, want):
        nonlocal values, worst
        difference = abs(got - want) / abs(want) if want else abs(got)
        if not difference <= TOLERANCE:
            sys.exit(f"{label}: {got!r}, expected {want!r}")
        worst, values = max(worst, difference), values + 1

    for code, bars in market.stocks.items():
        _, rows = columns_of(os.path.join(data, "QMTL/TZZH/Day250/股票", f"{code}.dat"))
        for kind in (DAY, WEEK, MONTH):
            wanted = market.figures(code, kind)
            of_kind = [row for row in rows if row["hqtype"] == kind]
            if len(of_kind) != len(market.series(bars, kind)):
                sys.exit(f"{code} {kind}: {len(of_kind)} rows")
            for row in of_kind:
                compare(f"{code} {kind} pjsyl", row["pjsyl"], wanted["mean"])
                compare(f"{code} {kind} sylbzc", row["sylbzc"], wanted["deviation"])
    for index, name in RISK_FILES.items():
        _, rows = columns_of(os.path.join(data, "QMTL/TZZH/风险计量", name))
        traded = [code for code, bars in market.stocks.items() if market.series(bars)]
        if [row["code"] for row in rows] != traded:
            sys.exit(f"{name}: {len(rows)} stocks, expected {len(traded)}")
        for row in rows:
            wanted = market.figures(row["code"], index=index)
            for figure in ("beta", "alpha", "treynor", "sharpe"):
                compare(f"{name} {row['code']} {figure}", row[figure], wanted[figure])
    print(f"{values} values, worst relative difference {worst:.3g}")


main()
