#!/usr/bin/env bash
# Installs the Debian 12 packages KOVA needs to build, test and run.
# Idempotent: packages already present are left alone. Works as root or through sudo.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev qt6-charts-dev libqt6opengl6-dev libgl-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  nlohmann-json3-dev libcli11-dev
  libmosquitto-dev mosquitto mosquitto-clients openssl
  libprotobuf-dev protobuf-compiler python3-protobuf python3-paho-mqtt
  libcivetweb-dev libssl-dev libcrypt-dev libjs-chart.js
  chromium chromium-driver python3-selenium python3-websocket
  clang libclang-rt-14-dev
  xvfb xauth xdotool imagemagick
  # more fonts than a bare machine has (a CJK fallback among them), so the tests meet a
  # "monospace" that is not fixed-pitch
  fonts-urw-base35 fonts-droid-fallback
  poppler-utils
  python3
  libsystemd-dev systemd groff-base man-db
  librsvg2-bin desktop-file-utils appstream
  debhelper lintian
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "install-deps: all packages present"
  exit 0
fi

if [ "$(id -u)" -eq 0 ]; then
  sudo_cmd=()
elif command -v sudo >/dev/null 2>&1; then
  sudo_cmd=(sudo)
else
  echo "install-deps: need root or sudo to install: ${missing[*]}" >&2
  exit 1
fi

echo "install-deps: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
