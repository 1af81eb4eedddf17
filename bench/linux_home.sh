#!/usr/bin/env bash
# The Linux layout of the synthetic home: the share of its cache bytes a scan finds, the decoys
# it reports, and its time against `du -s` over the same cache roots (warm cache, alternating
# runs, medians). Usage: bench/linux_home.sh [RUNS]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
top=$(dirname "$here")
runs=${1:-7}
home="$here/out/linux-home"
kestrow="$top/build/release/kestrow/kestrow"

if [ ! -x "$kestrow" ]; then
  (cd "$top" && cmake --preset release >/dev/null && cmake --build --preset release >/dev/null)
fi
[ -d "$home" ] || python3 "$here/make_home.py" --layout linux "$home"

mapfile -t roots < <(python3 "$here/make_home.py" --layout linux --print-roots "$home")
mapfile -t decoys < <(python3 "$here/make_home.py" --layout linux --print-decoys "$home")
echo "tree: $(find "${roots[@]}" -type f | wc -l) cache files, $(find "${decoys[@]}" -type f | wc -l) decoy files"
"$kestrow" scan --home "$home" --json >"$here/out/linux-scan.json"
python3 - "$here/out/linux-scan.json" "${#roots[@]}" "${roots[@]}" "${decoys[@]}" <<'PY'
import json, os, sys
from urllib.parse import unquote, urlparse
scan = json.load(open(sys.argv[1]))
count = int(sys.argv[2])
roots, decoys = sys.argv[3:3 + count], sys.argv[3 + count:]
seen, cache_bytes = set(), 0
for root in roots:
    for folder, _, names in os.walk(root):
        for name in names:
            st = os.lstat(os.path.join(folder, name))
            if os.path.isfile(os.path.join(folder, name)) and not os.path.islink(os.path.join(folder, name)) \
                    and (st.st_dev, st.st_ino) not in seen:
                seen.add((st.st_dev, st.st_ino))
                cache_bytes += st.st_size
paths = [unquote(urlparse(item["path"]).path).rstrip("/") for item in scan["items"]]
found = scan["summary"]["totalLogicalBytes"]
reported = [d for d in decoys if any(d == p or d.startswith(p + "/") or p.startswith(d + "/") for p in paths)]
print(f"items {len(paths)}; cache bytes found {found} of {cache_bytes} ({100.0 * found / cache_bytes:.2f}%)")
print(f"decoys reported: {len(reported)} of {len(decoys)}", *reported)
PY
python3 "$here/timing.py" "$runs" \
  "kestrow=$kestrow scan --home $home --json" \
  "du=du -s ${roots[*]}"
