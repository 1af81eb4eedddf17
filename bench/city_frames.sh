#!/usr/bin/env bash
# Frames per second, frame time and draw calls of the city stage at 1280x800 under Xvfb with
# Mesa's software renderer, with and without shadows. Draw calls are counted by a small
# preloaded library that wraps the OpenGL draw functions.
# Usage: bench/city_frames.sh [kestrow_gui_tests binary]
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
tests="${1:-$root/build/release/tests/kestrow_gui_tests}"
[ -x "$tests" ] || { echo "no test binary at $tests: build it first (cmake --build --preset release --target kestrow_gui_tests)" >&2; exit 1; }
command -v xvfb-run >/dev/null || { echo "xvfb-run is needed (the xvfb package)" >&2; exit 1; }

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
cc -shared -fPIC -O2 -o "$work/gl_draw_counter.so" "$root/bench/gl_draw_counter.c" -ldl

echo "cores: $(nproc)"
for function in test_withoutShadows test_withShadows; do
  QSG_INFO=1 LD_PRELOAD="$work/gl_draw_counter.so" LIBGL_ALWAYS_SOFTWARE=1 QT_QPA_PLATFORM=xcb \
    xvfb-run -a -s "-screen 0 1280x800x24" "$tests" -input "$root/bench/city_frames.qml" "CityFrames::$function" 2>&1 |
    grep -E 'RENDERER:|FRAMES|DRAWS|FAIL' | sed 's/^QDEBUG : [^ ]* //; s/^qt.rhi.general: //'
done
