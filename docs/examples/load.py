#!/usr/bin/env python3
"""Loads a recording of QV1K in any form as one array, tells what is in it, and shows its first frame.

load.py FILE [--show]     FILE: NAME.npy, NAME.tif, NAME.raw, or the NAME_data1.csv of a recording
"""

import json
import pathlib
import re
import sys

import numpy as np


def load(path):
    """The frames as an array [frame, row, column], and its unit: nA, or samples of the ADC."""
    path = pathlib.Path(path)
    if path.suffix == ".npy":
        return np.load(path, mmap_mode="r"), "nA"  # read from the disk as it is used
    if path.suffix == ".tif":
        import tifffile  # Debian: python3-tifffile

        return tifffile.imread(path).reshape(-1, 1024, 1024), "nA"
    if path.suffix == ".raw":
        return np.memmap(path, dtype=">u4", mode="r").reshape(-1, 1024, 1024), "samples"
    if path.suffix == ".csv":
        name = re.sub(r"\d+\.csv$", "", path.name)
        files = sorted(path.parent.glob(f"{name}[0-9]*.csv"), key=lambda file: int(file.stem[len(name):]))
        return np.stack([np.loadtxt(file, delimiter=",") for file in files]), "nA"
    sys.exit(f"{path}: none of .npy, .tif, .raw, .csv")


def told_of(path):
    """What the program knew of the recording: detector, settings, times. Of CSV files nothing is told."""
    description = pathlib.Path(f"{path}.json")
    return json.loads(description.read_text(encoding="utf-8")) if description.exists() else {}


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    frames, unit = load(sys.argv[1])
    first = frames[0].astype(float)
    print(f"{len(frames)} frames of {first.shape[0]} x {first.shape[1]} pixels in {unit}")
    print(f"first: min {first.min():.4f} mean {first.mean():.4f} max {first.max():.4f}")
    if len(frames) > 1:
        difference = first - frames[1].astype(float)
        print(f"noise of a pixel from frame to frame: {np.std(difference) / np.sqrt(2):.4f} {unit}")
    for key in ("detector", "settings"):
        print(f"{key}: {told_of(sys.argv[1]).get(key)}")
    if "--show" in sys.argv:
        import matplotlib.pyplot as plt  # Debian: python3-matplotlib

        plt.imshow(first, cmap="gray")
        plt.colorbar(label=unit)
        plt.show()


if __name__ == "__main__":
    main()
