#!/usr/bin/env bash
# Installs what is missing, builds, and runs all tests: once as users build the library, and once
# under the address and undefined-behaviour sanitizers.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
for preset in release sanitize; do
  echo "== $preset"
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset"
  ctest --preset "$preset"
done
