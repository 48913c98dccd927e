# SPDX-License-Identifier: MIT
"""Compares the proposals of a data folder with numpy over the bars that it was built from.

Usage: check_proposals.py SOURCE DATA_FOLDER LAST_DATE DAYS LEAST_RETURNS POOL_SIZE YEAR_RATE
SOURCE has bars/, indices/ and securities.csv; LAST_DATE is YYYY-MM-DD or "-". Built with the usual bounds and premium.
Stock pool, capital limits, figures (to 1e-9), weights, bounds, and what people with such a capital can buy. The weights are
compared with those of another solver over another shrinkage. Prints what was compared; exit code 1 on a difference.
"""
import csv
import datetime
import decimal
import math
import os
import re
import sys

import numpy as np

from check_statistics import columns_of
from made_up_market import DAY, figures, read_bars, series
from quadratic_problems import NONE, solve

FIGURE, PREMIUM, UNIT = 1e-9, 0.05, 10000
FLOORS = {"稳进型": 0.75, "平衡型": 1.0, "进取型": 1.3}
STYLES = ["稳健型", "稳进型", "平衡型", "进取型", "等权型"]
USUAL = [5, 10, 20, 30, 50, 60, 80, 90, 100, 200]


def must(condition, *what):
    if not condition:
        sys.exit(" ".join(str(part) for part in what))


def limit(code, price, sign):
    """The day's limit around a previous close, as the exchanges round it: half up to the cent."""
    percent = 20 if code[:3] in ("300", "301", "688") else 10
    exact = decimal.Decimal(str(price)) * (100 + sign * percent) / 100
    return float(exact.quantize(decimal.Decimal("0.01"), decimal.ROUND_HALF_UP))


class Source:
    def __init__(self, folder, last, days):
        self.index = read_bars(os.path.join(folder, "indices", "1.csv"), last)
        self.dates = sorted({day for index in (1, 399001, 399300)
                             for day, _ in read_bars(os.path.join(folder, "indices", f"{index}.csv"), last)})
        self.first, self.last = self.dates[-days:][0], self.dates[-1]
        self.market = series(self.index, DAY, self.first, self.last)
        self.stocks = {}
        with open(os.path.join(folder, "securities.csv"), encoding="utf-8") as lines:
            securities = {row["code"]: row for row in csv.DictReader(lines)}
        for name in sorted(os.listdir(os.path.join(folder, "bars"))):
            code = name[:6]
            path = os.path.join(folder, "bars", name)
            bars = read_bars(path, last)
            if code not in securities or not bars:
                continue
            traded = bars[-1][0] == self.last
            previous = (bars[-2][1] if len(bars) > 1 else 0.0) if traded else bars[-1][1]
            own = {row[0]: row[4] for row in series(bars, DAY, self.first, self.last) if row[3]}
            counting = [row[0] for row in self.market if row[3] and own and row[0] >= min(own)]
            self.stocks[code] = {"name": securities[code]["name"], "industry": securities[code].get("industry") or None,
                                 "price": bars[-1][1], "previous": previous, "traded": traded,
                                 "returns": {day: own.get(day, 0.0) for day in counting},
                                 "bars": sum(day in own for day in counting), "turnover": self.turnover(path, last)}

    def turnover(self, path, last):
        with open(path, encoding="utf-8") as lines:
            rows = [row for row in csv.DictReader(lines) if datetime.date.fromisoformat(row["date"]) <= last]
        recent = {day.isoformat() for day in self.dates[-60:]}
        values = [float(row["close"]) * float(row.get("volume") or 0) for row in rows if row["date"] in recent]
        return math.fsum(values) / min(60, len(self.dates))

    def pool(self, least_returns, size):
        def is_taken(code, stock):
            locked = stock["previous"] > 0 and (stock["price"] >= limit(code, stock["previous"], 1)
                                                or stock["price"] <= limit(code, stock["previous"], -1))
            moved = len(set(list(stock["returns"].values())[-least_returns:])) > 1
            return (code[:2] in ("60", "00", "30") and "ST" not in stock["name"] and "退" not in stock["name"]
                    and stock["traded"] and not locked and stock["bars"] >= least_returns and moved)

        taken = [code for code, stock in self.stocks.items() if is_taken(code, stock)]
        return sorted(sorted(taken, key=lambda code: (-self.stocks[code]["turnover"], code))[:size])


