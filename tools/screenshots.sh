#!/usr/bin/env bash
# tools/screenshots.sh [FOLDER]   Takes the pictures of the documents anew, in both languages, at 100 % and at 200 %:
# FOLDER/<language>-<window>.png and ...@2x.png, docs/screenshots by default. Every window of the program is there, and
# the steps of the guided tour that the documents show; where both have a picture of one name it is the tour's. Of the
# viewer there are the pictures that the documents show, at 100 %. Needs a finished ./run.sh build.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install-packages.sh run docs
mkdir -p "${1:-docs/screenshots}"
pictures=$(cd "${1:-docs/screenshots}" && pwd)
steps="open filter-tool scan receive send-repeatedly send-list gateway-filter filter edit-data behind-the-message
       send-file lin-list lin-monitor lin-developer"
views="walk-open walk-values walk-plot walk-drop walk-sent walk-answer walk-plots walk-compare filter bus-load"

taken=$(mktemp -d)
folder=$PWD/build/release/bin/captures # a short path in the pictures
mkdir -p "$folder"
viewer=$(mktemp -d)
trap 'rm -rf "$folder" "$taken" "$viewer"' EXIT
cd build/release/bin
export QT_LOGGING_RULES="qt.qpa.xcb=false" # without a window manager there is no input focus to give
for language in zh en; do
  for scale in 1 2; do
    suffix=$([[ $scale == 1 ]] || echo @2x)
    screen=(env QT_SCALE_FACTOR=$scale xvfb-run -a -s "-screen 0 $((1280 * scale))x$((900 * scale))x24 -dpi 96")
    "${screen[@]}" ../tools/x9_gallery "$language" "$taken"
    "${screen[@]}" ../tools/x9_tour "$language" "$folder"
    for step in $steps; do
      cp "$folder/$language"-[0-9][0-9]-"$step.png" "$taken/$language-$step$suffix.png"
    done
  done
  xvfb-run -a -s "-screen 0 1280x900x24 -dpi 96" ../tools/x9_viewer_gallery "$language" "$viewer"
  for view in $views; do
    cp "$viewer/$language-viewer-$view.png" "$taken"
  done
done
rm "$taken"/*-dialog.png "$taken"/*-dialog@2x.png # the toolkit's, full of this computer's folders
pngquant --quality 70-95 --strip --skip-if-larger --force --ext .png "$taken"/*.png || (($? == 98)) # some were smaller
cp "$taken"/*.png "$pictures"
