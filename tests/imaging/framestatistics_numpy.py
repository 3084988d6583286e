#!/usr/bin/python3
"""The figures of two frames by numpy, one number a line, places as "row column".
usage: framestatistics_numpy.py <file of two frames, doubles> <rows> <columns> <lower end> <upper end> <bins>"""

import sys

import numpy as np

name, rows, columns, lowest, highest, bins = sys.argv[1], *map(float, sys.argv[2:])
a, b = np.fromfile(name, dtype=np.float64).reshape(2, int(rows), int(columns))

print(a.min(), a.mean(), a.max(), a.std(), (a <= lowest).sum(), (a >= highest).sum(), sep="\n")
print(*np.histogram(a, int(bins), (a.min(), a.max()))[0], sep="\n")

temporal = (a - b).std() / np.sqrt(2)
print(temporal, np.sqrt(np.var((a + b) / 2) - temporal**2 / 2), sep="\n")

padded = np.pad(a, 1, mode="reflect")
around = np.sort([padded[1:-1, :-2], padded[1:-1, 2:], padded[:-2, 1:-1], padded[2:, 1:-1]], axis=0)
chance = 1.4826 * np.median(np.abs(a - np.median(around, axis=0)))
hot = a - around[2] > np.maximum(max(6 * chance, 0.01), 0.1 * around[2])
dead = around[1] - a > np.maximum(max(6 * chance, 0.01), 0.1 * around[1])
for found in (hot, dead):
    print(found.sum())
    for row, column in np.argwhere(found)[:8]:
        print(row, column)
