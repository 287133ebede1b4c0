#!/usr/bin/env python3
"""The Python package against what a Python user would otherwise reach for.

In one run, on the same items:
  - 10,000 calendar events: pimtlv.decode of their streams into documents,
    beside python-icalendar parsing the same events from .ics text;
  - 10,000 contacts: pimtlv.decode of their streams, beside vobject reading
    the same contacts from .vcf text;
and the size of the streams against the texts. The texts are the iCalendar
and vCard bridges' export of the very streams that are decoded, so both
sides hold the same content. Each figure is the best of several runs, in
CPU time of this process (on a shared machine, wall time mostly measures the
neighbours).

Run it with the package installed (pip install --no-build-isolation .):
    python3 bench/python_bench.py [--count N] [--repeat R]
Target: pimtlv at least 10 times faster than each.
"""

import argparse
import copy
import json
import time
from pathlib import Path

import icalendar
import vobject

import pimtlv

SAMPLES = Path(__file__).resolve().parent.parent / "samples"


def items(kind: str, count: int) -> bytes:
    """count copies of a sample item, each with its own instance number and
    texts, one stream after another."""
    sample = json.loads((SAMPLES / f"{kind}.json").read_text())
    docs = []
    for n in range(count):
        doc = copy.deepcopy(sample)
        for call in doc["calls"]:
            args = call.get("args", {})
            if call["op"] == "Begin":
                args["instance"] = n
            elif call["op"] in ("UniqueIdentifier", "Summary", "FormattedName"):
                args["text"] = f"{args['text']} {n}"
        docs.append(doc)
    return pimtlv.encode(docs)


def best(repeat: int, run) -> float:
    times = []
    for _ in range(repeat):
        start = time.process_time()
        run()
        times.append(time.process_time() - start)
    return min(times)


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--count", type=int, default=10_000)
    parser.add_argument("--repeat", type=int, default=3)
    args = parser.parse_args()
    n = args.count

    events = items("event", n)
    ics = pimtlv.to_text(events, "ics").data
    contacts = items("contact", n)
    vcf = pimtlv.to_text(contacts, "vcf").data

    # Each side must read every item, or the figures compare nothing.
    assert len(pimtlv.decode(events)) == n
    assert len(icalendar.Calendar.from_ical(ics).walk("VEVENT")) == n
    assert len(pimtlv.decode(contacts)) == n
    assert len(list(vobject.readComponents(vcf.decode()))) == n

    rows = [
        ("events", "pimtlv.decode", best(args.repeat, lambda: pimtlv.decode(events)),
         "icalendar.Calendar.from_ical",
         best(args.repeat, lambda: icalendar.Calendar.from_ical(ics).walk("VEVENT"))),
        ("contacts", "pimtlv.decode", best(args.repeat, lambda: pimtlv.decode(contacts)),
         "vobject.readComponents",
         best(args.repeat, lambda: list(vobject.readComponents(vcf.decode())))),
    ]
    print(f"{n} items each, best of {args.repeat} runs")
    print(f"{'items':<9} {'pimtlv':>12} {'other':>12}  {'speed-up':>8}  other library")
    for what, _, ours, name, theirs in rows:
        print(f"{what:<9} {ours * 1e3:>9.1f} ms {theirs * 1e3:>9.1f} ms  {theirs / ours:>7.1f}x  {name}")
    print(f"{'size':<9} {'stream':>12} {'text':>12}  {'ratio':>8}")
    for what, stream, text in (("events", events, ics), ("contacts", contacts, vcf)):
        print(f"{what:<9} {len(stream):>9} B  {len(text):>9} B  {len(stream) / len(text):>7.2f}")


if __name__ == "__main__":
    main()
