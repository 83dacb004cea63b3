#!/usr/bin/env bash
# Measures this program against diff, patch and git merge-file on generated reports, prints one
# table and writes it into docs/performance.md. Installs what is missing.
#   scripts/bench.sh          21 runs of everything; some minutes
#   scripts/bench.sh --quick  5 runs of the small cases; changes no document
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

case "${1:-}" in
  ''|--quick) ;;
  *) echo "usage: scripts/bench.sh [--quick]" >&2; exit 2 ;;
esac

need_packages "${build_packages[@]}" "${bench_packages[@]}"
cmake --preset release -D TESSARY_BENCHMARKS=ON >/dev/null
cmake --build --preset release --target tessary make_reports bench_stages
exec python3 bench/compare.py "$@" build/release docs/performance.md
