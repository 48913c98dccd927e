# SPDX-License-Identifier: MIT
"""Writes the same market in every shape in which people have it.

Usage: market_shapes.py MARKET OUT STOCKS
MARKET has bars/, indices/, securities.csv, trading_dates.csv. For each shape OUT/<shape>/ holds the files, and
arguments.txt what the build is called with, one word a line.
"""
import csv
import datetime
import pathlib
import sys

INDEX_CODES = {"1": ("000001", "sh"), "399001": ("399001", "sz"), "399300": ("000300", "sh")}


def read(path):
    with open(path, encoding="utf-8") as source:
        return list(csv.DictReader(source))


def write(path, heading, rows):
    path.parent.mkdir(parents=True, exist_ok=True)
    with open(path, "w", encoding="utf-8", newline="") as target:
        csv.writer(target, lineterminator="\n").writerows([heading, *rows])


def market_of(code):
    return "sh" if code[0] in "569" else "sz"


class Market:
    def __init__(self, folder, count):
        self.securities = []
        self.bars = {}
        for security in read(folder / "securities.csv"):
            if len(self.securities) == count:
                break
            path = folder / "bars" / f"{security['code']}.csv"
            if path.exists():
                self.securities.append(security)
                self.bars[security["code"]] = read(path)
        self.indices = {name: read(folder / "indices" / f"{name}.csv") for name in INDEX_CODES}
        self.open_days = {row["date"] for row in read(folder / "trading_dates.csv")}
        self.dates = folder / "trading_dates.csv"

    def all_days(self):
        first, last = (datetime.date.fromisoformat(day) for day in (min(self.open_days), max(self.open_days)))
        return [(first + datetime.timedelta(days=i)).isoformat() for i in range((last - first).days + 1)]


def with_previous(bars):
    return zip(bars, [None, *bars[:-1]])


def finish(folder, **places):
    words = ["build", "--out", str(folder / "data")]
    for option, place in places.items():
        words += [f"--{option}", str(place)]
    (folder / "arguments.txt").write_text("\n".join(words), encoding="utf-8")


def plain_securities(market, folder, code_of):
    write(folder / "securities.csv", ["code", "name", "industry", "market", "list_date"],
          [[code_of(s["code"]), s["name"], s["industry"], s["market"], s["list_date"]] for s in market.securities])


def plain(market, folder):
    for room, all_bars in (("bars", market.bars), ("indices", market.indices)):
        for name, bars in all_bars.items():
            write(folder / room / f"{name}.csv", list(bars[0]), [list(bar.values()) for bar in bars])
    plain_securities(market, folder, str)
    finish(folder, bars=folder / "bars", indices=folder / "indices", securities=folder / "securities.csv",
           dates=market.dates)


def chinese(market, folder):
    heading = "日期,股票代码,开盘,收盘,最高,最低,成交量,成交额,振幅,涨跌幅,涨跌额,换手率".split(",")
    for room, all_bars in (("bars", market.bars), ("indices", market.indices)):
        for name, bars in all_bars.items():
            code = INDEX_CODES[name][0] if room == "indices" else name
            rows = []
            for bar, before in with_previous(bars):
                change = 0 if before is None else float(bar["close"]) - float(before["close"])
                rows.append([bar["date"], code, bar["open"], bar["close"], bar["high"], bar["low"], bar["volume"], "1e8",
                             "1.2", "0.5", f"{change:.2f}", "0.3"])
            write(folder / room / f"{name}.csv", heading, rows)
    write(folder / "securities.csv", ["板块", "A股代码", "A股简称", "A股上市日期", "A股总股本", "所属行业"],
          [["主板", s["code"], s["name"], s["list_date"], "1,000", s["industry"]] for s in market.securities])
    finish(folder, bars=folder / "bars", indices=folder / "indices", securities=folder / "securities.csv",
           dates=market.dates)


def ts_code(market, folder):
    """One file for all stocks, newest first, and one for the indices."""
    heading = "ts_code,trade_date,open,high,low,close,pre_close,change,pct_chg,vol,amount".split(",")

    def rows(all_bars, code_of):
        for name, bars in all_bars.items():
            for bar, before in reversed(list(with_previous(bars))):
                reference = bar["open"] if before is None else before["close"]
                yield [code_of(name), bar["date"].replace("-", ""), bar["open"], bar["high"], bar["low"], bar["close"],
                       reference, "", "", bar["volume"], "nan"]

    def code_of(code):
        return f"{code}.{market_of(code).upper()}"

    def index_code(name):
        code, place = INDEX_CODES[name]
        return f"{code}.{place.upper()}"

    write(folder / "daily.csv", heading, rows(market.bars, code_of))
    write(folder / "index.csv", heading, rows(market.indices, index_code))
    boards = {"300": "创业板", "301": "创业板", "688": "科创板"}
    write(folder / "securities.csv", ["ts_code", "symbol", "name", "area", "industry", "market", "list_date"],
          [[code_of(s["code"]), s["code"], s["name"], "深圳", s["industry"], boards.get(s["code"][:3], "主板"),
            s["list_date"].replace("-", "")] for s in market.securities])
    write(folder / "calendar.csv", ["exchange", "cal_date", "is_open", "pretrade_date"],
          [["SSE", day.replace("-", ""), int(day in market.open_days), ""] for day in reversed(market.all_days())])
    finish(folder, bars=folder / "daily.csv", indices=folder / "index.csv", securities=folder / "securities.csv",
           dates=folder / "calendar.csv")


