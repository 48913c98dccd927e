#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""What the linker made of the programs: full RELRO, position independence, no executable stack, the stack protector,
checked library calls and landing pads for indirect jumps; and an installation that runs from where it was put."""
import argparse
import os
import pathlib
import platform
import re
import subprocess
import sys
import tempfile

PROGRAMS = ["bin/holdwise-terminal", "bin/holdwise-market", "bin/holdwise-dbcheck", "lib/holdwise/Holdwise.so"]
ENDBR64 = b"\xf3\x0f\x1e\xfa"
problems = []


def require(condition, text):
    if not condition:
        problems.append(text)


def output(*command, **more):
    return subprocess.run(command, capture_output=True, text=True, check=True, **more).stdout


def count_functions(path):
    """How many functions the symbol table has."""
    table = output("readelf", "-sW", path)
    return len(re.findall(r"\sFUNC\s.*\s\d+\s\S+$", table, re.MULTILINE))


def check_hardening(path):
    headers = output("readelf", "-lhdW", path)
    require("GNU_RELRO" in headers and re.search(r"BIND_NOW|FLAGS.*NOW", headers), f"{path}: RELRO is not full")
    require(re.search(r"Type:\s+DYN", headers), f"{path}: not position independent")
    stack = re.search(r"GNU_STACK.*?(R[WE ]+)\s0x", headers)
    require(stack is not None and "E" not in stack[1], f"{path}: the stack is executable")
    called = output("readelf", "-sW", "--dyn-syms", path)
    require("__stack_chk_fail" in called, f"{path}: no stack protector")
    require(re.search(r"\b__\w+_chk\b", called), f"{path}: no checked library calls")
    if platform.machine() == "x86_64":
        pads, functions = pathlib.Path(path).read_bytes().count(ENDBR64), count_functions(path)
        require(pads * 2 > functions, f"{path}: {pads} landing pads for {functions} functions")


def check_installation(build, folder):
    """A market made, and every view of it exported, by what was installed; the build folder is not looked at."""
    prefix, data = folder / "opt", folder / "data"
    output("cmake", "--install", str(build), "--component", "holdwise", "--prefix", str(prefix))
    for name in PROGRAMS:
        require((prefix / name).is_file(), f"not installed: {name}")
    if problems:
        return
    market, csv = str(prefix / "bin/holdwise-market"), folder / "csv"
    environment = {**os.environ, "QT_QPA_PLATFORM": "offscreen"}
    environment.pop("HOLDWISE_PLUGIN_DIR", None)
    output(market, "simulate", "--securities", "30", "--days", "80", "--out", str(csv))
    output(market, "build", "--bars", str(csv / "bars"), "--indices", str(csv / "indices"), "--securities",
           str(csv / "securities.csv"), "--dates", str(csv / "trading_dates.csv"), "--simulated", "--out", str(data))
    ended = subprocess.run([prefix / "bin/holdwise-terminal", "--data", data, "--work", folder / "work", "--export",
                            folder / "out"], capture_output=True, text=True, env=environment, timeout=120)
    require(len(list((folder / "out").glob("*.csv"))) > 5, f"the installed terminal exports nothing: {ended.stderr}")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True, help="a built release")
    build = parser.parse_args().build
    for name in PROGRAMS:
        check_hardening(str(build / name))
    with tempfile.TemporaryDirectory() as folder:
        check_installation(build, pathlib.Path(folder))
    print("\n".join(problems) or "all as it should be")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
