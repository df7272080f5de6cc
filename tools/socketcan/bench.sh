#!/usr/bin/env bash
# tools/socketcan/bench.sh   What the SocketCAN library takes on an interface of a real kernel, beside candump: in the virtual
# machine, so ratios count and figures do not.
set -euo pipefail
cd "$(dirname "$0")/../.."
source tools/socketcan/vm.sh

tools/install-packages.sh build run socketcan
obstacle=$(vm_obstacle)
[[ -z $obstacle ]] || { echo "There is no virtual machine: $obstacle" >&2; exit 1; }
cmake --preset release >/dev/null
cmake --build --preset release -j "$(nproc)" --target bench_adapter

out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
vm_run tools/socketcan/bench-in-vm.sh "$out" 300
