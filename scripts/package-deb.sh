#!/usr/bin/env bash
# Makes the Debian package of the command in build/packages; installs what is missing.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packaging.sh
need_packages "${build_packages[@]}" python3 dpkg-dev

build_command
fresh_stage deb
cmake --install build/release --component command --prefix "$stage/usr" --strip >/dev/null
doc=$stage/usr/share/doc/tessary
cp packaging/debian/copyright "$doc/copyright"
cp CHANGELOG.md "$doc/changelog"
gzip -9n "$doc/changelog" "$stage"/usr/share/man/man1/tessary.1 "$stage"/usr/share/man/de/man1/tessary.1
python3 packaging/sbom.py linux "$version" "$doc"
set_times "$stage"
mkdir -p "$work/cpack"
export TESSARY_STAGE=$stage TESSARY_VERSION=$version
(cd "$work/cpack" && cpack --config ../../../../packaging/debian/cpack.cmake >cpack.log) ||
  { cat "$work/cpack/cpack.log"; exit 1; }
publish "$work/cpack"/tessary_"$version"_*.deb "$doc/sbom.spdx.json"
