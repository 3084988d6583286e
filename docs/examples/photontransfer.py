#!/usr/bin/env python3
"""Photon-transfer curve: gain and read noise of a detector out of raw frames at several light levels.

photontransfer.py DARK.raw LIGHT.raw... [--plot]

Each file holds two frames or more under the same even light; the first was taken in the dark. In every pixel the
variance of the noise grows with the signal, because N electrons vary by sqrt(N):

    variance = read noise^2 + signal / gain            in samples of the ADC; gain in electrons per sample

The variance is half that of the difference of two frames: what differs from pixel to pixel drops out of it.
"""

import sys

import numpy as np

from load import load

FULL = 4096 + 2**20 - 1  # the largest sample


def signal_and_variance(frames, offset):
    """Of one light level, without the pixels that are dead, hot or full."""
    first, second = frames[0].astype(float), frames[1].astype(float)
    mean = (first + second) / 2 - offset
    difference = first - second
    middle = np.median(mean)
    spread = 1.4826 * np.median(np.abs(mean - middle))  # a standard deviation, were all pixels good
    good = (np.abs(mean - middle) <= 6 * spread) & (np.maximum(first, second) < FULL)
    if good.mean() < 0.9:
        return None  # saturated
    return mean[good].mean(), difference[good].var() / 2


def photon_transfer(paths):
    """Gain (electrons per sample), read noise (samples), and the curve's points."""
    dark = load(paths[0])[0]
    offset = np.median((dark[0].astype(float) + dark[1].astype(float)) / 2)
    points = [signal_and_variance(load(path)[0], offset) for path in paths]
    signal, variance = np.array([point for point in points if point is not None]).T
    # The error of a variance is proportional to it.
    slope, dark_variance = np.polyfit(signal, variance, 1, w=1 / variance)
    return 1 / slope, np.sqrt(dark_variance), signal, variance


def main():
    paths = [argument for argument in sys.argv[1:] if argument != "--plot"]
    if len(paths) < 3:
        sys.exit(__doc__)
    gain, noise, signal, variance = photon_transfer(paths)
    for x, y in zip(signal, variance):
        print(f"signal {x:12.1f}   variance {y:10.2f}")
    print(f"gain {gain:.2f} electrons per sample")
    print(f"read noise {noise:.2f} samples, {noise * gain:.0f} electrons")
    if "--plot" in sys.argv:
        import matplotlib.pyplot as plt  # Debian: python3-matplotlib

        plt.plot(signal, variance, "o", signal, noise**2 + signal / gain)
        plt.xlabel("signal (samples)")
        plt.ylabel("variance (samples²)")
        plt.show()


if __name__ == "__main__":
    main()
