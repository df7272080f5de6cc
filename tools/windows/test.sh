#!/usr/bin/env bash
# tools/windows/test.sh [--32 [--some]] [CTEST ARGUMENT...]   Builds for Windows (tools/windows/build.sh) and runs the tests
# under Wine, each on a virtual screen that it has to itself, with a Windows of its own behind it: all of them on a Western
# Windows, then those of files once more on a Chinese one, with temporary files in a folder whose name is Chinese. --32 does so
# for the 32-bit program, in an i386 system (tools/windows/wine32.sh); where there can be none it only builds, and says so
# loudly. --some builds and runs, on a Western Windows, what a word size could break: the tests of device access and of files,
# and one window of each folder. Ends with 3 where Qt for Windows is not at hand, with 1 when a test failed.
set -euo pipefail
cd "$(dirname "$0")/../.."

arguments=("$@")
preset=windows name=Windows bits=() some=
if [[ ${1:-} == --32 ]]; then
  preset=windows32 name="Windows, 32 bits" bits=(--32)
  shift
  if [[ ${1:-} == --some ]]; then
    some=yes
    shift
  fi
fi
build=$PWD/build/$preset

# The windows, and what runs of the adapter itself. Not the guided tour, which has a program of its own.
some_tests='tst_(VirtualAdapterLibrary|NumberEntry|CTableViewCAN|GUI_CanDevice|GUI_LINDevice|GUI_SoftwareInfo)'
programs=({adapter,device,widgets,capture,exchange,can,lin,app,viewer}_tests tst_{DriverSystem,FileDownload,Settings}_program)

# tests_of FOLDER [CTEST ARGUMENT...]
tests_of() { ctest --test-dir "$build/tests/$1" -N "${@:2}" | sed -n 's/^ *Test *#[0-9]*: //p'; }

if [[ -z ${X9_WINE_ROOT:-} ]]; then
  tools/install-packages.sh run windows wine
  echo "=== $name: build"
  [[ -n $some ]] || programs=()
  tools/windows/build.sh "${bits[@]}" "${programs[@]}"
  if ((${#bits[@]})); then
    source tools/loudly.sh
    echo "=== $name: i386 system"
    code=0
    tools/windows/wine32.sh true || code=$?
    if ((code == 3)); then
      loudly "NO TEST OF THE 32-BIT PROGRAM WAS RUN: there is no i386 system on this machine." \
        "It needs root, and Debian's packages; docs/windows.md tells more."
      exit 0
    fi
    ((code == 0)) || exit "$code"
    exec tools/windows/wine32.sh tools/windows/test.sh "${arguments[@]}"
  fi
fi

echo "=== $name: screens"
source tools/windows/wine.sh
make_wine_screens "$preset" $((3 * $(nproc)))

# test_pass NAME TEMPORARY [CTEST ARGUMENT...]
test_pass() {
  echo "=== $name: tests on a $1 Windows"
  local temporary=$build/$2
  shift 2
  rm -rf "$temporary"
  set_temporary_folders "$temporary"
  ctest --preset "$preset" -j $((3 * $(nproc))) --resource-spec-file "$build/screens/screens.json" "$@"
}

if [[ -n $some ]]; then
  chosen=$({ tests_of device; tests_of . -L files -E ^tour_; echo "$some_tests"; } | paste -sd'|')
  X9_CODE_PAGE=1252 LC_ALL=C.UTF-8 test_pass Western temp -R "^($chosen)\$" "$@"
  exit
fi
failed=
X9_CODE_PAGE=1252 LC_ALL=C.UTF-8 test_pass Western temp "$@" || failed=yes
locales=$build/locales
mkdir -p "$locales"
localedef -i zh_CN -f UTF-8 "$locales/zh_CN.UTF-8"
X9_CODE_PAGE=936 LOCPATH=$locales LC_ALL=zh_CN.UTF-8 \
  test_pass Chinese "temp/总线 测试" -L files "$@" 2> >(grep -v setlocale >&2) || failed=yes
[[ -z $failed ]]
