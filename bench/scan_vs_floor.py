#!/usr/bin/env python3
"""Times `kestrow scan --json` against a two-thread C floor walker (getdents64 and fstatat, built
here with cc -O2) and `du -s`, all three over the same cache roots of two generated homes, a
small one and a large one. Each round runs every command once, in turn, on a warm cache; prints
medians, the ratios kestrow/floor and kestrow/du, and the peak resident memory of each command.
With --before, another build of kestrow (an older commit, say) runs in the same rounds.
Usage: bench/scan_vs_floor.py [--runs N] [--kestrow BINARY] [--before BINARY] [--threads N]"""

import argparse
import os
import statistics
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
TOP = os.path.dirname(HERE)
OUT = os.path.join(HERE, "out")
# Name, files, folders: about 233,000 and 1,030,000 entries below the cache roots.
TREES = [("home", 200_000, 20_000), ("home-large", 900_000, 90_000)]


def run(argv):
    """Wall time and peak resident memory (KiB, from /usr/bin/time) of one run of `argv`."""
    with tempfile.NamedTemporaryFile("r") as report:
        start = time.perf_counter()
        subprocess.run(["/usr/bin/time", "-f", "%M", "-o", report.name, *argv], check=True,
                       stdout=subprocess.DEVNULL)
        elapsed = time.perf_counter() - start
        return elapsed, int(report.read().split()[-1])


def ensure_tree(name, files, folders):
    home = os.path.join(OUT, name)
    if not os.path.isdir(home):
        subprocess.run([sys.executable, os.path.join(HERE, "make_home.py"), home, "--files", str(files),
                        "--folders", str(folders)], check=True)
    roots = subprocess.run([sys.executable, os.path.join(HERE, "make_home.py"), "--print-roots", home],
                           check=True, capture_output=True, text=True).stdout.split()
    return home, roots


def count_entries(roots):
    out = subprocess.run(["find", *roots], check=True, capture_output=True, text=True).stdout
    return out.count("\n")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--runs", type=int, default=7)
    parser.add_argument("--kestrow", default=os.path.join(TOP, "build", "release", "kestrow", "kestrow"))
    parser.add_argument("--before", help="another kestrow binary to time in the same rounds")
    parser.add_argument("--threads", type=int, default=2, help="threads of the floor walker")
    args = parser.parse_args()

    if not os.access(args.kestrow, os.X_OK):
        subprocess.run("cmake --preset release >/dev/null && cmake --build --preset release >/dev/null",
                       shell=True, check=True, cwd=TOP)
    os.makedirs(OUT, exist_ok=True)
    floor = os.path.join(OUT, "floor_walk")
    subprocess.run(["cc", "-O2", "-pthread", "-o", floor, os.path.join(HERE, "floor_walk.c")], check=True)

    with open("/proc/loadavg") as load:
        print(f"load average before: {' '.join(load.read().split()[:3])}")
    for name, files, folders in TREES:
        home, roots = ensure_tree(name, files, folders)
        commands = {
            "kestrow": [args.kestrow, "scan", "--home", home, "--json"],
            "floor": [floor, "-t", str(args.threads), *roots],
            "du": ["du", "-s", *roots],
        }
        if args.before:
            commands["before"] = [args.before, "scan", "--home", home, "--json"]
        print(f"\n{name}: {count_entries(roots):,} entries below {len(roots)} cache roots")
        for argv in commands.values():  # warm-up round
            run(argv)
        times = {label: [] for label in commands}
        memory = {label: 0 for label in commands}
        for _ in range(args.runs):
            for label, argv in commands.items():
                elapsed, peak = run(argv)
                times[label].append(elapsed)
                memory[label] = max(memory[label], peak)
        medians = {label: statistics.median(samples) for label, samples in times.items()}
        for label, samples in times.items():
            print(f"  {label:8} median {medians[label]:.3f} s  min {min(samples):.3f} s  max {max(samples):.3f} s  "
                  f"peak {memory[label] / 1024:.1f} MiB  ({args.runs} runs)")
        print(f"  kestrow/floor {medians['kestrow'] / medians['floor']:.2f}  "
              f"kestrow/du {medians['kestrow'] / medians['du']:.2f}")
        if args.before:
            print(f"  before/floor {medians['before'] / medians['floor']:.2f}  "
                  f"before/du {medians['before'] / medians['du']:.2f}")
    with open("/proc/loadavg") as load:
        print(f"\nload average after: {' '.join(load.read().split()[:3])}")


if __name__ == "__main__":
    main()
