#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""That the rules of the house are seen to be broken: each bad line alone is a finding, each good one none."""
import importlib.util
import os
import pathlib
import sys
import tempfile

BAD = [
    'auto text = "select ID from alg_commain";',
    'auto text = "select"',
    'auto text = R"(select ID from alg_commain)";',
    'auto text = "  DELETE FROM alg_commain";',
    'auto text = "with a as (select 1 from b) select * from a";',
    'auto text = "SET GENERATOR g TO 1";',
    'auto text = "alter table a";',
    'auto text = "execute procedure SP_GETBETA(1,2)";',
    "QColor(0xFF0000)",
    "QColor red(255, 0, 0);",
    'QColor(u"red")',
    "QColor::fromRgb(255, 0, 0)",
    "QColorConstants::Red",
    "painter.setPen(Qt::red);",
    'theme.ColorOf("Qm_KlineRedColor")',
    "QMessageBox::warning(this, a, b);",
    "#include <common/series/now_price.h>",
    '#  include "common/series/now_price.h"',
    "#include <holdwise/market/pinyin.h>",
    '#include "holdwise/market/pinyin.h"',
    "// TO" + "DO later",
]
GOOD = [
    'log.Write("selected");',
    'const auto* selection = "update";',
    "QColor color = theme.ColorOf(key);",
    "#include <QString>",
    "#include <sys/types.h>",
    '#include "common/host/event_guard.h"',
]


def findings(house, line):
    path = pathlib.PurePosixPath("module/common/grid/line.cpp")
    pathlib.Path(path).write_text(line + "\n", encoding="utf-8")
    house.problems.clear()
    house.check_arrows([path])
    house.check_texts([path])
    return list(house.problems)


def main():
    source = pathlib.Path(__file__).resolve().parents[2]
    spec = importlib.util.spec_from_file_location("house", source / "tools/house.py")
    house = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(house)
    wrong = []
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        for header in ("common/series/now_price.h", "common/host/event_guard.h", "common/grid/.h"):
            place = pathlib.Path("module", header)
            place.parent.mkdir(parents=True, exist_ok=True)
            place.touch()
        wrong += [f"not seen: {line}" for line in BAD if not findings(house, line)]
        wrong += [f"{found}" for line in GOOD for found in findings(house, line)]
        os.chdir("/")
    print("\n".join(wrong) or f"{len(BAD)} bad lines seen, {len(GOOD)} good ones taken")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
