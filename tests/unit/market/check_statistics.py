# SPDX-License-Identifier: MIT
"""Computes every statistics row of some securities straight from their CSV files and compares the built data files.

Usage: check_statistics.py BARS INDICES DATA_FOLDER LAST_DATE DAYS [BARS_CODE...]
LAST_DATE is YYYY-MM-DD or "-" for the last index date. Prints the number of compared values; exit code 1 on a difference.
"""
import datetime
import os
import sys

import cbor2
import numpy as np
import zstandard

from made_up_market import DAY, MONTH, WEEK, figures, read_bars, series, stock_series

TOLERANCE = 1e-12
REAL_COLUMNS = {"closeprice", "ggqjsyl", "pjsyl", "oldcloseprice", "sylbzc"}
ORDER = ["SecuCode", "closeprice", "hqtype", "rowid", "ggqjsyl", "pjsyl", "hqdate", "oldcloseprice", "sylbzc", "islastday",
         "startdate", "enddate"]


def number(day):
    return day.year * 10000 + day.month * 100 + day.day


def expected_rows(code, bars, market_bars, window, trading_dates=()):
    """`market_bars` are those of the index whose periods count; on `trading_dates` the price stands still."""
    rows = []
    first, last = window
    for kind in (DAY, WEEK, MONTH):
        own = stock_series(bars, kind, first, last, trading_dates)
        wanted = figures(own, series(market_bars, kind, first, last), 0.0)
        for i, (_, day, close, old, change) in enumerate(own):
            rows.append({"SecuCode": code, "closeprice": close, "hqtype": kind, "rowid": i + 1, "ggqjsyl": change,
                         "pjsyl": wanted["mean"], "hqdate": number(day), "oldcloseprice": old,
                         "sylbzc": wanted["deviation"], "islastday": int(i + 1 == len(own)),
                         "startdate": number(first), "enddate": number(last)})
    return rows


TYPED_ARRAYS = {72: "<i1", 77: "<i2", 78: "<i4", 79: "<i8", 86: "<f8"}  # RFC 8746


def plain(value):
    if isinstance(value, cbor2.CBORTag) and value.tag in TYPED_ARRAYS:
        return np.frombuffer(value.value, dtype=TYPED_ARRAYS[value.tag]).tolist()
    return value


def read_packet(path):
    with open(path, "rb") as source:
        content = cbor2.loads(zstandard.ZstdDecompressor().decompress(source.read()))
    return content


def columns_of(path):
    """(names in order, rows as dictionaries) of a data file."""
    content = read_packet(path)
    names, data = [], {}
    for column in content["columns"]:
        names.append(column["name"])
        data[column["name"]] = plain(column["values"])
    count = len(data[names[0]])
    return names, [{name: data[name][i] for name in names} for i in range(count)]


def compare(label, rows, wanted):
    if len(rows) != len(wanted):
        sys.exit(f"{label}: {len(rows)} rows, expected {len(wanted)}")
    worst = 0.0
    for i, (row, want) in enumerate(zip(rows, wanted)):
        for name, value in want.items():
            got = row[name]
            if name in REAL_COLUMNS:
                difference = abs(got - value) / abs(value) if value else abs(got)
                worst = max(worst, difference)
                good = difference <= TOLERANCE
            else:
                good = got == value
            if not good:
                sys.exit(f"{label} row {i} {name}: {got!r}, expected {value!r}")
    return worst, len(wanted) * len(ORDER)


def main():
    bars_folder, indices_folder, data, last_text, days = sys.argv[1:6]
    codes = sys.argv[6:]
    last = datetime.date.max if last_text == "-" else datetime.date.fromisoformat(last_text)
    indices = {code: read_bars(os.path.join(indices_folder, f"{code}.csv"), last) for code in (1, 399001, 399300)}
    dates = sorted({day for bars in indices.values() for day, _ in bars})
    window = (dates[-int(days):][0], dates[-1])
    values, worst = 0, 0.0
    for code in codes:
        names, rows = columns_of(os.path.join(data, "QMTL/TZZH/Day250/股票", f"{code}.dat"))
        if names != ORDER + ["edition"]:
            sys.exit(f"{code}: columns {names}")
        wanted = expected_rows(int("1" + code), read_bars(os.path.join(bars_folder, f"{code}.csv"), last), indices[1],
                               window, dates)
        difference, count = compare(code, rows, wanted)
        worst, values = max(worst, difference), values + count
    names, rows = columns_of(os.path.join(data, "QMTL/TZZH/Day250/指数/allzs.dat"))
    if names != ORDER + ["edition"]:
        sys.exit(f"indices: columns {names}")
    wanted = [row for code, bars in indices.items() for row in expected_rows(code, bars, bars, window)]
    difference, count = compare("indices", rows, wanted)
    print(f"{values + count} values, worst relative difference {max(worst, difference):.3g}")


if __name__ == "__main__":
    main()
