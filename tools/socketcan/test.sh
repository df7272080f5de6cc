#!/usr/bin/env bash
# tools/socketcan/test.sh   Tests the SocketCAN library and the program on it (preset release) on interfaces of a real
# kernel, in a virtual machine. Says so loudly where there can be none.
set -euo pipefail
cd "$(dirname "$0")/../.."
source tools/loudly.sh
source tools/socketcan/vm.sh

tools/install-packages.sh build run socketcan || true # what is missing then shows right away
obstacle=$(vm_obstacle)
if [[ -n $obstacle ]]; then
  loudly "NOTHING WAS TESTED ON CAN INTERFACES: there is no virtual machine with a kernel that has them." "$obstacle"
  exit 0
fi
cmake --preset release >/dev/null
cmake --build --preset release -j "$(nproc)" --target socketcan_tests ControlCAN_socketcan x9_tour

out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
vm_run tools/socketcan/in-vm.sh "$out" 900
