#!/usr/bin/env bash
# tools/coverage.sh [FOLDER]   Builds the preset coverage, runs all tests and prints which share of the product's lines they
# run: each folder's and the whole. FOLDER gets a page for each source.
set -euo pipefail
cd "$(dirname "$0")/.."

tools/install-packages.sh build run coverage
cmake --preset coverage >/dev/null
cmake --build --preset coverage -j "$(nproc)"
find build/coverage -name '*.gcda' -delete
ctest --preset coverage -j $((5 * $(nproc)))

folders="adapter app can capture device lin resources widgets"
pages=()
[[ -z ${1:-} ]] || { mkdir -p "$1"; pages=(--html-details "$1/index.html"); }
gcovr --root . --object-directory build/coverage --filter "(${folders// /|})/" --exclude-throw-branches \
  --gcov-ignore-parse-errors --json-summary build/coverage/summary.json --json-summary-pretty "${pages[@]}" >/dev/null
python3 - build/coverage/summary.json <<'END'
import collections, json, sys
lines = collections.defaultdict(lambda: [0, 0])
for file in json.load(open(sys.argv[1]))["files"]:
    for name in (file["filename"].split("/")[0], "all"):
        lines[name][0] += file["line_covered"]
        lines[name][1] += file["line_total"]
for name, (covered, total) in sorted(lines.items(), key=lambda item: (item[0] == "all", item)):
    print(f"{name:10} {covered:6} of {total:6} lines, {100 * covered / total:.1f} %")
END
