#!/usr/bin/env bash
# Times moving 2,200 items (2,000 files and 200 folders of 100 files) to the home Trash:
# `kestrow clean` against a plain `mv` into the Trash's files folder (the floor: a rename per
# item, no record), `gio trash` and `trash-put`. Every run starts from a fresh copy of the same
# tree in a temporary home (HOME and XDG_DATA_HOME point into it); commands take turns, round
# after round; medians. Usage: bench/trash.sh [RUNS]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
top=$(dirname "$here")
runs=${1:-7}
kestrow="$top/build/release/kestrow/kestrow"

if [ ! -x "$kestrow" ]; then
  (cd "$top" && cmake --preset release >/dev/null && cmake --build --preset release --target kestrow >/dev/null)
fi

work=$(mktemp -d "${TMPDIR:-/tmp}/kestrow-trash-bench.XXXXXX")
trap 'rm -rf "$work"' EXIT

# The tree, made once; each run copies it into a new home. Homes are removed only at the end:
# ext4 looks over recently freed inodes when it makes a file, which would slow down whichever
# command makes files (the records) right after a removal.
template="$work/template"
python3 - "$template/.cache/bench" <<'EOF'
import os, sys
root = sys.argv[1]
os.makedirs(root)
for i in range(2000):
    with open(os.path.join(root, f"file{i:04d}.bin"), "wb") as f:
        f.write(b"x" * (i % 200))
for d in range(200):
    folder = os.path.join(root, f"folder{d:03d}")
    os.mkdir(folder)
    for i in range(100):
        with open(os.path.join(folder, f"part{i:03d}"), "wb") as f:
            f.write(b"y" * (i % 2))
EOF
items=2200

declare -A commands=(
  [floor]='mv -t "$H/.local/share/Trash/files" -- "${paths[@]}"'
  [kestrow]='"$kestrow" clean --home "$H" -- "${paths[@]}" >/dev/null'
)
order=(floor kestrow)
if command -v gio >/dev/null; then
  commands[gio]='gio trash -- "${paths[@]}"'
  order+=(gio)
else
  echo "note: gio is not installed; left out"
fi
if command -v trash-put >/dev/null; then
  commands[trash-put]='trash-put -- "${paths[@]}"'
  order+=(trash-put)
else
  echo "note: trash-put (trash-cli) is not installed; left out"
fi

declare -A samples
for round in $(seq 0 "$runs"); do # round 0 warms up and is not counted
  for name in "${order[@]}"; do
    H="$work/home-$name-$round"
    cp -a "$template" "$H"
    mkdir -p "$H/.local/share/Trash/files" "$H/.local/share/Trash/info"
    sync # the copy's writing is not counted against whoever flushes first
    paths=("$H"/.cache/bench/*)
    export HOME="$H" XDG_DATA_HOME="$H/.local/share"
    start=$(date +%s%N)
    eval "${commands[$name]}" || { echo "$name failed (exit status $?)" >&2; exit 1; }
    end=$(date +%s%N)
    left=$(find "$H/.cache/bench" -mindepth 1 -maxdepth 1 | wc -l)
    trashed=$(find "$H/.local/share/Trash/files" -mindepth 1 -maxdepth 1 | wc -l)
    if [ "$left" -ne 0 ] || [ "$trashed" -ne "$items" ]; then
      echo "$name: $left items left in place, $trashed in the Trash" >&2
      exit 1
    fi
    [ "$round" -eq 0 ] || samples[$name]+="$(((end - start) / 1000)) "
  done
done

median() { tr ' ' '\n' | grep . | sort -n | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }
floor=$(echo "${samples[floor]}" | median)
echo "$items items (2,000 files, 200 folders of 100 files), $runs runs each, medians:"
printf '%-10s %10s %10s %10s %12s %9s\n' command median_ms min_ms max_ms ms_per_item x_floor
for name in "${order[@]}"; do
  m=$(echo "${samples[$name]}" | median)
  lo=$(echo "${samples[$name]}" | tr ' ' '\n' | grep . | sort -n | head -1)
  hi=$(echo "${samples[$name]}" | tr ' ' '\n' | grep . | sort -n | tail -1)
  awk -v n="$name" -v m="$m" -v lo="$lo" -v hi="$hi" -v f="$floor" -v i="$items" \
    'BEGIN { printf "%-10s %10.1f %10.1f %10.1f %12.4f %9.2f\n", n, m / 1000, lo / 1000, hi / 1000, m / 1000 / i, m / f }'
done
