#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Compares the risk view, the stored figures and the risk files with figures computed straight from daily bars.

The real programs make a data folder from CSV bars, import five portfolios, calculate them and export the view; this script
computes every figure in exact fractions from the same CSVs. Some bars are taken out of a copy first: a stock with suspended
days, one listed late, one without any bar inside the window. Usage:

    check_risk.py --bin DIR --market-data DIR --date YYYY-MM-DD [--date ...]
"""
import csv
import datetime as dt
import io
import math
import pathlib
import subprocess
import sys
import tempfile
from decimal import ROUND_HALF_UP, Decimal
from fractions import Fraction

from exported_views import PORTFOLIOS, arguments, compare, export, read_csv

TOLERANCE = 1e-9
DAYS = 250
INDICES = {"SH": "1", "SZ": "399001", "HS": "399300"}
PORTFOLIO_TITLES = ["组合名称", "方差", "标准差", "Alpha系数", "BETA系数", "#5"]
SECURITY_TITLES = ["股票代码", "股票名称", "方差", "标准差", "Alpha系数", "BETA系数"]
ESTIMATES = [("600519", "1850.5"), ("000001", "12.345")]


def six(value):
    """"0.000000", half away from zero."""
    text = str(Decimal(value).quantize(Decimal("0.000001"), rounding=ROUND_HALF_UP))
    return text.replace("-", "") if float(text) == 0 else text


def root(value):
    """Square root of a fraction to double precision."""
    scale = 1 << 400
    return Fraction(math.isqrt(value.numerator * scale // value.denominator), 1 << 200)


# ---- the bars

def take_out(rows, code, day):
    """Bars of a copy that is less perfect than the original."""
    if code == "600028":
        return [r for i, r in enumerate(rows) if i % 7 != 3]  # suspended now and then
    if code == "000725":
        return [r for r in rows if r["date"] <= day.isoformat()][-20:]  # listed twenty days ago
    if code == "300015":
        return [r for r in rows if r["date"] < "2024-06-01"]
    return rows


def write_bars(market_data, day, folder):
    folder.mkdir()
    for path in sorted((market_data / "bars").glob("*.csv")):
        with open(path, encoding="utf-8") as source:
            reader = csv.DictReader(source)
            rows = take_out(list(reader), path.stem, day)
        with open(folder / path.name, "w", encoding="utf-8", newline="") as target:
            writer = csv.DictWriter(target, reader.fieldnames)
            writer.writeheader()
            writer.writerows(rows)


def daily_rows(path, first, last):
    """[(date, close, previous close or None, return)] of the bars from first to last, ISO dates; the producer's file
    holds the return as the double nearest to what double arithmetic gives, so it is computed that way."""
    with open(path, encoding="utf-8") as source:
        bars = [(r["date"], float(r["close"])) for r in csv.DictReader(source) if r["date"] <= last]
    bars.sort()
    rows, previous = [], None
    for date, close in bars:
        if date >= first:
            rows.append((date, close, previous, close / previous - 1 if previous else 0.0))
        previous = close
    return rows


# ---- the figures

def mean(values):
    return sum(values, Fraction(0)) / len(values)


def covariance(a, b):
    mean_a, mean_b = mean(a), mean(b)
    return sum(((x - mean_a) * (y - mean_b) for x, y in zip(a, b)), Fraction(0)) / (len(a) - 1)


def figures(returns, market, risk_free):
    """Variance, deviation, beta, alpha, Sharpe and Treynor of daily returns against those of the index."""
    variance = covariance(returns, returns)
    deviation = root(variance)
    market_variance = covariance(market, market)
    beta = covariance(returns, market) / market_variance if market_variance else Fraction(0)
    excess = mean(returns) - risk_free
    return {"FC": variance, "ZHBZC": deviation, "BETA": beta, "ALPHA": excess - beta * (mean(market) - risk_free),
            "SHARP": excess / deviation if deviation else Fraction(0), "TREYNOR": excess / beta if beta else Fraction(0)}


class Market:
    """What the CSV files say about the window that ends on a day."""

    def __init__(self, market_data, bars, day):
        last = day.isoformat()
        with open(market_data / "trading_dates.csv", encoding="utf-8") as source:
            dates = sorted(r["date"] for r in csv.DictReader(source) if r["date"] <= last)
        self.first, self.last = dates[-DAYS], dates[-1]
        with open(market_data / "deposit_rates.csv", encoding="utf-8") as source:
            rates = sorted((r["date"], r["one_year"]) for r in csv.DictReader(source) if r["date"] <= last)
        self.one_year = rates[-1][1]
        self.risk_free = Fraction(self.one_year) / 100 / 250
        with open(market_data / "securities.csv", encoding="utf-8") as source:
            self.names = {r["code"]: r["name"] for r in csv.DictReader(source)}
        self.stocks = {p.stem: daily_rows(p, self.first, self.last) for p in sorted(bars.glob("*.csv"))}
        self.returns = {code: {r[0]: Fraction(r[3]) for r in rows} for code, rows in self.stocks.items()}
        self.index = {}  # by file: {date: return} of its days with a previous close
        for name, number in INDICES.items():
            rows = daily_rows(market_data / "indices" / f"{number}.csv", self.first, self.last)
            self.index[name] = {r[0]: Fraction(r[3]) for r in rows if r[2] is not None}

    def first_return(self, code):
        return min((r[0] for r in self.stocks[code] if r[2] is not None), default=None)

    def counting(self, code, index):
        """A stock's returns on the days of the index from its first return on (0 without a bar), and the index's."""
        first = self.first_return(code)
        days = {d: r for d, r in self.index[index].items() if first is not None and d >= first}
        return [self.returns[code].get(d, Fraction(0)) for d in days], list(days.values())

    def security(self, code, index):
        return figures(*self.counting(code, index), self.risk_free)

    def lacking(self):
        return sorted({code for rows in PORTFOLIOS.values() for code, _, _ in rows if not self.stocks[code]})

    def portfolio(self, rows):
        """Weights are the shares of the buy value, stored as doubles, on each day scaled to 1 over the stocks that count."""
        values = [float(quantity) * float(price) for _, quantity, price in rows]
        total = sum(values)
        weights = [(code, Fraction(value / total), self.first_return(code))
                   for (code, _, _), value in zip(rows, values)]
        returns, market = [], []
        for day, change in self.index["SH"].items():
            counting = [(code, weight) for code, weight, first in weights if first is not None and first <= day]
            if not counting:
                continue
            scale = sum((weight for _, weight in counting), Fraction(0))
            returns.append(sum((w * self.returns[c].get(day, Fraction(0)) for c, w in counting), Fraction(0)) / scale)
            market.append(change)
        return figures(returns, market, self.risk_free)

    def index_deviation(self):
        """Sample deviation of the composite index's returns."""
        returns = list(self.index["SH"].values())
        return root(covariance(returns, returns))

    def deviation(self, code):
        """Mean and sample deviation of a stock's returns on the days of the composite index that count for it."""
        own = self.counting(code, "SH")[0]
        return (mean(own) if own else Fraction(0)), (root(covariance(own, own)) if len(own) > 1 else Fraction(0))


