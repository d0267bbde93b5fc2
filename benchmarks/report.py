#!/usr/bin/env python3
"""Runs the benchmarks and prints what the widgets cost beside straight code.

  report.py BIN            times and instructions, as a table
  report.py BIN --check    instructions only, compared with the stored ones; exit 1 if one has crept up
  report.py BIN --store    stores new ones, in instructions.json or, if BIN was built with Qt 6, instructions-qt6.json
  report.py BIN --page     times and instructions, also written into the documentation

BIN is the folder of the built programs. Times are medians of interleaved repetitions, in processor time. Instructions
are counted by callgrind; only their ratio to straight code in the same run is stored, as counts differ
between machines and libraries.
"""

import datetime
import json
import os
import platform
import re
import subprocess
import sys
import tempfile
from pathlib import Path

PAGE = Path(__file__).parent.parent / "docs" / "src" / "speed.qdoc"
TOLERANCE = 0.02
COUNTED = ["push-new", "push-same", "build", "search", "search-worst"]

# operation, size, ours, floor, literal algorithm
TIMED = [
    ("search keystroke, mean over a word", "50 sections of 20", "searchOurs/mean/1000/20", "searchFloor/mean/1000/20",
     "searchLiteral/mean/1000/20"),
    ("search keystroke, worst", "50 sections of 20", "searchOurs/worst/1000/20", "searchFloor/worst/1000/20",
     "searchLiteral/worst/1000/20"),
    ("search keystroke, mean over a word", "5 sections of 200", "searchOurs/mean/1000/200", "searchFloor/mean/1000/200",
     "searchLiteral/mean/1000/200"),
    ("search keystroke, worst", "5 sections of 200", "searchOurs/worst/1000/200", "searchFloor/worst/1000/200",
     "searchLiteral/worst/1000/200"),
    ("search keystroke, mean over a word", "1 section of 1000", "searchOurs/mean/1000/1000",
     "searchFloor/mean/1000/1000", "searchLiteral/mean/1000/1000"),
    ("search keystroke, worst", "1 section of 1000", "searchOurs/worst/1000/1000", "searchFloor/worst/1000/1000",
     "searchLiteral/worst/1000/1000"),
    ("search keystroke, mean over a word", "500 sections of 20", "searchOurs/mean/10000/20",
     "searchFloor/mean/10000/20", "searchLiteral/mean/10000/20"),
    ("search keystroke in the dark look, mean", "50 sections of 20", "searchOurs/darkMean/1000/20",
     "searchFloor/darkMean/1000/20", None),
    ("search keystroke in the dark look, worst", "50 sections of 20", "searchOurs/darkWorst/1000/20",
     "searchFloor/darkWorst/1000/20", None),
    ("push new values", "1000 editors", "pushOurs/new", "pushFloor/new", None),
    ("push unchanged values", "1000 editors", "pushOurs/same", "pushFloor/same", None),
    ("build slider editors", "1000 editors", "buildOurs", "buildFloor", None),
    ("destroy slider editors", "1000 editors", "destroyOurs", "destroyFloor", None),
    ("heap of slider editors", "bytes an editor", "buildOurs:heap", "buildFloor:heap", None),
    ("show slider editors", "1000 editors", "showOurs", "showFloor", None),
    ("search keystroke with PanelHost, mean", "50 sections of 20", "hostSearch/hosted", "hostSearch/bare", None),
    ("push new values with PanelHost", "1000 editors", "hostPush/hosted", "hostPush/bare", None),
    ("build and show with PanelHost", "50 sections of 20", "hostBuild/hosted", "hostBuild/bare", None),
    ("nothing happens with PanelHost", "50 sections of 20", "hostIdle/hosted", "hostIdle/bare", None),
    ("compare the values of a selection", "1000 objects of 40", "compareOurs", "compareFloor", None),
    ("show a selection in an Inspector", "1000 objects of 40", "inspectorSelect", "compareFloor", None),
    ("refresh an Inspector, nothing new", "1000 values", "inspectorRefresh", "pushFloor/same", None),
    ("closed Inspector beside one with all rows", "200 sections of 50", "inspectorBuild/closed/10000/50",
     "inspectorBuild/all/10000/50", None),
    ("open a section of an Inspector", "50 rows of 10000", "inspectorOpen/10000/50", "inspectorOpenFloor", None),
    ("frame of an empty engine", "1 frame", "frameOurs", "frameFloor", None),
    ("mouse move to the handler", "1 move", "moveOurs", "moveFloor", None),
    ("read a mesh; tinyobjloader without normals; Assimp with them", "1 million triangles", "meshOurs", "meshFloor",
     "meshLiteral"),
    ("start to a drawn scene; an empty main window with the same view", "4 meshes", "startEditor", "startWindow", None),
    ("memory that a mesh adds to the scene editor's peak; its vertices and indices", "bytes, 1 million triangles",
     "memoryEditor:heap", "memoryData:heap", None),
    ("frame of the scene editor while moving; at rest", "1400 x 900", "orbitMoving", "orbitResting", None),
]

# Software OpenGL on a virtual display: what a machine without a graphics card takes.
WITH_DISPLAY = ["env", "LIBGL_ALWAYS_SOFTWARE=1", "QT_QPA_PLATFORM=xcb", "xvfb-run", "-a", "-s",
                "-screen 0 1920x1200x24"]


