#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Compares every cell of the stress view's exported grids with figures computed straight from daily bars.

The real programs make a data folder from CSV bars, import ten portfolios that share securities and were bought on different days, and export the view for
three indices and several moves; this script computes what the view must show with numpy from the same CSVs and nothing
else: betas too. Usage:

    check_stress.py --bin DIR --market-data DIR --date YYYY-MM-DD [--date ...]
"""
import concurrent.futures
import csv
import shutil
from decimal import ROUND_HALF_UP, Decimal

import numpy as np

from exported_views import PORTFOLIOS, build_data, check_dates, compare, import_and_export, read_csv, run

DAYS = 250
INDICES = ["1", "399001", "399300"]
MOVES = ["-30", "-10", "0", "5", "20"]
PORTFOLIO_TITLES = ["组合名称", "创建日期", "预期市值(元)", "预期涨跌幅(%)", "预期收益(元)", "预期收益率(%)", "#6"]
HOLDING_TITLES = ["股票代码", "股票名称", "预期价(元)", "预期涨跌幅(%)", "预期损益(元)"]
PORTFOLIOS.update({
    "医药": [("600276", 700, "45.6"), ("300015", 1200, "12.34"), ("000538", 400, "55")],
    "能源": [("600028", 4000, "6.01"), ("601857", 3000, "8.8"), ("601225", 500, "21.1"), ("600900", 900, "27.2")],
    "科技": [("000725", 5000, "4.02"), ("002415", 600, "31.3"), ("600050", 7000, "5.11")],
    "一贵一贱": [("600519", 300, "1701.5"), ("601398", 100, "4.44")],
    "贵州与招商": [("600519", 200, "1555.55"), ("600036", 3000, "41.2")],
})


DAYS_OF_PURCHASE = ["2025-02-05", "2025-03-03", "2025-04-07", "2025-06-30", "2025-09-30"]


def days_of_purchase():
    """{portfolio: day}"""
    return {name: DAYS_OF_PURCHASE[place % len(DAYS_OF_PURCHASE)] for place, name in enumerate(PORTFOLIOS)}


def fixed(value, decimals=2):
    """Half away from zero on the exact value of the double; no minus sign before zeros."""
    text = str(Decimal(float(value)).quantize(Decimal(1).scaleb(-decimals), rounding=ROUND_HALF_UP))
    return text.lstrip("-") if float(text) == 0 else text


def bars_of(path, until):
    """{date: close} up to a day, in order."""
    with open(path, encoding="utf-8") as source:
        return {r["date"]: float(r["close"]) for r in csv.DictReader(source) if r["date"] <= until}


def daily_returns(closes, first):
    """{date: return} of the days from `first` on that have a close before them."""
    dates = sorted(closes)
    return {day: closes[day] / closes[before] - 1 for before, day in zip(dates, dates[1:]) if day >= first}


class Market:
    """Betas and previous closes of the window that ends on a day."""

    def __init__(self, market_data, day):
        last = day.isoformat()
        with open(market_data / "trading_dates.csv", encoding="utf-8") as source:
            first = sorted(r["date"] for r in csv.DictReader(source) if r["date"] <= last)[-DAYS]
        with open(market_data / "securities.csv", encoding="utf-8") as source:
            self.names = {r["code"]: r["name"] for r in csv.DictReader(source)}
        self.closes = {code: bars_of(market_data / "bars" / f"{code}.csv", last)
                       for rows in PORTFOLIOS.values() for code, _, _ in rows}
        self.last = last
        self.betas = {}
        for index in INDICES:
            market = daily_returns(bars_of(market_data / "indices" / f"{index}.csv", last), first)
            self.betas[index] = {code: self.beta(daily_returns(closes, first), market)
                                 for code, closes in self.closes.items()}

    @staticmethod
    def beta(own, market):
        """Of the index's days from the stock's first return on; a day without a bar is one of return 0. Twelve digits, as
        the risk file has it."""
        days = [day for day in sorted(market) if day >= min(own)]
        a = np.array([own.get(day, 0.0) for day in days])
        b = np.array([market[day] for day in days])
        return float(f"{np.cov(a, b)[0, 1] / np.var(b, ddof=1):.12g}")

    def previous_close(self, code):
        """The close before the market's date; the last one of a stock that did not trade on it. As the grids keep it."""
        dates = sorted(self.closes[code])
        close = self.closes[code][dates[-2] if dates[-1] == self.last else dates[-1]]
        return float(fixed(close))


