# SPDX-License-Identifier: MIT
"""Made-up stocks with holes and late listings, and their figures by numpy: the independent calculation.

A portfolio of one stock must have that stock's figures, so tests of the database's procedure use the same market:
    write(folder, seed, count)   bars/<code>.csv, indices/*.csv, securities.csv, rates.csv
    Market(folder, days)         reads them again; Market.figures(code, kind, index) computes one security's figures
Usage: made_up_market.py write FOLDER SEED COUNT
       made_up_market.py figures FOLDER DAYS     prints code,index,count,mean,variance,deviation,beta,alpha,treynor,sharpe
"""
import csv
import datetime
import os
import sys

import numpy as np

INDICES = (1, 399001, 399300)
DAY, WEEK, MONTH = 0, 1, 2
YEAR_RATE = 1.75


def trading_days(first, count):
    days, day = [], first
    while len(days) < count:
        if day.weekday() < 5:
            days.append(day)
        day += datetime.timedelta(days=1)
    return days


def walk(random, start, days, step):
    closes, close = [], start
    for _ in range(days):
        closes.append(round(close, 2))
        close = max(0.5, close * (1 + step * random.standard_normal()))
    return closes


def hole_of(random, days):
    """One stretch of days without bars: anywhere, at the beginning, at the end, or longer than a month."""
    length = int(random.choice([1, 2, 5, 7, 30, 80]))
    begin = int(random.choice([0, max(0, days - length), random.integers(0, days)]))
    return range(begin, min(days, begin + length))


def write_bars(path, rows):
    with open(path, "w", encoding="utf-8") as out:
        out.write("date,close\n")
        out.writelines(f"{day.isoformat()},{close:.2f}\n" for day, close in rows)


def write(folder, seed, count, days=330):
    random = np.random.default_rng(seed)
    calendar = trading_days(datetime.date(2023, 1, 2), days)
    for name in ("bars", "indices"):
        os.makedirs(os.path.join(folder, name), exist_ok=True)
    for index in INDICES:
        closes = walk(random, 3000.0, days, 0.01)
        rows = list(zip(calendar, closes))
        if index == 399300:  # the days of one index are not those of another
            del rows[days - 40:days - 37]
        write_bars(os.path.join(folder, "indices", f"{index}.csv"), rows)
    codes = [f"{600000 + i}" for i in range(count)]
    for i, code in enumerate(codes):
        listed = 0
        if i % 3 == 1:  # late: before the window, inside it, on its last days
            listed = int(random.choice([random.integers(1, days), days - 1, days - 2, days - 3]))
        missing = {at for _ in range(int(random.integers(0, 5))) for at in hole_of(random, days)}
        if i % 17 == 0:
            missing |= {at for at in range(days) if random.random() < 0.5}
        step = 0.0 if i % 29 == 5 else 0.025
        closes = walk(random, float(random.uniform(2, 80)), days, step)
        rows = [(calendar[at], closes[at]) for at in range(listed, days) if at not in missing]
        write_bars(os.path.join(folder, "bars", f"{code}.csv"), rows or [(calendar[-1], closes[-1])])
    with open(os.path.join(folder, "securities.csv"), "w", encoding="utf-8") as out:
        out.write("code,name\n" + "".join(f"{code},made up {code}\n" for code in codes))
    with open(os.path.join(folder, "rates.csv"), "w", encoding="utf-8") as out:
        out.write(f"date,one_year\n2015-10-24,{YEAR_RATE}\n")
    return codes


def read_bars(path, last=datetime.date.max):
    with open(path, encoding="utf-8") as source:
        bars = [(datetime.date.fromisoformat(row["date"]), float(row["close"])) for row in csv.DictReader(source)]
    return sorted(bar for bar in bars if bar[0] <= last)


def period(day, kind):
    if kind == DAY:
        return day
    return day.isocalendar()[:2] if kind == WEEK else (day.year, day.month)