# ---- the comparison

class Checker:
    def __init__(self):
        self.problems, self.values, self.worst = [], 0, 0.0

    def near(self, where, got, want):
        want = float(want)
        difference = abs(float(got) - want) / abs(want) if want else abs(float(got))
        self.values += 1
        self.worst = max(self.worst, difference)
        if not difference <= TOLERANCE:
            self.problems.append(f"{where}: {got} instead of {want!r}")

    def same(self, where, got, want):
        self.values += 1
        if got != want:
            self.problems.append(f"{where}: {got!r} instead of {want!r}")


def packet(binaries, path):
    """Rows of a data file as dictionaries of texts, by its column names without their types."""
    done = subprocess.run([str(binaries / "holdwise-market"), "packet", "to-csv", str(path)], capture_output=True,
                          timeout=60)
    if done.returncode != 0:
        sys.exit(f"{path}: {done.stderr.decode()}")
    rows = list(csv.reader(io.StringIO(done.stdout.decode("utf-8"))))
    names = [heading.rsplit(":", 1)[0] for heading in rows[0]]
    return names, [dict(zip(names, row)) for row in rows[1:]]


def check_files(binaries, data, market, with_estimates, checker):
    folder = data / "QMTL" / "TZZH"
    tables = {}
    wanted = [code for code, rows in market.stocks.items() if rows]
    for index in INDICES:
        names, rows = packet(binaries, folder / "风险计量" / f"{index}.dat")
        checker.same(f"{index} columns", names, ["code", "beta", "alpha", "treynor", "sharpe", "edition"])
        checker.same(f"{index} codes", [r["code"] for r in rows], wanted)
        for row in rows:
            want = market.security(row["code"], index)
            for name, key in (("beta", "BETA"), ("alpha", "ALPHA"), ("treynor", "TREYNOR"), ("sharpe", "SHARP")):
                checker.near(f"{index} {row['code']} {name}", row[name], want[key])
                # They are shown as they stand, so without what only the arithmetic has left behind the twelfth digit.
                checker.same(f"{index} {row['code']} {name} digits", float(row[name]), float(f"{float(row[name]):.12g}"))
        tables[index] = {r["code"]: r for r in rows}
    for code, days in market.stocks.items():
        average, deviation = market.deviation(code)
        _, rows = packet(binaries, folder / "Day250" / "股票" / f"{code}.dat")
        rows = [r for r in rows if r["hqtype"] == "0"]
        checker.same(f"{code} days", [r["hqdate"] for r in rows], [d[0].replace("-", "") for d in days])
        for row, (date, close, previous, change) in zip(rows, days):
            where = f"{code} {date}"
            checker.near(where + " closeprice", row["closeprice"], close)
            checker.near(where + " oldcloseprice", row["oldcloseprice"], previous or 0)
            checker.near(where + " ggqjsyl", row["ggqjsyl"], change)
            checker.near(where + " pjsyl", row["pjsyl"], average)
            checker.near(where + " sylbzc", row["sylbzc"], deviation)
    _, rates = packet(binaries, folder / "InterestRate.Dat")
    one_year = [r["INTEREST"] for r in rates if (r["DEPOSITTYPE"], r["TERM"]) == ("定期存款整存整取", "一年")]
    checker.same("one-year rates", [float(rate) for rate in one_year], [float(market.one_year)])
    names, rows = packet(binaries, folder / "GZ.dat")
    checker.same("GZ columns", names, ["SECUCODE", "ID", "PRICE", "edition"])
    checker.same("GZ rows", [(r["SECUCODE"], r["ID"], r["PRICE"]) for r in rows],
                 [(code, str(i + 1), price) for i, (code, price) in enumerate(ESTIMATES)] if with_estimates else [])
    return tables["SH"]


