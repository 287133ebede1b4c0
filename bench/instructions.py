#!/usr/bin/env python3
"""Instructions per iteration of one benchmark, counted by callgrind.

Wall-clock figures move with whatever else the machine runs; instruction
counts do not. This runs one benchmark of a Google Benchmark program under
callgrind, collecting only inside the benchmark's own function, and divides
the count by the number of calls of a function made once per iteration.

  bench/instructions.py PROGRAM FILTER FUNCTION PER_ITERATION [MIN_TIME]

  bench/instructions.py build/bench/bench/message_bench '^IM/Create$' \\
      '*Create<PimShared::CTLVIMCreator*' 'CTLVCreatorImpl::GetData'

FUNCTION is a callgrind --toggle-collect pattern; PER_ITERATION a part of the
name of the function called once per iteration (callgrind's own names).
"""
import os
import subprocess
import sys
import tempfile


def main():
    if len(sys.argv) not in (5, 6):
        sys.exit(__doc__)
    program, pattern, function, per_iteration = sys.argv[1:5]
    min_time = sys.argv[5] if len(sys.argv) == 6 else "0.3"
    fd, out = tempfile.mkstemp(prefix="callgrind.")
    os.close(fd)
    try:
        subprocess.run(["valgrind", "--tool=callgrind", "--compress-strings=no",
                        "--compress-pos=no", f"--callgrind-out-file={out}",
                        f"--toggle-collect={function}", program,
                        f"--benchmark_filter={pattern}", f"--benchmark_min_time={min_time}"],
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
        total = calls = 0
        callee = None
        with open(out) as f:
            for line in f:
                if line.startswith(("summary:", "totals:")):
                    total = int(line.split()[1])
                elif line.startswith("cfn="):
                    callee = line[4:].strip()
                elif line.startswith("calls=") and callee and per_iteration in callee:
                    calls += int(line[6:].split()[0])
    finally:
        os.unlink(out)
    if calls == 0:
        sys.exit(f"no call of a function named like {per_iteration!r} was seen")
    print(f"{pattern}: {total / calls:.0f} instructions per iteration ({calls} iterations)")


if __name__ == "__main__":
    main()
