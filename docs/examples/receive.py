#!/usr/bin/env python3
"""Receives frames that qv1k-acquire publishes: receive.py [--share] [--key PUBLIC] ENDPOINT...

Prints a line per frame, and at the end how many were lost on the way. --share takes a share of the frames instead of
all of them, from detectors that publish with --must-arrive. --key is the public key of encrypted streams.
"""

import argparse
import json

import numpy as np
import zmq


def connect(endpoints, share, key):
    """A socket that receives from all of the endpoints."""
    receiver = zmq.Context.instance().socket(zmq.PULL if share else zmq.SUB)
    receiver.set(zmq.RCVHWM, 4)  # frames that may wait here, 4 MiB each
    if not share:
        receiver.set(zmq.SUBSCRIBE, b"")
    if key:
        receiver.curve_serverkey = key.encode()
        receiver.curve_publickey, receiver.curve_secretkey = zmq.curve_keypair()
    for endpoint in endpoints:
        receiver.connect(endpoint)
    return receiver


def frames(receiver, streams):
    """Headers and pictures until so many streams have ended; the picture of an end is None."""
    ended = set()
    while len(ended) < streams:
        header, payload = receiver.recv_multipart()
        header = json.loads(header)
        if header["type"] == "end":
            if header["serial"] in ended:
                continue  # told again
            ended.add(header["serial"])
            yield header, None
        else:
            yield header, np.frombuffer(payload, dtype=header["dtype"]).reshape(header["shape"])


def main():
    arguments = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    arguments.add_argument("endpoints", nargs="+", metavar="ENDPOINT")
    arguments.add_argument("--share", action="store_true")
    arguments.add_argument("--key", metavar="PUBLIC")
    options = arguments.parse_args()
    received = {}
    receiver = connect(options.endpoints, options.share, options.key)
    for header, picture in frames(receiver, len(options.endpoints)):
        serial = header["serial"]
        if picture is None:
            got = received.get(serial, 0)
            print(f"{serial}: {got} of {header['frames']} frames received, {header['frames'] - got} lost", flush=True)
            continue
        received[serial] = received.get(serial, 0) + 1
        print(f"{serial} frame {header['frame']}: min {picture.min():.4f} mean {picture.mean(dtype=float):.4f} "
              f"max {picture.max():.4f} {header['unit']}", flush=True)


if __name__ == "__main__":
    main()
