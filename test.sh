#!/usr/bin/env bash
# ./test.sh              builds and runs all tests
# ./test.sh --sanitize   the same under AddressSanitizer with UndefinedBehaviorSanitizer; under ThreadSanitizer those tests in
#                        which there is more than one thread
set -euo pipefail
cd "$(dirname "$0")"

case ${1:-} in
  "") presets=(release) ;;
  --sanitize) presets=(asan tsan) ;;
  *) echo "usage: $0 [--sanitize]" >&2; exit 2 ;;
esac

tools/install-packages.sh build run witness

for preset in "${presets[@]}"; do
  echo "=== $preset: build"
  cmake --preset "$preset" -DX9_WARNINGS_AS_ERRORS=ON >/dev/null
  cmake --build --preset "$preset" -j "$(nproc)"
  if [[ $preset == release ]]; then
    echo "=== $preset: headers alone"
    cmake --build --preset "$preset" -j "$(nproc)" --target all_verify_interface_header_sets
  fi
  echo "=== $preset: tests"
  runner=()
  # ThreadSanitizer of g++ 12 cannot map its shadow memory when addresses are spread over more than 28 bits.
  if [[ $preset == tsan && $(cat /proc/sys/vm/mmap_rnd_bits) -gt 28 ]]; then
    runner=(setarch -R)
  fi
  # Tests wait more than they compute.
  "${runner[@]}" ctest --preset "$preset" -j $((5 * $(nproc)))
done
