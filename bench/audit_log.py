#!/usr/bin/env python3
"""Times the audit log at size: `kestrow clean --home H` of one small file with a log of many
lines already in H (76,000 by default, made by make_audit_log.py), against the same clean with
an empty log, and `kestrow audit verify` of the big log; wall time (median, min, max) and peak
resident memory (from /usr/bin/time -v) of each. Every run cleans a file of its own, so the log
grows by one line a run. Usage: bench/audit_log.py [--runs N] [--lines N] [--kestrow BINARY]"""

import argparse
import os
import shutil
import statistics
import subprocess
import sys
import time

HERE = os.path.dirname(os.path.abspath(__file__))
TOP = os.path.dirname(HERE)


def environment(home):
    # The Trash and every per-user place of the runs lie inside the bench home.
    env = dict(os.environ, HOME=home)
    for name, folder in (("XDG_DATA_HOME", ".local/share"), ("XDG_CONFIG_HOME", ".config"),
                         ("XDG_CACHE_HOME", ".cache")):
        env[name] = os.path.join(home, folder)
    return env


def timed(command, home):
    start = time.perf_counter()
    run = subprocess.run(["/usr/bin/time", "-v"] + command, env=environment(home), stdout=subprocess.DEVNULL,
                         stderr=subprocess.PIPE, text=True)
    elapsed = time.perf_counter() - start
    if run.returncode != 0:
        sys.exit(f"{' '.join(command)} failed:\n{run.stderr}")
    peak = next(int(line.split(":")[1]) for line in run.stderr.splitlines()
                if "Maximum resident set size" in line)
    return elapsed, peak / 1024.0


def clean_one(kestrow, home, index):
    item = os.path.join(home, ".cache", "bench", f"item{index}")
    os.makedirs(os.path.dirname(item), exist_ok=True)
    with open(item, "wb") as f:
        f.write(b"k" * 4096)
    return timed([kestrow, "clean", "--home", home, item], home)


def report(name, samples):
    times = [t for t, _ in samples]
    peaks = [m for _, m in samples]
    print(f"{name}: median {statistics.median(times):.3f} s  min {min(times):.3f} s  max {max(times):.3f} s  "
          f"peak RSS median {statistics.median(peaks):.1f} MiB, max {max(peaks):.1f} MiB  ({len(samples)} runs)")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--runs", type=int, default=9)
    parser.add_argument("--lines", type=int, default=76000)
    parser.add_argument("--kestrow", default=os.path.join(TOP, "build", "release", "kestrow", "kestrow"))
    args = parser.parse_args()
    if not os.access(args.kestrow, os.X_OK):
        sys.exit(f"no kestrow at {args.kestrow}: build it first (cmake --preset release && "
                 "cmake --build --preset release)")

    big = os.path.join(HERE, "out", "audit-home")
    empty = os.path.join(HERE, "out", "audit-home-empty")
    for home in (big, empty):
        shutil.rmtree(home, ignore_errors=True)
        os.makedirs(home)
    log = os.path.join(big, ".kestrow", "audit.jsonl")
    subprocess.run([sys.executable, os.path.join(HERE, "make_audit_log.py"), log, "--lines", str(args.lines)],
                   check=True, stderr=subprocess.DEVNULL)
    print(f"log: {args.lines} lines, {os.path.getsize(log) / 1e6:.1f} MB")

    clean_one(args.kestrow, big, -1)  # warm-up: binary, libraries and log in the cache
    clean_one(args.kestrow, empty, -1)
    with_log, without_log, verify = [], [], []
    for index in range(args.runs):
        with_log.append(clean_one(args.kestrow, big, index))
        without_log.append(clean_one(args.kestrow, empty, index))
        verify.append(timed([args.kestrow, "audit", "verify", "--home", big], big))
    report(f"clean, log of {args.lines} lines", with_log)
    report("clean, log of a few lines", without_log)
    report(f"audit verify, {args.lines} lines", verify)


if __name__ == "__main__":
    main()
