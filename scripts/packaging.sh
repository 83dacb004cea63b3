# Sourced by the scripts that make packages: what they have in common. Packages go to build/packages;
# two runs from the same sources with the same compilers give the same bytes.
. scripts/packages.sh

packages=$PWD/build/packages
work=$packages/work
version=$(sed -n 's/^project(Tessary VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
# The time that everything in a package bears.
if [ -z "${SOURCE_DATE_EPOCH:-}" ]; then
  SOURCE_DATE_EPOCH=$(git log -1 --format=%ct 2>/dev/null) || SOURCE_DATE_EPOCH=1704067200
fi
export SOURCE_DATE_EPOCH TZ=UTC LC_ALL=C.UTF-8
umask 022
mkdir -p "$work"

# build_products PRESET TARGETS [OPTION...]: builds these targets; the end of the log where it fails.
build_products() {
  local preset=$1 targets=$2 log="$work/$1.log"
  shift 2
  echo "== Building: $preset"
  # shellcheck disable=SC2086
  { cmake --preset "$preset" "$@" && cmake --build --preset "$preset" --target $targets; } >"$log" 2>&1 ||
    { tail -n 60 "$log"; exit 1; }
}

# build_command: builds the command of this system; what the folder of the build has of tests stays.
build_command() {
  local tests
  tests=$(sed -n 's/^TESSARY_TESTS:BOOL=//p' build/release/CMakeCache.txt 2>/dev/null) || tests=OFF
  build_products release tessary -D TESSARY_TESTS="${tests:-OFF}"
}

# fresh_stage NAME: an empty folder for the contents of a package; its path is in $stage.
fresh_stage() {
  stage=$work/$1
  rm -rf "$stage"
  mkdir -p "$stage"
}

# stage_windows PRODUCT: builds for Windows and puts what its users get into a fresh folder, $stage.
stage_windows() {
  local architecture
  for architecture in x64 x86; do build_products "windows-$architecture" 'tessary tessary_com'; done
  fresh_stage "$1"
  for architecture in x64 x86; do
    mkdir "$stage/$architecture"
    cp "build/windows-$architecture"/{tessary.exe,Tessary.dll,Tessary.manifest} "$stage/$architecture/"
  done
  cp -r samples "$stage/Beispiele"
  rm "$stage/Beispiele/README.md"  # a page of the guide instead
  python3 packaging/guide.py docs "$stage/Handbuch"
  sed "s/@VERSION@/$version/; s/\$/\r/" packaging/windows/LIESMICH.txt >"$stage/LIESMICH.txt"
  python3 packaging/sbom.py "$1" "$version" "$stage/Lizenzen"
  set_times "$stage"
}

# set_times FOLDER: gives everything in it the packages' time.
set_times() {
  find "$1" -exec touch --no-dereference --date="@$SOURCE_DATE_EPOCH" {} +
}

# publish FILE SBOM: puts a package into the folder, its list of parts beside it, and both into the
# list of checksums.
publish() {
  local name
  name=$(basename "$1")
  mv "$1" "$packages/$name"
  cp "$2" "$packages/$name.spdx.json"
  (cd "$packages" && find . -maxdepth 1 -type f ! -name SHA256SUMS -printf '%P\n' | sort | xargs sha256sum >SHA256SUMS)
  echo "build/packages/$name"
}
