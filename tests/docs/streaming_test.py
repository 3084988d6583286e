#!/usr/bin/python3
"""Receives with the examples what qv1k-acquire publishes on virtual detectors.
usage: streaming_test.py <qv1k-acquire> <folder of the examples>, in an empty folder"""

import pathlib
import socket
import subprocess
import sys

import zmq

ACQUIRE, EXAMPLES = sys.argv[1:]
PATIENCE = 60


def expect(holds, what):
    if not holds:
        sys.exit(f"wrong: {what}")


def free_port():
    with socket.socket() as taken:
        taken.bind(("127.0.0.1", 0))
        return str(taken.getsockname()[1])


def example(name, *arguments):
    return subprocess.Popen([sys.executable, f"{EXAMPLES}/{name}", *arguments], stdout=subprocess.PIPE, text=True)


def publish(frames, port, *options):
    return subprocess.Popen([ACQUIRE, "acquire", "--library", "virtual", "--frames", str(frames), "--publish", port,
                             *options], stdout=subprocess.PIPE, text=True)


def lines_of(process):
    output = process.communicate(timeout=PATIENCE)[0].splitlines()
    expect(process.returncode == 0, f"{process.args} ended with {process.returncode}: {output}")
    return output


def settle(text):
    pathlib.Path("virtual-detector.ini").write_text(f"[General]\nPacing=none\n{text}\n")


def check_everybody_gets_every_frame():
    settle("Scene=chart")
    port = free_port()
    receivers = [example("receive.py", f"tcp://127.0.0.1:{port}") for _ in range(2)]
    told = lines_of(publish(3, port, "--receivers", "2"))
    mean = told[1].split("mean")[1].split()[0]
    for receiver in receivers:
        lines = lines_of(receiver)
        expect([line.split(":")[0] for line in lines] == [f"QV1K frame {n}" for n in (1, 2, 3)] + ["QV1K"], lines)
        expect(lines[3] == "QV1K: 3 of 3 frames received, 0 lost", lines)
        expect(abs(float(lines[0].split("mean")[1].split()[0]) - float(mean)) < 1e-3, f"{lines[0]}, not {mean}")
    expect(sorted(path.name for path in pathlib.Path().iterdir()) == ["Logs", "virtual-detector.ini"],
           "nothing is recorded unasked")


def check_two_detectors_and_one_receiver():
    settle("Scene=chart\nSerialNumbers=A,B")
    ports = free_port(), free_port()
    receiver = example("receive.py", *(f"tcp://127.0.0.1:{port}" for port in ports))
    publishers = [publish(2, port, "--serial", serial, "--receivers", "1") for port, serial in zip(ports, "AB")]
    for publisher in publishers:
        lines_of(publisher)
    lines = lines_of(receiver)
    for serial in "AB":
        expect(f"{serial}: 2 of 2 frames received, 0 lost" in lines, lines)


def check_shares():
    """Each frame reaches one of two workers."""
    settle("Scene=chart")
    port, results = free_port(), f"tcp://127.0.0.1:{free_port()}"
    collector = example("spread.py", "collect", results)
    workers = [example("spread.py", "work", f"tcp://127.0.0.1:{port}", results) for _ in range(2)]
    lines_of(publish(6, port, "--must-arrive", "--receivers", "2"))
    for worker in workers:
        lines_of(worker)
    expect([line.split()[0] for line in lines_of(collector)] == list("123456"), "six results in order")


def check_raw_and_encrypted():
    public, secret = (key.decode() for key in zmq.curve_keypair())
    pathlib.Path("key").write_text(secret + "\n")
    port = free_port()
    receiver = example("receive.py", "--share", "--key", public, f"tcp://127.0.0.1:{port}")
    lines_of(publish(2, port, "--must-arrive", "--publish-raw", "--publish-key", "key"))
    lines = lines_of(receiver)
    expect(lines[0].startswith("QV1K frame 1: min ") and lines[0].endswith(" sample"), lines)
    expect(lines[-1] == "QV1K: 2 of 2 frames received, 0 lost", lines)


check_everybody_gets_every_frame()
check_two_detectors_and_one_receiver()
check_shares()
check_raw_and_encrypted()
