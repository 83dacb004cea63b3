#!/usr/bin/env bash
# Registers the component, runs the scripts against it, unregisters it and finds the registry as it
# was; then the same registration for the current user.
#   registration_test.sh DLL SCRIPT_HOST REGISTERED_CLIENT CLOSE_PROTOCOLS SOURCES SYSTEM_FOLDER [64_BIT_DLL]
# A 32-bit DLL is also registered beside the 64-bit one, where that has been built.
set -euo pipefail
dll=$1
script_host=$2
registered_client=$3
close_protocols=$4
sources=$5
system="C:\\windows\\$6"
dll_64=${7:-}
scripts=$sources/tests/windows/scripts
work=$(mktemp -d)
closer=
trap 'regsvr32 /u || true; [ -z "$closer" ] || kill "$closer"; rm -rf "$work"' EXIT

native() { printf 'Z:%s' "${1//\//\\}"; }
regsvr32() { timeout 60 wine "$system\\regsvr32.exe" /s "$@" "$(native "$dll")" </dev/null; }
regsvr64() { timeout 60 wine 'C:\windows\system32\regsvr32.exe' /s "$@" "$(native "$dll_64")" </dev/null; }
# The keys below which all classes are registered may stay, empty.
classes() {
  local key
  for key in HKLM HKCU; do
    timeout 60 wine reg export "$key\\Software\\Classes" "$(native "$work/export.reg")" /y </dev/null >/dev/null 2>&1 || continue
    iconv -f UTF-16 -t UTF-8 "$work/export.reg" | tr -d '\r' |
      grep -viE '^(Windows Registry.*|\[HKEY_CURRENT_USER\\Software\\Classes(\\(CLSID|Interface|TypeLib))?\]|)$' || true
  done >"$work/$1.txt"
}
is_clean() {
  classes after
  diff "$work/before.txt" "$work/after.txt"
}
value() { timeout 60 wine reg query "$1" /ve "${@:2}" </dev/null 2>/dev/null | tr -d '\r'; }
run_script() {
  echo "== $1"
  timeout 120 wine "$script_host" "$(native "$scripts/$1")" "${@:2}" </dev/null
}

# Wine itself registers some of what is used without registration: the type library when another
# apartment calls, the script host's own at its first start.
regsvr32 /u
echo 'WScript.Quit 0' >"$work/nothing.vbs"
timeout 60 wine "$system\\cscript.exe" //nologo "$(native "$work/nothing.vbs")" </dev/null

# Nobody else closes the windows that tell of failures.
timeout 600 wine "$close_protocols" </dev/null >/dev/null 2>&1 &
closer=$!

classes before
[ -s "$work/before.txt" ]
echo "== register"
regsvr32
grep -q 'Tessary Berichtskonvertierung' <<<"$(value 'HKLM\Software\Classes\Tessary.BXConvertLLMgr.1')"
grep -q 'Tessary.BXLevel9.1' <<<"$(value 'HKLM\Software\Classes\Tessary.BXLevel9\CurVer')"

echo "== client that asks the system"
timeout 60 wine "$registered_client" </dev/null

run_script tree.vbs
run_script compare.vbs
echo "== tree.vbs in the system's own host"
{ iconv -f UTF-8 -t CP1252 "$scripts/tree.vbs" && printf '\r\nWScript.Quit 7\r\n'; } >"$work/tree.vbs"
code=0
timeout 60 wine "$system\\cscript.exe" //nologo "$(native "$work/tree.vbs")" </dev/null || code=$?
[ "$code" -eq 7 ]

cp -r "$sources/samples" "$work/samples"
run_script manager.vbs "$(native "$work/samples")"

echo "== sample client"
rm -rf "$work/samples"
cp -r "$sources/samples" "$work/samples"
mkdir "$work/samples/Differenzen"
# In the system's own script host, which tells of errors in the script by no exit code but 0.
cscript() {
  timeout 120 wine "$system\\cscript.exe" //nologo "$(native "$1")" "${@:2}" </dev/null |
    tr -d '\r' | iconv -f CP437 -t UTF-8
  return "${PIPESTATUS[0]}"
}
client() {
  cscript "$sources/samples/clients/convert.vbs" "$(native "$work/samples/Differenzen")" "$1"
}
if client "$(native "$work/fehlt")"; then echo "a missing folder must give exit code 1"; exit 1; fi
run_script differences.vbs "$(native "$work/samples")"
client "$(native "$work/samples/kunde/Berichte")" | tee "$work/client.txt"
grep -q '11 Umwandlungen gelungen' "$work/client.txt"

echo "== the script of the reference"
cp "$sources"/samples/kunde/Berichte/*.lst "$work/samples/kunde/Berichte/"
windows_work=$(native "$work/samples")
sed -n '/^```vbs$/,/^```$/{/^```/d;p}' "$sources/README.md" |
  sed "s|C:\\\\Produkt\\\\Differenz|${windows_work//\\/\\\\}\\\\Differenzen|; s|C:\\\\Produkt|${windows_work//\\/\\\\}\\\\kunde|" >"$work/readme.vbs"
grep -q "ConvertReports(\"$(native "$work" | sed 's/\\/\\\\/g')" "$work/readme.vbs"
cscript "$work/readme.vbs" | tee "$work/readme.txt"
grep -qx '11 Berichte umgewandelt' "$work/readme.txt"

echo "== unregister"
regsvr32 /u
is_clean
regsvr32 /u
is_clean

echo "== an unknown scope"
if regsvr32 /n /i:users; then echo "an unknown scope must be refused"; exit 1; fi
is_clean

echo "== current user"
regsvr32 /n /i:user
grep -q 'Tessary Berichtskonvertierung' <<<"$(value 'HKCU\Software\Classes\Tessary.BXConvertLLMgr.1')"
regsvr32 /u /n /i:user
is_clean

[ -n "$dll_64" ] || exit 0
[ -e "$dll_64" ] || { echo "NOT TESTED: both side by side, since $dll_64 is missing"; exit 0; }
echo "== both side by side"
server="HKLM\\Software\\Classes\\CLSID\\$(sed -n 's/.*comClass clsid="\([^"]*\)".*/\1/p' "${dll%.dll}.manifest" | head -n 1)\\InprocServer32"
both_names() {
  grep -q 'Tessary Berichtskonvertierung' <<<"$(value 'HKLM\Software\Classes\Tessary.BXConvertLLMgr.1')"
  grep -q 'Tessary.BXLevel9.1' <<<"$(value 'HKLM\Software\Classes\Tessary.BXLevel9\CurVer')"
}
regsvr64
regsvr32
value "$server" /reg:64 | grep -qF "$(native "$dll_64")"
value "$server" /reg:32 | grep -qF "$(native "$dll")"
echo "== the other one goes first"
regsvr64 /u
both_names
timeout 60 wine "$registered_client" </dev/null
echo "== the other one stays"
regsvr64
regsvr32 /u
both_names
value "$server" /reg:64 | grep -qF "$(native "$dll_64")"
if timeout 60 wine "$registered_client" </dev/null >/dev/null 2>&1; then echo "a 32-bit client must not get the 64-bit one"; exit 1; fi
regsvr64 /u
is_clean
