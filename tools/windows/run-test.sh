#!/usr/bin/env bash
# tools/windows/run-test.sh PROGRAM [ARGUMENT...]   Runs a program of build/windows under Wine, as CTest does with each
# test; ends with its exit code. A Qt Test program prints nothing there, so what it writes to a file is printed. In the
# environment that tools/windows/test.sh makes.
set -uo pipefail
program=$1
shift
# Wine keeps the host's QT_ variables from its programs, except those whose names begin with WINE.
while IFS= read -r name; do
  export "WINE$name=${!name}"
done < <(compgen -e QT_)
if [[ $(basename "$program") != tst_* ]]; then
  exec wine "$program" "$@"
fi
results=$(mktemp)
trap 'rm -f "$results"' EXIT
wine "$program" -o "Z:${results//\//\\},txt" "$@"
code=$?
tr -d '\r' <"$results"
exit $code
