# SPDX-License-Identifier: MIT
"""Runs the blocks of docs/data-sources.md against stand-ins of the packages they name, and builds what they write.

Usage: data_sources.py DOCUMENT PROGRAM WORK_FOLDER
The stand-ins give frames of exactly the packages' columns, of a made-up market of two stocks; no network. Each family's
command must take every line. On one day a dividend of 3.00 goes off a stock that closed at 100.00: the exchange's reference
is 97.00, the day's close 98.94, so the return 98.94 / 97 - 1 is 2 % in every family, not the -1.06 % of the closes as traded.
Prints the families.
"""
import contextlib
import datetime
import math
import os
import pathlib
import re
import shlex
import subprocess
import sys
import types

from check_statistics import columns_of

STOCKS = {"600519": ("sh", "贵州茅台"), "000001": ("sz", "平安银行")}
DAYS = [day for day in (datetime.date(2024, 1, 1) + datetime.timedelta(days=i) for i in range(400)) if day.weekday() < 5][:260]
EX_CODE, EX_PLACE, EX_DAY = "600519", 150, DAYS[150]
EX_CLOSES, DIVIDEND, EX_REFERENCE, EX_RETURN = (100.00, 98.94), 3.00, 97.00, 0.02
EX_FACTOR = 0.97


class Frame:
    """As much of a data frame as the blocks use: columns, rows, an index that is written in front of them."""

    def __init__(self, columns, rows, index=None):
        self.columns, self.rows, self.index = columns, rows, index

    def reset_index(self):
        return Frame([*self.index[0], *self.columns], [[*key, *row] for key, row in zip(self.index[1], self.rows)])

    def to_csv(self, path, index=True):
        columns, rows = self.columns, self.rows
        if index:
            names, keys = self.index or ([""], [[i] for i in range(len(rows))])
            columns, rows = [*names, *columns], [[*key, *row] for key, row in zip(keys, rows)]
        lines = [",".join("" if value is None else str(value) for value in row) for row in (columns, *rows)]
        pathlib.Path(path).write_text("\n".join(lines) + "\n", encoding="utf-8")


def closes(code, days=DAYS):
    base = 10 + int(code) % 97
    prices = {day: round(base * (1 + 0.05 * math.sin(i * (1 + int(code) % 7) / 9)), 2) for i, day in enumerate(days)}
    if code == EX_CODE:
        prices[DAYS[EX_PLACE - 1]], prices[EX_DAY] = EX_CLOSES
    return prices


def bars(code):
    """As traded: date, open, high, low, close, previous close (the exchange's reference), volume"""
    before = None
    for day, close in closes(code).items():
        if code == EX_CODE and day == EX_DAY:
            before = EX_REFERENCE
        yield day, close, round(close + 0.05, 2), round(close - 0.05, 2), close, before or close, 123400
        before = close


def factor(code, day):
    return EX_FACTOR if code == EX_CODE and day < EX_DAY else 1.0


def adjusted(code):
    """The same with prices before the dividend as they compare with those behind it."""
    before = None
    for day, *prices, _, volume in bars(code):
        prices = [price * factor(code, day) for price in prices]
        yield day, *prices, before or prices[-1], volume
        before = prices[-1]


def digits(code):
    return re.search(r"\d{6}", code)[0]


def akshare():
    def hist(symbol, period, start_date, end_date, adjust):
        return Frame("日期,股票代码,开盘,收盘,最高,最低,成交量,成交额,振幅,涨跌幅,涨跌额,换手率".split(","),
                     [[day, symbol, *(round(price, 2) for price in (opened, close, high, low)), volume, 1.5e8, 1.2, 0.3,
                       round(close - before, 2), 0.1]
                      for day, opened, high, low, close, before, volume in adjusted(symbol)])

    def index_daily(symbol):
        return Frame("date,open,high,low,close,volume".split(","),
                     [[day, opened, high, low, close, volume] for day, opened, high, low, close, _, volume in bars(digits(symbol))])

    return {"akshare": types.SimpleNamespace(
        stock_info_a_code_name=lambda: Frame(["code", "name"], [[code, name] for code, (_, name) in STOCKS.items()]),
        stock_zh_a_hist=hist, stock_zh_index_daily=index_daily,
        tool_trade_date_hist_sina=lambda: Frame(["trade_date"], [[day] for day in DAYS]))}


def tushare():
    def daily(ts_code, start_date, end_date):
        return Frame("ts_code,trade_date,open,high,low,close,pre_close,change,pct_chg,vol,amount".split(","),
                     [[ts_code, day.strftime("%Y%m%d"), opened, high, low, close, before, round(close - before, 2), 0.1, 1234.0,
                       1.5e5] for day, opened, high, low, close, before, _ in reversed(list(bars(digits(ts_code))))])

    def basic(exchange, list_status):
        return Frame("ts_code,symbol,name,area,industry,cnspell,market,list_date,act_name,act_ent_type".split(","),
                     [[f"{code}.{place.upper()}", code, name, "深圳", "银行", "x", "主板", "19910403", "", "无"]
                      for code, (place, name) in STOCKS.items()])

    def calendar(exchange, start_date, end_date):
        first, last = DAYS[0], DAYS[-1]
        days = [first + datetime.timedelta(days=i) for i in range((last - first).days + 1)]
        return Frame("exchange,cal_date,is_open,pretrade_date".split(","),
                     [[exchange, day.strftime("%Y%m%d"), int(day in DAYS), ""] for day in reversed(days)])

    pro = types.SimpleNamespace(daily=daily, index_daily=daily, stock_basic=basic, trade_cal=calendar)
    return {"tushare": types.SimpleNamespace(pro_api=lambda token: pro)}


