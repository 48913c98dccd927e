#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Where things may stand: the arrows between wings and rooms, files, sizes, texts and scripts. Part of tools/lint."""
import pathlib
import re
import subprocess
import sys

# Who may see whom directly; what a room sees is seen by those above it too.
WINGS = {
    "packet": [],
    "sdk": ["packet"],
    "market": ["packet"],
    "module": ["sdk"],
    "terminal": ["sdk"],
}
MODULE = {
    "common/helpers": [],
    "common/host": [],
    "common/store": ["common/helpers", "common/host"],
    "common/series": ["common/store"],
    "common/grid": ["common/host"],
    "common/frames": ["common/grid", "common/series"],
    "common/charts": ["common/frames"],
    "calc": ["common/store"],
    "views/*": ["common/charts"],
    "mainframe": ["calc", "views/*"],
    "plugin": ["mainframe"],
}
TERMINAL = {
    "theme": [],
    "database/statements": [],
    "database/engine": ["database/statements"],
    "database": ["database/engine"],
    "backup": [],
    "health": ["backup"],
    "files": [],
    "datacentre": [],
    "search": [],
    "bus": ["datacentre"],
    "process": ["theme"],
    "window": ["process", "theme", "search"],
    "pages": ["datacentre", "process", "theme"],
    "holdings": [],
    "transfer": ["process", "backup", "holdings"],
    "intraday": ["bus", "datacentre", "theme"],
    "plugins": ["bus", "files", "datacentre", "pages", "window", "theme"],
    "parts": ["plugins", "intraday"],
    "app": ["parts", "transfer", "database", "backup", "health"],
}
ROOMS = {"module": MODULE, "terminal": TERMINAL}
# The one way from the terminal to the producer: the quote service inside the terminal's process.
MARKET_IN_TERMINAL = re.compile(r"terminal/bus/(embedded_market|in_process_bus|simulation_file)\.(cpp|h)$")

MOST_LINES, MANY_LINES = 600, 400
STATEMENT = re.compile(r'"\(?\s*(update \w+ set|insert into|delete from|merge into|execute (block|procedure)|with \w+ as|set generator|'
                       r'(create|alter|drop|recreate) \w+|select|insert|delete|merge)(\s|"|$)', re.IGNORECASE)
COLOUR = re.compile(r'QColor\s*\w*\s*[({]\s*(0x|[0-9]|u?"|Qt::)|QColor::from|QColorConstants|qRgba?\(|Qt::(red|green|blue|black|white|gray|darkGray|lightGray|yellow|cyan|magenta)\b|QStringLiteral\("#[0-9a-fA-F]{3,8}"')
# A colour that is given, whatever the theme.
GIVEN_COLOUR = re.compile(r"\bkEditorColor\b")
# A picture that the module brings itself has colours of its own.
OWN_PICTURE = re.compile(r"module/common/.*_picture\.cpp$")
THEME_KEY = re.compile(r'"(Qm_|QM_|KTR_|ktr_|Grid_|Invest_|Section_|TreeListColor|GridTitle)')
FRAME_WIDGETS = re.compile(r"QMessageBox|QErrorMessage")
LEFT_OVERS = re.compile(r"\b(TODO|FIXME|XXX|HACK)\b")

problems, warnings = [], []


def tracked():
    names = subprocess.run(["git", "ls-files", "-z"], capture_output=True, text=True, check=True).stdout.split("\0")
    return [pathlib.PurePosixPath(name) for name in names if name and pathlib.Path(name).is_file()]


def room_of(wing, inside):
    """The room of a path inside a wing; None when it stands in none."""
    parts = inside.split("/")
    for depth in range(len(parts), 0, -1):
        name = "/".join(parts[:depth])
        if name in ROOMS[wing]:
            return name
        if depth == 2 and parts[0] + "/*" in ROOMS[wing]:
            return name
    return None


def seen_from(arrows, name):
    """Everything a room or wing sees; a view sees what all views see."""
    seen, waiting = set(), [name]
    while waiting:
        now = waiting.pop()
        key = now if now in arrows else now.split("/")[0] + "/*"
        for other in arrows[key]:
            if other not in seen:
                seen.add(other)
                waiting.append(other)
    return seen


def sees(arrows, name, other):
    allowed = seen_from(arrows, name)
    return other == name or other in allowed or other.split("/")[0] + "/*" in allowed


def check_include(path, line, included):
    wing, where = path.parts[0], f"{path}:{line}"
    face = re.match(r"holdwise/(sdk|packet|market)/", included)
    if face:
        if face[1] == "market" and MARKET_IN_TERMINAL.match(str(path)):
            return
        if not sees(WINGS, wing, face[1]):
            problems.append(f"{where}: {wing} does not see {face[1]}")
    elif wing in ROOMS and "/" in included:
        own = room_of(wing, "/".join(path.parts[1:-1]))
        other = room_of(wing, included.rsplit("/", 1)[0])
        if other is None or not pathlib.Path(wing, included).exists():
            problems.append(f"{where}: {included} is in no room that {wing} sees")
        elif own is not None and not sees(ROOMS[wing], own, other):
            problems.append(f"{where}: {own} does not see {other}")
    elif not any((folder / included).exists() for folder in [pathlib.Path(path.parent), *pathlib.Path(wing).rglob("src"),
                                                             *pathlib.Path(wing).rglob("app")]):
        problems.append(f"{where}: {included} is none of {wing}'s")


