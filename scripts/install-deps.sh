#!/usr/bin/env bash
# Installs the Debian packages that build and test Kestrow. Safe to run again.
set -euo pipefail
# The desktop application adds Qt Quick and its modules, and Xvfb for its screenshots.
packages=(cmake ninja-build g++ qt6-base-dev libcli11-dev libgtest-dev libgmock-dev libplist-dev pkg-config clang-format clang clang-tidy python3 trash-cli
  qt6-declarative-dev qt6-declarative-dev-tools qml6-module-qtquick qml6-module-qtquick-controls
  qml6-module-qtquick-templates qml6-module-qtquick-layouts qml6-module-qtquick-window
  qml6-module-qtquick-dialogs qml6-module-qtqml-workerscript qml6-module-qt-labs-platform
  qml6-module-qttest qt6-quick3d-dev qt6-quick3d-dev-tools qml6-module-quick3d
  qml6-module-quick3d-helpers qt6-shadertools-dev libqt6svg6 xvfb xauth trayer imagemagick)
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
