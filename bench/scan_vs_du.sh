#!/usr/bin/env bash
# Times `kestrow scan --json` over the synthetic home against `du -s` on the same cache roots,
# warm cache, alternating runs, medians. Usage: bench/scan_vs_du.sh [RUNS]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
top=$(dirname "$here")
runs=${1:-7}
home="$here/out/home"
kestrow="$top/build/release/kestrow/kestrow"

if [ ! -x "$kestrow" ]; then
  (cd "$top" && cmake --preset release >/dev/null && cmake --build --preset release >/dev/null)
fi
[ -d "$home" ] || python3 "$here/make_home.py" "$home"

mapfile -t roots < <(python3 "$here/make_home.py" --print-roots "$home")
echo "tree: $(find "${roots[@]}" -type f | wc -l) regular files, $(find "${roots[@]}" -type d | wc -l) folders"
echo "du -s (1K blocks, folders' own blocks included): $(du -cs "${roots[@]}" | tail -1 | cut -f1)"
echo "kestrow allocated bytes (files only):            $("$kestrow" scan --home "$home" --json | python3 -c 'import json,sys; print(json.load(sys.stdin)["summary"]["totalAllocatedBytes"])')"
python3 "$here/timing.py" "$runs" \
  "kestrow=$kestrow scan --home $home --json" \
  "du=du -s ${roots[*]}"
