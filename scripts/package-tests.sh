#!/usr/bin/env bash
# Makes the packages, twice, and installs, uses and removes each; installs what is missing. Ends with
# "N passed, N failed".
#   scripts/package-tests.sh [deb|zip|installer]...    all of them unless some are named
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packaging.sh

wanted=("$@")
[ $# -gt 0 ] || wanted=(deb zip installer)
for kind in "${wanted[@]}"; do
  case "$kind" in
    deb | zip | installer) ;;
    *) echo "usage: scripts/package-tests.sh [deb|zip|installer]..." >&2; exit 2 ;;
  esac
done

tests=$PWD/tests/packages
trial=$work/trial
rm -rf "$trial"
mkdir -p "$trial"
passed=0
failed=0

# check NAME COMMAND...: one test; what it prints is shown when it fails.
check() {
  local name=$1 code
  shift
  # In a condition, the shell would not end at the first command that fails.
  set +e
  (set -euxo pipefail; "$@") >"$trial/output" 2>&1
  code=$?
  set -e
  if [ "$code" -eq 0 ]; then
    passed=$((passed + 1))
    echo "ok      $name"
  else
    failed=$((failed + 1))
    echo "FAILED  $name"
    tail -n 40 "$trial/output"
  fi
}

# not COMMAND...: true when it fails. "!" would not end a test.
not() { if "$@"; then return 1; fi; }

# make_twice KIND: makes a package, and once more, which gives the same bytes.
make_twice() {
  scripts/package-"$1".sh
  (cd "$packages" && sha256sum -c SHA256SUMS)
  cp "$packages/SHA256SUMS" "$trial/sums"
  scripts/package-"$1".sh >/dev/null
  diff "$trial/sums" "$packages/SHA256SUMS"
}

# What a user does with the command on samples; prints nothing when all is as it must be.
use_command() {
  local folder=$trial/use
  rm -rf "$folder"
  cp -r samples "$folder"
  mkdir "$folder/differenz"
  (
    cd "$folder"
    "$@" --version | tr -d '\r' | grep -qx "tessary $version"
    "$@" diff-folder hersteller/version3 hersteller/version4 differenz
    "$@" convert-folder differenz kunde/Berichte
    "$@" info kunde/Berichte/Rechnung.lst | grep -q 'Version 4'
  )
}

if [[ " ${wanted[*]} " == *" deb "* ]]; then . tests/packages/deb.sh; fi
if [[ " ${wanted[*]} " == *" zip "* || " ${wanted[*]} " == *" installer "* ]]; then
  need_packages "${build_packages[@]}" "${windows_packages[@]}"
  . scripts/wine.sh
  install_32_bit_dlls
  # A system on which nothing has been installed before.
  wineserver -k 2>/dev/null && wineserver -w || true
  rm -rf "$WINEPREFIX"
  start_display
  start_wine
  build_command
  for architecture in x64 x86; do
    build_products "windows-$architecture" 'registered_client manifest_client'
  done
fi
if [[ " ${wanted[*]} " == *" installer "* ]]; then . tests/packages/installer.sh; fi
# Last, as Wine itself enters the type library when a program uses the component without registration.
if [[ " ${wanted[*]} " == *" zip "* ]]; then . tests/packages/zip.sh; fi
rm -rf "$trial"
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
