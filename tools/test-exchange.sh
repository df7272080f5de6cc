#!/usr/bin/env bash
# tools/test-exchange.sh   Has other programs read the captures that are written here, and write some that are read here: 2,000
# random frames of each kind. What of them is missing is installed where it can be, and where it cannot, or the program still is
# not there, that is said loudly. Needs the tests of the release preset; builds them.
set -euo pipefail
cd "$(dirname "$0")/.."
source tools/loudly.sh

tools/install-packages.sh witness || loudly "NOT ALL OTHER PROGRAMS COULD BE INSTALLED that read and write captures."
cmake --preset release >/dev/null
cmake --build --preset release --target exchange_tests >/dev/null
results=$(mktemp)
trap 'rm -f "$results"' EXIT
code=0
QT_QPA_PLATFORM=offscreen build/release/tests/bin/exchange_tests tst_ExchangeWitness >"$results" 2>&1 || code=$?
grep -E '^(FAIL|Totals| )' "$results" || true
if grep -q '^SKIP' "$results"; then
  loudly "CAPTURES WERE NOT TRIED WITH ALL OTHER PROGRAMS:" "$(grep '^SKIP' "$results" | sed -E 's/.*\((.*)\).*/\1/' | cut -d , -f 1 | sort | uniq -c)"
fi
exit "$code"
