#!/usr/bin/env python3
"""Time from launching the desktop application to its first drawn frame, under Xvfb, on a
synthetic home (its scan starts at launch, as on a real one). Prints each run and the median.

Usage: bench/app_start.py [--runs N] [--app PATH] [--size WxH]
"""
import argparse
import os
import pathlib
import shutil
import statistics
import subprocess
import tempfile
import time

here = pathlib.Path(__file__).resolve().parent
top = here.parent

parser = argparse.ArgumentParser()
parser.add_argument("--runs", type=int, default=9)
parser.add_argument("--app", default=str(top / "build/release/KestrowGui/kestrow-app"))
parser.add_argument("--size", default="1280x800")
args = parser.parse_args()

work = pathlib.Path(tempfile.mkdtemp())
try:
    home = work / "home"
    subprocess.run(["python3", str(here / "make_home.py"), str(home), "--layout", "linux", "--files", "20000",
                    "--folders", "2000"], check=True, stdout=subprocess.DEVNULL)
    display = ":97"
    xvfb = subprocess.Popen(["Xvfb", display, "-screen", "0", args.size + "x24", "-nolisten", "tcp"],
                            stderr=subprocess.DEVNULL)
    time.sleep(1.0)
    env = dict(os.environ, DISPLAY=display, HOME=str(home), XDG_CONFIG_HOME=str(home / ".config"),
               XDG_DATA_HOME=str(home / ".local/share"), XDG_CACHE_HOME=str(home / ".cache"),
               XDG_RUNTIME_DIR=str(work))
    times = []
    try:
        for run in range(args.runs):
            start = time.monotonic()
            app = subprocess.Popen([args.app, "--quit-after-first-frame"], env=env, stderr=subprocess.PIPE,
                                   stdout=subprocess.DEVNULL, text=True)
            for line in app.stderr:
                if line.strip() == "first frame":
                    times.append(time.monotonic() - start)
                    break
            app.wait(timeout=60)
            print(f"run {run + 1}: {times[-1] * 1000:.0f} ms")
    finally:
        xvfb.terminate()
        xvfb.wait()
    print(f"first frame, median of {len(times)}: {statistics.median(times) * 1000:.0f} ms")
finally:
    shutil.rmtree(work)
