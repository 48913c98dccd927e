# SPDX-License-Identifier: MIT
"""What must hold of a work folder after the terminal has been disturbed in it."""
import shutil

from market import EARLIER, LATER, Reference, State, run_terminal

EXCHANGE_FILES = ["TZZHDetail.dat", "TZZHMerge.dat", "TZZHDetail.dat.new", "TZZHMerge.dat.new"]
LOG_OF_FAILURE = "发生错误"


def exchange_bytes(work):
    return {name: (work / name).read_bytes() for name in EXCHANGE_FILES if (work / name).exists()}


def log_of(work):
    path = work / "log" / "terminal.log"
    return path.read_text(encoding="utf-8", errors="replace") if path.exists() else ""


def read_back(market, folder, files):
    """A terminal is started on nothing but exchange files ({name: where it is}): its work folder, and the ended process or
    None."""
    work, out = folder / "copy", folder / "copy-out"
    for old in (work, out):
        shutil.rmtree(old, ignore_errors=True)
    work.mkdir(mode=0o700)
    for name, file in files.items():
        shutil.copy(file, work / name)
    return work, run_terminal(market.command(work, "--export", out))


class Aftermath:
    """`begun` below: the work folder held the earlier portfolios before the disturbed run, which imported the later ones.
    Otherwise the folder was empty and the run imported all of them."""

    def __init__(self, market, folder, report):
        self.market, self.folder, self.report = market, folder, report
        self.references = {True: Reference(market, folder / "continued", at_once=False),
                           False: Reference(market, folder / "at-once", at_once=True)}

    def prepare(self, work, begun):
        if begun:
            shutil.copytree(self.references[True].begun, work)

    def arguments(self, begun):
        return ["--import", self.market.import_later if begun else self.market.import_both]

    def verify_state(self, where, work, begun):
        """The state, and whether the import is in the database."""
        state = State(self.market, work)
        if state.database is None:
            if begun:
                self.report.problem(f"{where}: the database is gone")
            return state, False
        if state.database.problem:
            self.report.problem(f"{where}: the database does not open: {state.database.problem}")
            return state, False
        problems = state.mixed()
        earlier, wrong = state.has(EARLIER)
        later, wrong_later = state.has(LATER)
        if begun:
            if earlier != len(EARLIER):
                problems.append(f"portfolios lost: {sorted(state.by_name)}")
            if later not in (0, len(LATER)):
                problems.append(f"{later} portfolios of {len(LATER)} imported")
        elif earlier + later not in (0, len(EARLIER) + len(LATER)):
            problems.append(f"{earlier + later} portfolios of one import")
        for text in problems + wrong + wrong_later:
            self.report.problem(f"{where}: {text}")
        return state, later > 0

    def verify_exchange_files(self, where, work, begun, before):
        """When they were touched, the files must bring all portfolios of one moment back into an empty database."""
        files = exchange_bytes(work)
        if files == before:
            return
        copy, done = read_back(self.market, self.folder, {name: work / name for name in files})
        state = State(self.market, copy)
        found = (state.has(EARLIER)[0], state.has(LATER)[0])
        good = [(len(EARLIER), len(LATER))]
        if begun:
            good.append((len(EARLIER), 0))
        else:
            good.append((0, 0))  # a run without portfolios, or no pair before and the new one not complete
        if done is None or done.returncode != 0 or found not in good:
            self.report.problem(f"{where}: the exchange files {sorted(files)} bring back {found} portfolios: "
                                f"{done and done.stderr}")
        self.report.count("exchange files read back")

    def finish(self, where, work, begun, imported):
        """The next start ends the work; seconds it took."""
        out = self.folder / "finish-out"
        shutil.rmtree(out, ignore_errors=True)
        seen = len(log_of(work))
        done = run_terminal(self.market.command(work, *([] if imported else self.arguments(begun)), "--export", out))
        if done is None or done.returncode != 0:
            self.report.problem(f"{where}: the next start: {done and (done.returncode, done.stderr)}")
            return
        for text in self.references[begun].differences(work, out):
            self.report.problem(f"{where}: after the next start: {text}")
        failures = [line for line in log_of(work)[seen:].splitlines() if LOG_OF_FAILURE in line]
        if failures:
            self.report.problem(f"{where}: in the log of the next start: {failures}")
        self.report.count("next start finished the work")
