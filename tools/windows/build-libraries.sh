#!/usr/bin/env bash
# tools/windows/build-libraries.sh [--32] [--keep]   Builds libsodium and Qwt for 64-bit Windows with MinGW-w64 from Debian's
# source packages, with Debian's patches, and puts them into build/libraries-windows, where tools/windows/build.sh looks first;
# with --32 for 32-bit Windows, into build/libraries-windows32. Takes about five minutes. Does nothing where the folder is
# there. What the build writes is in build/libraries-windows.log or build/libraries-windows32.log. --keep leaves the sources and
# the build. Qwt is built with the Qt for Windows that tools/windows/build.sh would take; ends with 3 where there is none.
set -euo pipefail
cd "$(dirname "$0")/../.."

keep=""
name=libraries-windows triplet=x86_64-w64-mingw32 preset=windows
for argument in "$@"; do
  case $argument in
    --32) name=libraries-windows32 triplet=i686-w64-mingw32 preset=windows32 ;;
    --keep) keep=yes ;;
    *) sed -n '2,7s/^# //p' "$0" >&2; exit 2 ;;
  esac
done
result=$PWD/build/$name
work=$result.work
log=$result.log library=libraries

source tools/windows/debian-source.sh
source tools/windows/qt.sh

if [[ -e $result ]]; then
  say "$result is there already; remove it to build it again."
  exit 0
fi
if ! qt=$(qt_source "$preset"); then
  say "no Qt for $preset: neither build/qt-$preset nor $(qt_archive "$preset") is there." >&2
  exit 3
fi
qt=$(realpath "$qt")
tools/install-packages.sh windows windows-libraries
mkdir -p build
exec 3>"$log"
flock --nonblock 3 || { say "another build is at work; see $log." >&2; exit 1; }
trap finish EXIT

# APT accepts only what the signed package lists name, with its SHA-256.
fetch() {
  cd "$work"
  private_apt source --download-only libsodium qwt
  dpkg-source --no-check -x libsodium_*.dsc libsodium
  # Of Debian's patches only the one without which it does not compile: the others are about its own names and documents.
  dpkg-source --no-check --skip-patches -x qwt_*.dsc qwt
  patch -d qwt -p1 <qwt/debian/patches/06_ftbs.patch
}

lay_out_qt() {
  mkdir "$work/qt"
  if [[ -d $qt ]]; then
    cp -r "$qt/." "$work/qt"
  else
    tar -xJf "$qt" -C "$work/qt" --strip-components 1
  fi
}

# The prefix is no folder of this machine.
build_libsodium() {
  cd "$work/libsodium"
  autoreconf -fi
  ./configure --host="$triplet" --prefix=/libraries --disable-static --enable-shared CC="$triplet-gcc"
  make -j "$(nproc)"
  make install "DESTDIR=$work/install"
}

# Without the parts that need more of Qt than its base: SVG, OpenGL, printing (PDF files are Qt's own).
build_qwt() {
  local made=$work/install/libraries
  cd "$work/qwt"
  sed -Ei 's/^QWT_CONFIG[ ]+\+=[ ]+Qwt(Svg|OpenGL|Designer)/# &/' qwtconfig.pri
  sed -Ei 's/QT[ ]+\+=[ ]+printsupport/QT += widgets\n    DEFINES += QT_NO_PRINTER/' src/src.pri
  grep -q QT_NO_PRINTER src/src.pri
  sed -Ei "s/debug_and_release\$/release/; /build_all\$/d" qwtbuild.pri # by default both are built
  "$work/qt/bin/qmake" -spec win32-g++ qwt.pro
  make -j "$(nproc)" sub-src
  mkdir -p "$made"/{bin,lib,include/qwt}
  cp lib/qwt.dll "$made/bin"
  cp lib/libqwt.a "$made/lib"
  cp src/*.h "$made/include/qwt"
}

check_result() {
  local made=$work/install/libraries
  ls -l "$made"/bin/libsodium-*.dll "$made/lib/libsodium.dll.a" "$made/include/sodium.h"
  ls -l "$made/bin/qwt.dll" "$made/lib/libqwt.a" "$made/include/qwt/qwt_plot.h"
  rm -rf "$made"/lib/pkgconfig "$made"/lib/*.la "$made"/bin/*.def
}

rm -rf "$work"
mkdir -p "$work"
name_compilers
export PATH=$work/bin:$PATH
step "reads the package lists" list_packages
step "fetches the sources" fetch
step "builds libsodium; this takes about two minutes" build_libsodium
step "lays out Qt" lay_out_qt
step "builds Qwt; this takes about three minutes" build_qwt
step "checks" check_result
mv "$work/install/libraries" "$result"
[[ -n $keep ]] || rm -rf "$work"
say "$result is made: $(du -sh "$result" | cut -f1)"
