# Sourced by the scripts that run programs under Wine, with the packages windows_packages and a folder
# $work that is there: a prefix and a display of their own, below that folder.

export WINEPREFIX=$work/prefix WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe="
xvfb=

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
