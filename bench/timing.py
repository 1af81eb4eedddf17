#!/usr/bin/env python3
"""Times shell commands side by side: each round runs every command once, in turn, so that
both see the same warm cache; prints the median, minimum and maximum of each."""

import statistics
import subprocess
import sys
import time


def main():
    if len(sys.argv) < 4:
        sys.exit("usage: timing.py RUNS NAME=COMMAND NAME=COMMAND...")
    runs = int(sys.argv[1])
    commands = [arg.split("=", 1) for arg in sys.argv[2:]]
    for _, command in commands:  # warm-up round
        subprocess.run(command, shell=True, check=True, stdout=subprocess.DEVNULL)
    times = {name: [] for name, _ in commands}
    for _ in range(runs):
        for name, command in commands:
            start = time.perf_counter()
            subprocess.run(command, shell=True, check=True, stdout=subprocess.DEVNULL)
            times[name].append(time.perf_counter() - start)
    for name, samples in times.items():
        print(f"{name}: median {statistics.median(samples):.3f} s  min {min(samples):.3f} s  "
              f"max {max(samples):.3f} s  ({runs} runs)")


if __name__ == "__main__":
    main()
