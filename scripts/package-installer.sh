#!/usr/bin/env bash
# Makes the installer for Windows in build/packages; installs what is missing.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packaging.sh
need_packages "${build_packages[@]}" "${windows_packages[@]}" "${package_packages[@]}"

stage_windows installer
# Uninstalling removes these files and no others: a user may have put something beside them.
removal=$work/removal.nsh
{
  (cd "$stage" && find . -type f -printf '%P\n' | sort | tr / '\\' |
    sed -E 's|(.*)|Delete "$INSTDIR\\\1"|; s|^Delete ("[^"]*\.(dll\|exe)")|Delete /REBOOTOK \1|')
  (cd "$stage" && find . -mindepth 1 -type d -printf '%P\n' | sort -r | tr / '\\' | sed 's|.*|RMDir "$INSTDIR\\&"|')
} >"$removal"
output=$work/Tessary-$version-windows.exe
makensis -V2 -WX -INPUTCHARSET UTF8 -DVERSION="$version" -DSTAGE="$stage" -DREMOVAL="$removal" \
  -DSIZE_KB="$(du -sk --apparent-size "$stage" | cut -f1)" -DOUTPUT="$output" packaging/windows/installer.nsi
publish "$output" "$stage/Lizenzen/sbom.spdx.json"
