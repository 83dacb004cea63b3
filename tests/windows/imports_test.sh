#!/usr/bin/env bash
# A program or DLL needs nothing but what every Windows has.
#   imports_test.sh OBJDUMP FILE
set -euo pipefail
imports=$("$1" -p "$2" | sed -n 's/.*DLL Name: //p' | tr 'a-z' 'A-Z' | sort)
echo "$imports"
[ -n "$imports" ]
! grep -vxE 'ADVAPI32\.DLL|COMCTL32\.DLL|GDI32\.DLL|KERNEL32\.DLL|MSVCRT\.DLL|OLE32\.DLL|OLEAUT32\.DLL|SHELL32\.DLL|USER32\.DLL' <<<"$imports"
