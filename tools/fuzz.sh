#!/usr/bin/env bash
# tools/fuzz.sh [SECONDS [TARGET...]]   Fuzzes the readers of capture files, each kind for SECONDS (default 600), starting from
# the golden files: the program's four types, the files of LIN frames, and those of other programs. What is found stays under
# build/fuzz/findings; add it to the folder of tests/data that its target reads as found_<what it is>.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-600}
tools/install-packages.sh build fuzz
cmake --preset fuzz >/dev/null
# Target, folder of tests/data and ending of the files to start from.
rows="fuzz_can capture can
fuzz_canfd capture canfd
fuzz_csv capture csv
fuzz_text capture txt
fuzz_LINCapture lin csv
fuzz_asc exchange asc
fuzz_blf exchange blf
fuzz_pcap exchange pcap
fuzz_pcapng exchange pcapng
fuzz_trc exchange trc"
if (($# > 1)); then
  rows=$(for target in "${@:2}"; do grep "^$target " <<<"$rows"; done)
fi
mapfile -t targets < <(cut -d ' ' -f 1 <<<"$rows")
cmake --build --preset fuzz -j "$(nproc)" --target "${targets[@]}"

findings=$PWD/build/fuzz/findings
mkdir -p "$findings"
fuzz() {
  local target=$1 folder=$2 ending=$3
  local corpus=build/fuzz/corpus/$target
  mkdir -p "$corpus"
  cp "tests/data/$folder"/*."$ending" "$corpus"
  build/fuzz/bin/"$target" -max_total_time="$seconds" -max_len=4096 -timeout=10 -rss_limit_mb=1024 \
    -dict=tools/fuzz.dict -artifact_prefix="$findings/$target-" -print_final_stats=1 "$corpus" \
    >"build/fuzz/$target.log" 2>&1
}

status=0
while read -r first && { read -r second || true; }; do # two at a time
  # shellcheck disable=SC2086 # three words each
  fuzz $first & first_id=$!
  if [[ -n $second ]]; then
    fuzz $second & second_id=$!
    wait "$second_id" || status=1
  fi
  wait "$first_id" || status=1
done <<<"$rows"
for target in "${targets[@]}"; do
  echo "$target: $(grep -h 'stat::number_of_executed_units' "build/fuzz/$target.log" | tr -s ' :' ' ' || true)"
done
if ((status)); then
  echo "Findings, see build/fuzz/*.log:" >&2
  ls "$findings" >&2
fi
exit "$status"
