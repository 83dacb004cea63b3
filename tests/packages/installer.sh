# Sourced by scripts/package-tests.sh: the installer for Windows, under Wine.
drive=$WINEPREFIX/drive_c
setup=$packages/Tessary-$version-windows.exe
machine_path='HKLM\SYSTEM\CurrentControlSet\Control\Session Manager\Environment'
user_path='HKCU\Environment'
uninstall='Software\Microsoft\Windows\CurrentVersion\Uninstall\Tessary'

native() { printf 'Z:%s' "${1//\//\\}"; }
# value KEY [NAME]: a value of the registry, the key's own without a name; fails when there is none.
value() {
  local text
  text=$(timeout 60 wine reg query "$1" ${2:+/v} "${2:-/ve}" </dev/null 2>/dev/null | tr -d '\r') || return 1
  sed -nE 's/^    .*    REG_[A-Z_]+    //p' <<<"$text"
}
# The parts of the registry that an installation may touch. Empty keys below which all classes are
# registered may come and stay.
registry() {
  local key
  for key in 'HKLM\Software\Classes' 'HKCU\Software\Classes' "${machine_path}" "${user_path}" \
    "HKLM\\${uninstall%\\*}" "HKCU\\${uninstall%\\*}"; do
    timeout 60 wine reg export "$key" "$(native "$trial/export.reg")" /y </dev/null >/dev/null 2>&1 || continue
    iconv -f UTF-16 -t UTF-8 "$trial/export.reg" | tr -d '\r' |
      grep -viE '^(Windows Registry.*|\[HKEY_[A-Z_]*\\Software\\Classes(\\Wow6432Node)?(\\(CLSID|Interface|TypeLib))?\]|\[HKEY_[A-Z_]*\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\]|)$' || true
  done
}
# The system may make the folder of users' programs when it is asked for it.
files() {
  find "$drive" -not -path '*/windows/*' -not -path '*/Temp/*' -not -path '*/AppData/Local/Programs' | sort
}
remember() { registry >"$trial/registry"; files >"$trial/files"; }
nothing_is_left() {
  registry | diff "$trial/registry" -
  files | diff "$trial/files" -
}

