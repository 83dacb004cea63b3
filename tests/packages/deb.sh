# Sourced by scripts/package-tests.sh: the Debian package, in a folder that stands for a system.
need_packages python3 zsh fish man-db

root=$trial/root

on_system() {
  dpkg --root="$root" --force-not-root --force-script-chrootless --log="$trial/dpkg.log" "$@"
}
new_system() {
  mkdir -p "$root"/var/lib/dpkg/{info,updates,triggers}
  touch "$root/var/lib/dpkg/status"
}
files_of() { find "$root" -path "$root/var" -prune -o ! -type d -print; }

deb_installs() {
  new_system
  on_system -i "$packages"/tessary_"$version"_*.deb
  on_system -s tessary | grep -qx "Version: $version"
}
deb_is_complete() {
  local doc=$root/usr/share/doc/tessary file
  for file in copyright changelog.gz sbom.spdx.json docs/bedienung.md docs/meldungen.md docs/build-server.md \
    licenses/libc6-dev.txt licenses/GPL-3.txt licenses/LGPL-2.1.txt samples/kunde/Berichte/Rechnung.lst; do
    [ -s "$doc/$file" ] || { echo "missing: $file"; return 1; }
  done
  # Every file of the package is its own, and only root may change it.
  [ -z "$(find "$root/usr" -perm /022 ! -type l)" ]
}
deb_pages_are_right() {
  local page text
  for page in man1 de/man1; do
    [ -z "$(man --warnings=all -E UTF-8 -l "$root/usr/share/man/$page/tessary.1.gz" 2>&1 >/dev/null)" ]
    text=$(man -E UTF-8 -l "$root/usr/share/man/$page/tessary.1.gz" | col -b)
    grep -q -- '--on-backup-failure' <<<"$text"
    grep -q "Tessary $version" <<<"$text"
  done
  grep -q 'RÜCKGABEWERT' <<<"$text"
}
deb_completions_load() {
  bash -n "$root/usr/share/bash-completion/completions/tessary"
  zsh -n "$root/usr/share/zsh/vendor-completions/_tessary"
  fish --no-execute "$root/usr/share/fish/vendor_completions.d/tessary.fish"
}
# As the notice says to those who have changed the C library.
deb_can_be_linked_anew() {
  local line folder=$trial/linked
  line=$(grep -o 'g++ -static-pie .*' "$root/usr/share/doc/tessary/copyright")
  rm -rf "$folder"
  cp -r --parents build/release/src/cli/CMakeFiles/tessary.dir/main.cpp.o build/release/src/{cli/,}*.a "$trial/"
  mv "$trial/build/release" "$folder"
  (cd "$folder" && $line)
  use_command "$folder/tessary"
}
deb_is_removed() {
  on_system -P tessary
  [ -z "$(files_of)" ]
  [ ! -e "$root/usr" ]
}

check "deb: is made, twice the same" make_twice deb
check "deb: installs" deb_installs
check "deb: has guide, licences and list of parts" deb_is_complete
check "deb: the list of parts holds" "$tests/sbom_test.py" "$root/usr/share/doc/tessary" linux
check "deb: the command works" use_command "$root/usr/bin/tessary"
check "deb: man pages can be shown" deb_pages_are_right
check "deb: completions load" deb_completions_load
check "deb: completions and man pages say what the help says" \
  "$tests/help_agreement.py" "$root/usr/bin/tessary" "$root/usr"
check "deb: its objects can be linked anew" deb_can_be_linked_anew
check "deb: is removed without a rest" deb_is_removed
