#!/usr/bin/env bash
# Times `kestrow apps footprint` of one application whose data holds 5,000 files (in Application
# Support, Caches and Containers) against `du -s` of the same folders, warm cache, alternating
# runs, medians. Usage: bench/app_footprint.sh [RUNS]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
top=$(dirname "$here")
runs=${1:-7}
out="$here/out/app-footprint"
home="$out/home"
apps="$out/apps"
kestrow="${KESTROW:-$top/build/release/kestrow/kestrow}"

if [ ! -x "$kestrow" ]; then
  (cd "$top" && cmake --preset release >/dev/null && cmake --build --preset release --target kestrow >/dev/null)
fi
if [ ! -d "$home" ]; then
  python3 - "$home" "$apps" <<'PY'
import os, random, sys
home, apps = sys.argv[1], sys.argv[2]
random.seed(13)
bundle = os.path.join(apps, "Bench Tool.app", "Contents")
os.makedirs(os.path.join(bundle, "MacOS"))
with open(os.path.join(bundle, "Info.plist"), "w") as f:
    f.write('<?xml version="1.0" encoding="UTF-8"?>\n<plist version="1.0"><dict>'
            '<key>CFBundleIdentifier</key><string>com.bench.tool</string>'
            '<key>CFBundleName</key><string>Bench Tool</string></dict></plist>\n')
with open(os.path.join(bundle, "MacOS", "Bench Tool"), "wb") as f:
    f.write(os.urandom(200000))
lib = os.path.join(home, "Library")
places = ["Application Support/com.bench.tool", "Caches/com.bench.tool", "Containers/com.bench.tool/Data"]
for n in range(5000):
    folder = os.path.join(lib, places[n % 3], "d%02d" % (n % 50))
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(folder, "f%04d.bin" % n), "wb") as f:
        f.write(b"x" * random.randint(0, 64 * 1024))
PY
fi
roots=("$apps/Bench Tool.app" "$home/Library/Application Support/com.bench.tool" "$home/Library/Caches/com.bench.tool"
       "$home/Library/Containers/com.bench.tool")
echo "data: $(find "${roots[@]:1}" -type f | wc -l) files; du -s (1K blocks, all roots): $(du -cs "${roots[@]}" | tail -1 | cut -f1)"
echo "kestrow total allocated bytes: $("$kestrow" apps footprint com.bench.tool --home "$home" --applications "$apps" --json |
  python3 -c 'import json,sys; print(json.load(sys.stdin)["totalAllocatedSizeBytes"])')"
quoted=$(printf '%q ' "${roots[@]}")
python3 "$here/timing.py" "$runs" \
  "kestrow=$(printf '%q' "$kestrow") apps footprint com.bench.tool --home $(printf '%q' "$home") --applications $(printf '%q' "$apps") --json" \
  "du=du -s $quoted"
