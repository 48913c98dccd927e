# SPDX-License-Identifier: MIT
"""What the script benches run on: a made-up market, portfolios of ten holdings, and a work folder that holds them."""
import csv
import pathlib
import random
import subprocess


def make_market(binaries, folder, securities, days, simulated):
    """A data folder, made once; `simulated`: its prices move while a terminal is open. Returns it and the codes."""
    csvs, data = folder / "csv", folder / "market"
    if not (data / "market.dat").exists():
        quiet = {"check": True, "stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
        subprocess.run([binaries / "holdwise-market", "simulate", "--securities", str(securities), "--days", str(days),
                        "--seed", "7", "--out", csvs], **quiet)
        subprocess.run([binaries / "holdwise-market", "build", "--bars", csvs / "bars", "--indices", csvs / "indices",
                        "--securities", csvs / "securities.csv", "--dates", csvs / "trading_dates.csv", "--rates",
                        csvs / "deposit_rates.csv", "--estimates", csvs / "estimates.csv", "--out", data]
                       + (["--simulated"] if simulated else []), **quiet)
    return data, [row["code"] for row in csv.DictReader(open(csvs / "securities.csv", encoding="utf-8"))]


def make_work_folder(binaries, folder, data, codes, portfolios):
    """A work folder with that many calculated portfolios, made once."""
    work = folder / "work"
    if (folder / "imported").exists():
        return work
    choice = random.Random(7)
    table = folder / "portfolios.csv"
    with open(table, "w", encoding="utf-8") as file:
        file.write("name,code,quantity,price\n")
        for number in range(portfolios):
            for code in choice.sample(codes, 10):
                file.write(f"组合{number:04d},{code},{choice.randrange(1, 90) * 100},{choice.randrange(300, 9000) / 100}\n")
    subprocess.run([binaries / "holdwise-terminal", "--data", data, "--work", work, "--import", table, "--export",
                    folder / "first"], stdout=subprocess.DEVNULL)
    # 1 is no failure here: a made-up stock may not have traded in a week, which the export tells.
    if not (folder / "first" / "2001.png").exists():
        raise SystemExit("the portfolios could not be imported")
    pathlib.Path(folder / "imported").touch()
    return work
