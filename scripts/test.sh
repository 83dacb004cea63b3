#!/usr/bin/env bash
# Builds everything and runs all tests; installs what is missing. Ends with "N passed, N failed".
#   scripts/test.sh          all native tests under the sanitizers and most of them in the release
#                            build, instruction counts, a few faults put into the code, short
#                            fuzzing, the protocol pages in a browser, the Debian package, and the
#                            Windows products of both architectures under Wine; the packages for
#                            Windows are tested by scripts/package-tests.sh
#   scripts/test.sh --fast   all native tests, in the release build only
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

fast=no
case "${1:-}" in
  '') ;;
  --fast) fast=yes ;;
  *) echo "usage: scripts/test.sh [--fast]" >&2; exit 2 ;;
esac

need_packages "${build_packages[@]}" "${test_packages[@]}"
[ "$fast" = yes ] || need_packages "${sanitizer_packages[@]}"
export LC_ALL=C.UTF-8
passed=0
failed=0

# build PRESET [OPTION...]: configures and builds; the errors only where it fails.
build() {
  local preset=$1 log="build/$1.log"
  shift
  mkdir -p build
  echo "== Building: $preset"
  cmake --preset "$preset" -D TESSARY_TESTS=ON "$@" >"$log" 2>&1 &&
    cmake --build --preset "$preset" >>"$log" 2>&1 || { tail -n 60 "$log"; rm -f "$log"; exit 1; }
  rm -f "$log"
}

# run_tests PRESET: runs the tests of a build and adds up their numbers.
run_tests() {
  echo "== Testing: $1"
  local log="build/$1/tests.log" total bad
  ctest --preset "$1" -j "$(nproc)" --no-tests=error >"$log" 2>&1 || true
  grep -vE '^ *[0-9]+/[0-9]+ Test .* Passed|^ +Start +[0-9]+:' "$log" || true
  total=$(sed -nE 's/.*tests failed out of ([0-9]+).*/\1/p; s/.*100% tests passed.* out of ([0-9]+).*/\1/p' "$log" | head -n 1)
  bad=$(sed -nE 's/.*, ([0-9]+) tests failed out of.*/\1/p' "$log" | head -n 1)
  [ -n "$total" ] || { total=1; bad=1; }
  passed=$((passed + total - ${bad:-0}))
  failed=$((failed + ${bad:-0}))
}

# add_up SCRIPT [ARGUMENT...]: runs tests that end with "N passed, N failed" and adds their numbers.
add_up() {
  local log="build/$(basename "$1").log" line
  mkdir -p build
  "$@" 2>&1 | tee "$log" || true
  line=$(tail -n 1 "$log")
  if [[ "$line" =~ ^([0-9]+)" passed, "([0-9]+)" failed"$ ]]; then
    passed=$((passed + BASH_REMATCH[1]))
    failed=$((failed + BASH_REMATCH[2]))
  else
    failed=$((failed + 1))
  fi
}

# The tests under Wine mostly wait, so they run beside the others.
windows=
start_windows_tests() {
  scripts/windows-tests.sh >build/windows-products.log 2>&1 &
  windows=$!
  trap 'kill "$windows" 2>/dev/null || true' EXIT
}

if [ "$fast" = yes ]; then
  build release -U TESSARY_TEST_LAYERS
  run_tests release
else
  # What depends on the system or on how the compiler optimises; the sanitizers run all the tests.
  build release -D "TESSARY_TEST_LAYERS=platform;engine;levels;report;model;e2e;faults"
  add_up scripts/instruction-counts.sh
  start_windows_tests
  run_tests release
  add_up scripts/mutants.sh --short
  build asan
  run_tests asan
  add_up scripts/fuzz.sh 15
  add_up scripts/page-tests.sh
  add_up scripts/package-tests.sh deb
  wait "$windows" || true
  add_up cat build/windows-products.log
fi
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
