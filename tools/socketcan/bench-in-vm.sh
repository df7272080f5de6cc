#!/usr/bin/env bash
# What tools/socketcan/bench.sh runs in the virtual machine.
set -euo pipefail
cd "$(dirname "$0")/../.."
ip link add dev vcan0 type vcan
ip link set vcan0 up
cd /tmp # for the configuration of the virtual adapter
"$OLDPWD/build/release/bin/bench_adapter" --interface vcan0
