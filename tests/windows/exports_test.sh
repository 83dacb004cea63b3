#!/usr/bin/env bash
# The component exports what a COM server must, under undecorated names, and nothing else.
#   exports_test.sh OBJDUMP FILE
set -euo pipefail
exports=$("$1" -p "$2" | sed -n '/^\[Ordinal\/Name Pointer\]/,/^$/s/^\t.* \([^ ]*\)$/\1/p' | sort)
echo "$exports"
diff - <(echo "$exports") <<'END'
DllCanUnloadNow
DllGetClassObject
DllInstall
DllRegisterServer
DllUnregisterServer
END
