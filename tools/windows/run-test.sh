#!/usr/bin/env bash
# tools/windows/run-test.sh PROGRAM [ARGUMENT...]   Runs a program of build/windows or build/windows32 under Wine, as CTest
# does with each test; ends with its exit code. A Qt Test program prints nothing there, so what it writes to a file is printed.
# In the environment that tools/windows/test.sh makes, on the screen that CTest gives it, without one on the first.
set -uo pipefail
program=$1
shift
if [[ -n ${X9_SCREENS:-} ]]; then
  screen=${CTEST_RESOURCE_GROUP_0_SCREENS:-id:1}
  screen=${screen#id:}
  screen=${screen%%,*}
  export "DISPLAY=:$(<"$X9_SCREENS/$screen/display")" "WINEPREFIX=$X9_SCREENS/$screen/wine"
fi
# Wine keeps the host's QT_ variables from its programs, except those whose names begin with WINE.
while IFS= read -r name; do
  export "WINE$name=${!name}"
done < <(compgen -e QT_)
if [[ ${1:-} != tst_* ]]; then
  exec wine "$program" "$@"
fi
results=$(mktemp)
trap 'rm -f "$results"' EXIT
wine "$program" "$1" -o "Z:${results//\//\\},txt" "${@:2}"
code=$?
tr -d '\r' <"$results"
exit $code
