"""The tests of a build, run one by one with an environment of their own."""

import json
import os
import signal
import subprocess
import threading
import time
from dataclasses import dataclass, field


@dataclass(eq=False)
class Test:
    name: str
    command: list
    folder: str
    environment: dict
    timeout: float
    seconds: float = 0  # what it takes where nothing is wrong
    places: int = 0  # that it comes by
    kills: int = 0
    lock: threading.Lock = field(default_factory=threading.Lock)

    def run(self, timeout, **environment):
        """Whether it passes within `timeout` seconds, and how many it took. Never twice at a time."""
        with self.lock:
            start = time.monotonic()
            with subprocess.Popen(self.command, cwd=self.folder, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                  start_new_session=True,
                                  env={**os.environ, **self.environment, **environment}) as process:
                try:
                    passed = process.wait(timeout) == 0
                except subprocess.TimeoutExpired:
                    passed = False
                try:
                    os.killpg(process.pid, signal.SIGKILL)  # and what it may have left running
                except ProcessLookupError:
                    pass
            return passed, time.monotonic() - start

    def sees(self, number):
        """Whether it fails with that defect. A failure counts when it comes again."""
        allowed = 20 + 4 * self.seconds
        return not any(self.run(allowed, QV1K_DEFECT=str(number))[0] for _ in range(2))


def tests_of(tree, preset, left_out):
    """The tests of a preset but those whose name begins like one of `left_out`."""
    listed = subprocess.run(["ctest", "--preset", preset, "--show-only=json-v1"], cwd=tree, check=True,
                            stdout=subprocess.PIPE).stdout
    presets = json.loads((tree / "CMakePresets.json").read_text())["testPresets"]
    common = next(entry for entry in presets if entry["name"] == "base")
    tests = []
    for entry in json.loads(listed)["tests"]:
        properties = {item["name"]: item["value"] for item in entry["properties"]}
        if entry["name"].startswith(left_out) or "PASS_REGULAR_EXPRESSION" in properties:
            continue
        own = dict(item.split("=", 1) for item in properties.get("ENVIRONMENT", []))
        tests.append(Test(entry["name"], entry["command"], properties["WORKING_DIRECTORY"],
                          {**common["environment"], **own},
                          properties.get("TIMEOUT", common["execution"]["timeout"])))
    return tests
