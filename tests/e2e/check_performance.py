#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Compares every cell of the performance view's exported grids with figures computed straight from daily bars.

The real programs make a data folder from the CSV bars, import five portfolios and export the view; this script computes
what the view must show with numpy from the same CSVs and nothing else. Usage:

    check_performance.py --bin DIR --market-data DIR --date YYYY-MM-DD [--date ...]
"""
import csv
import datetime as dt
from decimal import ROUND_HALF_UP, Decimal

import numpy as np

from exported_views import PORTFOLIOS, check_dates, compare, export, read_csv

PORTFOLIO_TITLES = ["组合名称", "创建日期", "最新市值(元)", "日涨跌幅(%)", "周涨跌幅(%)", "月涨跌幅(%)", "期间收益(元)",
                    "期间收益率(%)", "操作", "#9"]
HOLDING_TITLES = ["代码", "名称", "所属行业", "最新价(元)", "涨跌幅(%)", "数量(股)", "比例(%)", "日贡献(元)", "周贡献(元)",
                  "月贡献(元)", "期间收益(元)", "期间收益率(%)", "#12", "#13", "#14"]


def fixed(value):
    """"0.00", half away from zero on the exact value of the double."""
    text = str(Decimal(float(value)).quantize(Decimal("0.01"), rounding=ROUND_HALF_UP))
    return "0.00" if text == "-0.00" else text


def shortest(value):
    text = repr(float(value))
    return text[:-2] if text.endswith(".0") else text


class Bars:
    """Closes of one security up to the market's date, as a numpy array beside its dates."""

    def __init__(self, path, until):
        rows = [r for r in csv.DictReader(open(path, encoding="utf-8")) if r["date"] <= until.isoformat()]
        self.dates = np.array([np.datetime64(r["date"]) for r in rows])
        self.closes = np.array([float(r["close"]) for r in rows])

    def last_between(self, first, last):
        inside = (self.dates >= np.datetime64(first)) & (self.dates <= np.datetime64(last))
        return float(self.closes[inside][-1]) if inside.any() else None


def previous_week(day):
    before = day - dt.timedelta(days=7)
    monday = before - dt.timedelta(days=before.weekday())
    return monday, monday + dt.timedelta(days=6)


def previous_month(day):
    last = day.replace(day=1) - dt.timedelta(days=1)
    return last.replace(day=1), last


def expected(market_data, day):
    securities = {r["code"]: r for r in csv.DictReader(open(market_data / "securities.csv", encoding="utf-8"))}
    bars = {c: Bars(market_data / "bars" / f"{c}.csv", day) for rows in PORTFOLIOS.values() for c, _, _ in rows}
    portfolios, holdings = {}, {}
    for name, rows in PORTFOLIOS.items():
        quantities = np.array([float(q) for _, q, _ in rows])
        prices = np.array([float(p) for _, _, p in rows])
        total = float(np.sum(quantities * prices))
        now = np.array([bars[c].closes[-1] for c, _, _ in rows])
        before = np.array([bars[c].closes[-2] for c, _, _ in rows])
        week = [bars[c].last_between(*previous_week(day)) for c, _, _ in rows]
        month = [bars[c].last_between(*previous_month(day)) for c, _, _ in rows]
        week_sum = sum(Decimal(str(w)) * int(q) for w, q in zip(week, quantities) if w is not None)
        month_sum = sum(Decimal(str(m)) * int(q) for m, q in zip(month, quantities) if m is not None)
        value = float(sum(Decimal(str(p)) * int(q) for p, q in zip(now, quantities)))
        before_sum = float(sum(Decimal(str(p)) * int(q) for p, q in zip(before, quantities)))
        cost = float(sum(Decimal(p) * q for _, q, p in rows))

        def change(base):
            return fixed((value - float(base)) / float(base) * 100) if base else "0"

        portfolios[name] = [name, day.isoformat(), fixed(value), change(before_sum), change(week_sum), change(month_sum),
                            fixed(value - cost), change(cost), ""]
        table = []
        for i, (code, quantity, buy) in enumerate(rows):
            price, old, bought = float(now[i]), float(before[i]), float(buy)
            has_week = week[i] is not None
            week_text = shortest(week[i]) if has_week else "0"
            month_text = ("" if month[i] is None else shortest(month[i])) if has_week else "0"
            month_number = float(month_text or 0)
            table.append([
                code, securities[code]["name"], securities[code]["industry"], fixed(price), fixed((price - old) / old * 100),
                str(quantity), fixed(quantity * bought / total * 100), fixed((price - old) * quantity),
                fixed((price - week[i]) * quantity) if has_week and week[i] else "0",
                fixed((price - month_number) * quantity) if month_number else "0",
                fixed((price - bought) * quantity), fixed((price - bought) / bought * 100), shortest(bought), week_text,
                month_text])
        holdings[name] = table
    return portfolios, holdings


def check(binaries, market_data, day, folder, problems):
    export(binaries, market_data, market_data / "bars", day, folder, "--rates", market_data / "deposit_rates.csv")
    out = folder / "out"
    portfolios, holdings = expected(market_data, day)
    titles, rows = read_csv(out / "2001-strngrd.csv")
    newest_first = list(reversed(list(PORTFOLIOS)))
    if [r[0] for r in rows] != newest_first:
        problems.append(f"{day}: portfolios {[r[0] for r in rows]} instead of {newest_first}")
    cells = compare(f"{day} strngrd", titles, rows, PORTFOLIO_TITLES, [portfolios[n] for n in newest_first], problems)
    for row in rows:
        titles, table = read_csv(out / f"2001-StringGrid1-{row[9]}.csv")
        cells += compare(f"{day} {row[0]}", titles, table, HOLDING_TITLES, holdings[row[0]], problems)
    if not (out / "2001.png").stat().st_size:
        problems.append(f"{day}: the picture of the view is empty")
    return cells


if __name__ == "__main__":
    check_dates(check)
