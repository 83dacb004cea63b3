#!/usr/bin/env bash
# Counts the instructions of this program's own functions in fixed cases and compares them with the
# stored figures (bench/instruction_counts.txt, 3 % tolerance). The C and C++ libraries are left out,
# since the C library picks code by processor. Ends with "N passed, N failed".
#   scripts/instruction-counts.sh            compares
#   scripts/instruction-counts.sh --update   stores the figures of this build
#   scripts/instruction-counts.sh --growth   prints instructions per line at 50,000 and 500,000 lines
#                                            instead; takes some minutes
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

need_packages "${build_packages[@]}" "${bench_packages[@]}"
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
    END { printf "%d\n", sum }' "$work/profile"
}

# reports NAME SHAPE LINES CHANGES: makes a folder of reports, with the difference file in it.
reports() {
  mkdir -p "$work/$1/diff"
  "$make_reports" "$2" "$3" "$4" "$work/$1"
  "$tessary" diff --quiet "$work/$1/old.lst" "$work/$1/new.lst" "$work/$1/diff"
}

count_diff() { own_instructions "$tessary" diff "$work/$1/old.lst" "$work/$1/new.lst" "$work/$1/diff"; }

count_convert() {
  rm -rf "$work/run" "$work/runBak"
  mkdir "$work/run"
  cp "$work/$1/customer.lst" "$work/run"
  own_instructions "$tessary" convert "$work/run/customer.lst" "$work/$1/diff/3_4Rechnung"
}

# growth_of NAME SHAPE CHANGES_PER_HUNDRED_LINES: one row for each of the two passes.
growth_of() {
  local pass lines small large
  for lines in 50000 500000; do reports "$1-$lines" "$2" "$lines" $((lines * $3 / 100)); done
  for pass in diff convert; do
    small=$("count_$pass" "$1-50000")
    large=$("count_$pass" "$1-500000")
    awk -v name="$1" -v pass="$pass" -v small="$small" -v large="$large" 'BEGIN {
      small /= 50000; large /= 500000
      printf "| %s | %s | %d | %d | %.2f |\n", name, pass, small, large, large / small }'
  done
  rm -rf "$work/$1-50000" "$work/$1-500000"
}

if [ "$mode" = growth ]; then
  echo "| report | pass | per line of 50,000 | per line of 500,000 | ratio |"
  echo "|---|---|---|---|---|"
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
count_case() {
  case "$1" in
    diff-*) count_diff "${1#diff-}" ;;
    convert-*) count_convert "${1#convert-}" ;;
  esac
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
