#!/usr/bin/env bash
# Builds the program and scores a model against its electron-density map.
#   scripts/demo.sh                       on a small crystal that it makes itself
#   scripts/demo.sh MODEL REFLECTIONS     on a model (PDB, mmCIF) and reflections (MTZ, mmCIF)
set -euo pipefail

if [ $# -ne 0 ] && [ $# -ne 2 ]; then
  echo "usage: scripts/demo.sh [MODEL REFLECTIONS]" >&2
  exit 2
fi
for file in "$@"; do
  [ -r "$file" ] || { echo "demo: cannot read $file" >&2; exit 1; }
done
if [ $# -eq 2 ]; then
  model=$(realpath "$1")
  reflections=$(realpath "$2")
fi

cd "$(dirname "$0")/.."
scripts/install-deps.sh
cmake --preset release -DVXGRID_BUILD_TESTS=OFF >/dev/null
cmake --build --preset release --target vxgrid_main make_crystal shift_model
vxgrid=build/release/apps/vxgrid

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
if [ $# -eq 0 ]; then
  echo
  echo "== A crystal made from ideal geometry"
  build/release/examples/make_crystal "$work"
  model=$work/crystal.pdb
  reflections=$work/crystal.mtz
fi

show() {
  echo
  echo "\$ vxgrid ${*//$work\//}"
  "$vxgrid" "$@"
}
show info "$model" "$reflections"
show map "$reflections" -o "$work/demo.map"
show info "$work/demo.map"
show score "$model" "$work/demo.map" --per-residue --radius 1.5
show score "$model" "$reflections" --radius 1.5
show score "$model" "$reflections"

echo
echo "== The same model moved by 1 A fits far worse"
build/release/examples/shift_model "$model" "$work/shifted.pdb" 0.577 0.577 0.577
show score "$work/shifted.pdb" "$reflections" --radius 1.5
