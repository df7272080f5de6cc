#!/usr/bin/env bash
# tools/windows/build-qt.sh [--32] [--keep]   Builds Qt 5.15 (base) for 64-bit Windows with MinGW-w64 from Debian's source
# package and puts it into build/qt-windows, where tools/windows/build.sh looks first; with --32 for 32-bit Windows, into
# build/qt-windows32. Takes about 40 minutes on two cores and 1.1 GB of disk. Does nothing where the folder is there; goes on
# where an interrupted run stopped. What the build writes is in build/qt-windows.log or build/qt-windows32.log. --keep leaves
# the sources and the build, build/qt-windows.work or build/qt-windows32.work, in place.
set -euo pipefail
cd "$(dirname "$0")/../.."

keep=""
name=qt-windows triplet=x86_64-w64-mingw32
for argument in "$@"; do
  case $argument in
    --32) name=qt-windows32 triplet=i686-w64-mingw32 ;;
    --keep) keep=yes ;;
    *) sed -n '2,6s/^# //p' "$0" >&2; exit 2 ;;
  esac
done

result=$PWD/build/$name
work=$result.work
log=$result.log library=qt
installed=$work/install$result

source tools/windows/debian-source.sh

if [[ -e $result ]]; then
  say "$result is there already; remove it to build it again."
  exit 0
fi
tools/install-packages.sh windows windows-qt

# The lock is the log's, and make has it too: a build that outlives this script is not joined by a second one.
mkdir -p build
exec 3>>"$log"
flock --nonblock 3 || { say "another build is at work; see $log." >&2; exit 1; }

trap finish EXIT

# APT accepts only what the signed package lists name, with its SHA-256; the tarball is checked against its .dsc too.
fetch() {
  mkdir -p "$work/download"
  cd "$work/download"
  private_apt source --download-only qtbase-opensource-src
  private_apt download libwine-dev
  sed -n '/^Checksums-Sha256:/,/^[^ ]/s/^ \([0-9a-f]*\) [0-9]* \(.*\.orig\.tar\.xz\)$/\1  \2/p' ./*.dsc |
    sha256sum --check --strict
}

unpack() {
  mkdir -p "$work/source" "$work/wine"
  tar -xJf "$work"/download/qtbase-opensource-src_*.orig.tar.xz -C "$work/source" --strip-components 1
  dpkg-deb -x "$work"/download/libwine-dev_*.deb "$work/wine"
}

# The header of graphic tablets is not in Debian's tarball. Wine's takes its place, with the name that Qt uses for the
# calling convention, and with the types for wide characters in place of a macro that only Wine has.
adapt_tablet_header() {
  local header
  mkdir -p "$work/source/src/3rdparty/wintab"
  for header in wintab.h pktdef.h; do
    { echo '#define API WINAPI'
      sed -E 's/DECL_WINELIB_TYPE_AW\((\w+)\)/typedef \1W \1;/' "$work/wine/usr/include/wine/wine/windows/$header"
    } >"$work/source/src/3rdparty/wintab/$header"
  done
}

# Debian's MinGW-w64 has these libraries in small letters, and Linux tells capitals from small ones.
adapt_library_names() {
  sed -i 's/-lSecur32/-lsecur32/; s/-lCrypt32/-lcrypt32/' "$work/source/src/network/ssl/ssl.pri"
}

# The prefix is no folder of this machine, since the libraries tell it wherever they are. They find their plugins from
# where they lie themselves.
configure() {
  mkdir -p "$work/build"
  cd "$work/build"
  ../source/configure -opensource -confirm-license -release -shared \
    -prefix /qt -extprefix "$result" -hostprefix "$result" \
    -platform linux-g++ -xplatform win32-g++ -device-option "CROSS_COMPILE=$triplet-" \
    -nomake examples -nomake tests -nomake tools -no-pch \
    -no-opengl -no-feature-vulkan -no-dbus -no-icu -no-openssl -schannel \
    -qt-zlib -qt-libpng -qt-libjpeg -qt-freetype -qt-pcre -qt-harfbuzz \
    -no-feature-sql -no-feature-xml -no-feature-printer
}

# Without what only the build of Qt itself needs. Its own build leaves qmake, alone of all, with debug information.
install_result() {
  local path
  rm -rf "$work/install"
  make -C "$work/build" install INSTALL_ROOT="$work/install"
  rm -rf "$installed/doc"
  for path in "$installed"/mkspecs/*/; do
    [[ $(basename "$path") =~ ^(common|features|modules|linux-g\+\+|win32-g\+\+)$ ]] || rm -rf "$path"
  done
  for path in "$installed"/bin/*; do
    [[ $(basename "$path") =~ ^(moc|rcc|uic|qmake|.*\.dll)$ ]] || rm -f "$path"
  done
  strip "$installed/bin/qmake"
}

check_result() {
  local name
  for name in Concurrent Core Gui Network Test Widgets; do
    ls -l "$installed/bin/Qt5$name.dll" "$installed/lib/cmake/Qt5$name/Qt5${name}Config.cmake"
  done
  ls -l "$installed"/plugins/platforms/q{windows,offscreen}.dll
  for name in moc rcc uic qmake; do
    "$installed/bin/$name" -v
  done
}

# An earlier run's work is of use where it was made in the same way.
recipe="$result $triplet $(declare -f fetch unpack adapt_tablet_header adapt_library_names name_compilers configure)"
export PATH=$work/bin:$PATH
if [[ ! -e $work/recipe || $(<"$work/recipe") != "$recipe" ]]; then
  rm -rf "$work"
  : >"$log"
  step "reads the package lists" list_packages
  step "fetches the sources" fetch
  step "unpacks them" unpack
  adapt_tablet_header
  adapt_library_names
  name_compilers
  step "configures" configure
  echo "$recipe" >"$work/recipe"
fi
step "builds; this takes about 40 minutes" make -C "$work/build" -j "$(nproc)"
step "installs" install_result
step "checks" check_result
mv "$installed" "$result"
[[ -n $keep ]] || rm -rf "$work"
say "$result is made: $(du -sh "$result" | cut -f1)"
