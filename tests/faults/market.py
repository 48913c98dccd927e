# SPDX-License-Identifier: MIT
"""A small market in two states, an earlier and a later day, two imports, and what the terminal must make of them."""
import csv
import datetime
import os
import random
import re
import shutil
import subprocess
import time

from faults import STATISTICS, Database, run, series_of

EARLIER = {  # name: [(code, quantity, buy price)]
    "银行稳健": [("600036", 1200, "35.10"), ("601398", 30000, "4.85"), ("000001", 5000, "10.02")],
    "消费": [("600519", 100, "1400.00"), ("000568", 800, "130.5"), ("600887", 2500, "26.77")],
    "同股再持": [("600519", 1, "0.01"), ("600036", 9999999, "99999.99")],
}
LATER = {
    "成长": [("300750", 300, "188.88"), ("002594", 400, "95.00"), ("600519", 50, "1500")],
    "十全": [("600030", 1000, "20.01"), ("600900", 1500, "25"), ("601318", 700, "44.44"), ("000651", 600, "39.99")],
}

def number_of(code):
    return int("1" + code)


def held(portfolios):
    return {code for rows in portfolios.values() for code, _, _ in rows}


CODES = sorted(held({**EARLIER, **LATER}))
INDICES = {"1", "399001", "399300"}
NAME, FIGURES, FINISHED, SAVED = 1, slice(3, 11), 11, 13
CHINESE = re.compile("[\u4e00-\u9fff]")  # a word to the user, and not the trace that environment() asks for


def write_import(path, *imports):
    with open(path, "w", encoding="utf-8", newline="") as file:
        writer = csv.writer(file)
        writer.writerow(["name", "code", "quantity", "price"])
        writer.writerows([name, *row] for portfolios in imports for name, rows in portfolios.items() for row in rows)
    return path


def holdings_of(rows):
    """As the database holds them, in the order of Database.holdings."""
    total = sum(quantity * float(price) for _, quantity, price in rows)
    return sorted((number_of(code), quantity, quantity * float(price) / total, float(price)) for code, quantity, price in rows)


def same_holdings(stored, rows):
    stored = sorted((int(code), int(quantity), float(weight), float(price)) for code, quantity, weight, price in stored)
    wanted = holdings_of(rows)
    return len(stored) == len(wanted) and all(
        s[:2] == w[:2] and abs(s[2] - w[2]) < 1e-12 and s[3] == w[3] for s, w in zip(stored, wanted))


def made_up_source(folder):
    """Daily bars of the stocks of the imports and of the indices, 260 weekdays of a random walk."""
    choice = random.Random(1)
    days = [day for day in (datetime.date(2024, 1, 1) + datetime.timedelta(days=n) for n in range(364)) if day.weekday() < 5]
    for place, code in [("bars", code) for code in CODES] + [("indices", code) for code in sorted(INDICES)]:
        (folder / place).mkdir(parents=True, exist_ok=True)
        price, lines = 50.0, ["date,open,high,low,close,volume"]
        for day in days:
            price *= 1 + choice.gauss(0, 0.01)
            lines.append(f"{day},{price:.2f},{price:.2f},{price:.2f},{price:.2f},1000")
        (folder / place / f"{code}.csv").write_text("\n".join(lines) + "\n")
    (folder / "trading_dates.csv").write_text("date\n" + "".join(f"{day}\n" for day in days))
    (folder / "deposit_rates.csv").write_text("date,one_year\n2023-01-02,1.5\n")
    (folder / "securities.csv").write_text("code,name,industry,market,list_date\n" + "".join(
        f"{code},股票{code},行业,{'SH' if code[0] == '6' else 'SZ'},2010-01-04\n" for code in CODES), encoding="utf-8")
    return folder


