#!/usr/bin/env bash
# tools/windows/build.sh [TARGET...]   Builds the Windows program, the virtual adapter's DLL and all tests with
# MinGW-w64 into build/windows; warnings are errors. Qt for Windows comes from build/qt-windows, where
# tools/windows/build-qt.sh puts it, or from an archive of that folder: $X9_QT_WINDOWS_ARCHIVE, or
# ../shared/qt5-windows.tar.xz beside this folder. Ends with 3 where there is neither.
set -euo pipefail
cd "$(dirname "$0")/../.."

tools/install-packages.sh build windows
libraries=$PWD/build/windows-libraries
archive=${X9_QT_WINDOWS_ARCHIVE:-../shared/qt5-windows.tar.xz}

if [[ -d build/qt-windows ]]; then
  qt=build/qt-windows
elif [[ -f $archive ]]; then
  qt=$archive
elif [[ -e $libraries ]]; then
  qt=
else
  echo "windows/build: no Qt for Windows: neither build/qt-windows nor $archive is there." >&2
  echo "tools/windows/build-qt.sh builds it, which takes about 40 minutes." >&2
  exit 3
fi

# The libraries are laid out anew where they come from another Qt. They appear under their name only when complete, and
# with today's times: the build compiles again what uses them.
if [[ -n $qt && $(stat -c '%n %Y' "$qt") != "$(cat "$libraries/source" 2>/dev/null)" ]]; then
  rm -rf "$libraries.new"
  mkdir -p "$libraries.new"
  if [[ -d $qt ]]; then
    cp -r "$qt/." "$libraries.new"
  else
    tar -xJmf "$qt" -C "$libraries.new" --strip-components 1
  fi
  [[ -e $libraries.new/lib/cmake/Qt5Core ]] || { echo "windows/build: there is no Qt in $qt." >&2; exit 1; }
  # A header-only library; /usr/include as a whole must not come along.
  mkdir -p "$libraries.new/include" "$libraries.new/share/cmake"
  cp -r /usr/include/nlohmann "$libraries.new/include"
  cp -r /usr/share/cmake/nlohmann_json "$libraries.new/share/cmake"
  # Qt's own texts in Chinese are no part of its base, and not made for one system.
  mkdir -p "$libraries.new/translations"
  cp /usr/share/qt5/translations/qtbase_zh_CN.qm "$libraries.new/translations"
  stat -c '%n %Y' "$qt" >"$libraries.new/source"
  rm -rf "$libraries"
  mv "$libraries.new" "$libraries"
fi

cmake --preset windows32 >/dev/null
cmake --build --preset windows32 -j "$(nproc)"
cmake --preset windows >/dev/null
cmake --build --preset windows -j "$(nproc)" "${@/#/--target=}"
