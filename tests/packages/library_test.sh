#!/usr/bin/env bash
# Installs a build into a folder, and configures, builds and runs a project of its own against it.
#   library_test.sh CMAKE BUILD SOURCES
set -euo pipefail
cmake=$1
build=$2
sources=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$cmake" --install "$build" --prefix "$work/prefix" >/dev/null
"$work/prefix/bin/tessary" --version
# What was installed must not need the folders it came from.
if grep -rlI -e "$build" -e "$sources" "$work/prefix"; then
  echo "these files name the folders of the build"
  exit 1
fi
"$cmake" -S "$sources/tests/packages/consumer" -B "$work/consumer" -G Ninja \
  -D CMAKE_PREFIX_PATH="$work/prefix" >/dev/null
"$cmake" --build "$work/consumer"

cp -r "$sources/samples" "$work/samples"
mkdir "$work/differences"
reports=$work/samples/kunde/Berichte
[ "$("$work/consumer/consumer" "$work/samples/hersteller/version3" "$work/samples/hersteller/version4" \
  "$work/differences" "$reports")" = 8 ]
[ "$(ls "$work/differences")" = "$(printf '3_4Angebot\n3_4Lieferschein\n3_4Rechnung')" ]
"$work/prefix/bin/tessary" info "$reports/Rechnung.lst" | grep 4

# Headers need nothing that is not installed.
cd "$work/prefix/include/tessary"
find . -name '*.h' | sed 's/.*/#include "&"/' >"$work/all.cpp"
"${CXX:-c++}" -std=c++20 -fsyntax-only -I. "$work/all.cpp"
