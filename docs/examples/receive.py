#!/usr/bin/env python3
"""Receives frames that qv1k-acquire publishes: receive.py [--share] [--key='PUBLIC'] ENDPOINT...

Prints a line per frame, and at the end how many were lost on the way. --share takes a share of the frames instead of
all of them, from detectors that publish with --must-arrive. --key is the public key of encrypted streams, behind an equals
sign and in quotation marks: it may begin with a dash, and hold what means something to the shell.
"""

import argparse
import json

import numpy as np
import zmq


def connect(endpoint, share=False, key=None):
    """A socket that receives from there."""
    receiver = zmq.Context.instance().socket(zmq.PULL if share else zmq.SUB)
    receiver.set(zmq.RCVHWM, 4)  # frames that may wait here, 4 MiB each
    if not share:
        receiver.set(zmq.SUBSCRIBE, b"")
    if key:
        receiver.curve_serverkey = key.encode()
        receiver.curve_publickey, receiver.curve_secretkey = zmq.curve_keypair()
    receiver.connect(endpoint)
    return receiver


def frames(receivers):
    """Headers and pictures until every stream has ended; the picture of an end is None."""
    poller = zmq.Poller()
    for receiver in receivers:
        poller.register(receiver, zmq.POLLIN)
    while poller.sockets:
        for receiver, _ in poller.poll():
            header, payload = receiver.recv_multipart()
            header = json.loads(header)
            if header["type"] == "end":
                poller.unregister(receiver)
                receiver.close()  # tells the sender that everything was taken
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
    for header, picture in frames([connect(endpoint, options.share, options.key) for endpoint in options.endpoints]):
        serial = header.get("serial", "?")  # unknown when the detector could not be opened
        got = received.setdefault(serial, 0)
        if picture is not None:
            received[serial] += 1
            print(f"{serial} frame {header['frame']}: min {picture.min():.4f} mean {picture.mean(dtype=float):.4f} "
                  f"max {picture.max():.4f} {header['unit']}", flush=True)
        elif options.share:
            print(f"{serial}: {got} of {header['frames']} frames received", flush=True)
        else:
            print(f"{serial}: {got} of {header['frames']} frames received, {header['frames'] - got} lost", flush=True)


if __name__ == "__main__":
    main()
