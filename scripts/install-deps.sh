#!/usr/bin/env bash
# Installs the Debian packages that build and test Kestrow. Safe to run again.
set -euo pipefail
packages=(cmake ninja-build g++ qt6-base-dev libcli11-dev libgtest-dev libgmock-dev libplist-dev pkg-config clang-format clang clang-tidy python3 trash-cli)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  sudo_cmd=""
  [ "$(id -u)" -ne 0 ] && sudo_cmd="sudo"
  $sudo_cmd apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo_cmd apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

# The agent test's client: node and npm from Debian when the machine has none (a node already
# there is kept), then the pinned MCP client library.
if ! command -v node >/dev/null || ! command -v npm >/dev/null; then
  sudo_cmd=""
  [ "$(id -u)" -ne 0 ] && sudo_cmd="sudo"
  $sudo_cmd apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo_cmd apt-get install -y -qq --no-install-recommends nodejs npm
fi
(cd "$(dirname "$0")/../tests/mcp-client" && npm ci --no-audit --no-fund --loglevel=error)
