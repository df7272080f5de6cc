#!/usr/bin/env bash
# tools/test-qhexedit.sh   Builds the widgets with QHexEdit2 instead of the project's own hexadecimal editor, in
# build/qhexedit, and runs their tests. The library's sources come from an archive: $X9_QHEXEDIT_ARCHIVE, or
# ../shared/qhexedit2-0.9.tar.xz beside this folder. Ends with 3 where there is none.
set -euo pipefail
cd "$(dirname "$0")/.."

archive=${X9_QHEXEDIT_ARCHIVE:-../shared/qhexedit2-0.9.tar.xz}
if [[ ! -f $archive ]]; then
  echo "test-qhexedit: $archive is not there; the widgets were not tried with QHexEdit2." >&2
  exit 3
fi
tools/install-packages.sh build run

library=$PWD/build/qhexedit-library
if [[ $(stat -c '%n %Y' "$archive") != "$(cat "$library/source" 2>/dev/null)" ]]; then
  rm -rf "$library"
  mkdir -p "$library/sources" "$library/include/qhexedit" "$library/lib"
  tar -xJf "$archive" -C "$library/sources" --strip-components 1
  (cd "$library/sources" && qmake -qt=5 src/qhexedit.pro && make -j "$(nproc)") >"$library/log" 2>&1 ||
    { tail -30 "$library/log" >&2; echo "test-qhexedit: QHexEdit2 cannot be built." >&2; exit 1; }
  cp "$library"/sources/src/*.h "$library/include/qhexedit"
  find "$library/sources" -name 'libqhexedit*' -exec cp -P {} "$library/lib" \;
  stat -c '%n %Y' "$archive" >"$library/source"
fi

cmake --preset release -B build/qhexedit -DCMAKE_PREFIX_PATH="$library" -DX9_WARNINGS_AS_ERRORS=ON \
  -DX9_BUILD_BENCH=OFF -DX9_BUILD_PACKAGE=OFF | grep "Hexadecimal editor: QHexEdit2"
cmake --build build/qhexedit -j "$(nproc)" --target widgets_tests
export LD_LIBRARY_PATH=$library/lib
ctest --test-dir build/qhexedit -j $((5 * $(nproc))) --output-on-failure -R '^tst_(CHex|Hex)'
