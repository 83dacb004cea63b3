#!/usr/bin/env bash
# A second build in another folder gives the same bytes.
#   reproducible_test.sh SOURCES TOOLCHAIN BUILD
set -euo pipefail
again="$3-again"
rm -rf "$again"
export SOURCE_DATE_EPOCH="${SOURCE_DATE_EPOCH:-1704067200}"
cmake -S "$1" -B "$again" -G Ninja -D CMAKE_BUILD_TYPE=Release -D TESSARY_TESTS=OFF \
  -D CMAKE_TOOLCHAIN_FILE="$2" >/dev/null
cmake --build "$again" --target tessary_com tessary >/dev/null
for product in tessary.exe Tessary.dll Tessary.manifest src/com/generated/Tessary.tlb; do
  cmp "$3/$product" "$again/$product"
done
rm -rf "$again"
