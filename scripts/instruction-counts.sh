#!/usr/bin/env bash
# Counts the instructions of this program's own functions in fixed cases and compares them with the
# stored figures (bench/instruction_counts.txt, 3 % tolerance). The C and C++ libraries are left out,
# since the C library picks code by processor. Ends with "N passed, N failed".
#   scripts/instruction-counts.sh            compares
#   scripts/instruction-counts.sh --update   stores the figures of this build
#   scripts/instruction-counts.sh --growth   prints instructions, time and memory at 50,000 and at
#                                            500,000 lines instead; takes some minutes
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

mode=compare
case "${1:-}" in
  '') ;;
  --update) mode=update ;;
  --growth) mode=growth ;;
  *) echo "usage: scripts/instruction-counts.sh [--update | --growth]" >&2; exit 2 ;;
esac

need_packages "${build_packages[@]}" "${count_packages[@]}"
cmake --preset release -D TESSARY_BENCHMARKS=ON >/dev/null
cmake --build --preset release --target tessary make_reports >/dev/null
tessary=$PWD/build/release/tessary
make_reports=$PWD/build/release/bench/make_reports
stored=$PWD/bench/instruction_counts.txt
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# own_instructions COMMAND...: the instructions spent in functions of the program itself.
own_instructions() {
  valgrind --tool=callgrind --callgrind-out-file="$work/profile" "$@" >/dev/null 2>"$work/log" ||
    { cat "$work/log" >&2; return 1; }
  awk '
    /^fn=/ {
      id = $1
      sub(/^fn=/, "", id)
      if (NF > 1) own[id] = /tessary::/
      counted = own[id]
    }
    /^c?fn=/ && !/^fn=/ { id = $1; sub(/^cfn=/, "", id); if (NF > 1) own[id] = /tessary::/ }
    /^calls=/ { getline; next }
    /^[0-9+*-]/ { if (counted) sum += $2 }
    END { printf "%.0f\n", sum }' "$work/profile"
}

# reports NAME SHAPE LINES CHANGES: makes a folder of reports, with the difference file in it.
reports() {
  mkdir -p "$work/$1/diff"
  "$make_reports" "$2" "$3" "$4" "$work/$1"
  "$tessary" diff --quiet "$work/$1/old.lst" "$work/$1/new.lst" "$work/$1/diff"
}

run_diff() { "$@" "$tessary" diff --quiet "$work/$name/old.lst" "$work/$name/new.lst" "$work/$name/diff"; }

run_convert() {
  rm -rf "$work/run" "$work/runBak"
  mkdir "$work/run"
  cp "$work/$name/customer.lst" "$work/run"
  "$@" "$tessary" convert --quiet "$work/run/customer.lst" "$work/$name/diff/3_4Rechnung"
}

# measure_times PASS: what runs with 50,000 and with 500,000 lines take, by turns, since a shared
# machine is now faster, now slower.
measure_times() {
  rm -f "$work"/times.*
  for _ in 1 2 3 4 5; do
    for name in 50000 500000; do "run_$1" python3 bench/usage.py "$work/times.$name" >/dev/null; done
  done
}

# quickest LINES: processor seconds and peak in KB of the quickest run. Small reports take so little
# that hundredths of a second, as "time" gives them, would not do.
quickest() { sort -n "$work/times.$1" | head -n 1; }

# input_size PASS: what the pass reads, in KB.
input_size() {
  case "$1" in
    diff) cat "$work/$name/old.lst" "$work/$name/new.lst" ;;
    convert) cat "$work/$name/customer.lst" "$work/$name/diff/3_4Rechnung" ;;
  esac | wc -c | awk '{ print $1 / 1024 }'
}

# growth_of TITLE SHAPE CHANGES_PER_HUNDRED_LINES: one row for each of the two passes.
growth_of() {
  local pass lines name counts=() times=() peak
  for lines in 50000 500000; do reports "$lines" "$2" "$lines" $((lines * $3 / 100)); done
  for pass in diff convert; do
    for name in 50000 500000; do counts+=("$(run_$pass own_instructions)"); done
    measure_times "$pass"
    for name in 50000 500000; do
      read -r seconds peak < <(quickest "$name")
      times+=("$seconds")
    done
    echo "$1|$pass|${counts[*]}|${times[*]}|$peak|$(input_size "$pass")" | awk -F '|' '{
      split($3, counts, " ")
      split($4, times, " ")
      printf "| %s | %s | %d | %d | **%.2f** | %.2f | **%.2f** | %.1f |\n", $1, $2, counts[1] / 50000,
             counts[2] / 500000, counts[2] / counts[1] / 10, times[2], times[2] / times[1] / 10, $5 / $6 }'
    counts=()
    times=()
  done
  rm -rf "$work/50000" "$work/500000"
}

if [ "$mode" = growth ]; then
  echo "| report | pass | instructions per line of 50,000 | of 500,000 | ratio | seconds for 500,000" \
    "| time per line, ratio | peak memory / input |"
  echo "|---|---|---|---|---|---|---|---|"
  growth_of "many small sections" sections 1
  growth_of "all lines siblings" siblings 1
  growth_of "siblings of one name" twins 1
  growth_of "lines, insertions in front" lines 2
  growth_of "columns, insertions in front" columns 2
  growth_of "as many changes as lines" siblings 100
  exit
fi

reports sections sections 5000 80
reports siblings siblings 5000 80
reports table table 5000 80

# count_case PASS-NAME
count_case() {
  local name=${1#*-}
  "run_${1%%-*}" own_instructions
}

cases=(diff-sections diff-siblings diff-table convert-sections)
if [ "$mode" = update ]; then
  for name in "${cases[@]}"; do echo "$name $(count_case "$name")"; done | tee "$work/counts"
  cp "$work/counts" "$stored"
  exit
fi

passed=0
failed=0
for name in "${cases[@]}"; do
  expected=$(awk -v name="$name" '$1 == name { print $2 }' "$stored")
  count=$(count_case "$name")
  change=$(awk -v a="$count" -v b="${expected:-0}" 'BEGIN { printf "%+.1f", b ? 100 * (a / b - 1) : 100 }')
  echo "$name: $count instructions, stored ${expected:-none}, $change %"
  if awk -v change="$change" 'BEGIN { exit !(change <= 3 && change >= -3) }'; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
  fi
done
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
