# Sourced by scripts/package-tests.sh: the ZIP for Windows, used without installation under Wine.
unpacked=$trial/Tessary-$version-windows

unpacks() {
  unzip -q "$packages/Tessary-$version-windows.zip" -d "$trial"
  local file
  for file in LIESMICH.txt Handbuch/bedienung.html Handbuch/bilder/fehlerprotokoll.png Lizenzen/sbom.spdx.json \
    "Beispiele/kunde/Berichte/Rechnung Österreich.lst" x64/Tessary.manifest x86/Tessary.manifest; do
    [ -s "$unpacked/$file" ] || { echo "missing: $file"; return 1; }
  done
  grep -q "Tessary $version für Windows" "$unpacked/LIESMICH.txt"
}
is_for_bits() {
  file -b "$unpacked/x64/tessary.exe" "$unpacked/x64/Tessary.dll" | grep -c x86-64 | grep -qx 2
  file -b "$unpacked/x86/tessary.exe" "$unpacked/x86/Tessary.dll" | grep -c 80386 | grep -qx 2
}
command_of() { timeout 60 wine "$unpacked/$@" </dev/null; }
# A program that brings a manifest gets the component that lies beside it, without registration.
activates() {
  not timeout 60 wine reg query 'HKLM\Software\Classes\Tessary.BXConvertLLMgr' </dev/null
  mkdir "$trial/client-$1"
  cp "$unpacked/$1"/Tessary.{dll,manifest} "build/windows-$1/manifest_client.exe" "$trial/client-$1/"
  timeout 60 wine "$trial/client-$1/manifest_client.exe" </dev/null
  # It is that one that was used.
  rm "$trial/client-$1/Tessary.dll"
  not timeout 60 wine "$trial/client-$1/manifest_client.exe" </dev/null
}

check "zip: is made, twice the same" make_twice zip
check "zip: unpacks, with names in German" unpacks
check "zip: holds both kinds" is_for_bits
check "zip: the list of parts holds" "$tests/sbom_test.py" "$unpacked/Lizenzen" windows
for architecture in x64 x86; do
  check "zip: the $architecture command works" use_command command_of "$architecture/tessary.exe"
  check "zip: a program gets the $architecture component by its manifest" activates "$architecture"
done