def series(bars, kind, first, last):
    """[(period, day, close, previous close or 0, return)] of the periods whose last bar lies from first to last."""
    points = sorted({period(day, kind): (day, close) for day, close in bars}.values())
    rows = []
    for i, (day, close) in enumerate(points):
        old = points[i - 1][1] if i else 0.0
        if first <= day <= last:
            rows.append((period(day, kind), day, close, old, close / old - 1 if old else 0.0))
    return rows


def with_standing_price(bars, trading_dates):
    """`bars` and, on each trading date after the first of them that has none, the last close before it again."""
    own, rows, close = dict(bars), [], None
    for day in sorted(set(own) | set(trading_dates)):
        close = own.get(day, close)
        if close is not None:
            rows.append((day, close))
    return rows


def stock_series(bars, kind, first, last, trading_dates):
    """A stock's series: days as its bars are, weeks and months of a price that stands still without bars."""
    return series(bars if kind == DAY else with_standing_price(bars, trading_dates), kind, first, last)


def figures(own, market, risk_free):
    """The figures of a series against an index's, by numpy in extended precision.

    The index's periods with a return count from the own series' first one with a return on; one without a row is 0."""
    own_returns = {row[0]: row[4] for row in own if row[3]}
    counting = [(row[0], row[4]) for row in market if row[3] and own_returns and row[0] >= min(own_returns)]
    names = ("mean", "variance", "deviation", "beta", "alpha", "treynor", "sharpe")
    zero = dict.fromkeys(names, 0.0) | {"count": len(counting)}
    if not counting:
        return zero
    r = np.array([own_returns.get(key, 0.0) for key, _ in counting], dtype=np.longdouble)
    m = np.array([value for _, value in counting], dtype=np.longdouble)
    rf = np.longdouble(risk_free)
    mean, variance, beta = np.mean(r), np.longdouble(0), np.longdouble(0)
    if len(r) > 1:
        variance = np.var(r, ddof=1)
        if np.var(m, ddof=1) > 0:
            beta = np.sum((r - mean) * (m - np.mean(m))) / (len(r) - 1) / np.var(m, ddof=1)
    deviation = np.sqrt(variance)
    return {"count": len(counting), "mean": float(mean), "variance": float(variance), "deviation": float(deviation),
            "beta": float(beta), "alpha": float(mean - (rf + beta * (np.mean(m) - rf))),
            "treynor": float((mean - rf) / beta) if beta else 0.0,
            "sharpe": float((mean - rf) / deviation) if deviation else 0.0}


class Market:
    def __init__(self, folder, days):
        self.indices = {number: read_bars(os.path.join(folder, "indices", f"{number}.csv")) for number in INDICES}
        self.dates = sorted({day for bars in self.indices.values() for day, _ in bars})
        self.first, self.last = self.dates[-days:][0], self.dates[-1]
        self.stocks = {name[:6]: read_bars(os.path.join(folder, "bars", name))
                       for name in sorted(os.listdir(os.path.join(folder, "bars")))}
        self.risk_free = YEAR_RATE / 100 / 250

    def series(self, bars, kind=DAY):
        """Of a stock."""
        return stock_series(bars, kind, self.first, self.last, self.dates)

    def figures(self, code, kind=DAY, index=1, risk_free=None):
        rate = self.risk_free if risk_free is None else risk_free
        market = series(self.indices[index], kind, self.first, self.last)
        return figures(self.series(self.stocks[code], kind), market, rate)


def main():
    if sys.argv[1] == "write":
        write(sys.argv[2], int(sys.argv[3]), int(sys.argv[4]))
        return
    market = Market(sys.argv[2], int(sys.argv[3]))
    names = ("count", "mean", "variance", "deviation", "beta", "alpha", "treynor", "sharpe")
    print("code,index," + ",".join(names))
    for code in market.stocks:
        for index in INDICES:
            found = market.figures(code, index=index)
            print(f"{code},{index}," + ",".join(repr(found[name]) for name in names))


if __name__ == "__main__":
    main()
