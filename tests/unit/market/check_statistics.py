"""Computes every statistics row of some securities straight from their CSV files and compares the built data files.

Usage: check_statistics.py BARS INDICES DATA_FOLDER LAST_DATE DAYS [BARS_CODE...]
LAST_DATE is YYYY-MM-DD or "-" for the last index date. Prints the number of compared values; exit code 1 on a difference.
"""
import csv
import datetime
import math
import os
import sys

import cbor2
import numpy as np
import zstandard

TOLERANCE = 1e-12
REAL_COLUMNS = {"closeprice", "ggqjsyl", "pjsyl", "oldcloseprice", "sylbzc"}
ORDER = ["closeprice", "hqtype", "rowid", "ggqjsyl", "pjsyl", "hqdate", "oldcloseprice", "sylbzc", "islastday",
         "startdate", "enddate"]


def read_bars(path, last):
    with open(path, encoding="utf-8") as source:
        bars = [(datetime.date.fromisoformat(row["date"]), float(row["close"])) for row in csv.DictReader(source)]
    return sorted(bar for bar in bars if bar[0] <= last)


def number(day):
    return day.year * 10000 + day.month * 100 + day.day


def period(day, kind):
    if kind == 0:
        return day
    return day.isocalendar()[:2] if kind == 1 else (day.year, day.month)


def expected_rows(bars, first, last):
    rows = []
    for kind in (0, 1, 2):
        last_of_period = {period(day, kind): (day, close) for day, close in bars}
        points = sorted(last_of_period.values())
        series = []
        for i, (day, close) in enumerate(points):
            old = points[i - 1][1] if i else 0.0
            if first <= day <= last:
                series.append([day, close, old, close / old - 1 if old else 0.0])
        returns = np.array([row[3] for row in series if row[2]], dtype=np.longdouble)
        mean = math.fsum(map(float, returns)) / len(returns) if len(returns) else 0.0
        deviation = float(np.std(returns, ddof=1)) if len(returns) > 1 else 0.0
        for i, (day, close, old, change) in enumerate(series):
            rows.append({"closeprice": close, "hqtype": kind, "rowid": i + 1, "ggqjsyl": change, "pjsyl": mean,
                         "hqdate": number(day), "oldcloseprice": old, "sylbzc": deviation,
                         "islastday": int(i + 1 == len(series)), "startdate": number(first), "enddate": number(last)})
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
    dates = sorted({day for bars in indices.values() for day, _ in bars})[-int(days):]
    values, worst = 0, 0.0
    for code in codes:
        names, rows = columns_of(os.path.join(data, "QMTL/TZZH/Day250/股票", f"{code}.dat"))
        if names != ORDER:
            sys.exit(f"{code}: columns {names}")
        wanted = expected_rows(read_bars(os.path.join(bars_folder, f"{code}.csv"), last), dates[0], dates[-1])
        difference, count = compare(code, rows, wanted)
        worst, values = max(worst, difference), values + count
    names, rows = columns_of(os.path.join(data, "QMTL/TZZH/Day250/指数/allzs.dat"))
    if names != ["SecuCode"] + ORDER:
        sys.exit(f"indices: columns {names}")
    wanted = [dict(row, SecuCode=code) for code, bars in indices.items() for row in expected_rows(bars, dates[0], dates[-1])]
    difference, count = compare("indices", rows, wanted)
    print(f"{values + count} values, worst relative difference {max(worst, difference):.3g}")


main()
