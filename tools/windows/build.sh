#!/usr/bin/env bash
# tools/windows/build.sh [--32] [TARGET...]   Builds the Windows program, the virtual adapter's DLL and all tests with
# MinGW-w64 into build/windows, with --32 those of the 32-bit program into build/windows32; warnings are errors. Of the other
# of the two the virtual adapter alone is built: the tests see what a library of the wrong kind does. Qt for Windows comes
# from build/qt-windows, where tools/windows/build-qt.sh puts it, or from an archive of that folder:
# $X9_QT_WINDOWS_ARCHIVE, or ../shared/qt5-windows.tar.xz beside this folder. For 32 bits it is build/qt-windows32,
# $X9_QT_WINDOWS32_ARCHIVE, ../shared/qt5-windows32.tar.xz. Ends with 3 where there is neither. libsodium and Qwt come from
# build/libraries-windows and build/libraries-windows32, where tools/windows/build-libraries.sh puts it, or from an archive of
# both: $X9_WINDOWS_LIBRARIES_ARCHIVE, or ../shared/windows-libraries.tar.xz; where there is neither it is built now.
# $X9_UPDATE_KEY is the key for updates that the program gets, as X9_UPDATE_KEY of CMake; none where it is not set.
set -euo pipefail
cd "$(dirname "$0")/../.."

source tools/windows/qt.sh
preset=windows other=windows32
if [[ ${1:-} == --32 ]]; then
  preset=windows32 other=windows
  shift
fi

tools/install-packages.sh build windows

# find_others PRESET   Where the libraries beside Qt are; they are built when they are nowhere.
find_others() {
  if ! libraries_source "$1"; then
    local bits=()
    [[ $1 == windows ]] || bits=(--32)
    tools/windows/build-libraries.sh "${bits[@]}" >&2
    libraries_source "$1"
  fi
}

archive_folder() {
  case $1 in
    windows) echo windows-libraries/x64 ;;
    windows32) echo windows-libraries/x86 ;;
  esac
}

# lay_out_libraries PRESET   The libraries that it is built with, in build/PRESET-libraries. They are laid out anew where they
# come from other places than before. They appear under their name only when complete, and with today's times: the build
# compiles again what uses them. Fails where there is no Qt.
lay_out_libraries() {
  local libraries=$PWD/build/$1-libraries qt others
  if ! qt=$(qt_source "$1"); then
    [[ -e $libraries ]]
    return
  fi
  others=$(find_others "$1") || { echo "windows/build: there are no libsodium and Qwt." >&2; exit 1; }
  [[ $(stat -c '%n %Y' "$qt" "$others") != "$(cat "$libraries/source" 2>/dev/null)" ]] || return 0
  rm -rf "$libraries.new"
  mkdir -p "$libraries.new"
  if [[ -d $qt ]]; then
    cp -r "$qt/." "$libraries.new"
  else
    tar -xJmf "$qt" -C "$libraries.new" --strip-components 1
  fi
  [[ -e $libraries.new/lib/cmake/Qt5Core ]] || { echo "windows/build: there is no Qt in $qt." >&2; exit 1; }
  if [[ -d $others ]]; then
    cp -r "$others/." "$libraries.new"
  else
    tar -xJmf "$others" -C "$libraries.new" --strip-components 2 "$(archive_folder "$1")"
  fi
  # A header-only library; /usr/include as a whole must not come along.
  mkdir -p "$libraries.new/include" "$libraries.new/share/cmake"
  cp -r /usr/include/nlohmann "$libraries.new/include"
  cp -r /usr/share/cmake/nlohmann_json "$libraries.new/share/cmake"
  # Qt's own texts in Chinese are no part of its base, and not made for one system.
  mkdir -p "$libraries.new/translations"
  cp /usr/share/qt5/translations/qtbase_zh_CN.qm "$libraries.new/translations"
  stat -c '%n %Y' "$qt" "$others" >"$libraries.new/source"
  rm -rf "$libraries"
  mv "$libraries.new" "$libraries"
}

if ! lay_out_libraries "$preset"; then
  echo "windows/build: no Qt for $preset: neither build/qt-$preset nor $(qt_archive "$preset") is there." >&2
  echo "tools/windows/build-qt.sh builds it, which takes about 40 minutes." >&2
  exit 3
fi

# configure PRESET LIBRARIES ADAPTER_ONLY
configure() {
  cmake --preset "$1" --no-warn-unused-cli "-DX9_WINDOWS_LIBRARIES=$PWD/build/$2-libraries" "-DX9_ADAPTER_ONLY=$3" \
    "-DX9_UPDATE_KEY=${X9_UPDATE_KEY:-}" >/dev/null
}

# The virtual adapter needs no Qt, and so none of its own kind.
if lay_out_libraries "$other"; then
  configure "$other" "$other" OFF
else
  configure "$other" "$preset" ON
fi
cmake --build --preset "$other" -j "$(nproc)" --target ControlCAN
configure "$preset" "$preset" OFF
cmake --build --preset "$preset" -j "$(nproc)" "${@/#/--target=}"
