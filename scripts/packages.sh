# Sourced by the other scripts: installs Debian packages that are missing.

# need_packages NAME... : installs those of the named packages that are not there yet.
need_packages() {
  local missing=() name
  for name in "$@"; do
    dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q 'ok installed' || missing+=("$name")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing: ${missing[*]}"
  local as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  "${as_root[@]}" apt-get update -qq
  DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

build_packages=(g++ cmake ninja-build ccache nlohmann-json3-dev)
test_packages=(libgtest-dev libgmock-dev util-linux python3 parallel)
sanitizer_packages=(clang libclang-rt-14-dev)
windows_packages=(lld g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix googletest
  wine wine64 wine64-tools libwine libwine-dev faketime xvfb fonts-liberation fonts-wine)
bench_packages=(libbenchmark-dev python3 diffutils patch git strace time valgrind)
count_packages=(valgrind python3)
package_packages=(python3 cmark-gfm zip unzip nsis file)
