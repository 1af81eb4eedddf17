#!/usr/bin/env bash
# Installs the release build's `kestrow` into /usr/local/bin (the prefix's binary folder), where
# agent clients are configured to find it. Run after `cmake --build --preset release`.
set -euo pipefail
cd "$(dirname "$0")/.."
sudo_cmd=""
[ "$(id -u)" -ne 0 ] && sudo_cmd="sudo"
$sudo_cmd cmake --install build/release