class Market:
    """Two data folders of the same securities, made from daily bars."""

    def __init__(self, binaries, source, folder):
        """source: a folder of real daily bars; None: made-up ones."""
        self.binaries, self.folder = binaries, folder
        source = source.resolve() if source else made_up_source(folder / "source")
        with open(source / "indices" / "1.csv", encoding="utf-8") as file:
            days = sorted(row["date"] for row in csv.DictReader(file))
        self.data = []
        for name, day in (("earlier", days[-8]), ("later", days[-1])):
            run(binaries / "holdwise-market", "build", "--bars", source / "bars", "--indices", source / "indices", "--securities",
                source / "securities.csv", "--dates", source / "trading_dates.csv", "--rates", source / "deposit_rates.csv",
                "--date", day, "--out", folder / name)
            self.data.append(folder / name)
        self.last_day = days[-1].replace("-", "")
        self.statistics = [self.read_statistics(data) for data in self.data]
        self.import_earlier = write_import(folder / "earlier.csv", EARLIER)
        self.import_later = write_import(folder / "later.csv", LATER)
        self.import_both = write_import(folder / "both.csv", EARLIER, LATER)

    def packet(self, path):
        rows = list(csv.reader(run(self.binaries / "holdwise-market", "packet", "to-csv", path).splitlines()))
        names = [name.split(":")[0] for name in rows[0]]
        return [dict(zip(names, row)) for row in rows[1:]]

    def read_statistics(self, data):
        """{code: series} as the database must hold it."""
        day250 = data / "QMTL" / "TZZH" / "Day250"
        series = {}
        for code in CODES:
            rows = self.packet(day250 / "股票" / f"{code}.dat")
            series[number_of(code)] = series_of([row[name] for name in STATISTICS] for row in rows)
        index_rows = self.packet(day250 / "指数" / "allzs.dat")
        for code in INDICES:
            series[int(code)] = series_of([row[name] for name in STATISTICS] for row in index_rows if row["SecuCode"] == code)
        return series

    def command(self, work, *more, later=True):
        return [str(part) for part in (self.binaries / "holdwise-terminal", "--data", self.data[1 if later else 0], "--work", work,
                                       *more)]


def environment():
    return dict(os.environ, QT_QPA_PLATFORM="offscreen", HOLDWISE_TRACE_START="1")


def timed(command, timeout=120, env=None):
    """The ended process, its texts in stdout and stderr, None when it did not end; and the seconds it took."""
    begun = time.monotonic()
    try:
        done = subprocess.run(command, capture_output=True, text=True, timeout=timeout, env=env or environment())
    except subprocess.TimeoutExpired:
        done = None
    return done, time.monotonic() - begun


def run_terminal(command):
    return timed(command)[0]


def make_market(binaries, folder, kind):
    """A data folder and a table to import, both made up. A simulated market moves; one without that kind stands still."""
    made = folder / "csv"
    run(binaries / "holdwise-market", "simulate", "--securities", "40", "--days", "120", "--out", made)
    run(binaries / "holdwise-market", "build", "--bars", made / "bars", "--indices", made / "indices", "--securities",
        made / "securities.csv", "--dates", made / "trading_dates.csv", "--rates", made / "deposit_rates.csv", "--out",
        folder / "data", *kind)
    codes = sorted(path.stem for path in (made / "bars").glob("*.csv"))[:12]
    rows = [f"P{number},{codes[(number + k) % len(codes)]},100,10" for number in range(6) for k in range(4)]
    (folder / "p.csv").write_text("name,code,quantity,price\n" + "\n".join(rows) + "\n")
    return folder / "data", folder / "p.csv"


class Exported:
    """What --export wrote, without the ids: {file: rows}."""

    def __init__(self, folder, database):
        names = {str(number): cells[NAME] for number, cells in database.portfolios.items()}
        self.files = {}
        for path in folder.glob("*.csv"):
            with open(path, encoding="utf-8-sig", newline="") as file:
                rows = [[names.get(cell, cell) if i == len(row) - 1 else cell for i, cell in enumerate(row)]
                        for row in csv.reader(file)]
            name = re.sub(r"-(\d+)$", lambda match: "-" + names.get(match.group(1), match.group(1)), path.stem)
            self.files[name] = rows
        self.pictures = sorted(path.name for path in folder.glob("*.png") if path.stat().st_size)


