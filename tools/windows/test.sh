#!/usr/bin/env bash
# tools/windows/test.sh [CTEST ARGUMENT...]   Builds for Windows (tools/windows/build.sh) and runs the tests under Wine, each
# on a virtual screen that it has to itself, with a Windows of its own behind it: all of them on a Western Windows, then
# those of files once more on a Chinese one, with temporary files in a folder whose name is Chinese. Ends with 3 where Qt for
# Windows is not at hand, with 1 when a test failed.
set -euo pipefail
cd "$(dirname "$0")/../.."

tools/install-packages.sh run windows wine
echo "=== Windows: build"
tools/windows/build.sh

echo "=== Windows: screens"
source tools/windows/wine.sh
make_wine_screens build/windows/screens $((3 * $(nproc)))

# test_pass NAME TEMPORARY [CTEST ARGUMENT...]
test_pass() {
  echo "=== Windows: tests on a $1 Windows"
  local temporary=$PWD/build/windows/$2
  shift 2
  rm -rf "$temporary"
  set_temporary_folders "$temporary"
  ctest --preset windows -j $((3 * $(nproc))) --resource-spec-file "$PWD/build/windows/screens/screens.json" "$@"
}

failed=
X9_CODE_PAGE=1252 LC_ALL=C.UTF-8 test_pass Western temp "$@" || failed=yes
locales=$PWD/build/windows/locales
mkdir -p "$locales"
localedef -i zh_CN -f UTF-8 "$locales/zh_CN.UTF-8"
X9_CODE_PAGE=936 LOCPATH=$locales LC_ALL=zh_CN.UTF-8 \
  test_pass Chinese "temp/总线 测试" -L files "$@" 2> >(grep -v setlocale >&2) || failed=yes
[[ -z $failed ]]
