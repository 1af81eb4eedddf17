#!/usr/bin/env bash
# A home whose uv cache holds one folder LEVELS deep (a one-byte file at each level), scanned
# under `ulimit -n 1024`: the scan must count every file, and is timed against `du -s` on the
# same folder. Usage: bench/deep_tree.sh [LEVELS] [RUNS]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
top=$(dirname "$here")
levels=${1:-5000}
runs=${2:-7}
home="$here/out/deep-home"
kestrow="${KESTROW:-$top/build/release/kestrow/kestrow}"

if [ ! -x "$kestrow" ]; then
  (cd "$top" && cmake --preset release >/dev/null && cmake --build --preset release >/dev/null)
fi
if [ ! -d "$home/.cache/uv/deep" ]; then
  mkdir -p "$home/.cache/uv/deep"
  # Made through descriptors: the path soon outgrows what a path-based call accepts.
  python3 - "$home/.cache/uv/deep" "$levels" <<'PY'
import os, sys
folder = os.open(sys.argv[1], os.O_RDONLY | os.O_DIRECTORY)
for _ in range(int(sys.argv[2])):
    os.mkdir("d", dir_fd=folder)
    child = os.open("d", os.O_RDONLY | os.O_DIRECTORY, dir_fd=folder)
    file = os.open("f", os.O_CREAT | os.O_WRONLY, 0o644, dir_fd=child)
    os.write(file, b"x")
    os.close(file)
    os.close(folder)
    folder = child
os.close(folder)
PY
fi

ulimit -n 1024
echo "files below the deep folder: $(find "$home/.cache/uv/deep" -type f | wc -l)"
echo "kestrow under ulimit -n 1024: $("$kestrow" scan --home "$home" --category DEVELOPER_CACHE --json |
  python3 -c 'import json,sys; i=[x for x in json.load(sys.stdin)["items"] if x["path"].endswith("/deep")][0]; print(i["fileCount"], "files,", i["logicalSizeBytes"], "bytes")')"
python3 "$here/timing.py" "$runs" \
  "kestrow=$kestrow scan --home $home --category DEVELOPER_CACHE --json" \
  "du=du -s $home/.cache/uv/deep"
