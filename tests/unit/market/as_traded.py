# SPDX-License-Identifier: MIT
"""Bars as traded: writes them with the exchange's previous closes, and checks what the build made of them.

Usage: as_traded.py write MARKET OUT       the closes of MARKET/bars_unadjusted; on a day of MARKET/ex_rights.csv the
                                           previous close is lower by its factor, rounded to cents as the exchange does
       as_traded.py check MARKET OUT DATA  every return against close / previous close - 1, every close against
                                           MARKET/bars, brought to the same last day
Prints the worst differences; exit code 1 when a return differs by more than 1e-9, or a close by more than rounding.
"""
import csv
import pathlib
import sys

from check_statistics import columns_of


def read(path):
    with open(path, encoding="utf-8") as source:
        return list(csv.DictReader(source))


def ex_rights(market):
    return {(row["code"], row["ex_date"]): float(row["factor"]) for row in read(market / "ex_rights.csv")}


def write(market, out):
    factors = ex_rights(market)
    (out / "bars").mkdir(parents=True)
    for path in sorted((market / "bars_unadjusted").glob("*.csv")):
        lines, before = ["date,close,pre_close"], None
        for bar in read(path):
            factor = factors.get((path.stem, bar["date"]))
            reference = before if factor is None or before is None else f"{float(before) * factor:.2f}"
            lines.append(f"{bar['date']},{bar['close']},{reference or ''}")
            before = bar["close"]
        (out / "bars" / path.name).write_text("\n".join(lines) + "\n", encoding="utf-8")


def check(market, out, data):
    worst_return, worst_close, of_close, values = 0.0, 0.0, "", 0
    with_events = {code for code, _ in ex_rights(market)}
    for path in sorted((out / "bars").glob("*.csv")):
        bars = {row["date"]: row for row in read(path)}
        adjusted = {row["date"]: float(row["close"]) for row in read(market / "bars" / path.name)}
        _, rows = columns_of(data / "QMTL/TZZH/Day250/股票" / f"{path.stem}.dat")
        days = [row for row in rows if row["hqtype"] == 0]
        last = f"{days[-1]['hqdate']:08d}"
        last = f"{last[:4]}-{last[4:6]}-{last[6:]}"
        base = float(bars[last]["close"]) / adjusted[last]
        for row in days:
            date = f"{row['hqdate']:08d}"
            date = f"{date[:4]}-{date[4:6]}-{date[6:]}"
            bar = bars[date]
            if bar["pre_close"] != "":
                wanted = float(bar["close"]) / float(bar["pre_close"]) - 1
                worst_return = max(worst_return, abs(row["ggqjsyl"] - wanted))
                values += 1
            difference = abs(row["closeprice"] / (adjusted[date] * base) - 1)
            # Both closes of MARKET/bars are rounded to cents, and its list lacks dividends below 0.3 percent.
            if difference > 0.0051 / adjusted[date] + 0.0051 / adjusted[last] + 0.003:
                sys.exit(f"{path.stem} {date}: {row['closeprice']}, expected {adjusted[date] * base}")
            if difference > worst_close:
                worst_close, of_close = difference, f"{path.stem} {date} {row['closeprice']:.4f}"
    print(f"{values} returns, worst difference {worst_return:.3g}; "
          f"worst close {worst_close:.3%} ({of_close}), {len(with_events)} stocks with events")
    return 0 if values > 0 and worst_return <= 1e-9 else 1


def main():
    market, out = pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3])
    if sys.argv[1] == "write":
        write(market, out)
        return 0
    return check(market, out, pathlib.Path(sys.argv[4]))


if __name__ == "__main__":
    sys.exit(main())
