#!/usr/bin/env bash
# tools/fuzz.sh [SECONDS]   Fuzzes the readers of capture files, each of the four types and the files of LIN frames, and of
# signal databases for SECONDS (default 600), starting from the golden files. What is found stays under
# build/fuzz/findings; add it to the folder of the golden files below tests/data as found_<what it is>.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-600}
tools/install-packages.sh build fuzz
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j "$(nproc)" --target fuzz_can fuzz_canfd fuzz_csv fuzz_text fuzz_LINCapture \
  fuzz_dbc fuzz_ldf

findings=$PWD/build/fuzz/findings
mkdir -p "$findings"
fuzz() {
  local target=$1 folder=${2%/*} ending=${2##*/}
  local corpus=build/fuzz/corpus/$target
  mkdir -p "$corpus"
  cp "tests/data/$folder"/*."$ending" "$corpus"
  build/fuzz/bin/"$target" -max_total_time="$seconds" -max_len=4096 -timeout=10 -rss_limit_mb=1024 \
    -dict=tools/fuzz.dict -artifact_prefix="$findings/$target-" -print_final_stats=1 "$corpus" \
    >"build/fuzz/$target.log" 2>&1
}

status=0
for pair in "fuzz_can capture/can fuzz_canfd capture/canfd" "fuzz_csv capture/csv fuzz_text capture/txt" \
  "fuzz_LINCapture lin/csv" "fuzz_dbc exchange/database/dbc fuzz_ldf exchange/database/ldf"; do
  read -r first first_files second second_files <<<"$pair"
  fuzz "$first" "$first_files" & first_id=$!
  if [[ -n $second ]]; then
    fuzz "$second" "$second_files" & second_id=$!
    wait "$second_id" || status=1
  fi
  wait "$first_id" || status=1
done
for target in fuzz_can fuzz_canfd fuzz_csv fuzz_text fuzz_LINCapture fuzz_dbc fuzz_ldf; do
  echo "$target: $(grep -h 'stat::number_of_executed_units' "build/fuzz/$target.log" | tr -s ' :' ' ' || true)"
done
if ((status)); then
  echo "Findings, see build/fuzz/*.log:" >&2
  ls "$findings" >&2
fi
exit "$status"
