#!/usr/bin/env bash
# Breaks the engine, the levels and the report in the small ways of tests/mutants/mutants.txt, one
# after the other, and checks that the tests notice. Works on a copy in build/mutants. Ends with
# "N noticed of M"; fails when fewer than 95 % are.
#   scripts/mutants.sh           all of them
#   scripts/mutants.sh --short   the few that are chosen for every run, with what the release build
#                                has compiled; ends with "N passed, N failed"
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

short=no
case "${1:-}" in
  '') ;;
  --short) short=yes ;;
  *) echo "usage: scripts/mutants.sh [--short]" >&2; exit 2 ;;
esac

need_packages "${build_packages[@]}" "${test_packages[@]}"
export LC_ALL=C.UTF-8
list=$PWD/tests/mutants/mutants.txt
work=$PWD/build/mutants
tree=$work/tree
# The tests in the order in which they are asked, quick ones first; a program is built only when
# those before it have noticed nothing.
quick_model='Agreement.AllSmallReports*:Agreement.Large*:Agreement.RandomLines*:Agreement.SearchFinds*:ModelProperties.*'
questions=('levels_tests *' 'report_tests *' 'engine_tests *' "model_tests $quick_model" 'e2e_tests *'
  'model_tests Agreement.AllSmallRuns*:Agreement.AnyDifference*')
[ "$short" = no ] || questions=('levels_tests *' 'report_tests *' 'engine_tests -*Random*:*Large*')
programs=("${questions[@]%% *}")
release=build/release

# set_up: the copy, and what is compiled of it without a fault.
set_up() {
  # Only what differs is copied, so that little is built anew.
  git ls-files -z -- . ':!tests/fuzz/corpus' | while IFS= read -r -d '' name; do
    cmp -s "$name" "$tree/$name" && continue
    mkdir -p "$tree/$(dirname "$name")"
    cp "$name" "$tree/$name"
  done
  if [ "$short" = yes ]; then
    cmake --preset release -D TESSARY_TESTS=ON && cmake --build --preset release --target "${programs[@]}"
  else
    cmake -S "$tree" -B "$work/build" -G Ninja -D CMAKE_BUILD_TYPE=Debug -D CMAKE_CXX_FLAGS_DEBUG="-O0 -w" \
      -D TESSARY_TESTS=ON
  fi
}

# last_command TARGET: how the release build makes it.
last_command() { ninja -C "$release" -t commands -s "$1" | tail -n 1; }

# compile FILE: a file of the copy with the command of the release build.
compile() {
  local object=src/CMakeFiles/tessary_core.dir/${1#src/}.o command
  command=$(last_command "$object")
  command=${command/"-MF $object.d"/"-MF $work/fault.d"}
  command=${command/"-o $object"/"-o $work/fault.o"}
  command=${command/"-c $PWD/$1"/"-w -c $tree/$1"}
  (cd "$release" && eval "$command")
}

# link PROGRAM: a test program of the release build, with the compiled file in place of the one in
# the library.
link() {
  local command
  command=$(last_command "tests/$1")
  command=${command#: && }
  command=${command%% && *}
  (cd "$release" && eval "${command/" -o tests/$1"/" $work/fault.o -o $work/$1"}")
}

# make_program PROGRAM: prints the path of the test program with the present fault.
make_program() {
  if [ "$short" = yes ]; then
    link "$1" >"$work/build.log" 2>&1 && echo "$work/$1"
  else
    cmake --build "$work/build" --target "$1" >"$work/build.log" 2>&1 && echo "$work/build/tests/$1"
  fi
}

stop_at_error() {
  tail -n 30 "$work/build.log"
  echo "this is no fault but an error: $1"
  exit 1
}

# ask: true when no test notices anything; $noticed_by tells which program did.
ask() {
  local question path
  for question in "${questions[@]}"; do
    noticed_by=${question%% *}
    path=$(make_program "$noticed_by") || stop_at_error "$1"
    # In seconds of the processor, which a busy machine does not shorten.
    (ulimit -t 300; exec "$path" --gtest_brief=1 --gtest_fail_fast --gtest_filter="${question#* }") \
      >"$work/test.log" 2>&1 || return 1
  done
}

# replace FILE OLD NEW: writes the fault into the copy; fails unless OLD stands there exactly once.
replace() {
  python3 - "$@" <<'PYTHON'
import sys
path, old, new = sys.argv[1:]
with open(path, encoding="utf-8") as file:
    text = file.read()
if text.count(old) != 1:
    sys.exit(f"{path}: not exactly once: {old}")
with open(path, "w", encoding="utf-8") as file:
    file.write(text.replace(old, new))
PYTHON
}

# for_each COMMAND: calls it with file, old and new text of every fault of this run.
for_each() {
  local file='' old='' chosen=no line new
  while IFS= read -r line || [ -n "$line" ]; do
    case "$line" in
      '#'* | '') ;;
      '- '*) old=${old:+$old$'\n'}${line#- } ;;
      '+ '* | '+') new=${line#+}; [ "$short" = yes ] && [ "$chosen" = no ] || "$1" "$file" "$old" "${new# }" </dev/null ;;
      '! '*) file=${line#! } old='' chosen=yes ;;
      *) file=$line old='' chosen=no ;;
    esac
  done <"$list"
}

# A list that no longer fits the code shows before anything is built.
unfit=0
check() {
  cp -p "$tree/$1" "$work/original"
  replace "$tree/$1" "$2" "$3" || unfit=$((unfit + 1))
  cp -p "$work/original" "$tree/$1"
}
mkdir -p "$work"
set_up >"$work/configure.log" 2>&1 || { tail -n 30 "$work/configure.log"; exit 1; }
for_each check
[ "$unfit" -eq 0 ] || exit 1
# What is noticed without a fault would prove nothing; the short form comes behind the tests.
if [ "$short" = no ] && ! ask "the code as it is"; then
  echo "$noticed_by fails without a fault:"
  tail -n 30 "$work/test.log"
  exit 1
fi

total=0
noticed=0
# try FILE OLD NEW: one fault.
try() {
  local file=$tree/$1
  cp -p "$file" "$work/original"
  replace "$file" "$2" "$3"
  total=$((total + 1))
  [ "$short" = no ] || compile "$1" >"$work/build.log" 2>&1 || stop_at_error "$1: $3"
  if ask "$1: $3"; then
    echo "NOT NOTICED  $1: ${3:-without: $2}"
  else
    noticed=$((noticed + 1))
    echo "$noticed_by  $1: ${3:-without: $2}"
  fi
  # With the time of now, or what was built from the fault would count as fresh.
  cp "$work/original" "$file"
}

for_each try
if [ "$short" = yes ]; then
  echo "$noticed passed, $((total - noticed)) failed"
else
  echo "$noticed noticed of $total"
fi
[ $((noticed * 100)) -ge $((total * 95)) ]
