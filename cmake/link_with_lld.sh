#!/usr/bin/env bash
# Stands between the compiler and the programs that it runs (option -wrapper) and links with lld,
# which takes a hundredth of the time. The cross compiler has the path of its own linker built in.
if [ "${1##*/}" != collect2 ]; then exec "$@"; fi
shift
arguments=()
while [ $# -gt 0 ]; do
  case "$1" in
    -plugin) shift ;;
    -plugin-opt=*) ;;
    *) arguments+=("$1") ;;
  esac
  shift
done
exec ld.lld "${arguments[@]}"
