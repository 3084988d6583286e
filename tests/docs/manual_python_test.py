#!/usr/bin/python3
"""Runs the manual's Python on a recording of the virtual detector, and looks at the recording's files as the
manual has other programs read them.
usage: manual_python_test.py <qv1k-acquire> <the manual>, in an empty folder"""

import pathlib
import re
import struct
import subprocess
import sys

import numpy as np

# What the manual draws with, as far as it uses it: a name or an argument that is not in it ends the run.
DRAWING = '''
def imshow(X, cmap=None, norm=None, *, aspect=None, interpolation=None, alpha=None, vmin=None, vmax=None):
    print("imshow", X.shape, cmap, vmin, vmax)
def colorbar(mappable=None, cax=None, ax=None, *, label=""):
    print("colorbar", label)
def show(*, block=None):
    print("show")
'''


def expect(holds, what):
    if not holds:
        sys.exit(f"wrong: {what}")


def record(acquire):
    """Two frames under the name that the manual gives; what was printed of the first: least, mean, largest."""
    pathlib.Path("virtual-detector.ini").write_text("[General]\nScene=chart\nPacing=none\n")
    told = subprocess.run([acquire, "--library", "virtual", "--output", ".", "--name", "NAME", "--frames", "2",
                           "--data", "--picture"], capture_output=True, text=True, check=True).stdout
    first = re.search(r"^frame +1 .*min +(\S+) nA +mean +(\S+) nA +max +(\S+) nA$", told, re.MULTILINE)
    expect(first, f"no line of the first frame in {told}")
    return [float(value) for value in first.groups()]


def run_blocks(manual):
    """Runs all Python of the manual in the folder of the recording, and returns what it printed."""
    blocks = re.findall(r"^```python\n(.*?)^```$", manual, re.MULTILINE | re.DOTALL)
    expect(len(blocks) == 3, f"{len(blocks)} blocks of Python")
    blocks = [block for block in blocks if ".npy" not in block]  # tests/imaging runs that on an array
    library = pathlib.Path("standin/matplotlib")
    library.mkdir(parents=True)
    (library / "__init__.py").touch()
    (library / "pyplot.py").write_text(DRAWING)
    script = "import sys; sys.path.insert(0, '../standin')\n" + "".join(blocks)
    run = subprocess.run([sys.executable, "-W", "error", "-c", script], cwd="NAME", capture_output=True, text=True)
    expect(run.returncode == 0, run.stderr)
    return run.stdout.splitlines()


def check_printed(lines, told):
    expect(len(lines) == 4, lines)
    shape, *values = re.fullmatch(r"(\(\d+, \d+\)) (\S+) (\S+) (\S+)", lines[0]).groups()
    expect(shape == "(1024, 1024)", lines[0])
    # Six digits in the file, four places on the console.
    expect(np.allclose([float(value) for value in values], told, rtol=2e-5, atol=1e-4), f"{lines[0]}, not {told}")
    expect(lines[1:] == ["imshow (1024, 1024) gray 0 150", "colorbar nA", "show"], lines[1:])


def check_files():
    """A text image of nanoamperes, its grey levels, and the pictures as a stack of 8 bits."""
    currents = np.loadtxt("NAME/NAME_data1.csv", delimiter=",", dtype=np.float32)
    greys = np.loadtxt("NAME/NAME_data_gray1.csv", delimiter=",", dtype=int)
    expect(currents.shape == greys.shape == (1024, 1024), "not 1024 lines of 1024 numbers")
    cut = currents / 150 * 255 - greys
    expect(cut.min() >= -2e-3 and cut.max() <= 1 + 2e-3, "the grey levels are not current / 150 * 255, cut")
    for number in (1, 2):
        head = pathlib.Path(f"NAME/NAME_pic{number}.png").read_bytes()[:26]
        # Width, height, bits a sample, grey.
        expect(struct.unpack(">IIBB", head[16:26]) == (1024, 1024, 8, 0), f"picture {number} is {head}")


told = record(sys.argv[1])
check_printed(run_blocks(pathlib.Path(sys.argv[2]).read_text(encoding="utf-8")), told)
check_files()
