#!/usr/bin/env bash
# Makes the ZIP for Windows, for use without installation, in build/packages; installs what is missing.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packaging.sh
need_packages "${build_packages[@]}" "${windows_packages[@]}" "${package_packages[@]}"

stage_windows windows
name=Tessary-$version-windows
folder=$work/$name
rm -rf "$folder" "$folder.zip"
mv "$stage" "$folder"
# Names are written as UTF-8; nothing of the system that packs gets in.
(cd "$work" && find "$name" | sort | zip -q -9 -X -UN=UTF8 -@ "$name.zip")
publish "$folder.zip" "$folder/Lizenzen/sbom.spdx.json"