def run_times(programs):
    """Medians in milliseconds per item, by name; the heap counter in bytes."""
    values = {}
    # The largest trees take too long for many repetitions.
    for program, which, repetitions, least, runner in [
            ("bench_widgets", "-.*/10000/", 7, 0.2, []), ("bench_widgets", ".*/10000/", 3, 0.1, []),
            ("bench_mesh", ".*", 3, 0.1, []), ("bench_scene", ".*", 3, 0.1, WITH_DISPLAY)]:
        with tempfile.NamedTemporaryFile(suffix=".json") as out:
            subprocess.run(
                [*runner, programs / program, f"--benchmark_filter={which}", f"--benchmark_min_time={least}",
                 f"--benchmark_repetitions={repetitions}",
                 "--benchmark_enable_random_interleaving=true", "--benchmark_report_aggregates_only=true",
                 f"--benchmark_out={out.name}"],
                check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            for entry in json.load(open(out.name, encoding="utf-8"))["benchmarks"]:
                if entry["aggregate_name"] == "median":
                    name = re.sub("/iterations:.*|/manual_time", "", entry["run_name"])
                    values[name] = 1000.0 / entry["items_per_second"]
                    if "heap" in entry:
                        values[name + ":heap"] = entry["heap"]
    return values


def count(programs, work):
    # A fixed hash order and no desktop theme, or the counts would differ from run to run.
    environment = {"PATH": os.environ["PATH"], "QT_HASH_SEED": "0", "LC_ALL": "C.UTF-8",
                   "HOME": os.environ.get("HOME", "/")}
    result = subprocess.run(
        ["valgrind", "--tool=callgrind", "--toggle-collect=*counted*", "--callgrind-out-file=/dev/null",
         programs / "count_instructions", work],
        check=True, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True, env=environment)
    return int(re.search(r"Collected : (\d+)", result.stderr).group(1))


def ratio_of(programs, work):
    return count(programs, work) / count(programs, work + "-floor")


def ratios(programs):
    return {work: ratio_of(programs, work) for work in COUNTED}


def bar_file(programs):
    libraries = subprocess.check_output(["ldd", programs / "count_instructions"], text=True)
    return Path(__file__).with_name("instructions-qt6.json" if "libQt6Core" in libraries else "instructions.json")


def check(programs):
    bars = json.loads(bar_file(programs).read_text(encoding="utf-8"))
    crept = False
    for work in COUNTED:
        bar = bars[work] * (1 + TOLERANCE)
        ratio = ratio_of(programs, work)
        # The heap tidies up now and then, which costs a hundredth of a push. A real increase shows every time.
        for _ in range(2):
            if ratio > bar:
                ratio = min(ratio, ratio_of(programs, work))
        over = ratio > bar
        crept |= over
        print(f"{work:12} {ratio:7.3f} of straight code's instructions, bar {bars[work]:.3f}{'  CREPT UP' if over else ''}")
    return 1 if crept else 0


def number(value):
    return f"{value:.0f}" if value >= 1000 else f"{value:.4g}"


def measure(programs):
    """A line that names the machine, and the tables: rows of cells, the first one with headings."""
    times = run_times(programs)
    processor = re.search(r"model name\s*: (.*)", Path("/proc/cpuinfo").read_text(encoding="utf-8"))
    where = (f"{datetime.date.today()}, {processor.group(1) if processor else platform.machine()}, "
             f"{os.cpu_count()} cores, Qt {subprocess.getoutput('qmake -query QT_VERSION')}, offscreen")
    timed = [["Operation", "Size", "Ours", "Straight code", "Literal", "Ours / straight"]]
    for name, size, ours, floor, literal in TIMED:
        mine, bare, other = times[ours], times[floor], times.get(literal)
        timed.append([name, size, number(mine), number(bare), number(other) if other else "", f"{mine / bare:.2f}"])
    counted = [["Work", "Ours / straight, in instructions"]]
    counted += [[work, f"{ratio:.3f}"] for work, ratio in ratios(programs).items()]
    return where, [timed, counted]


def report(where, tables):
    print(f"Measured on {where}; times in ms of processor time.")
    for rows in tables:
        print("\n| " + " | ".join(rows[0]) + " |\n" + "|---" * len(rows[0]) + "|")
        for cells in rows[1:]:
            print("| " + " | ".join(cells) + " |")


def document(where, tables):
    text = [f"    Measured on {where}."]
    for rows in tables:
        text += ["", "    \\table"]
        text += [("    \\row" if n else "    \\header") + "".join(f" \\li {cell}" for cell in cells)
                 for n, cells in enumerate(rows)]
        text += ["    \\endtable"]
    page = PAGE.read_text(encoding="utf-8")
    start, end = page.index("    Measured on"), page.rindex("    \\endtable") + len("    \\endtable")
    PAGE.write_text(page[:start] + "\n".join(text) + page[end:], encoding="utf-8")


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    programs = Path(sys.argv[1])
    mode = sys.argv[2] if len(sys.argv) == 3 else ""
    if mode == "--check":
        sys.exit(check(programs))
    if mode == "--store":
        bars = {work: round(ratio, 4) for work, ratio in ratios(programs).items()}
        bar_file(programs).write_text(json.dumps(bars, indent=4) + "\n", encoding="utf-8")
        return
    measured = measure(programs)
    report(*measured)
    if mode == "--page":
        document(*measured)


if __name__ == "__main__":
    main()