def baostock():
    def data(columns, rows):
        return types.SimpleNamespace(get_data=lambda: Frame(columns, rows))

    def history(code, fields, start_date, end_date, frequency, adjustflag):
        rows, held = [], None
        for i, (day, *prices, before, volume) in enumerate(bars(digits(code))):
            before, held = held or before, None  # over a suspended day the last close holds
            texts = [f"{price:.10f}" for price in (*prices, before)]
            suspended = i == 100 and digits(code) == "600519"
            if suspended:
                texts, held = [texts[-1]] * 5, before
            rows.append([day, code, *texts, *(["", "", adjustflag, "", "0"] if suspended
                                              else [volume, "1.5", adjustflag, "0.1", "1"]), "0.5", "0"])
        return data(fields.split(","), rows)

    def dates(start_date, end_date):
        days = [DAYS[0] + datetime.timedelta(days=i) for i in range((DAYS[-1] - DAYS[0]).days + 1)]
        return data(["calendar_date", "is_trading_day"], [[day, int(day in DAYS)] for day in days])

    basic = [["sh.000001", "上证综合指数", "1991-07-15", "", "2", "1"]]
    basic += [[f"{place}.{code}", name, "1991-04-03", "", "1", "1"] for code, (place, name) in STOCKS.items()]
    return {"baostock": types.SimpleNamespace(
        login=lambda: None, query_history_k_data_plus=history, query_trade_dates=dates,
        query_stock_basic=lambda: data("code,code_name,ipoDate,outDate,type,status".split(","), basic),
        query_stock_industry=lambda: data(
            "updateDate,code,code_name,industry,industryClassification".split(","),
            [["2025-01-06", f"{place}.{code}", name, "J66货币金融服务", "证监会行业分类"] for code, (place, name) in STOCKS.items()]))}


def yfinance():
    def ticker(code):
        rows = [[repr(value * 1.0000000298) for value in (opened, high, low, close)]
                + [volume, DIVIDEND if digits(code) == EX_CODE and day == EX_DAY else 0.0, 0.0]
                for day, opened, high, low, close, _, volume in adjusted(digits(code))]
        index = (["Date"], [[f"{day} 00:00:00+08:00"] for day in DAYS])
        frame = Frame(["Open", "High", "Low", "Close", "Volume", "Dividends", "Stock Splits"], rows, index)
        return types.SimpleNamespace(history=lambda start, end: frame)

    return {"yfinance": types.SimpleNamespace(Ticker=ticker)}


def qlib():
    def features(codes, fields, start_time, freq):
        rows, keys = [], []
        for code in codes:
            for day, opened, high, low, close, _, volume in bars(digits(code)):
                keys.append([code, day])
                scale = 1.25 * factor(digits(code), day)
                rows.append([opened * scale, close * scale, high * scale, low * scale, volume / scale, scale])
        return Frame(fields, rows, (["instrument", "datetime"], keys))

    root, part = types.ModuleType("qlib"), types.ModuleType("qlib.data")
    root.init, root.data = (lambda provider_uri, region: None), part
    part.D = types.SimpleNamespace(features=features)
    return {"qlib": root, "qlib.data": part}


FAMILIES = {"AKShare": akshare, "Tushare": tushare, "BaoStock": baostock, "yfinance": yfinance, "Qlib": qlib}


def run(family, code, command, program, work):
    folder = work / family
    folder.mkdir(parents=True)
    sys.modules.update(FAMILIES[family]())
    with contextlib.chdir(folder) if hasattr(contextlib, "chdir") else pushd(folder):
        exec(compile(code, family, "exec"), {})
        built = subprocess.run([program, *shlex.split(command)[1:]], capture_output=True, text=True)
    output = built.stdout + built.stderr
    if built.returncode != 0 or "有行情 2\n" not in output or "未采用的行：0，未采用的文件：0" not in output or "未复权" in output:
        sys.exit(f"{family}:\n{output}")
    _, rows = columns_of(folder / "my/data/QMTL/TZZH/Day250/股票" / f"{EX_CODE}.dat")
    returns = [row["ggqjsyl"] for row in rows if row["hqtype"] == 0 and row["hqdate"] == int(EX_DAY.strftime("%Y%m%d"))]
    if len(returns) != 1 or abs(returns[0] - EX_RETURN) > 1e-9:
        sys.exit(f"{family}: return {returns} on {EX_DAY}, expected {EX_RETURN}")


@contextlib.contextmanager
def pushd(folder):
    before = os.getcwd()
    os.chdir(folder)
    try:
        yield
    finally:
        os.chdir(before)


def main():
    document, program, work = sys.argv[1:4]
    text = pathlib.Path(document).read_text(encoding="utf-8")
    blocks = re.findall(r"### (\w+)\n\n```python\n(.*?)```\n\n```sh\n(.*?)```", text, re.DOTALL)
    if [family for family, _, _ in blocks] != list(FAMILIES):
        sys.exit(f"families: {[family for family, _, _ in blocks]}")
    for family, code, command in blocks:
        if len(code.strip().split("\n")) > 12:
            sys.exit(f"{family}: more than twelve lines")
        run(family, code, command, program, pathlib.Path(work))
    print(" ".join(FAMILIES))


if __name__ == "__main__":
    main()
