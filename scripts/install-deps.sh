#!/usr/bin/env bash
# Installs the Debian packages that building, testing and the demo need; silent when nothing is missing.
set -euo pipefail

packages=(g++ cmake ninja-build pkg-config
          fftw-dev gemmi-dev libstb-dev tao-pegtl-dev zlib1g-dev rapidjson-dev libcli11-dev
          libgtest-dev libbenchmark-dev)

missing=()
for package in "${packages[@]}"; do
  status=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$status" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || {
    echo "install-deps: these packages are missing and need root to install: ${missing[*]}" >&2
    exit 1
  }
  as_root=(sudo)
fi
echo "Installing ${missing[*]}"
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
  apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
