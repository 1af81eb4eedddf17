#!/usr/bin/env bash
# Times `kestrow lens H --depth 3 --json` against `du -d 3 H`, `gdu` (non-interactive, no
# progress) and `ncdu -0 -o /dev/null` on the tree of about a million entries that
# `make_home.py --files 900000 --folders 90000` makes (bench/out/home-large, shared with
# scan_vs_floor.py), warm cache, alternating runs, medians; then the peak resident memory of each
# and the load average around the runs. Usage: bench/lens.sh [RUNS]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
top=$(dirname "$here")
runs=${1:-5}
home="$here/out/home-large"
kestrow="${KESTROW:-$top/build/release/kestrow/kestrow}"

for tool in du gdu ncdu /usr/bin/time; do
  command -v "$tool" >/dev/null || { echo "$tool is missing: apt-get install gdu ncdu time" >&2; exit 1; }
done
if [ ! -x "$kestrow" ]; then
  (cd "$top" && cmake --preset release >/dev/null && cmake --build --preset release --target kestrow >/dev/null)
fi
if [ ! -d "$home" ]; then
  python3 "$here/make_home.py" "$home" --files 900000 --folders 90000
fi

# The home itself, as asked; then its .cache, where every entry the walks meet is visible and
# the lens and du count the same files: listed folders leave hidden entries out, and at the
# home's top those hold most of the tree.
for target in "$home" "$home/.cache"; do
  echo "== $target: $(find "$target" | wc -l) entries"
  echo "kestrow total: $("$kestrow" lens "$target" --depth 3 --json | python3 -c \
    'import json,sys; n=json.load(sys.stdin); print(n["allocatedSizeBytes"], "bytes,", n["itemCount"], "files")')"
  echo "du total: $(du -s -B1 "$target" | cut -f1) bytes (folders' own blocks included)"
  echo "load before: $(cut -d' ' -f1-3 /proc/loadavg)"
  python3 "$here/timing.py" "$runs" \
    "kestrow=$kestrow lens $target --depth 3 --json" \
    "du=du -d 3 $target" \
    "gdu=gdu -n -p $target" \
    "ncdu=ncdu -0 -o /dev/null $target"
  echo "load after: $(cut -d' ' -f1-3 /proc/loadavg)"
  for command in "$kestrow lens $target --depth 3 --json" "du -d 3 $target" "gdu -n -p $target" \
    "ncdu -0 -o /dev/null $target"; do
    peak=$(/usr/bin/time -f %M $command 2>&1 >/dev/null | tail -n 1)
    echo "peak memory: $((peak / 1024)) MiB  ($command)"
  done
done
