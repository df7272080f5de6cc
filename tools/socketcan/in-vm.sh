#!/usr/bin/env bash
# What tools/socketcan/test.sh runs in the virtual machine, as root, in the machine's file system with this project in its
# place; /tmp/out comes back.
set -uo pipefail
cd "$(dirname "$0")/../.."
export QT_QPA_PLATFORM=offscreen XDG_CONFIG_HOME=/tmp/config XDG_RUNTIME_DIR=/tmp/runtime
mkdir -m 700 /tmp/runtime
for interface in vcan0 vcan1; do
  ip link add dev $interface type vcan && ip link set $interface mtu 72 up || exit 1
done
code=0

echo "=== SocketCAN: the library on real interfaces"
X9_TEST_THREADS=some build/release/tests/bin/socketcan_tests tst_OnInterfaces >/tmp/out/tests.txt 2>&1 || code=1
grep -E '^(FAIL|SKIP|QFATAL)|^   |^Totals' /tmp/out/tests.txt || cat /tmp/out/tests.txt

echo "=== SocketCAN: the program on real interfaces"
candump -L vcan0 vcan1 >/tmp/out/candump.txt &
senders=($!)
cangen vcan0 -I 101 -L 8 -g 10 & senders+=($!)
cangen vcan0 -I 2A0 -L 48 -f -b -g 20 & senders+=($!)
cangen vcan0 -e -g 50 & senders+=($!)
cangen vcan1 -I 101 -L 8 -g 10 & senders+=($!)
cangen vcan1 -I 2B0 -L 8 -g 5 & senders+=($!)
(cd build/release/bin/socketcan && X9_TOUR_SLOWLY=1 ../../tools/x9_tour en /tmp/out can) 2>/tmp/out/tour.txt || {
  cat /tmp/out/tour.txt
  code=1
}
kill "${senders[@]}"
# What the tour sends: a frame with a payload of its own, and the last of those that count up from there.
for sent in 'vcan1 123#DEADBEEF01020304' 'vcan1 136#' ; do
  grep -qF "$sent" /tmp/out/candump.txt || { echo "candump has not seen $sent"; code=1; }
done

exit $code
