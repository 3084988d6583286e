#!/usr/bin/env python3
"""Spreads the frames of a detector over processes on any number of machines.

spread.py work FRAMES RESULTS   takes frames that `qv1k-acquire --must-arrive` publishes at FRAMES, and sends what it makes
                                of them to RESULTS
spread.py collect RESULTS       gathers the results there, and prints them in the order of the frames
"""

import sys

import zmq

from receive import connect, frames


def look_at(picture):
    """The work. Here: what a look at the picture tells."""
    return {"mean": float(picture.mean(dtype=float)), "deviation": float(picture.std(dtype=float))}


def work(source, results):
    sender = zmq.Context.instance().socket(zmq.PUSH)
    sender.connect(results)
    for header, picture in frames([connect(source, share=True)]):
        if picture is None:
            sender.send_json({"frames": header["frames"]})
        else:
            sender.send_json({"frame": header["frame"], **look_at(picture)})


def collect(results):
    receiver = zmq.Context.instance().socket(zmq.PULL)
    receiver.bind(results)
    gathered, frames_in_all = {}, None
    while frames_in_all is None or len(gathered) < frames_in_all:
        result = receiver.recv_json()
        if "frames" in result:
            frames_in_all = result["frames"]
        else:
            gathered[result.pop("frame")] = result
    for frame in sorted(gathered):
        print(frame, *(f"{name} {value:.4f}" for name, value in gathered[frame].items()))


if __name__ == "__main__":
    tasks = {("work", 4): work, ("collect", 3): collect}
    task = tasks.get((sys.argv[1] if len(sys.argv) > 1 else "", len(sys.argv)))
    if task is None:
        sys.exit(__doc__)
    task(*sys.argv[2:])