def check_arrows(files):
    for path in files:
        if path.parts[0] not in WINGS or path.suffix not in (".cpp", ".h"):
            continue
        if path.parts[0] in ROOMS and room_of(path.parts[0], "/".join(path.parts[1:-1])) is None:
            problems.append(f"{path} stands in no room")
        for number, line in enumerate(pathlib.Path(path).read_text(encoding="utf-8").splitlines(), 1):
            outside = re.match(r"\s*#\s*include\s*<([^>]+/[^>]+)>", line)
            if outside and (outside[1].startswith("holdwise/") or pathlib.Path(path.parts[0], outside[1]).exists()):
                problems.append(f"{path}:{number}: an include of our own stands in quotes: {outside[1]}")
            include = re.match(r'\s*#\s*include\s*"([^"]+)"', line)
            if include and not include[1].startswith("moc_") and not include[1].endswith(".moc"):
                check_include(path, number, include[1])


def check_rooms(files):
    """Every room has a target of its own that names each of its sources."""
    sources = [path for path in files if path.suffix == ".cpp" and path.parts[0] in WINGS]
    for wing, rooms in ROOMS.items():
        for room in rooms:
            if room.endswith("/*"):
                continue
            if not pathlib.Path(wing, room).is_dir():
                problems.append(f"{wing}/{room}: there is no such room")
    targets = {}
    for path in sources:
        lists = next(folder / "CMakeLists.txt" for folder in path.parents if pathlib.Path(folder, "CMakeLists.txt").exists())
        if lists not in targets:
            targets[lists] = pathlib.Path(lists).read_text(encoding="utf-8")
        inside = str(path.relative_to(lists.parent))
        # The plug-in's entry functions belong to the shared library itself.
        if str(path) == "module/plugin/exports.cpp":
            continue
        if not re.search(r"(?<![\w/.])" + re.escape(inside) + r"(?![\w.])", targets[lists]):
            problems.append(f"{path} is not built: {lists} does not name it")
        if path.parts[0] in ROOMS and not re.search(r"add_library\(|holdwise_room\(", targets[lists]):
            problems.append(f"{lists}: its room has no target")


def forbid(path, number, line, pattern, words):
    if pattern.search(line):
        problems.append(f"{path}:{number}: {words}: {line.strip()}")


def check_texts(files):
    for path in files:
        if path.suffix not in (".cpp", ".h", ".txt", ".cmake", ".sql", ".py", ".sh", "") or path.name == "house.py":
            continue
        try:
            lines = pathlib.Path(path).read_text(encoding="utf-8").splitlines()
        except UnicodeDecodeError:
            continue
        is_source = path.suffix in (".cpp", ".h")
        if is_source and len(lines) > MOST_LINES:
            problems.append(f"{path} has {len(lines)} lines ({MOST_LINES} at most)")
        elif is_source and len(lines) > MANY_LINES:
            warnings.append(f"{path} has {len(lines)} lines (more than {MANY_LINES})")
        place = str(path)
        for number, line in enumerate(lines, 1):
            if path.name != "LICENSE":
                forbid(path, number, line, LEFT_OVERS, "left-over")
            if not is_source or path.parts[0] != "module":
                continue
            if not place.startswith("module/common/store/"):
                forbid(path, number, line, STATEMENT, "statements stand in module/common/store")
            if not OWN_PICTURE.match(place) and not GIVEN_COLOUR.search(line):
                forbid(path, number, line, COLOUR, "colours come from the host's theme")
            if not place.startswith("module/common/host/"):
                forbid(path, number, line, THEME_KEY, "keys of the theme stand in module/common/host")
            forbid(path, number, line, FRAME_WIDGETS, "messages go through the host")


def check_scripts(files):
    for path in files:
        try:
            text = pathlib.Path(path).read_text(encoding="utf-8")
        except UnicodeDecodeError:
            continue
        first = text.split("\n", 1)[0]
        if path.suffix == ".py" or re.match(r"#!.*python", first):
            try:
                compile(text, str(path), "exec")
            except SyntaxError as error:
                problems.append(f"{path}:{error.lineno}: {error.msg}")
        elif re.match(r"#!.*\b(ba)?sh\b", first):
            done = subprocess.run(["bash", "-n", str(path)], capture_output=True, text=True)
            if done.returncode != 0:
                problems.append(done.stderr.strip())


def check_schema(files):
    numbers = [path.name.split("_")[0] for path in files if path.match("terminal/database/schema/*.sql")]
    for number in {number for number in numbers if numbers.count(number) > 1}:
        problems.append(f"two schema files of the number {number}")


def main():
    files = tracked()
    for check in (check_arrows, check_rooms, check_texts, check_scripts, check_schema):
        check(files)
    for text in warnings:
        print(f"lint: warning: {text}")
    for text in problems:
        print(f"lint: {text}", file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
