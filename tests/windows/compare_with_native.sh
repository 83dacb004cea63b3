#!/usr/bin/env bash
# Both programs, the native one and the one for Windows, do the same work on copies of the samples;
# every file that they leave must be equal, and so must the exit codes.
#   compare_with_native.sh NATIVE_COMMAND WINDOWS_COMMAND SAMPLES
set -euo pipefail
native=$1
windows=$2
samples=$3
for needed in "$native" "$windows" "$samples/hersteller"; do
  [ -e "$needed" ] || { echo "$needed is missing" >&2; exit 1; }
done
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

run_native() { "$native" "$@"; }
run_windows() { timeout 60 wine "$windows" "$@"; }

# step RUN ARGUMENT... : runs one command and notes its exit code.
step() {
  local run=$1 code=0
  shift
  "$run" "$@" </dev/null >/dev/null 2>&1 || code=$?
  echo "$code $*" >>exit-codes.txt
}

pass() {
  local run=$1 name file
  cp -r "$samples"/. .
  mkdir differenzen rundlauf
  for versions in "3 4" "4 5"; do
    set -- $versions
    step "$run" diff-folder "hersteller/version$1" "hersteller/version$2" differenzen
  done
  step "$run" convert-folder differenzen kunde/Berichte
  step "$run" convert-folder differenzen kunde/Berichte
  step "$run" convert-folder differenzen hersteller/version3 --backup sicherung --omit angebot.LST
  for name in Block-unter-Eigenschaft Doppelpunkt-im-Feld Leere-Ebene; do
    mkdir "$name"
    step "$run" diff "besonderheiten/$name-3.lst" "besonderheiten/$name-4.lst" "$name"
    for file in "$name"/*; do
      step "$run" convert "besonderheiten/$name-3.lst" "$file"
    done
  done
  step "$run" convert besonderheiten/Leere-Ebene-Kunde.lst Leere-Ebene/*
  for file in besonderheiten/*.lst kunde/Berichte/*; do
    step "$run" roundtrip "$file" "rundlauf/$(basename "$file")"
  done
}

for system in native windows; do
  mkdir "$work/$system"
  (cd "$work/$system" && pass "run_$system")
done
diff -r "$work/native" "$work/windows"

difference_files=$(find "$work/windows/differenzen" -type f | wc -l)
converted=$(grep -rlE 'Version=5' "$work/windows/kunde/Berichte" | wc -l)
done_steps=$(grep -c '^0 ' "$work/windows/exit-codes.txt")
echo "$difference_files difference files, $converted converted reports, $done_steps commands: equal"
[ "$difference_files" -ge 6 ] && [ "$converted" -ge 6 ] && [ "$done_steps" -ge 20 ]
