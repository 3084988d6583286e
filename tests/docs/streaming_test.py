#!/usr/bin/python3
"""Receives with the examples what qv1k-acquire publishes on virtual detectors.
usage: streaming_test.py <qv1k-acquire> <folder of the examples> [<emulator>], in an empty folder
With an emulator qv1k-acquire is that of Windows, and the examples are run by this system's Python all the same."""

import os
import pathlib
import subprocess
import sys

import zmq

ACQUIRE, EXAMPLES, *EMULATOR = sys.argv[1:]
PATIENCE = 60
PLACES = ("everybody", "a", "b", "results", "shares", "encrypted", "missing")


def expect(holds, what):
    if not holds:
        sys.exit(f"wrong: {what}")


def place(name):
    """Where nobody else is: in this folder, or for Windows, which has no sockets there, on a loopback address of this
    process' own."""
    if not EMULATOR:
        return f"ipc://{name}"
    number = os.getpid()
    return f"tcp://127.{1 + (number >> 16)}.{number >> 8 & 255}.{number & 255}:{21000 + PLACES.index(name)}"


def example(name, *arguments):
    return subprocess.Popen([sys.executable, f"{EXAMPLES}/{name}", *arguments], stdout=subprocess.PIPE, text=True)


def publish(frames, where, *options):
    return subprocess.Popen([*EMULATOR, ACQUIRE, "acquire", "--library", "virtual", "--frames", str(frames),
                             "--publish", where, *options], stdout=subprocess.PIPE, text=True)


def lines_of(process):
    output = process.communicate(timeout=PATIENCE)[0].splitlines()
    expect(process.returncode == 0, f"{process.args} ended with {process.returncode}: {output}")
    return output


def settle(text):
    pathlib.Path("virtual-detector.ini").write_text(f"[General]\nPacing=none\n{text}\n")


def check_everybody_gets_every_frame():
    settle("Scene=chart")
    receivers = [example("receive.py", place("everybody")) for _ in range(2)]
    told = lines_of(publish(3, place("everybody"), "--receivers", "2"))
    mean = told[1].split("mean")[1].split()[0]
    for receiver in receivers:
        lines = lines_of(receiver)
        expect([line.split(":")[0] for line in lines] == [f"QV1K frame {n}" for n in (1, 2, 3)] + ["QV1K"], lines)
        expect(lines[3] == "QV1K: 3 of 3 frames received, 0 lost", lines)
        expect(abs(float(lines[0].split("mean")[1].split()[0]) - float(mean)) < 1e-3, f"{lines[0]}, not {mean}")
    expect({path.name for path in pathlib.Path().iterdir()} <= {"Logs", "everybody", "virtual-detector.ini"},
           "nothing is recorded unasked")


def check_two_detectors_and_one_receiver():
    settle("Scene=chart\nSerialNumbers=A,B")
    receiver = example("receive.py", place("a"), place("b"))
    publishers = [publish(2, place(serial.lower()), "--serial", serial, "--receivers", "1") for serial in "AB"]
    for publisher in publishers:
        lines_of(publisher)
    lines = lines_of(receiver)
    for serial in "AB":
        expect(f"{serial}: 2 of 2 frames received, 0 lost" in lines, lines)


def check_shares():
    """Each frame reaches one of two workers."""
    settle("Scene=chart")
    collector = example("spread.py", "collect", place("results"))
    workers = [example("spread.py", "work", place("shares"), place("results")) for _ in range(2)]
    lines_of(publish(6, place("shares"), "--must-arrive", "--receivers", "2"))
    for worker in workers:
        lines_of(worker)
    expect([line.split()[0] for line in lines_of(collector)] == list("123456"), "six results in order")


def check_raw_and_encrypted():
    """With a key that looks like an option, as one of 85 does."""
    pairs = iter(zmq.curve_keypair, None)
    public, secret = next(pair for pair in pairs if pair[0].startswith(b"-"))
    pathlib.Path("key").write_bytes(secret + b"\n")
    receiver = example("receive.py", "--share", f"--key={public.decode()}", place("encrypted"))
    lines_of(publish(2, place("encrypted"), "--must-arrive", "--publish-raw", "--publish-key", "key"))
    lines = lines_of(receiver)
    expect(lines[0].startswith("QV1K frame 1: min ") and lines[0].endswith(" sample"), lines)
    expect(lines[-1] == "QV1K: 2 of 2 frames received", lines)


def check_a_detector_that_is_missing():
    settle("Attached=false")
    receiver = example("receive.py", place("missing"))
    failed = publish(1, place("missing"), "--receivers", "1")
    failed.communicate(timeout=PATIENCE)
    expect(failed.returncode == 1, failed.returncode)
    expect(lines_of(receiver) == ["?: 0 of 0 frames received, 0 lost"], "the end of a run that did not begin is told")


check_everybody_gets_every_frame()
check_two_detectors_and_one_receiver()
check_shares()
check_raw_and_encrypted()
check_a_detector_that_is_missing()
