#!/usr/bin/env bash
# Times two builds of `kestrow check --json` on many paths at once (2,000 by default): folders
# of a synthetic home below ~/.cache, one in ten with a cache directory tag, paths that do not
# exist, and paths in other users' homes, protected or not. Every path is validated and classified, so this times
# the sandbox and the classifier. It first checks that both builds print the very same bytes,
# then times them round after round.
# Usage: KESTROW_BEFORE=path/to/older/kestrow bench/check_paths.sh [RUNS]
#        (KESTROW=path/to/kestrow for the newer one, default the release build; COUNT=N paths)
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
top=$(dirname "$here")
runs=${1:-10}
count=${COUNT:-2000}
home="$here/out/check-home"
list="$here/out/check-paths-$count.txt"
kestrow=${KESTROW:-"$top/build/release/kestrow/kestrow"}

if [ ! -x "$kestrow" ]; then
  (cd "$top" && cmake --preset release >/dev/null && cmake --build --preset release >/dev/null)
fi
if [ ! -f "$list" ]; then
  python3 - "$home" "$list" "$count" <<'MAKE'
import os, sys
home, listing, count = sys.argv[1], sys.argv[2], int(sys.argv[3])
paths = []
for n in range(count):
    kind = n % 8
    if kind < 5:  # an existing cache folder
        folder = os.path.join(home, ".cache", f"tool{n % 97}", f"v{n}")
        os.makedirs(folder, exist_ok=True)
        if n % 10 == 0:
            with open(os.path.join(folder, "CACHEDIR.TAG"), "w") as tag:
                tag.write("Signature: 8a477f597d28d172789f06886806bc55\n# bench\n")
        paths.append(folder)
    elif kind == 5:
        paths.append(f"~/.local/share/missing/{n}")
    elif kind == 6:
        paths.append(f"/home/other{n % 13}/.cache/x{n}")
    else:  # the same folders in any user's home are protected ground
        paths.append([f"/Users/u{n}/Documents/a", f"/Users/u{n}/.zshrc", f"/Users/u{n}/.cargo/bin",
                      f"/Users/u{n}/.ssh/id", f"~/Projects/app{n}/node_modules"][(n // 8) % 5])
with open(listing, "w") as out:
    out.write("\n".join(paths) + "\n")
MAKE
fi

run() { echo "$1 check --home $home --json \$(cat $list) >/dev/null || [ \$? -eq 1 ]"; }
before=${KESTROW_BEFORE:?set KESTROW_BEFORE to the build to compare with}
echo "$(wc -l <"$list") paths"
if ! cmp -s <("$before" check --home "$home" --json $(cat "$list") || true) \
    <("$kestrow" check --home "$home" --json $(cat "$list") || true); then
  echo "the two builds print different output" >&2
  exit 1
fi
echo "both builds print the same bytes"
python3 "$here/timing.py" "$runs" "before=$(run "$before")" "after=$(run "$kestrow")"
