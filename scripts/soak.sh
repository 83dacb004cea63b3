#!/usr/bin/env bash
# The long forms of the reliability tests: every call to the system failing with every kind of
# error, 100,000 reports in one process, the end-to-end tests under valgrind, and threads under the
# thread sanitizer; installs what is missing. Takes about half an hour. Ends with "N passed, N failed".
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

need_packages "${build_packages[@]}" "${test_packages[@]}" "${sanitizer_packages[@]}" valgrind
export LC_ALL=C.UTF-8

echo "== Building: release"
cmake --preset release -D TESSARY_TESTS=ON >/dev/null
mkdir -p build/soak
cmake --build --preset release --target faults_tests e2e_tests >build/soak/build.log 2>&1 ||
  { tail -n 60 build/soak/build.log; exit 1; }

passed=0
failed=0
# part NAME COMMAND...: one part, of which it shows the figures, or the end where it fails.
part() {
  local name=$1 log=build/soak/${1// /-}.log
  shift
  echo "== $name"
  if "$@" >"$log" 2>&1; then
    passed=$((passed + 1))
    grep -E '^(failed calls|kills survived|calls before|[0-9]+ reports|with one log|\[  PASSED|\[  SKIPPED|.*NOT TESTED)' "$log" || true
  else
    failed=$((failed + 1))
    tail -n 60 "$log"
  fi
}

tests=build/release/tests
part "Failing calls" $tests/faults_tests --gtest_also_run_disabled_tests --gtest_filter='*FailingCalls*DISABLED*'
part "Kills" $tests/faults_tests --gtest_filter='*KillTest*:*Vanishing*:*FullDisk*:SeveralRuns.*'
part "Long run" $tests/faults_tests --gtest_also_run_disabled_tests --gtest_filter='LongRun.DISABLED*'
# Reports of many megabytes take too long there and show nothing that small ones do not.
part "Memory" valgrind --quiet --leak-check=full --errors-for-leak-kinds=definite,possible \
  --error-exitcode=9 --trace-children=no $tests/e2e_tests \
  --gtest_filter='-*TenMegabytes*:*TwoHundredThousand*:*MillionBraces*'
cmake --preset tsan >/dev/null
part "Building for the thread sanitizer" cmake --build --preset tsan --target platform_tests e2e_tests
tests=build/tsan/tests
part "Workers" $tests/platform_tests --gtest_filter='WorkersTest.*' --gtest_repeat=20
part "Threads" $tests/e2e_tests --gtest_filter='WorkAheadRunTest.*' --gtest_repeat=5
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
