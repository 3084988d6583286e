#!/usr/bin/python3
"""Runs the examples on recordings of the virtual detector.
usage: examples_test.py <qv1k-acquire> <folder of the examples>, in an empty folder"""

import pathlib
import subprocess
import sys

import numpy as np

ACQUIRE, EXAMPLES = sys.argv[1:]
sys.path.insert(0, EXAMPLES)
from load import load, told_of  # noqa: E402
from photontransfer import photon_transfer  # noqa: E402

# What the virtual detector is made with: charge of the range over samples of full scale, and samples.
GAIN = 25e-12 / 1.602177e-19 / 2**20
READ_NOISE = 15
# Lights at which 100 nA do not fill a pixel.
LIGHTS = (0, 0.02, 0.05, 0.1, 0.2)


def expect(holds, what):
    if not holds:
        sys.exit(f"wrong: {what}")


def record(name, settings, *forms):
    pathlib.Path("virtual-detector.ini").write_text(f"[General]\nPacing=none\n{settings}\n")
    subprocess.run([ACQUIRE, "--library", "virtual", "--output", ".", "--name", name, "--frames", "2", *forms],
                   stdout=subprocess.DEVNULL, check=True)


def check_forms():
    """The same frames in every form."""
    record("NAME", "Scene=chart", "--data", "--raw", "--tiff", "--npy")
    array, unit = load("NAME/NAME.npy")
    expect((array.shape, array.dtype, unit) == ((2, 1024, 1024), np.dtype("<f4"), "nA"), array.shape)
    expect(np.array_equal(load("NAME/NAME.tif")[0], array), "TIFF and NumPy array differ")
    expect(np.allclose(load("NAME/NAME_data1.csv")[0], array, rtol=1e-5, atol=1e-5), "CSV and NumPy array differ")
    raw, unit = load("NAME/NAME.raw")
    expect((raw.shape, unit) == (array.shape, "samples"), raw.shape)
    # Currents are a straight line of the samples where they are not cut at 0.
    used = array > 0
    line = np.polyfit(raw[used].astype(float), array[used].astype(float), 1)
    expect(np.allclose(np.polyval(line, raw[used].astype(float)), array[used], atol=1e-3), "raw frames differ")
    for form in ("npy", "tif", "raw"):
        told = told_of(f"NAME/NAME.{form}")
        expect(told["detector"]["simulated"] is True and len(told["frames"]) == 2, told)
    expect(told_of("NAME/NAME_data1.csv") == {}, "of CSV files nothing is told")
    printed = subprocess.run([sys.executable, f"{EXAMPLES}/load.py", "NAME/NAME.npy"], capture_output=True, text=True,
                             check=True).stdout
    expect(printed.startswith("2 frames of 1024 x 1024 pixels in nA\n"), printed)


def check_photon_transfer():
    """Its result must meet what the virtual detector was made with."""
    for light in LIGHTS:
        record(f"light{light}", f"Scene=flat\nLight={light}", "--raw")
    gain, noise, signal, _ = photon_transfer([f"light{light}/light{light}.raw" for light in LIGHTS])
    print(f"gain {gain:.2f} of {GAIN:.2f} electrons per sample, read noise {noise:.3f} of {READ_NOISE} samples, "
          f"{len(signal)} levels up to {signal.max():.0f} samples")
    expect(len(signal) == len(LIGHTS), "a level is saturated")
    expect(abs(gain / GAIN - 1) < 0.02, "gain")
    expect(abs(noise / READ_NOISE - 1) < 0.02, "read noise")


check_forms()
check_photon_transfer()
