#!/usr/bin/env bash
# tools/windows/test.sh [CTEST ARGUMENT...]   Builds for Windows (tools/windows/build.sh) and runs the tests under Wine on
# a virtual screen: all of them on a Western Windows, then those of files once more on a Chinese one, with temporary files
# in a folder whose name is Chinese. Ends with 3 where Qt for Windows is not at hand, with 1 when a test failed.
set -euo pipefail
cd "$(dirname "$0")/../.."

tools/install-packages.sh run windows wine
tools/windows/build.sh

# Everything that Wine starts, its server too, needs the same screen: the script runs itself inside one.
if [[ -z ${X9_WINE_SCREEN:-} ]]; then
  exec env X9_WINE_SCREEN=yes xvfb-run -a -s "-screen 0 1400x1000x24" "$0" "$@"
fi

source tools/windows/wine.sh
make_wine_prefix build/windows/wine

# test_pass NAME TEMPORARY [CTEST ARGUMENT...]
test_pass() {
  echo "== on a $1 Windows"
  local temporary=$PWD/build/windows/$2
  shift 2
  rm -rf "$temporary"
  mkdir -p "$temporary"
  set_temporary_folder "$temporary"
  ctest --preset windows -j "$(nproc)" "$@"
}

failed=
X9_CODE_PAGE=1252 LC_ALL=C.UTF-8 test_pass Western temp "$@" || failed=yes
locales=$PWD/build/windows/locales
mkdir -p "$locales"
localedef -i zh_CN -f UTF-8 "$locales/zh_CN.UTF-8"
X9_CODE_PAGE=936 LOCPATH=$locales LC_ALL=zh_CN.UTF-8 \
  test_pass Chinese "temp/总线 测试" -L files "$@" 2> >(grep -v setlocale >&2) || failed=yes
[[ -z $failed ]]
