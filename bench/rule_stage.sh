#!/usr/bin/env bash
# Times the rule stage: a user rule with "**" in the middle of its pattern, run by
# `kestrow scan --category DYNAMIC_RULE --json` over the synthetic home, against `find` doing
# the same walk (hidden folders left out, links not followed), alone and followed by `du -s` of
# each match, which is the measuring the scan does as well. Warm cache; medians.
# Usage: bench/rule_stage.sh [RUNS]   (KESTROW=path/to/kestrow to time another build)
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
top=$(dirname "$here")
runs=${1:-10}
# A home of its own: a user rule in the home of the other benchmarks would change their scans.
home="$here/out/rule-home"
kestrow=${KESTROW:-"$top/build/release/kestrow/kestrow"}
pattern='~/.cache/**/v07'

if [ ! -x "$kestrow" ]; then
  (cd "$top" && cmake --preset release >/dev/null && cmake --build --preset release >/dev/null)
fi
[ -d "$home" ] || python3 "$here/make_home.py" "$home"
"$kestrow" rules add --home "$home" --id bench.version_07 --name "Version 07 folders" \
  --pattern "$pattern" --category DYNAMIC_RULE --tier REVIEW_REQUIRED >/dev/null

match="find $home/.cache -mindepth 1 -name '.*' -prune -o -type d -name v07"
walk="$match -print"
measure="$match -print0 | xargs -0 du -s"
scan="$kestrow scan --home $home --category DYNAMIC_RULE --json"

# Both must see the same folders, or the timing compares different work.
found_by_scan=$($scan | python3 -c 'import json,sys; print("\n".join(sorted(i["path"] for i in json.load(sys.stdin)["items"])))')
found_by_find=$(eval "$walk" | sort)
if [ "$found_by_scan" != "$found_by_find" ]; then
  echo "kestrow and find disagree on the matches of $pattern" >&2
  diff <(echo "$found_by_scan") <(echo "$found_by_find") | head >&2
  exit 1
fi
echo "rule pattern $pattern: $(echo "$found_by_find" | wc -l) matching folders below" \
  "$(find "$home/.cache" -mindepth 1 -name '.*' -prune -o -type d -print | wc -l) folders walked"

if command -v hyperfine >/dev/null; then
  results=$(mktemp)
  trap 'rm -f "$results"' EXIT
  hyperfine --warmup 2 --runs "$runs" --style basic --export-json "$results" \
    -n kestrow "$scan" \
    -n find "$walk" \
    -n "find + du -s" "$measure"
  python3 - "$results" <<'REPORT'
import json, sys
for result in json.load(open(sys.argv[1]))["results"]:
    print(f'{result["command"]}: median {result["median"]:.3f} s  min {result["min"]:.3f} s  '
          f'max {result["max"]:.3f} s  user {result["user"]:.3f} s  system {result["system"]:.3f} s  '
          f'({len(result["times"])} runs)')
REPORT
else
  python3 "$here/timing.py" "$runs" "kestrow=$scan" "find=$walk" "find + du -s=$measure"
fi
