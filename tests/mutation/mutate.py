"""Plants small defects in the program and tells which of them no test sees. See README.md."""

import argparse
import random
import re
import shutil
import subprocess
import sys
import tempfile
import time
from concurrent.futures import ThreadPoolExecutor, as_completed
from pathlib import Path

import sites
import suite

HOME = Path(__file__).resolve().parent
ROOT = HOME.parents[1]
TREE = ROOT / "build/mutation"
BUILD = TREE / "build/release"
FOLDERS = ("device", "imaging", "log", "ui")
# They look at the sources or the machine, take a screen of their own, or wait most of the time.
LEFT_OUT = ("architecture", "configure", "desktop", "docs", "resources", "soak", "test_architecture", "test_docs",
            "test_soak", "test_matrix:Waiting", "test_matrix_tool:Waiting", "test_usb_flow", "test_acquire_killed")


def say(text):
    print(time.strftime("%H:%M:%S"), text, flush=True)


def copy_tree():
    """The sources as they are now into build/mutation; what is the same there stays untouched."""
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT,
                            check=True, stdout=subprocess.PIPE).stdout
    for name in filter(None, listed.decode().split("\0")):
        source, copy = ROOT / name, TREE / name
        if source.is_file() and not (copy.is_file() and copy.read_bytes() == source.read_bytes()):
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, copy)


def configure(folders):
    """And generates what the sources include."""
    generated = [f"qv1k_{folder}_autogen" for folder in folders]
    with open(TREE / "configure.log", "w", encoding="utf-8") as log:
        for command in (["cmake", "--preset", "release", "-DQV1K_BUILD_TESTS=ON"],
                        ["cmake", "--build", "--preset", "release", "--target", *generated]):
            subprocess.run(command, cwd=TREE, check=True, stdout=log, stderr=subprocess.STDOUT)


def choose(found, number, seed):
    """`number` of the sites in an order of chance, none of them within another."""
    chosen = []
    for site in random.Random(seed).sample(found, len(found)):
        if len(chosen) < number and not any(site.path == other.path and site.begin < other.end and
                                            other.begin < site.end for other in chosen):
            chosen.append(site)
    return chosen


def plant(defects):
    """Writes the sources anew with all of these defects, each to be shown only when it is named."""
    for path in {site.path for site in defects.values()}:
        text = (ROOT / path).read_bytes()
        here = [(number, site) for number, site in defects.items() if site.path == path]
        for number, site in sorted(here, key=lambda entry: -entry[1].begin):
            text = text[:site.begin] + site.planted(number).encode() + text[site.end:]
        text = b'#include "tests/mutation/mutation.h"\n#line 1\n' + text
        if (TREE / path).read_bytes() != text:
            (TREE / path).write_bytes(text)


def build(defects):
    """Builds the tests with the defects in them; takes those out of `defects` that are no C++."""
    while True:
        plant(defects)
        result = subprocess.run(["cmake", "--build", "--preset", "release", "--", "-k", "0"], cwd=TREE,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, encoding="utf-8", check=False)
        (TREE / "build.log").write_text(result.stdout)
        if result.returncode == 0:
            return
        wrong = {(Path(path).name, int(line))
                 for path, line in re.findall(r"^(\S+?):(\d+):\d+: error", result.stdout, re.MULTILINE)}
        dropped = [number for number, site in defects.items() if (Path(site.path).name, site.line) in wrong]
        if not dropped:
            raise SystemExit(f"The build failed; its log is {TREE}/build.log")
        for number in dropped:
            site = defects.pop(number)
            say(f"no C++: {site.name()}")
            (TREE / site.path).write_bytes((ROOT / site.path).read_bytes())


def look_where_they_lead(tests, jobs):
    """Runs every test where nothing is wrong: those that come by each defect."""
    reached = {}
    with tempfile.TemporaryDirectory() as folder, ThreadPoolExecutor(jobs) as workers:
        def trace(entry):
            index, test = entry
            file = Path(folder) / str(index)
            passed, test.seconds = test.run(test.timeout, QV1K_DEFECT_TRACE=str(file))
            return test, passed, set(map(int, file.read_text().split())) if file.exists() else set()

        for test, passed, come_by in workers.map(trace, enumerate(tests)):
            if not passed:
                say(f"left out, since it fails by itself: {test.name}")
                continue
            test.places = len(come_by)
            for number in come_by:
                reached.setdefault(number, []).append(test)
    return reached


def first_that_sees(number, tests, budget):
    """The most likely ones first: which are quick, come by few places, and have seen other defects."""
    waiting = set(tests)
    while waiting and budget > 0:
        test = min(waiting, key=lambda each: each.seconds * each.places / (1 + each.kills))
        waiting.remove(test)
        budget -= test.seconds
        if test.sees(number):
            test.kills += 1
            return test
    return None


def explained():
    """The survivors that have been looked at, by name, with the reason why they may live."""
    entries = re.findall(r"^- `(.*)`\n((?:  .*\n?)+)", (HOME / "survivors.md").read_text(), re.MULTILINE)
    return {name: " ".join(reason.split()) for name, reason in entries}


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--number", type=int, default=200, help="how many defects (200)")
    parser.add_argument("--seed", type=int, default=1, help="which ones (1)")
    parser.add_argument("--folders", nargs="+", default=FOLDERS, help="where (%(default)s)")
    parser.add_argument("--budget", type=float, default=120, help="seconds of tests for each defect (120)")
    parser.add_argument("--jobs", type=int, default=4, help="how many tests at a time (4)")
    options = parser.parse_args()

    copy_tree()
    configure(options.folders)
    found = sites.find(ROOT, BUILD, TREE, options.folders)
    defects = dict(enumerate(choose(found, options.number, options.seed)))
    say(f"{len(defects)} of {len(found)} places chosen; building")
    build(defects)
    tests = suite.tests_of(TREE, "release", LEFT_OUT)
    say(f"{len(defects)} defects planted; looking which of them {len(tests)} tests come by")
    reached = look_where_they_lead(tests, options.jobs)

    reasons = explained()
    survivors = []
    with ThreadPoolExecutor(options.jobs) as workers:
        runs = {workers.submit(first_that_sees, number, reached.get(number, []), options.budget): number
                for number in defects}
        for run in as_completed(runs):
            number, killer = runs[run], run.result()
            site = defects[number]
            if killer:
                say(f"{number} killed: {site.name()}  by  {killer.name}")
            else:
                survivors.append(site)
                say(f"{number} survived ({len(reached.get(number, []))} tests come by): {site.name()}")

    unexplained = [site for site in survivors if site.name() not in reasons]
    say(f"{len(defects)} planted, {len(defects) - len(survivors)} killed, {len(survivors)} survived, "
        f"{len(survivors) - len(unexplained)} of them explained in survivors.md")
    for site in unexplained:
        print(f"{site.path}:{site.line}\n- `{site.name()}`")
    return 1 if unexplained else 0


if __name__ == "__main__":
    sys.exit(main())
