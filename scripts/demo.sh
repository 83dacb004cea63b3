#!/usr/bin/env bash
# Builds the command and shows both passes on a copy of the samples; installs what is missing.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh
need_packages "${build_packages[@]}" diffutils
export LC_ALL=C.UTF-8

echo "== Building build/release/tessary"
cmake --preset release -D TESSARY_TESTS=OFF >/dev/null
cmake --build --preset release --target tessary >/dev/null

demo=build/demo
rm -rf "$demo"
mkdir -p "$demo/Differenzen"
cp -r samples/hersteller samples/kunde "$demo/"
tessary=build/release/tessary
utf8() { iconv -f WINDOWS-1252 -t UTF-8 "$1"; }

for step in "3 4" "4 5"; do
  set -- $step
  echo
  echo "== The vendor compares release $1 with release $2"
  "$tessary" diff-folder "$demo/hersteller/version$1" "$demo/hersteller/version$2" "$demo/Differenzen"
done

echo
echo "== The customer's reports receive the changes"
"$tessary" convert-folder "$demo/Differenzen" "$demo/kunde/Berichte"

echo
echo "== One report before (-) and after (+)"
diff -U 1 --label "vorher: Lieferschein.lst" --label "nachher: Lieferschein.lst" \
  <(utf8 "$demo/kunde/BerichteBak/Lieferschein.lst") \
  <(utf8 "$demo/kunde/Berichte/Lieferschein.lst") | head -n 60 || true
echo
echo "Everything is in $demo: hersteller, Differenzen, kunde/Berichte and the backup kunde/BerichteBak."