def sh_dot(market, folder):
    heading = ("date,code,open,high,low,close,preclose,volume,amount,adjustflag,turn,tradestatus,pctChg,isST").split(",")
    for room, all_bars in (("bars", market.bars), ("indices", market.indices)):
        for name, bars in all_bars.items():
            code = f"{market_of(name)}.{name}" if room == "bars" else ".".join(reversed(INDEX_CODES[name]))
            rows = []
            for bar, before in with_previous(bars):
                prices = [f"{float(bar[price]):.10f}" for price in ("open", "high", "low", "close")]
                reference = prices[0] if before is None else f"{float(before['close']):.10f}"
                rows.append([bar["date"], code, *prices, reference, bar["volume"], "1", "2", "0.3", "1", "0.5", "0"])
            last = prices[3]
            rows.append(["2026-01-09", code, last, last, last, last, last, "", "", "2", "", "0", "0.0", "0"])
            write(folder / room / f"{code}.csv", heading, rows)
    write(folder / "securities.csv", ["code", "code_name", "ipoDate", "outDate", "type", "status"],
          [["sh.000001", "上证综合指数", "1991-07-15", "", "2", "1"]] +
          [[f"{market_of(s['code'])}.{s['code']}", s["name"], s["list_date"], "", "1", "1"] for s in market.securities])
    write(folder / "industries.csv", ["updateDate", "code", "code_name", "industry", "industryClassification"],
          [["2026-01-05", f"{market_of(s['code'])}.{s['code']}", s["name"], s["industry"], "x"] for s in market.securities])
    write(folder / "calendar.csv", ["calendar_date", "is_trading_day"],
          [[day, int(day in market.open_days)] for day in market.all_days()])
    finish(folder, bars=folder / "bars", indices=folder / "indices", securities=folder / "securities.csv",
           industries=folder / "industries.csv", dates=folder / "calendar.csv")


def dated(market, folder):
    """Dates with time and zone, prices as binary fractions write themselves."""
    heading = ["Date", "Open", "High", "Low", "Close", "Volume", "Dividends", "Stock Splits"]
    for room, all_bars in (("bars", market.bars), ("indices", market.indices)):
        for name, bars in all_bars.items():
            code, place = (name, market_of(name)) if room == "bars" else INDEX_CODES[name]
            rows = [[f"{bar['date']} 00:00:00+08:00", *(repr(float(bar[price])) for price in ("open", "high", "low", "close")),
                     bar["volume"], "0.0", "0.0"] for bar in bars]
            write(folder / room / f"{code}.{'SS' if place == 'sh' else 'SZ'}.csv", heading, rows)
    plain_securities(market, folder, lambda code: f"{code}.{'SS' if market_of(code) == 'sh' else 'SZ'}")
    finish(folder, bars=folder / "bars", indices=folder / "indices", securities=folder / "securities.csv",
           dates=market.dates)


def symbol_factor(market, folder):
    """One file a date; prices are twice those as traded, and so is the factor."""
    heading = ["symbol", "date", "open", "close", "high", "low", "volume", "factor"]
    days = {}
    for code, bars in market.bars.items():
        for bar in bars:
            prices = [repr(2 * float(bar[price])) for price in ("open", "close", "high", "low")]
            days.setdefault(bar["date"], []).append(
                [f"{market_of(code).upper()}{code}", bar["date"], *prices, f"{float(bar['volume']):e}"
                 if float(f"{float(bar['volume']):e}") == float(bar["volume"]) else bar["volume"], "2.0"])
    for day, rows in days.items():
        write(folder / "bars" / f"{day}.csv", heading, rows)
    for name, bars in market.indices.items():
        code, place = INDEX_CODES[name]
        write(folder / "indices" / f"{place.upper()}{code}.csv", ["date", "close"],
              [[bar["date"].replace("-0", "/").replace("-", "/"), bar["close"]] for bar in bars])
    plain_securities(market, folder, lambda code: f"{market_of(code).upper()}{code}")
    finish(folder, bars=folder / "bars", indices=folder / "indices", securities=folder / "securities.csv",
           dates=market.dates)


def main():
    market = Market(pathlib.Path(sys.argv[1]), int(sys.argv[3]))
    for shape in (plain, chinese, ts_code, sh_dot, dated, symbol_factor):
        folder = pathlib.Path(sys.argv[2]) / shape.__name__
        folder.mkdir(parents=True)
        shape(market, folder)


if __name__ == "__main__":
    main()
