#!/usr/bin/env python3
"""Time and peak memory of the pimtlv tool's commands on large streams.

Generates, the same bytes every run, the streams a captured sync log or a
bulk export produces, runs each command on them and prints wall time and
peak resident memory (from /usr/bin/time) beside the input's size, with
dump as the yardstick of each stream:

  - an e-mail with 200,000 mailboxes (one call each);
  - an SMS whose node holds 2,000,000 leaves its parser refuses (one
    diagnostic each);
  - a call list of 1,000,000 nodes, each inside the one before;
  - a file of 100,000 items of every kind, the shipped samples in turn.

    bench/tool_scale.py [--tool build/release/tools/pimtlv] [--work DIR]

Build the tool with the release preset first. Figures are for comparing
commands and builds on one machine in one run, never absolute.
"""
import argparse
import json
import os
import struct
import subprocess
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


def header(element_class, type_id, length):
    """An element header with the three-byte length form, which every reader
    takes whatever the length."""
    return struct.pack(">HB", (element_class << 12) | type_id, 0x83) + length.to_bytes(3, "big")


def node(type_id, body):
    return header(8, type_id, len(body)) + body


def email_json(mailboxes):
    calls = [{"op": "Begin", "args": {"instance": 1}}]
    for i in range(mailboxes):
        calls.append({"op": "Mailbox", "args": {"fieldType": i % 4,
                                                "displayName": "Person %06d" % i,
                                                "address": "p%06d@example.org" % i}})
    calls.append({"op": "End"})
    return json.dumps({"item": "email", "calls": calls})


def sms_with_refused_leaves(count):
    # String 999 "xy" inside the SMS node: a leaf the SMS parser does not
    # know, reported once each.
    leaf = bytes.fromhex("63 E7 03 78 79 00")
    instance = bytes.fromhex("90 0A 04 00 00 00 01")
    return node(2, instance + node(700, leaf * count))


def nested_call_list(depth):
    # Node 5 (the call list), then depth nodes 2000 each inside the last;
    # written from the inside out, lengths known as it goes.
    size = 0
    parts = []
    for _ in range(depth):
        parts.append(header(8, 2000, size))
        size += 6
    parts.append(header(8, 5, size))
    return b"".join(reversed(parts))


def mixed_items(count):
    kinds = ["event", "task", "note", "contact", "email", "im", "sms", "calllist"]
    samples = [open(os.path.join(ROOT, "samples", k + ".tlv"), "rb").read() for k in kinds]
    return b"".join(samples[i % len(samples)] for i in range(count))


def run(tool, args, stdin_path, stdout_path):
    with open(stdin_path, "rb") as stdin, open(stdout_path, "wb") as stdout:
        proc = subprocess.run(["/usr/bin/time", "-f", "%e %M", tool] + args, stdin=stdin,
                              stdout=stdout, stderr=subprocess.PIPE)
    last = proc.stderr.decode(errors="replace").strip().splitlines()[-1]
    seconds, kib = last.split()
    return proc.returncode, float(seconds), int(kib) / 1024.0


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--tool", default=os.path.join(ROOT, "build/release/tools/pimtlv"))
    parser.add_argument("--work", default=None, help="where the streams go (default: a temp dir)")
    options = parser.parse_args()
    work = options.work or tempfile.mkdtemp(prefix="pimtlv-scale-")
    os.makedirs(work, exist_ok=True)
    tool = options.tool

    def path(name):
        return os.path.join(work, name)

    with open(path("email.json"), "w") as f:
        f.write(email_json(200000))
    subprocess.run([tool, "encode", path("email.json"), "-o", path("email.tlv")], check=True)
    with open(path("sms.tlv"), "wb") as f:
        f.write(sms_with_refused_leaves(2000000))
    with open(path("nested.tlv"), "wb") as f:
        f.write(nested_call_list(1000000))
    with open(path("mixed.tlv"), "wb") as f:
        f.write(mixed_items(100000))
    # encode reads what decode writes.
    for name in ("email", "mixed"):
        with open(path(name + ".tlv"), "rb") as i, open(path(name + ".decoded.json"), "wb") as o:
            subprocess.run([tool, "decode"], stdin=i, stdout=o, check=True)

    rows = [
        ("e-mail, 200,000 mailboxes", "email.tlv", ["dump", "decode", "check"], "email.decoded.json"),
        ("SMS, 2,000,000 refused leaves", "sms.tlv", ["dump", "decode", "check"], None),
        ("1,000,000 nested nodes", "nested.tlv", ["dump", "decode --item calllist",
                                                  "check --item calllist"], None),
        ("100,000 mixed items", "mixed.tlv", ["dump", "decode", "check"], "mixed.decoded.json"),
    ]
    print("| stream | input MB | command | exit | time s | x dump | peak MB | peak - input MB |")
    print("|---|---|---|---|---|---|---|---|")
    for title, name, commands, decoded in rows:
        size = os.path.getsize(path(name)) / 1e6
        yardstick = None
        jobs = [(c, name) for c in commands] + ([("encode", decoded)] if decoded else [])
        for command, source in jobs:
            status, seconds, peak = run(tool, command.split() + ["-"], path(source), os.devnull)
            insize = os.path.getsize(path(source)) / 1e6
            if command == "dump":
                yardstick = seconds
            ratio = "%.2f" % (seconds / yardstick) if yardstick else "-"
            print("| %s | %.1f | %s | %d | %.2f | %s | %.0f | %.0f |" %
                  (title, insize, command, status, seconds, ratio, peak, peak - insize * 1e6 / 2**20))
            title = "same"
    sys.stdout.flush()


if __name__ == "__main__":
    main()
