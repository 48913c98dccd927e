#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Compares what the smart allocation shows with what the data files and the daily bars say, in whole numbers and decimals.

The real programs make a data folder from CSV bars and export the view for several capitals; this script reads the files
with a CBOR and a zstd library and the prices from the CSVs. Usage:

    check_allocation.py --bin DIR --market-data DIR --date YYYY-MM-DD [--date ...]
"""
import csv
import pathlib
import re
import sys
from decimal import ROUND_HALF_UP, Decimal
from fractions import Fraction

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "unit" / "market"))
from check_statistics import columns_of  # noqa: E402
from exported_views import build_data, check_dates, compare, import_and_export, read_csv  # noqa: E402

# Ten thousand yuan buy one stock of many not even once; from ENOUGH on the producer promises a lot of every stock.
CAPITALS, ENOUGH = ["1", "5", "50", "120", "300"], 5
LIST_TITLES = ["序号", "组合风格", "目标收益率(%)", "方差", "Beta系数", "操作", "#6"]
PART_TITLES = ["代码", "名称", "数量(股)", "比例(%)"]
ALL_PART_TITLES = PART_TITLES + ["价格(元)", "比例误差(%)", "剩余资金(元)", "最大比例误差(%)"]
SHORTFALL = re.compile("您的资金量无法配置当前组合:(.*)")


def fixed(value, decimals):
    return str(Decimal(value).quantize(Decimal(1).scaleb(-decimals), rounding=ROUND_HALF_UP))


def sort_descending(rows, key):
    """The grid's own sort, pivot in the middle: it decides how equal weights stand."""
    def sort(left, right):
        low, high, pivot = left, right, key(rows[(left + right) // 2])
        while low <= high:
            while key(rows[low]) > pivot:
                low += 1
            while key(rows[high]) < pivot:
                high -= 1
            if low <= high:
                rows[low], rows[high] = rows[high], rows[low]
                low, high = low + 1, high - 1
        if left < high:
            sort(left, high)
        if low < right:
            sort(low, right)

    sort(0, len(rows) - 1)
    return rows


class Market:
    """Names, and closes as they are written."""

    def __init__(self, market_data, day):
        self.bars, self.day, self.prices = market_data / "bars", day.isoformat(), {}
        with open(market_data / "securities.csv", encoding="utf-8") as source:
            self.names = {r["code"]: r["name"] for r in csv.DictReader(source)}

    def price(self, code):
        if code not in self.prices:
            with open(self.bars / f"{code}.csv", encoding="utf-8") as source:
                self.prices[code] = next(Decimal(r["close"]) for r in csv.DictReader(source) if r["date"] == self.day)
        return self.prices[code]


def stock_count(data, capital):
    """The first limit that covers the capital, else the last one."""
    rows = columns_of(data / "ZNPZ.dat")[1]
    return next((r["StockCount"] for r in rows if Decimal(repr(r["StockMoney"])) >= capital), rows[-1]["StockCount"])


def lots(weight, capital, price):
    """Whole lots that weight x capital ten-thousands of yuan buy."""
    return int(Fraction(weight) * Fraction(capital) * 10000 / Fraction(price)) // 100 * 100


def near(where, text, exact, problems):
    """A share in percent with four decimals, rounded; nothing is said of a tie."""
    if not re.fullmatch(r"-?\d+\.\d{4}", text) or abs(Fraction(text) / 100 - exact) > Fraction(500_001, 10**12):
        problems.append(f"{where}: shown {text!r}, computed {float(exact)!r}")


def check_parts(where, out, number, holdings, capital, market, problems):
    """(cells compared, names of what the capital does not buy)"""
    parts = [(h["SecuCode"], Decimal(repr(h["PZBL"])), market.price(h["SecuCode"])) for h in holdings]
    parts = [(code, weight, price, lots(weight, capital, price))
             for code, weight, price in sort_descending(parts, key=lambda part: part[1])]
    titles, rows = read_csv(out / f"1001-StringGrid1-{number}.csv")
    wanted = [[code, market.names[code], str(quantity), fixed(weight * 100, 2)] for code, weight, _, quantity in parts]
    cells = compare(where, titles, [row[:4] for row in rows], ALL_PART_TITLES, wanted, problems)
    yuan = Fraction(capital) * 10000
    left = capital * 10000 - sum(price * quantity for _, _, price, quantity in parts)
    if left < 0:
        problems.append(f"{where}: more is bought than the capital pays")
    errors = [Fraction(price * quantity) / yuan - Fraction(weight) for _, weight, price, quantity in parts]
    for row, (_, _, price, _), error in zip(rows, parts, errors):
        near(f"{where} {row[0]} error", row[5], error, problems)
        near(f"{where} {row[0]} largest error", row[7], max(abs(e) for e in errors), problems)
        cells += 2 + compare(where, ["价格(元)", "剩余资金(元)"], [[row[4], row[6]]], ["价格(元)", "剩余资金(元)"],
                             [[fixed(price, 2), fixed(left, 2)]], problems)
    return cells, [market.names[code] for code, _, _, quantity in parts if quantity == 0]


def check_capital(binaries, folder, market, text, where, problems):
    data, capital, out = folder / "data" / "QMTL" / "TZZH", Decimal(text), folder / f"out-{text}"
    said = import_and_export(binaries, folder / "data", folder, {}, out, "--capital", text)
    count = stock_count(data, capital)
    candidates = columns_of(data / f"zh_{count}.dat")[1]
    titles, rows = read_csv(out / "1001-strngrd.csv")
    wanted = [[str(i), c["ZHFG"], fixed(c["MBSYL"] * 100, 2), fixed(c["FC"], 6), fixed(c["BETA"], 6), "", c["FILENAME"]]
              for i, c in enumerate(candidates, 1)]
    cells = compare(where, titles, rows, LIST_TITLES, wanted, problems)
    shortfalls = []
    for number, candidate in enumerate(candidates, 1):
        holdings = columns_of(data / candidate["FILENAME"])[1]
        if len(holdings) != count:
            problems.append(f"{where}: {len(holdings)} stocks in {candidate['FILENAME']}")
        compared, lacking = check_parts(f"{where} {number}", out, number, holdings, capital, market, problems)
        cells += compared
        if lacking and number > 1:  # the first one has come by itself, and nothing is said of it
            shortfalls.append(",".join(f'"{name}"' for name in lacking))
        if lacking and capital >= ENOUGH:
            problems.append(f"{where} {number}: the capital buys no {lacking}")
    if sorted(SHORTFALL.findall(said)) != sorted(shortfalls):
        problems.append(f"{where}: said {SHORTFALL.findall(said)} instead of {shortfalls}")
    if (out / f"1001-StringGrid1-{len(candidates) + 1}.csv").exists() or not (out / "1001.png").stat().st_size:
        problems.append(f"{where}: a candidate too many, or an empty picture")
    return cells + check_pool(data, out, market, where, problems)


def check_pool(data, out, market, where, problems):
    _, rows = read_csv(out / "StockPool-strngrd.csv")
    wanted = [[r["SecuCode"], market.names[r["SecuCode"]], market.day, ""]
              for r in columns_of(data / "StockPool.dat")[1]]
    titles = ["代码", "名称", "日期", "估值"]
    return compare(f"{where} pool", titles, [row[:4] for row in rows], titles, wanted, problems)


def check(binaries, market_data, day, folder, problems):
    build_data(binaries, market_data, market_data / "bars", day, folder / "data")
    market = Market(market_data, day)
    return sum(check_capital(binaries, folder, market, text, f"{day} {text}", problems) for text in CAPITALS)


if __name__ == "__main__":
    check_dates(check)