def expected(market, index, percent):
    """(portfolio rows, holdings rows by portfolio)"""
    x = float(percent) / 100
    portfolios, holdings, profits = {}, {}, {}
    for name, rows in PORTFOLIOS.items():
        n = np.array([float(q) for _, q, _ in rows])
        buy = np.array([float(p) for _, _, p in rows])
        p = np.array([market.previous_close(c) for c, _, _ in rows])
        bx = np.array([market.betas[index][c] for c, _, _ in rows]) * x
        w = n * buy / np.sum(n * buy)
        s = (bx + 1) * p
        g = (p - buy) * n + p * bx * n
        cost = float(sum(Decimal(price) * quantity for _, quantity, price in rows))
        gain = float(np.sum(g))
        portfolios[name] = [name, days_of_purchase()[name], fixed(np.sum(n * s)), fixed(np.sum(bx * w) * 100), fixed(gain),
                            fixed(gain / cost * 100, 4) if cost else "0.00"]
        holdings[name] = [[c, market.names[c], fixed(s[i]), fixed(bx[i] * 100)] for i, (c, _, _) in enumerate(rows)]
        # One profit a security: that of the portfolio with the highest number stays.
        profits.update({c: fixed(g[i]) for i, (c, _, _) in enumerate(rows)})
    for rows in holdings.values():
        for row in rows:
            row.append(profits[row[0]])
    return portfolios, holdings


def check_move(binaries, market, index, percent, folder, problems):
    """The number of cells compared of the view's export for one index and one move."""
    work, out = folder / f"work {index} {percent}", folder / f"out {index} {percent}"
    shutil.copytree(folder / "work", work)
    run(binaries / "holdwise-terminal", "--data", folder / "data", "--work", work, "--export", out,
        "--stress-index", index, "--stress", percent)
    portfolios, holdings = expected(market, index, percent)
    where = f"{market.last} {index} {percent}%"
    titles, rows = read_csv(out / "2003-strngrd.csv")
    newest_first = [portfolios[name] for name in reversed(list(PORTFOLIOS))]
    cells = compare(where, titles, rows, PORTFOLIO_TITLES, newest_first, problems)
    for row in rows:
        titles, table = read_csv(out / f"2003-StringGrid1-{row[6]}.csv")
        cells += compare(f"{where} {row[0]}", titles, table, HOLDING_TITLES, holdings[row[0]], problems)
    if not (out / "2003.png").stat().st_size:
        problems.append(f"{where}: the picture of the view is empty")
    return cells


def check(binaries, market_data, day, folder, problems):
    build_data(binaries, market_data, market_data / "bars", day, folder / "data", "--rates",
               market_data / "deposit_rates.csv")
    import_and_export(binaries, folder / "data", folder, PORTFOLIOS, folder / "out", days=days_of_purchase())
    market = Market(market_data, day)
    cells = 0
    # An export waits a second at each view: those of an index go side by side, each on its own copy of the work folder.
    for index in INDICES:
        with concurrent.futures.ThreadPoolExecutor(len(MOVES)) as exports:
            moves = [exports.submit(check_move, binaries, market, index, percent, folder, problems) for percent in MOVES]
        cells += sum(move.result() for move in moves)
    return cells


if __name__ == "__main__":
    check_dates(check)
