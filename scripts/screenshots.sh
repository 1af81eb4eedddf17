#!/usr/bin/env bash
# Pictures of every screen of the desktop application, its Settings tabs and its tray menu, in
# the light and the dark theme at 1280x800 and 1024x700, on a synthetic home under Xvfb; then the
# city stage in each diorama style, idle, scanning, sweeping and in its victory.
# Usage: scripts/screenshots.sh [output folder] [kestrow-app binary]
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
out="${1:-$root/build/screenshots}"
app="${2:-$root/build/release/KestrowGui/kestrow-app}"
[ -x "$app" ] || { echo "no application at $app: build it first (cmake --build --preset release)" >&2; exit 1; }

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
python3 "$root/bench/make_home.py" "$work/home" --layout linux --files 20000 --folders 2000 >/dev/null
mkdir -p "$out"

for size in 1280x800 1024x700; do
  for theme in light dark; do
    # A fresh store each time, so that only the theme differs between the runs.
    mkdir -p "$work/home/.config/Kestrow"
    printf '[General]\nkestrow.appTheme=%s\n' "$theme" >"$work/home/.config/Kestrow/Kestrow.conf"
    HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" XDG_DATA_HOME="$work/home/.local/share" \
      XDG_CACHE_HOME="$work/home/.cache" XDG_RUNTIME_DIR="$work" \
      timeout 300 xvfb-run -a -s "-screen 0 ${size}x24" \
      "$app" -qwindowgeometry "${size}+0+0" --screenshots "$out" --screenshot-prefix "$theme-$size"
  done
done
ls "$out"
