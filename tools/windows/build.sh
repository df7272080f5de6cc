#!/usr/bin/env bash
# tools/windows/build.sh [TARGET...]   Builds the Windows program, the virtual adapter's DLL and all tests with MinGW-w64
# into build/windows; warnings are errors. Qt for Windows comes from build/qt-windows, where tools/windows/build-qt.sh
# puts it, or from an archive of that folder: $X9_QT_WINDOWS_ARCHIVE, or ../shared/qt5-windows.tar.xz beside this folder.
# Ends with 3 where there is neither.
set -euo pipefail
cd "$(dirname "$0")/../.."

tools/install-packages.sh build windows
libraries=$PWD/build/windows-libraries
archive=${X9_QT_WINDOWS_ARCHIVE:-../shared/qt5-windows.tar.xz}

# What is unpacked or copied appears under its name only when it is complete.
if [[ ! -e $libraries/lib/cmake/Qt5Core ]]; then
  rm -rf "$libraries" "$libraries.new"
  mkdir -p "$libraries.new"
  if [[ -d build/qt-windows ]]; then
    cp -r build/qt-windows/. "$libraries.new"
  elif [[ -f $archive ]]; then
    tar -xJf "$archive" -C "$libraries.new" --strip-components 1
  else
    echo "windows/build: no Qt for Windows: neither build/qt-windows nor $archive is there." >&2
    echo "tools/windows/build-qt.sh builds it, which takes about an hour." >&2
    exit 3
  fi
  # A header-only library; /usr/include as a whole must not come along.
  mkdir -p "$libraries.new/include" "$libraries.new/share/cmake"
  cp -r /usr/include/nlohmann "$libraries.new/include"
  cp -r /usr/share/cmake/nlohmann_json "$libraries.new/share/cmake"
  # Qt's own texts in Chinese are no part of its base, and not made for one system.
  mkdir -p "$libraries.new/translations"
  cp /usr/share/qt5/translations/qtbase_zh_CN.qm "$libraries.new/translations"
  mv "$libraries.new" "$libraries"
fi

cmake --preset windows32 >/dev/null
cmake --build --preset windows32 -j "$(nproc)"
cmake --preset windows >/dev/null
cmake --build --preset windows -j "$(nproc)" "${@/#/--target=}"