class State:
    """A work folder as it was found: its database and whose rows it holds."""

    def __init__(self, market, work):
        self.market, self.work = market, work
        self.file = work / "holdwise.fdb"
        self.database = Database(market.binaries, self.file) if self.file.exists() else None
        if self.database and not self.database.problem:
            self.by_name = {cells[NAME]: (number, cells) for number, cells in self.database.portfolios.items()}

    def unfinished(self):
        return [cells for _, cells in self.by_name.values() if cells[FINISHED] != "1"]

    def version(self, code):
        """0 or 1: whose rows the security has; None: no rows; -1: neither whole."""
        rows = self.database.statistics.get(code)
        if not rows:
            return None
        return next((i for i in (0, 1) if rows == self.market.statistics[i][code]), -1)

    def mixed(self):
        """Problems with the rows: every security has an earlier or a later row set whole, the indices together."""
        problems = [f"{code}: {len(rows)} rows that are neither version" for code, rows in self.database.statistics.items()
                    if code not in self.market.statistics[0] or self.version(code) == -1]
        if len({self.version(int(code)) for code in INDICES}) != 1:
            problems.append("the indices have different versions")
        return problems

    def has(self, portfolios):
        """How many of the portfolios are there, and problems with those."""
        problems, count = [], 0
        for name, rows in portfolios.items():
            if name not in self.by_name:
                continue
            count += 1
            number, cells = self.by_name[name]
            if cells[SAVED] != "1" or not same_holdings(self.database.holdings.get(number, []), rows):
                problems.append(f"portfolio {name}: {cells} {self.database.holdings.get(number)}")
        strangers = set(self.database.holdings) - set(self.database.portfolios)
        if strangers:
            problems.append(f"holdings without header: {sorted(strangers)}")
        return count, problems


def near(a, b):
    a, b = float(a), float(b)
    return a == b or abs(a - b) <= 1e-9 * max(abs(a), abs(b))


class Reference:
    """An undisturbed run with the later data and both imports: the earlier one made with the earlier data, or both made
    at once with the later."""

    def __init__(self, market, folder, at_once):
        self.market = market
        self.work, out = folder / "work", folder / "out"
        folder.mkdir()
        begin = time.monotonic()
        if at_once:
            self.begun = None
            run(*market.command(self.work, "--import", market.import_both, "--export", out), env=environment())
        else:
            self.begun = folder / "begun"
            run(*market.command(self.begun, "--import", market.import_earlier, "--export", folder / "begun-out", later=False),
                env=environment())
            shutil.copytree(self.begun, self.work)
            begin = time.monotonic()
            run(*market.command(self.work, "--import", market.import_later, "--export", out), env=environment())
        self.seconds = time.monotonic() - begin
        self.state = State(market, self.work)
        self.exported = Exported(out, self.state.database)
        count = self.state.has({**EARLIER, **LATER})[0]
        if count != len(EARLIER) + len(LATER) or self.state.mixed() or self.state.unfinished():
            raise SystemExit("the undisturbed run is not complete")

    def differences(self, work, out):
        """What is not as in the undisturbed run; empty when all is equal."""
        state = State(self.market, work)
        if state.database is None or state.database.problem:
            return [f"no database: {state.database and state.database.problem}"]
        return self.differences_of_state(state) + self.differences_of_tables(out, state)

    def differences_of_state(self, state):
        problems = state.mixed() + state.has({**EARLIER, **LATER})[1]
        if set(state.by_name) != set(self.state.by_name):
            return problems + [f"portfolios {sorted(state.by_name)}"]
        if state.database.statistics != self.state.database.statistics:
            versions = {code: state.version(code) for code in sorted(state.database.statistics)}
            problems.append(f"other statistics: {versions}")
        if state.database.rates != self.state.database.rates:
            problems.append("other interest rates")
        for name, (_, cells) in state.by_name.items():
            wanted = self.state.by_name[name][1]
            if cells[FINISHED] != "1" or not all(map(near, cells[FIGURES], wanted[FIGURES])):
                problems.append(f"figures of {name}: {cells} instead of {wanted}")
        return problems

    def differences_of_tables(self, out, state):
        problems = []
        exported = Exported(out, state.database)
        if exported.pictures != self.exported.pictures:
            problems.append(f"pictures {exported.pictures}")
        for name in sorted(set(exported.files) | set(self.exported.files)):
            got, want = exported.files.get(name), self.exported.files.get(name)
            # Imports in another order change the order of the rows only.
            if got is None or want is None or sorted(got) != sorted(want):
                problems.append(f"{name}.csv: {got} instead of {want}")
        return problems