setup() {
  local code=0
  run_wine 300 "$(native "$setup")" /S "$@" || code=$?
  [ "$code" -eq 0 ] || { echo "exit code $code"; return 1; }
}
# remove KEY [by-hand]: what the system does when a user chooses to remove the program, or the user by
# starting the uninstaller. It works in a copy of itself, and is done when its entry has gone.
remove() {
  local command i
  command=$(value "$1\\$uninstall" QuietUninstallString)
  [[ "$command" =~ ^'"'(.*)'" '(/[A-Za-z]+)' /S'$ ]]
  if [ $# -eq 1 ]; then
    run_wine 60 "${BASH_REMATCH[1]}" "${BASH_REMATCH[2]}" /S
  else
    run_wine 60 "${BASH_REMATCH[1]}" /S
  fi
  for i in $(seq 120); do
    value "$1\\$uninstall" DisplayName >/dev/null || return 0
    sleep 0.5
  done
  echo "the entry has not gone"
  return 1
}
# server_of ROOT [Wow6432Node\]: the DLL that is registered there.
server_of() {
  local class
  class=$(value "$1\\Software\\Classes\\Tessary.BXConvertLLMgr\\CLSID")
  value "$1\\Software\\Classes\\${2:-}CLSID\\$class\\InprocServer32"
}
# type_library_of ROOT win32|win64: the DLL whose type library is registered there.
type_library_of() {
  local class library
  class=$(value "$1\\Software\\Classes\\Tessary.BXConvertLLMgr\\CLSID")
  library=$(value "$1\\Software\\Classes\\CLSID\\$class\\TypeLib")
  value "$1\\Software\\Classes\\TypeLib\\$library\\1.0\\0\\$2"
}
is_set_up() {
  local root=$1 folder=$2
  [ "$(server_of "$root")" = "$folder\\x64\\Tessary.dll" ]
  # Wine keeps the users' classes of both kinds in one place; their type libraries are apart.
  [ "$root" = HKCU ] || [ "$(server_of "$root" 'Wow6432Node\')" = "$folder\\x86\\Tessary.dll" ]
  [ "$(type_library_of "$root" win64)" = "$folder\\x64\\Tessary.dll" ]
  [ "$(type_library_of "$root" win32)" = "$folder\\x86\\Tessary.dll" ]
  [ "$(value "$root\\$uninstall" DisplayVersion)" = "$version" ]
  [ "$(value "$root\\$uninstall" InstallLocation)" = "$folder" ]
  timeout 60 wine cmd /c 'tessary --version' </dev/null | tr -d '\r' | grep -qx "tessary $version"
}
links() { find "$drive" -name 'Tessary Bedienung.lnk'; }

installs_per_machine() {
  setup /AllUsers
  is_set_up HKLM 'C:\Program Files\Tessary'
  [ "$(links | wc -l)" = 1 ]
  links | grep -q '/ProgramData/'
  [ -s "$drive/Program Files/Tessary/Handbuch/bedienung.html" ]
  not value "HKCU\\$uninstall" DisplayName
}
component_works() {
  timeout 60 wine build/windows-x64/tests/windows/registered_client.exe </dev/null
  timeout 60 wine build/windows-x86/tests/windows/registered_client.exe </dev/null
}
windows_command() { timeout 60 wine 'C:\Program Files\Tessary\x64\tessary.exe' "$@" </dev/null; }
removes_per_machine() {
  remove HKLM
  nothing_is_left
}
# A path longer than any variable of the installer, with variables of the system in it.
long_path() {
  printf '%%SystemRoot%%\\system32'
  printf ';C:\\Werkzeuge\\Ordner mit einem langen Namen %s' $(seq 150)
  printf '%s' "${1:-}"
}
set_path() { timeout 60 wine reg add "$1" /v Path /t REG_EXPAND_SZ /d "$2" /f </dev/null >/dev/null 2>&1; }
keeps_a_long_path() {
  local root=$1 key=$2 scope=$3 folder=$4 before after end
  before=$(value "$key" Path || true)
  for end in '' ';'; do
    set_path "$key" "$(long_path "$end")"
    setup "$scope"
    after=$(value "$key" Path)
    [ "$after" = "$(long_path);$folder\\x64$end" ]
    setup "$scope"
    [ "$(value "$key" Path)" = "$after" ]
    remove "$root"
    [ "$(value "$key" Path)" = "$(long_path "$end")" ]
  done
  if [ -n "$before" ]; then
    set_path "$key" "$before"
  else
    timeout 60 wine reg delete "$key" /v Path /f </dev/null >/dev/null 2>&1
  fi
}
installs_per_user() {
  setup /CurrentUser
  user_folder=$(value "HKCU\\$uninstall" InstallLocation)
  [[ "$user_folder" == 'C:\users\'*'\AppData\Local\Programs\Tessary' ]]
  is_set_up HKCU "$user_folder"
  [ "$(value "$user_path" Path)" = "$user_folder\\x64" ]
  links | grep -q '/users/.*/AppData/Roaming/'
  not value "HKLM\\$uninstall" DisplayName
  not value 'HKLM\Software\Classes\Tessary.BXConvertLLMgr\CLSID'
}
# This Wine enters a user's interfaces for programs of the other kind among those of the machine, where
# only the DLL that did so finds them again. It leaves them to the other DLL if that is still registered.
drop_interfaces_of_the_machine() {
  local key
  for key in 'HKLM\Software\Classes\Interface' 'HKLM\Software\Classes\Wow6432Node\Interface'; do
    timeout 60 wine reg query "$key" /s </dev/null 2>/dev/null | tr -d '\r' |
      awk -v library="$1" '/^HKEY/ { key = $0 } index($0, library) { sub(/\\TypeLib$/, "", key); print key }'
  done | while read -r key; do
    timeout 60 wine reg delete "$key" /f </dev/null >/dev/null 2>&1
  done
}
removes_per_user() {
  local class library
  class=$(value 'HKCU\Software\Classes\Tessary.BXConvertLLMgr\CLSID')
  library=$(value "HKCU\\Software\\Classes\\CLSID\\$class\\TypeLib")
  remove HKCU by-hand
  drop_interfaces_of_the_machine "$library"
  nothing_is_left
}
replaces_an_earlier_one() {
  setup /AllUsers '/D=C:\Erste'
  setup /AllUsers '/D=C:\Zweite'
  is_set_up HKLM 'C:\Zweite'
  [ ! -e "$drive/Erste" ]
  [[ "$(value "$machine_path" Path)" == *';C:\Zweite\x64' ]]
  [[ "$(value "$machine_path" Path)" != *Erste* ]]
  # What a user has put beside the samples stays.
  echo eigenes >"$drive/Zweite/Beispiele/eigenes.txt"
  remove HKLM
  [ "$(find "$drive/Zweite" -type f)" = "$drive/Zweite/Beispiele/eigenes.txt" ]
  rm -r "$drive/Zweite"
  nothing_is_left
}

check "installer: is made, twice the same" make_twice installer
# Wine's script host registers itself at its first start.
echo 'WScript.Quit 0' >"$trial/nothing.vbs"
run_wine 60 'C:\windows\system32\cscript.exe' //nologo "$(native "$trial/nothing.vbs")"
remember
check "installer: the list of parts holds" "$tests/sbom_test.py" "$work/installer/Lizenzen" installer
check "installer: installs for the machine" installs_per_machine
check "installer: the command works" use_command windows_command
check "installer: programs of both kinds get the component" component_works
check "installer: batch commands and scripts of the documents run" \
  python3 tests/documents/run_commands.py --wine . "$drive"
check "installer: is removed from the machine without a rest" removes_per_machine
check "installer: installs for the user" installs_per_user
check "installer: is removed from the user without a rest" removes_per_user
check "installer: keeps a long path of the machine" \
  keeps_a_long_path HKLM "$machine_path" /AllUsers 'C:\Program Files\Tessary'
check "installer: keeps a long path of the user" \
  keeps_a_long_path HKCU "$user_path" /CurrentUser "C:\\users\\$(id -un)\\AppData\\Local\\Programs\\Tessary"
check "installer: replaces an earlier installation" replaces_an_earlier_one
