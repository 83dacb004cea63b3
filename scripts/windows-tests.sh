#!/usr/bin/env bash
# Builds the products for Windows and runs their tests under Wine; installs what is missing. Ends
# with "N passed, N failed".
#   scripts/windows-tests.sh [x64|x86|all]    both architectures unless one is named
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

case "${1:-all}" in
  x64 | x86) architectures=("$1") ;;
  all) architectures=(x64 x86) ;;
  *) echo "usage: scripts/windows-tests.sh [x64|x86|all]" >&2; exit 2 ;;
esac

need_packages "${build_packages[@]}" "${windows_packages[@]}"

work=$PWD/build/windows-tests
mkdir -p "$work"
export LC_ALL=C.UTF-8
. scripts/wine.sh
passed=0
failed=0
skipped=0

# build PRESET [OPTION...]: configures and builds; the end of the log where it fails.
build() {
  local preset=$1 log="$work/$1.log"
  shift
  echo "== Building: $preset"
  { cmake --preset "$preset" && cmake --build --preset "$preset" "$@"; } >"$log" 2>&1 || { tail -n 60 "$log"; exit 1; }
}

# run_tests PRESET: runs the tests of a build and adds up their numbers. Windows are looked at while
# they move, which a busy machine can spoil: what fails gets a second try, and the log shows both.
run_tests() {
  echo "== Testing: $1"
  local log="build/$1/tests.log" total bad left_out
  timeout 1800 ctest --preset "$1" -j "$(nproc)" --timeout 120 --repeat until-pass:2 --no-tests=error </dev/null >"$log" 2>&1 || true
  grep -vE '^ *[0-9]+/[0-9]+ Test .* Passed|^ +Start +[0-9]+:' "$log" || true
  grep -h 'NOT TESTED' "build/$1/Testing/Temporary/LastTest.log" | sort -u || true
  total=$(sed -nE 's/.*tests failed out of ([0-9]+).*/\1/p; s/.*100% tests passed.* out of ([0-9]+).*/\1/p' "$log" | head -n 1)
  bad=$(sed -nE 's/.*, ([0-9]+) tests failed out of.*/\1/p' "$log" | head -n 1)
  [ -n "$total" ] || { total=1; bad=1; }
  left_out=$(grep -cE '^ *[0-9]+/[0-9]+ Test .*\*\*\*Skipped' "$log" || true)
  skipped=$((skipped + left_out))
  passed=$((passed + total - ${bad:-0} - left_out))
  failed=$((failed + ${bad:-0}))
}

# test_architecture ARCHITECTURE: runs its tests where they can run, and says so where they cannot.
test_architecture() {
  if [ "$1" = x64 ] || runs_32_bit_programs; then
    run_tests "windows-$1"
  else
    skipped=$((skipped + 1))
    echo "************************************************************************"
    echo "SKIPPED: the tests of windows-$1. This Wine runs no 32-bit programs."
    echo "************************************************************************"
  fi
}

case " ${architectures[*]} " in
  *" x86 "*) install_32_bit_dlls || echo "The 32-bit DLLs of Wine could not be installed." ;;
esac
start_display
start_wine
build release --target tessary
build "windows-${architectures[0]}"
if [ ${#architectures[@]} -eq 1 ]; then
  test_architecture "${architectures[0]}"
else
  # Tests mostly wait, so the other architecture is built meanwhile.
  build "windows-${architectures[1]}" &
  builder=$!
  test_architecture "${architectures[0]}"
  wait "$builder"
  test_architecture "${architectures[1]}"
fi
[ "$skipped" -eq 0 ] || echo "$skipped skipped"
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
