#!/usr/bin/env bash
# Runs the fuzz targets, one per processor at a time, each for SECONDS; installs what is missing.
# Ends with "N passed, N failed". Inputs that end a target are kept in build/fuzz/crashes.
#   scripts/fuzz.sh SECONDS [TARGET...]          all targets unless some are named
#   scripts/fuzz.sh --keep SECONDS [TARGET...]   adds what reaches new code to tests/fuzz/corpus
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

keep=no
if [ "${1:-}" = --keep ]; then keep=yes; shift; fi
[[ "${1:-}" =~ ^[1-9][0-9]*$ ]] || { echo "usage: scripts/fuzz.sh [--keep] SECONDS [TARGET...]" >&2; exit 2; }
seconds=$1
shift
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for source in tests/fuzz/targets/*.cpp; do targets+=("$(basename "$source" .cpp)"); done
fi

need_packages "${build_packages[@]}" "${test_packages[@]}" "${sanitizer_packages[@]}"
export LC_ALL=C.UTF-8

echo "== Building: asan"
mkdir -p build/fuzz
cmake --preset asan >/dev/null
cmake --build --preset asan --target "${targets[@]/#/fuzz_}" >build/fuzz/build.log 2>&1 ||
  { tail -n 60 build/fuzz/build.log; exit 1; }

# A new input is at most this long; longer ones cost speed and show nothing new.
most_bytes=4096
mkdir -p build/fuzz/crashes

# fuzz TARGET: leaves build/fuzz/TARGET.passed when nothing was found.
fuzz() {
  local target=$1 corpus=tests/fuzz/corpus/$1 found=build/fuzz/found/$1
  mkdir -p "$corpus" "$found"
  rm -f "build/fuzz/$target.passed"
  build/asan/tests/fuzz/fuzz_"$target" -max_total_time="$seconds" -max_len=$most_bytes -timeout=120 \
    -rss_limit_mb=2048 -dict=tests/fuzz/tessary.dict -print_final_stats=1 \
    -artifact_prefix=build/fuzz/crashes/"$target"- "$found" "$corpus" >"build/fuzz/$target.log" 2>&1 &&
    touch "build/fuzz/$target.passed"
  if [ "$keep" = yes ]; then
    build/asan/tests/fuzz/fuzz_"$target" -set_cover_merge=1 -use_counters=0 -max_len=$most_bytes "$corpus" "$found" >/dev/null 2>&1 || true
  fi
}

for target in "${targets[@]}"; do
  while [ "$(jobs -rp | wc -l)" -ge "$(nproc)" ]; do wait -n || true; done
  fuzz "$target" &
done
wait

passed=0
failed=0
for target in "${targets[@]}"; do
  log=build/fuzz/$target.log
  if [ -e "build/fuzz/$target.passed" ]; then
    echo "$target: $(sed -n 's/^stat::number_of_executed_units: *//p' "$log") executions"
    passed=$((passed + 1))
  else
    echo "$target: failed"
    tail -n 40 "$log"
    failed=$((failed + 1))
  fi
done
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
