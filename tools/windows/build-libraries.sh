#!/usr/bin/env bash
# tools/windows/build-libraries.sh [--32] [--keep]   Builds libsodium for 64-bit Windows with MinGW-w64 from Debian's source
# package, with Debian's patches, and puts it into build/libraries-windows, where tools/windows/build.sh looks first; with --32
# for 32-bit Windows, into build/libraries-windows32. Takes about two minutes. Does nothing where the folder is there. What
# the build writes is in build/libraries-windows.log or build/libraries-windows32.log. --keep leaves the sources and the build.
set -euo pipefail
cd "$(dirname "$0")/../.."

keep=""
name=libraries-windows triplet=x86_64-w64-mingw32
for argument in "$@"; do
  case $argument in
    --32) name=libraries-windows32 triplet=i686-w64-mingw32 ;;
    --keep) keep=yes ;;
    *) sed -n '2,6s/^# //p' "$0" >&2; exit 2 ;;
  esac
done
result=$PWD/build/$name
work=$result.work
log=$result.log library=libsodium

source tools/windows/debian-source.sh

if [[ -e $result ]]; then
  say "$result is there already; remove it to build it again."
  exit 0
fi
tools/install-packages.sh windows windows-libraries
mkdir -p build
exec 3>"$log"
flock --nonblock 3 || { say "another build is at work; see $log." >&2; exit 1; }
trap finish EXIT

# APT accepts only what the signed package lists name, with its SHA-256.
fetch() {
  cd "$work"
  private_apt source --download-only libsodium
  dpkg-source --no-check -x libsodium_*.dsc source
}

# The prefix is no folder of this machine.
build() {
  cd "$work/source"
  autoreconf -fi
  ./configure --host="$triplet" --prefix=/libsodium --disable-static --enable-shared CC="$triplet-gcc"
  make -j "$(nproc)"
  make install "DESTDIR=$work/install"
}

check_result() {
  local made=$work/install/libsodium
  ls -l "$made"/bin/libsodium-*.dll "$made/lib/libsodium.dll.a" "$made/include/sodium.h"
  rm -rf "$made"/lib/pkgconfig "$made"/lib/*.la "$made"/bin/*.def
}

rm -rf "$work"
mkdir -p "$work"
name_compilers
export PATH=$work/bin:$PATH
step "reads the package lists" list_packages
step "fetches the sources" fetch
step "builds; this takes about two minutes" build
step "checks" check_result
mv "$work/install/libsodium" "$result"
[[ -n $keep ]] || rm -rf "$work"
say "$result is made: $(du -sh "$result" | cut -f1)"
