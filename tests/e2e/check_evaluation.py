#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Compares the evaluation and the decomposition view with figures computed straight from daily bars.

The real programs import ten portfolios bought on different days, calculate them on the last day and export the views with
each of the three reference indices; this script computes every cell in exact fractions from the same CSVs. The risk
figures of the portfolios are checked against the bars too, the two columns that show them whole to nine digits. Usage:

    check_evaluation.py --bin DIR --market-data DIR --date YYYY-MM-DD [--date ...]

The last date is the day of the figures, the ones before are days of purchase.
"""
import csv
import datetime as dt
import pathlib
import sys
import tempfile
from decimal import ROUND_HALF_UP, Decimal
from fractions import Fraction

from check_risk import INDICES, Checker, Market, six
from exported_views import arguments, build_data, import_and_export, read_csv

LIST_TITLES = ["组合名称", "回报率(%)", "无风险利率(%)", "超额回报率(%)", "夏普指数", "特雷诺指数", "Beta系数", "#7"]
HOLDING_TITLES = ["股票代码", "股票名称", "回报率(%)", "无风险利率(%)", "超额回报率(%)", "夏普指数", "特雷诺指数", "Beta系数",
                  "#8"]
PARTS_TITLES = ["组合名称", "回报率(%)", "超额回报率(%)", "风险增溢(%)", "选择回报率(%)", "多样化增溢(%)", "净选择回报率(%)",
                "#7", "#8", "#9", "#10", "#11"]
MIXES = {  # name: [(code, quantity)]; a few of each kind, twice as many portfolios as days
    "银行": [("600036", 1200), ("601398", 30000), ("000001", 5000)],
    "白酒": [("600519", 100), ("000568", 800), ("600887", 2500)],
    "成长": [("300750", 300), ("002594", 400)],
    "能源": [("600028", 9000), ("601225", 1100), ("600900", 1500)],
    "科技": [("000725", 20000), ("600050", 10000)],
    "金融": [("600030", 1000), ("601318", 700), ("600036", 900)],
    "家电": [("000651", 600), ("000333", 900)],
    "地产": [("000002", 8000), ("600585", 700)],
    "医药": [("300015", 2300), ("600276", 1000)],
    "混合": [("600519", 1), ("600028", 100), ("300750", 100), ("000001", 100), ("600900", 100)],
}


def two(value):
    """"0.00", half away from zero, no sign on nothing."""
    text = str(Decimal(value).quantize(Decimal("0.01"), rounding=ROUND_HALF_UP))
    return text.replace("-", "") if float(text) == 0 else text


def exact(fraction):
    """A fraction as a decimal with far more digits than a text shows."""
    return Decimal(fraction.numerator) / Decimal(fraction.denominator)


class Closes:
    def __init__(self, folder):
        self.folder, self.known = folder, {}

    def __call__(self, name, day):
        if name not in self.known:
            with open(self.folder / f"{name}.csv", encoding="utf-8") as source:
                self.known[name] = {r["date"]: r["close"] for r in csv.DictReader(source)}
        return self.known[name][day]


class Portfolio:
    def __init__(self, name, mix, day, stocks, indices):
        self.name, self.day = name, day
        self.rows = [(code, quantity, stocks(code, day)) for code, quantity in mix]
        self.level = indices("1", day)

    def cost(self):
        return sum((Fraction(price) * quantity for _, quantity, price in self.rows), Fraction(0))

    def value(self, stocks, day):
        return sum((Fraction(stocks(code, day)) * quantity for code, quantity, _ in self.rows), Fraction(0))

    def figures(self, market):
        """Check_risk knows how; it takes prices as they stand in the import."""
        return market.portfolio(self.rows)


def percent(now, base):
    return "0" if base == 0 else two(exact((Fraction(now) - Fraction(base)) / Fraction(base) * 100))


def minus(a, b):
    return two(Decimal(a) - Decimal(b))


def check_list(where, titles, rows, wanted_titles, wanted, checker):
    checker.same(f"{where} titles", titles, wanted_titles)
    checker.same(f"{where} rows", len(rows), len(wanted))
    for got, want in zip(rows, wanted):
        for title, g, w in zip(wanted_titles, got, want):
            if w is not None:
                checker.same(f"{where} {got[0]} {title}", g, w)


def check_evaluation(out, portfolios, market, stocks, indices_of_table, day, checker):
    rate = two(Decimal(market.one_year))
    titles, rows = read_csv(out / "3001-strngrd.csv")
    wanted, ids = [], [row[7] for row in rows]
    for portfolio in portfolios:
        gain = percent(portfolio.value(stocks, day), portfolio.cost())
        figures = portfolio.figures(market)
        wanted.append([portfolio.name, gain, rate, minus(gain, rate)] +
                      [six(float(figures[key])) for key in ("SHARP", "TREYNOR", "BETA")] + [None])
    check_list("3001 list", titles, rows, LIST_TITLES, wanted, checker)
    for portfolio, number in zip(portfolios, ids):
        titles, rows = read_csv(out / f"3001-StringGrid1-{number}.csv")
        wanted = []
        for code, _, price in portfolio.rows:
            gain = percent(stocks(code, day), price)
            figures = market.security(code, indices_of_table)
            wanted.append([code, market.names[code], gain, rate, minus(gain, rate)] +
                          [six(float(figures[key])) for key in ("SHARP", "TREYNOR", "BETA")] + [None])
            checker.near(f"3001 {portfolio.name} {code} buy price", rows[len(wanted) - 1][8], float(price))
        check_list(f"3001 {portfolio.name}", titles, rows, HOLDING_TITLES, wanted, checker)


def check_decomposition(out, portfolios, market, stocks, indices, day, checker):
    rate = two(Decimal(market.one_year))
    risk_free = Fraction(rate) / 100
    deviation = market.index_deviation()
    titles, rows = read_csv(out / "3002-strngrd.csv")
    wanted = []
    for portfolio in portfolios:
        figures = portfolio.figures(market)
        level = Fraction(two(Decimal(portfolio.level)))
        rise = (Fraction(indices("1", day)) - level) / level
        gain = (portfolio.value(stocks, day) - portfolio.cost()) / portfolio.cost()
        for_total = (rise - risk_free) * figures["ZHBZC"] / deviation + risk_free
        for_market = (rise - risk_free) * figures["BETA"] + risk_free
        total, excess = two(exact(gain * 100)), two(exact((gain - risk_free) * 100))
        spread, net = two(exact((for_total - for_market) * 100)), two(exact((gain - for_total) * 100))
        selection = two(Decimal(net) + Decimal(spread))
        wanted.append([portfolio.name, total, excess, minus(excess, selection), selection, spread, net, None, rate,
                       two(Decimal(portfolio.level)), None, None])
        row = rows[len(wanted) - 1]
        checker.near(f"3002 {portfolio.name} beta", row[10], figures["BETA"])
        checker.near(f"3002 {portfolio.name} deviation", row[11], figures["ZHBZC"])
        checker.same(f"3002 {portfolio.name} sum of the excess", Decimal(row[2]), Decimal(row[3]) + Decimal(row[4]))
        checker.same(f"3002 {portfolio.name} sum of the selection", Decimal(row[4]), Decimal(row[5]) + Decimal(row[6]))
    check_list("3002 list", titles, rows, PARTS_TITLES, wanted, checker)


def main():
    options = arguments()
    *purchases, last = options.date
    market_data, checker = options.market_data, Checker()
    bars = market_data / "bars"
    stocks, indices = Closes(bars), Closes(market_data / "indices")
    days = (purchases * len(MIXES))[:len(MIXES)]
    portfolios = [Portfolio(f"{name}{day[2:]}", mix, day, stocks, indices) for (name, mix), day in zip(MIXES.items(), days)]
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        build_data(options.bin, market_data, bars, dt.date.fromisoformat(last), folder / "data", "--rates",
                   market_data / "deposit_rates.csv")
        market = Market(market_data, bars, dt.date.fromisoformat(last))
        newest_first = list(reversed(portfolios))
        new = {p.name: p.rows for p in portfolios}
        for table, index in INDICES.items():
            out = folder / f"out-{table}"
            import_and_export(options.bin, folder / "data", folder, new, out, "--stress-index", index,
                              days={p.name: p.day for p in portfolios})
            new = {}
            check_evaluation(out, newest_first, market, stocks, table, last, checker)
            check_decomposition(out, newest_first, market, stocks, indices, last, checker)
            for name in ("3001.png", "3002.png"):
                checker.same(name, (out / name).stat().st_size > 0, True)
    print("\n".join(checker.problems[:40]))
    print(f"{checker.values} values compared, {len(checker.problems)} differ, largest relative difference {checker.worst:.2g}")
    sys.exit(1 if checker.problems or checker.values == 0 else 0)


if __name__ == "__main__":
    main()