def shrunk(returns):
    """Constant correlation, Ledoit and Wolf 2004: sums over pairs, as the paper writes them, not by matrices."""
    days, count = returns.shape
    y = returns - returns.mean(0)
    free = days - 1
    sample = y.T @ y / free
    deviation = np.sqrt(np.diag(sample))
    correlation = sample / np.outer(deviation, deviation)
    mean = (correlation.sum() - count) / (count * (count - 1))
    target = mean * np.outer(deviation, deviation)
    target[np.diag_indices(count)] = np.diag(sample)
    pi = sum(float((((y[:, i, None] * y) ** 2).sum(0) / free - sample[i] ** 2).sum()) for i in range(count))
    rho = 0.0
    for i in range(count):
        theta = ((y[:, i] ** 3)[:, None] * y).sum(0) / free - sample[i, i] * sample[i]
        rho += theta[i] + mean * float(sum(theta[j] * deviation[j] / deviation[i] for j in range(count) if j != i))
    intensity = min(1.0, max(0.0, (pi - rho) / ((sample - target) ** 2).sum() / free))
    return intensity * target + (1 - intensity) * sample


class Check:
    def __init__(self, source, data, pool, year_rate):
        self.source, self.data, self.pool, self.year_rate = source, data, pool, year_rate
        self.values, self.worst, self.compositions, self.excess = 0, 0.0, 0, 0.0
        first = max(min(source.stocks[code]["returns"]) for code in pool)
        days = [row[0] for row in source.market if row[3] and row[0] >= first]
        returns = np.array([[source.stocks[code]["returns"][day] for code in pool] for day in days])
        self.covariance = shrunk(returns)
        self.betas = np.array([self.portfolio({code: 1.0})["beta"] for code in pool])
        orders = sorted(100 * self.highest(code) for code in pool)
        self.capitals = []
        for place, usual in enumerate(USUAL):
            needed = math.ceil((2 + place) * orders[(len(orders) - 1) // 2] / 1e4)
            self.capitals.append(max(usual, needed, self.capitals[-1] + 1 if self.capitals else 0))

    def highest(self, code):
        stock = self.source.stocks[code]
        return limit(code, max(stock["price"], stock["previous"]), 1)

    def rows(self, name):
        return columns_of(os.path.join(self.data, "QMTL/TZZH", name))[1]

    def figure(self, label, got, want):
        difference = abs(got - want) / abs(want) if want else abs(got)
        must(difference <= FIGURE, f"{label}: {got!r}, expected {want!r}")
        self.worst, self.values = max(self.worst, difference), self.values + 1

    def portfolio(self, weights):
        """Its series: the weights of the stocks that count on a day, scaled to 1."""
        rows = []
        for row in self.source.market:
            counting = [(w, self.source.stocks[c]["returns"][row[0]]) for c, w in weights.items()
                        if row[0] in self.source.stocks[c]["returns"]]
            if row[3] and counting:
                change = sum(w * r for w, r in counting) / sum(w for w, _ in counting)
                rows.append((row[0], row[1], 1 + change, 1.0, change))
        return figures(rows, self.source.market, 0.0)

    def bounds(self, count, style, code):
        if style == "等权型":
            return 1 / count, 1 / count
        affordable = 100 * self.highest(code) * (1 + 1e-6) / (self.capitals[count - 2] * 1e4)
        up = math.ceil(max(affordable, 0.5 / count) * UNIT - 1e-9) / UNIT
        return up, math.floor(min(1.0, 2 / count) * UNIT + 1e-9) / UNIT

    def cap(self, count):
        return math.floor(min(1.0, max(0.4, 1.5 / count)) * UNIT + 1e-9) / UNIT

    def weights(self, count, style, weights):
        industries = {}
        for code, weight in weights.items():
            lower, upper = self.bounds(count, style, code)
            margin = 1 / UNIT if style == "等权型" else 1e-12
            must(lower - margin < weight < upper + margin, count, style, code, weight, lower, upper)
            industry = self.source.stocks[code]["industry"] or code
            industries[industry] = industries.get(industry, 0.0) + weight
        must(max(industries.values()) <= self.cap(count) + 1e-12, count, style, industries)
        if style == "等权型":
            return
        # Against the exact weights of the same stocks; whole units cost a little.
        places = [self.pool.index(code) for code in weights]
        rows, least, most = [np.ones(count)], [1.0], [1.0]
        for industry in industries:
            rows.append(np.array([float((self.source.stocks[c]["industry"] or c) == industry) for c in weights]))
            least, most = least + [-NONE], most + [self.cap(count)]
        if style in FLOORS:
            rows, least, most = rows + [self.betas[places]], least + [FLOORS[style]], most + [NONE]
        lower, upper = np.array([self.bounds(count, style, code) for code in weights]).T
        matrix = self.covariance[np.ix_(places, places)]
        exact = solve(matrix, lower, upper, np.array(rows), np.array(least), np.array(most))
        w = np.array(list(weights.values()))
        self.excess = max(self.excess, abs(w @ matrix @ w / 2 / exact - 1))
        must(abs(w @ matrix @ w / 2 / exact - 1) < 2e-3, count, style, "variance", w @ matrix @ w / 2, exact)

    def buyable(self, count, weights, capitals):
        for capital in capitals:
            for code, weight in weights.items():
                raw = math.trunc(weight * capital * 10000 / self.source.stocks[code]["price"])
                must(raw - raw % 100 >= 100, count, code, "cannot be bought with", capital)

    def list_of(self, count, above, limit_):
        rows = self.rows(f"zh_{count}.dat")
        styles = [row["ZHFG"] for row in rows]
        must(styles == sorted(styles, key=STYLES.index) and len(set(styles)) == len(styles), styles)
        seen = set()
        for number, row in enumerate(rows, 1):
            must(row["FILENAME"] == f"zh_{count}_{number}.dat", row["FILENAME"])
            holdings = self.rows(row["FILENAME"])
            weights = {holding["SecuCode"]: holding["PZBL"] for holding in holdings}
            must(len(weights) == count == len(holdings) and list(weights) == sorted(weights), count, weights)
            must(set(weights) <= set(self.pool), weights, "not in the pool")
            must(sum(decimal.Decimal(repr(weight)) for weight in weights.values()) == 1, weights, "do not add up to 1")
            must(tuple(weights.items()) not in seen, weights, "twice")
            seen.add(tuple(weights.items()))
            wanted, label = self.portfolio(weights), row["FILENAME"]
            self.figure(label + " FC", row["FC"], wanted["variance"])
            self.figure(label + " BETA", row["BETA"], wanted["beta"])
            self.figure(label + " MBSYL", row["MBSYL"], self.year_rate / 100 + PREMIUM * wanted["beta"])
            self.weights(count, row["ZHFG"], weights)
            self.buyable(count, weights, (above, above + 0.01, limit_ - 0.01, limit_))
            self.compositions += 1

    def run(self):
        rows = self.rows("ZNPZ.dat")
        counts = [row["StockCount"] for row in rows]
        must(counts == sorted(set(counts)) and set(counts) <= set(range(2, 11)), counts)
        above = self.capitals[counts[0] - 2]
        for row, following in zip(rows, counts[1:] + [11]):
            must(row["StockMoney"] == self.capitals[following - 2], row, self.capitals)
            self.list_of(row["StockCount"], above, row["StockMoney"])
            above = row["StockMoney"]
        names = {name for name in os.listdir(os.path.join(self.data, "QMTL/TZZH")) if name.startswith("zh_")}
        lists = {name for name in names if re.fullmatch(r"zh_\d+\.dat", name)}
        must(lists == {f"zh_{count}.dat" for count in counts}, lists)
        must(len(names) == len(lists) + self.compositions, sorted(names))


def main():
    folder, data, last_text, days, least_returns, size, year_rate = sys.argv[1:8]
    last = datetime.date.max if last_text == "-" else datetime.date.fromisoformat(last_text)
    source = Source(folder, last, int(days))
    pool = source.pool(int(least_returns), int(size))
    rows = columns_of(os.path.join(data, "QMTL/TZZH/StockPool.dat"))[1]
    must([row["SecuCode"] for row in rows] == pool, "pool", sorted({row["SecuCode"] for row in rows} ^ set(pool)))
    must({row["CTIme"] for row in rows} == {source.last.isoformat()}, "dates")
    check = Check(source, data, pool, float(year_rate))
    check.run()
    print(f"{len(pool)} stocks, {check.compositions} candidates, {check.values} values, worst relative difference "
          f"{check.worst:.3g}, variance above the exact weights' at most {check.excess:.3g}")


if __name__ == "__main__":
    main()
