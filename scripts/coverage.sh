#!/usr/bin/env bash
# Measures the line coverage of the core by all native tests and fails below 95 %.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh
need_packages "${build_packages[@]}" "${test_packages[@]}" gcovr

cmake --preset coverage >/dev/null
cmake --build --preset coverage >/dev/null
find build/coverage -name '*.gcda' -delete
ctest --test-dir build/coverage -j "$(nproc)" --output-on-failure --no-tests=error | tail -n 5
gcovr --root . --object-directory build/coverage \
  --filter 'src/engine/' --filter 'src/levels/' --filter 'src/report/' --filter 'src/manager/' \
  --exclude-throw-branches --print-summary --fail-under-line 95 "$@"
