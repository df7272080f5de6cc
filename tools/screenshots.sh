#!/usr/bin/env bash
# tools/screenshots.sh   Takes the pictures of the documents anew: docs/screenshots/<language>-<step>.png, and at 200 %
# docs/screenshots/<language>-receive@2x.png. Needs a finished ./run.sh build.
set -euo pipefail
cd "$(dirname "$0")/.."
pictures=$PWD/docs/screenshots
mkdir -p "$pictures"
folder=$PWD/build/release/bin/captures # a short path in the pictures
mkdir -p "$folder"
trap 'rm -rf "$folder"' EXIT
cd build/release/bin
export QT_LOGGING_RULES="qt.qpa.xcb=false" # without a window manager there is no input focus to give
for language in zh en; do
  xvfb-run -a -s "-screen 0 1280x900x24" ../tools/x9_tour "$language" "$folder"
  for picture in "$folder/$language"-[0-9][0-9]-{open,filter-tool,scan,receive,send-repeatedly,send-list,gateway-filter,filter,edit-data,behind-the-message,send-file,lin-list,lin-monitor,lin-developer}.png; do
    name=$(basename "$picture")
    [[ -f $picture ]] || continue
    cp "$picture" "$pictures/$language-${name#"$language"-[0-9][0-9]-}"
  done
  QT_SCALE_FACTOR=2 xvfb-run -a -s "-screen 0 2560x1800x24" ../tools/x9_tour "$language" "$folder"
  cp "$folder/$language"-[0-9][0-9]-receive.png "$pictures/$language-receive@2x.png"
done
