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
export WINEPREFIX=$work/prefix WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe="
xvfb=
passed=0
failed=0
skipped=0

# Only what this run has started is ended: the server of its own prefix and its own display.
clean_up() {
  wineserver -k 2>/dev/null || true
  [ -z "$xvfb" ] || kill "$xvfb" 2>/dev/null || true
}
trap clean_up EXIT

# run_wine SECONDS PROGRAM ARGUMENT... : without input or output, which the services that the first
# program starts would hold open.
run_wine() {
  local limit=$1
  shift
  timeout "$limit" wine "$@" </dev/null >/dev/null 2>&1
}

folder_of_32_bit_dlls() {
  dpkg -L libwine | sed -n 's|/x86_64-windows/stdole2.tlb$|/i386-windows|p'
}

# Debian's Wine runs 32-bit programs as soon as the 32-bit DLLs of Windows lie beside the 64-bit
# ones. They come from the package of the other architecture, which is only unpacked, with package
# lists of its own, so that nothing changes for the system's package management.
install_32_bit_dlls() {
  local folder version as_root=() lists download
  folder=$(folder_of_32_bit_dlls)
  [ -e "$folder/kernel32.dll" ] && return 0
  echo "Installing: the 32-bit DLLs of Wine"
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  version=$(dpkg-query -W -f='${Version}' libwine)
  lists=$work/lists
  download=$work/download
  rm -rf "$lists" "$download"
  mkdir -p "$lists/partial" "$download"
  local options=(-o APT::Architecture=i386 -o APT::Architectures=i386 -o "Dir::State::Lists=$lists"
    -o APT::Sandbox::User=root -qq)
  # The update fails when one of several indexes is missing, which need not matter.
  timeout 300 apt-get "${options[@]}" update >/dev/null 2>&1 || true
  (cd "$download" && timeout 600 apt-get "${options[@]}" download "libwine:i386=$version" >/dev/null &&
    dpkg -x libwine*.deb unpacked) || return 1
  "${as_root[@]}" mkdir -p "$folder"
  "${as_root[@]}" cp -r "$download"/unpacked/usr/lib/i386-linux-gnu/wine/i386-windows/. "$folder/" || return 1
  rm -rf "$lists" "$download"
}

start_display() {
  rm -f "$work/display"
  Xvfb -displayfd 3 -screen 0 1920x1440x24 -nolisten tcp 3>"$work/display" >/dev/null 2>&1 &
  xvfb=$!
  local i
  for i in $(seq 100); do
    [ -s "$work/display" ] && break
    sleep 0.1
  done
  export DISPLAY=":$(cat "$work/display")"
}

# A crash must not wait for somebody to close a window, and windows need no window manager.
write_settings() {
  cat >"$work/settings.reg" <<'END'
REGEDIT4

[HKEY_CURRENT_USER\Software\Wine\WineDbg]
"ShowCrashDialog"=dword:00000000

[HKEY_CURRENT_USER\Software\Wine\Explorer]
"Desktop"="Default"

[HKEY_CURRENT_USER\Software\Wine\Explorer\Desktops]
"Default"="1920x1440"

[HKEY_CURRENT_USER\Software\Wine\Fonts\Replacements]
"Tahoma"="Liberation Sans"
"MS Shell Dlg"="Liberation Sans"
"MS Sans Serif"="Liberation Sans"
"Microsoft Sans Serif"="Liberation Sans"
END
  run_wine 60 regedit /S "$work/settings.reg"
  # The signs on caption buttons are letters of this font.
  cp /usr/share/wine/fonts/marlett.ttf "$WINEPREFIX/drive_c/windows/Fonts/"
}

# One server is kept for the whole run: starting one costs more than most tests.
# The folder of its files is made anew where it lacks the 32-bit part that Wine has got since.
start_wine() {
  local windows=$WINEPREFIX/drive_c/windows
  if [ -e "$(folder_of_32_bit_dlls)/kernel32.dll" ] && [ ! -e "$windows/syswow64/kernel32.dll" ]; then
    rm -rf "$WINEPREFIX"
  fi
  mkdir -p "$WINEPREFIX"
  wineserver -p
  run_wine 300 wineboot
  write_settings
}

runs_32_bit_programs() {
  echo 'int main() { return 7; }' >"$work/probe.cpp"
  i686-w64-mingw32-g++-posix -static -o "$work/probe.exe" "$work/probe.cpp"
  local code=0
  run_wine 60 "$work/probe.exe" || code=$?
  [ "$code" -eq 7 ]
}

# build PRESET [OPTION...]: configures and builds; the end of the log where it fails.
build() {
  local preset=$1 log="$work/build.log"
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
  total=$(sed -nE 's/.*tests failed out of ([0-9]+).*/\1/p; s/.*100% tests passed.* out of ([0-9]+).*/\1/p' "$log" | head -n 1)
  bad=$(sed -nE 's/.*, ([0-9]+) tests failed out of.*/\1/p' "$log" | head -n 1)
  [ -n "$total" ] || { total=1; bad=1; }
  left_out=$(grep -cE '^ *[0-9]+/[0-9]+ Test .*\*\*\*Skipped' "$log" || true)
  skipped=$((skipped + left_out))
  passed=$((passed + total - ${bad:-0} - left_out))
  failed=$((failed + ${bad:-0}))
}

can_run() {
  [ "$1" = x64 ] || runs_32_bit_programs
}

case " ${architectures[*]} " in
  *" x86 "*) install_32_bit_dlls || echo "The 32-bit DLLs of Wine could not be installed." ;;
esac
start_display
start_wine
build release --target tessary
for architecture in "${architectures[@]}"; do
  build "windows-$architecture"
  if can_run "$architecture"; then
    run_tests "windows-$architecture"
  else
    skipped=$((skipped + 1))
    echo "************************************************************************"
    echo "SKIPPED: the tests of windows-$architecture. This Wine runs no 32-bit programs."
    echo "************************************************************************"
  fi
done
[ "$skipped" -eq 0 ] || echo "$skipped skipped"
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
