#!/usr/bin/env bash
# ./run.sh               builds X9CAN and starts it on the virtual adapter. Without a display: a guided tour under Xvfb,
#                        whose screenshots and capture files are left in out/
# ./run.sh --socketcan   starts it on this computer's own CAN interfaces (can0, can1, ...); needs a display
set -euo pipefail
cd "$(dirname "$0")"

case ${1:-} in
  "") adapter=ControlCAN folder=. ;;
  --socketcan) adapter=ControlCAN_socketcan folder=socketcan ;;
  *) echo "usage: $0 [--socketcan]" >&2; exit 2 ;;
esac

tools/install-packages.sh build run
cmake --preset release >/dev/null
cmake --build --preset release -j "$(nproc)" --target X9CAN "$adapter" x9_tour

if [[ -n ${DISPLAY:-}${WAYLAND_DISPLAY:-} ]]; then
  cd "build/release/bin/$folder"
  exec "$OLDPWD/build/release/bin/X9CAN"
fi
if [[ $folder == socketcan ]]; then
  echo "There is no display to show the program on." >&2
  exit 1
fi

out=$PWD/out
rm -rf "$out"
mkdir -p "$out"
echo "No display: a guided tour under Xvfb."
cd build/release/bin
export QT_LOGGING_RULES="qt.qpa.xcb=false" # without a window manager there is no input focus to give
for language in zh en; do
  xvfb-run -a -s "-screen 0 1280x900x24 -dpi 96" ../tools/x9_tour "$language" "$out"
done
echo "Screenshots and capture files are in $out:"
ls "$out"