def check_view(out, day, market, table, checker):
    titles, rows = read_csv(out / "2002-strngrd.csv")
    newest_first = list(reversed(list(PORTFOLIOS)))
    want = []
    for name in newest_first:
        computed = market.portfolio(PORTFOLIOS[name])
        want.append([name] + [six(float(computed[key])) for key in ("FC", "ZHBZC", "ALPHA", "BETA")])
    checker.values += compare(f"{day} strngrd", titles, rows, PORTFOLIO_TITLES, want, checker.problems)
    for row in rows:
        name, portfolio_id = row[0], row[5]
        where = f"{day} {name}"
        titles, securities = read_csv(out / f"2002-StringGrid1-{portfolio_id}.csv")
        want = []
        for code, _, _ in PORTFOLIOS[name]:
            cells = [code, market.names[code], "", "", "", ""]
            if code in table:
                deviation = float(market.deviation(code)[1])
                cells[2:] = [six(deviation * deviation), six(deviation), table[code]["alpha"], table[code]["beta"]]
            want.append(cells)
        checker.values += compare(where, titles, securities, SECURITY_TITLES, want, checker.problems)
    if not (out / "2002.png").stat().st_size:
        checker.problems.append(f"{day}: the picture of the view is empty")


def check_stored(binaries, work, market, checker):
    """The exchange file that the terminal writes at its end holds the stored figures with all their digits."""
    _, rows = packet(binaries, work / "TZZHMerge.dat")
    checker.same("stored portfolios", sorted(r["COMNAME"] for r in rows), sorted(PORTFOLIOS))
    for row in rows:
        for key, want in market.portfolio(PORTFOLIOS[row["COMNAME"]]).items():
            checker.near(f"{row['COMNAME']} {key}", row[key], want)
        checker.same(f"{row['COMNAME']} finished", row["ISFINISHED"], "1")


def check(binaries, market_data, day, with_options, folder, checker):
    bars = folder / "bars"
    write_bars(market_data, day, bars)
    options = []
    if with_options:
        with open(folder / "estimates.csv", "w", encoding="utf-8", newline="") as file:
            csv.writer(file).writerows([("code", "price"), *ESTIMATES])
        options = ["--rates", market_data / "deposit_rates.csv", "--estimates", folder / "estimates.csv"]
    market = Market(market_data, bars, day)
    export(binaries, market_data, bars, day, folder, *options, lacking=market.lacking())
    table = check_files(binaries, folder / "data", market, with_options, checker)
    check_view(folder / "out", day, market, table, checker)
    check_stored(binaries, folder / "work", market, checker)


def main():
    options = arguments()
    checker = Checker()
    for i, text in enumerate(options.date):
        with tempfile.TemporaryDirectory() as folder:
            # The rates come from their file once, from the producer itself the other times.
            check(options.bin, options.market_data, dt.date.fromisoformat(text), i == 0, pathlib.Path(folder), checker)
    print("\n".join(checker.problems[:40]))
    print(f"{checker.values} values compared on {len(options.date)} dates, {len(checker.problems)} differ, largest "
          f"relative difference {checker.worst:.2g}")
    sys.exit(1 if checker.problems or checker.values == 0 else 0)


if __name__ == "__main__":
    main()
