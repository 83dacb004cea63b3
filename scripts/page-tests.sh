#!/usr/bin/env bash
# Opens the protocol pages of real runs in a headless browser and checks them; installs what is
# missing. Pictures go to build/pictures. Ends with "N passed, N failed".
#   scripts/page-tests.sh [BUILD_PRESET]    the build whose command is used, "release" unless given
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

preset=${1:-release}
missing=()
for tool in chromium nodejs:node npm; do
  command -v "${tool#*:}" >/dev/null || missing+=("${tool%:*}")
done
need_packages "${missing[@]}" fonts-liberation pngquant
export LC_ALL=C.UTF-8

tessary=build/$preset/tessary
if [ ! -x "$tessary" ]; then
  need_packages "${build_packages[@]}"
  echo "== Building $tessary"
  cmake --preset "$preset" -D TESSARY_TESTS=OFF >/dev/null
  cmake --build --preset "$preset" --target tessary >/dev/null
fi

# The lock file names every package with its checksum.
echo "== Installing the packages of tests/page"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! npm --prefix tests/page ci --no-audit --no-fund --ignore-scripts >"$log" 2>&1; then
  tail -n 20 "$log" >&2
  echo "npm could not install the packages of tests/page: is its registry reachable?" >&2
  echo "0 passed, 1 failed"
  exit 1
fi

echo "== Testing the pages"
node tests/page/run.mjs "$tessary" build/page-tests build/pictures "$(command -v chromium)" | tee "$log" &&
  failed=no || failed=yes
# A program that dies says nothing about its tests.
tail -n 1 "$log" | grep -qE '^[0-9]+ passed, [0-9]+ failed$' || echo "0 passed, 1 failed"
[ "$failed" = no ]
