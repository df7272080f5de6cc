#!/usr/bin/env bash
# tools/fuzz.sh [SECONDS [TARGET...]]   Fuzzes the readers of capture files - those of the program, that of LIN frames and
# all that turn captures into each other -, of signal databases, and of the viewer's filters for SECONDS each (default
# 600), starting from the golden files. What is found stays under build/fuzz/findings; add it to the folder of tests/data
# that the target's seeds are from, as found_<what it is>.
set -euo pipefail
cd "$(dirname "$0")/.."

# Target, and its seeds below tests/data.
declare -A seeds=(
  [fuzz_can]="capture/*.can"
  [fuzz_canfd]="capture/*.canfd"
  [fuzz_csv]="capture/*.csv"
  [fuzz_text]="capture/*.txt"
  [fuzz_LINCapture]="lin/*.csv"
  [fuzz_exchange_can]="exchange/*.can capture/*.can"
  [fuzz_exchange_canfd]="exchange/*.canfd capture/*.canfd"
  [fuzz_exchange_csv]="exchange/csv_*.csv capture/*.csv"
  [fuzz_exchange_txt]="exchange/*.txt capture/*.txt"
  [fuzz_exchange_lin-csv]="exchange/lin_*.csv lin/*.csv"
  [fuzz_exchange_candump]="exchange/candump_*.log"
  [fuzz_asc]="exchange/*.asc"
  [fuzz_blf]="exchange/*.blf"
  [fuzz_pcap]="exchange/*.pcap"
  [fuzz_pcapng]="exchange/*.pcapng"
  [fuzz_trc]="exchange/*.trc"
  [fuzz_dbc]="exchange/database/*.dbc"
  [fuzz_ldf]="exchange/database/*.ldf"
  [fuzz_Filter]="viewer/filters/*.txt"
)

seconds=${1:-600}
shift || true
targets=("$@")
((${#targets[@]})) || mapfile -t targets < <(printf '%s\n' "${!seeds[@]}" | sort)
for target in "${targets[@]}"; do
  [[ -n ${seeds[$target]:-} ]] || { echo "There is no target $target." >&2; exit 2; }
done
tools/install-packages.sh build fuzz
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j "$(nproc)" --target "${targets[@]}"

findings=$PWD/build/fuzz/findings
mkdir -p "$findings"
fuzz() {
  local target=$1 corpus=build/fuzz/corpus/$1 patterns pattern
  mkdir -p "$corpus"
  read -ra patterns <<<"${seeds[$target]}"
  for pattern in "${patterns[@]}"; do
    cp tests/data/$pattern "$corpus"
  done
  build/fuzz/bin/"$target" -max_total_time="$seconds" -max_len=4096 -timeout=10 -rss_limit_mb=1024 \
    -dict=tools/fuzz.dict -artifact_prefix="$findings/$target-" -print_final_stats=1 "$corpus" \
    >"build/fuzz/$target.log" 2>&1
}

# Two at a time.
status=0
running=()
for target in "${targets[@]}"; do
  if ((${#running[@]} == 2)); then
    wait "${running[0]}" || status=1
    running=("${running[@]:1}")
  fi
  fuzz "$target" & running+=($!)
done
for id in "${running[@]}"; do
  wait "$id" || status=1
done
for target in "${targets[@]}"; do
  echo "$target: $(grep -ah 'stat::number_of_executed_units' "build/fuzz/$target.log" | tr -s ' :' ' ' || true)"
done
if ((status)); then
  echo "Findings, see build/fuzz/*.log:" >&2
  ls "$findings" >&2
fi
exit "$status"
