#!/usr/bin/env bash
# check-install.sh CMAKE BUILD_TREE   Installs a finished build into a folder of its own, checks what went where, and
# that the installed program starts on the virtual adapter and ends.
set -euo pipefail
cmake=$1
build=$(realpath "$2")

work=$(mktemp -d)
program=
clean_up() {
  if [[ -n $program ]]; then
    kill -KILL "$program" 2>/dev/null || true
    wait "$program" 2>/dev/null || true
    # The shared memory of a killed program stays.
    ipcs -m -p | awk -v creator="$program" '$3 == creator { print $1 }' | xargs -r -n 1 ipcrm -m
  fi
  rm -rf "$work"
}
trap clean_up EXIT
trap 'exit 143' INT TERM HUP

fail() { echo "check-install: $*" >&2; exit 1; }

"$cmake" --install "$build" --prefix "$work/a prefix" >"$work/log" 2>&1 ||
  { cat "$work/log" >&2; fail "cannot install"; }
prefix=$work/a\ prefix
folder=$prefix/lib/x9can

# Layout: these files and nothing else, apart from what the documents and icons bring along.
files=(
  bin/x9can
  bin/x9can-demo
  bin/x9can-socketcan
  bin/x9capture
  bin/x9viewer
  lib/x9can/X9CAN
  lib/x9can/X9Viewer
  lib/x9can/socketcan/libControlCAN.so
  lib/x9can/virtual-adapter/libControlCAN.so
  share/applications/x9can-demo.desktop
  share/applications/x9can-socketcan.desktop
  share/applications/x9can.desktop
  share/applications/x9viewer.desktop
  share/bash-completion/completions/x9capture
  share/man/man1/x9can-demo.1.gz
  share/man/man1/x9can-socketcan.1.gz
  share/man/man1/x9can.1.gz
  share/man/man1/x9capture.1.gz
  share/man/man1/x9viewer.1.gz
  share/metainfo/com.example.x9can.metainfo.xml
  share/metainfo/com.example.x9viewer.metainfo.xml
  share/mime/packages/x9can.xml
)
diff <(printf '%s\n' "${files[@]}" | sort) \
     <(find "$prefix" ! -type d -printf '%P\n' | grep -v -e '^share/doc/x9can/' -e '^share/icons/hicolor/' | sort) ||
  fail "these files should be there (<), those should not (>)"
for file in share/doc/x9can/{changelog.gz,changelog.Debian.gz,copyright,filters.md,guide.md,socketcan.md,examples/virtual-adapter.json} \
            share/icons/hicolor/{16x16,22x22,24x24,32x32,48x48,64x64,128x128,256x256}/apps/{x9can,x9viewer}.png \
            share/icons/hicolor/scalable/apps/{x9can,x9viewer}.svg; do
  [[ -s $prefix/$file ]] || fail "$file is missing"
done
for file in bin/{x9can,x9can-demo,x9can-socketcan,x9capture,x9viewer} lib/x9can/{X9CAN,X9Viewer}; do
  [[ $(stat -c %a "$prefix/$file") == 755 ]] || fail "$file cannot be started by everybody"
done
"$prefix/bin/x9capture" --version | grep -qE '^x9capture [0-9.]+$' || fail "x9capture does not start"
# The folder the adapter's real library goes to must not have one already.
[[ ! -e $folder/libControlCAN.so ]] || fail "another adapter passes for the real library"

# Home and temporary files of its own: another X9CAN that runs at the same time is none of this one's business.
mkdir "$work/home" "$work/tmp"
cd /
start_and_end() { # start_and_end LAUNCHER FOLDER   FOLDER: of the adapter's library
  env HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" TMPDIR="$work/tmp" QT_QPA_PLATFORM=offscreen \
    "$prefix/bin/$1" >"$work/output" 2>&1 &
  program=$!
  # It runs when it has loaded the library, which it does for its main window.
  local adapter tries
  adapter=$(readlink -f "$folder/$2/libControlCAN.so")
  for ((tries = 0; ; ++tries)); do
    grep -qsF "$adapter" "/proc/$program/maps" && break
    kill -0 "$program" 2>/dev/null || { cat "$work/output" >&2; fail "$1 ended by itself"; }
    ((tries < 600)) || { cat "$work/output" >&2; fail "$1 did not load $adapter"; }
    sleep 0.1
  done
  [[ $(readlink "/proc/$program/exe") == "$(readlink -f "$folder/X9CAN")" ]] || fail "$1: another program runs"
  [[ $(readlink "/proc/$program/cwd") == "$(dirname "$adapter")" ]] || fail "$1 runs in $(readlink "/proc/$program/cwd")"

  kill -TERM "$program"
  timeout 30 tail --pid="$program" -s 0.1 -f /dev/null || fail "$1 did not end"
}
start_and_end x9can-demo virtual-adapter
start_and_end x9can-socketcan socketcan

# The viewer, with a capture that is named from the folder it is started in; it runs when it has that open.
cd "$work/home"
echo '(1700000000.000000) can0 100#01' >drive.log
env HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" QT_QPA_PLATFORM=offscreen \
  "$prefix/bin/x9viewer" drive.log >"$work/output" 2>&1 &
program=$!
for ((tries = 0; ; ++tries)); do
  [[ " $(readlink /proc/$program/fd/* | tr '\n' ' ') " != *" $work/home/drive.log "* ]] || break
  kill -0 "$program" 2>/dev/null || { cat "$work/output" >&2; fail "x9viewer ended by itself"; }
  ((tries < 600)) || { cat "$work/output" >&2; fail "x9viewer did not open the capture"; }
  sleep 0.1
done
[[ $(readlink "/proc/$program/exe") == "$(readlink -f "$folder/X9Viewer")" ]] || fail "x9viewer starts another program"
kill -TERM "$program"
timeout 30 tail --pid="$program" -s 0.1 -f /dev/null || fail "x9viewer did not end"
echo "installed, started and ended"
