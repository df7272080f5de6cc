#!/usr/bin/env bash
# tools/test-package.sh   Builds the Debian package (preset release), checks it, installs it on this machine, starts what
# it brings under Xvfb, and removes it again. As root, or with sudo. Whatever happens, the machine is left as it was.
set -Eeuo pipefail
cd "$(dirname "$0")/.."
root=$PWD

fail() { echo "test-package: $*" >&2; exit 1; }
trap 'echo "test-package: line $LINENO ended with $?: $BASH_COMMAND" >&2' ERR
step() { echo "== $*"; }

as_root=()
if ((EUID != 0)); then
  sudo -n true 2>/dev/null || fail "installing a package needs root, or sudo that asks for no password"
  as_root=(sudo -n)
fi
tools/install-packages.sh build run package
! dpkg-query -s x9can >/dev/null 2>&1 || fail "x9can is installed on this machine; remove it first: apt-get purge x9can"
[[ ! -e /usr/lib/x9can ]] || fail "/usr/lib/x9can is there, but from no package; it would be in the way"

work=$(mktemp -d)
installing=
pids=()
clean_up() {
  local pid
  for pid in "${pids[@]}"; do
    kill -KILL "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
    # The shared memory of a killed program stays.
    ipcs -m -p | awk -v creator="$pid" '$3 == creator { print $1 }' | xargs -r -n 1 ipcrm -m
  done
  if [[ -n $installing ]]; then
    "${as_root[@]}" dpkg --purge x9can >/dev/null 2>&1 || true
    "${as_root[@]}" rm -rf /usr/lib/x9can # was not there before
  fi
  rm -rf "$work"
}
trap clean_up EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

# --- the package

step "building the package"
cmake --preset release -DX9_WARNINGS_AS_ERRORS=ON >/dev/null
cmake --build --preset release -j "$(nproc)" >"$work/log" 2>&1 || { tail -50 "$work/log" >&2; fail "the build failed"; }
pack() { # pack <folder>: prints the package's path
  # Loose permissions of the one who builds must not get into the package.
  (umask 077 && cpack --config build/release/CPackConfig.cmake -B "$1") >"$work/log" 2>&1 ||
    { cat "$work/log" >&2; fail "cpack failed"; }
  find "$1" -maxdepth 1 -name '*.deb'
}
package=$(pack "$work/first")
cmp "$package" "$(pack "$work/second")" || fail "packing twice does not give the same package"

step "what is in it"
dpkg-deb -c "$package" >"$work/contents"
awk '{ print $6 }' "$work/contents" | sed 's|^\./||; s|/$||' >"$work/paths"
unexpected=$(grep -vxE "$(paste -sd'|' <<'END'
usr(/(bin|lib|share))?
usr/bin/(x9can(-demo|-socketcan)?|x9capture|x9viewer)
usr/share/bash-completion(/completions(/x9capture)?)?
usr/lib/x9can(/X9CAN|/X9Viewer|/(virtual-adapter|socketcan)(/libControlCAN\.so)?)?
usr/share/applications(/(x9can(-demo|-socketcan)?|x9viewer)\.desktop)?
usr/share/doc(/x9can)?
usr/share/doc/x9can/(changelog(\.Debian)?\.gz|copyright|[a-z.-]+\.md)
usr/share/doc/x9can/(examples(/virtual-adapter\.json)?|screenshots(/[^/]+\.png)?)
usr/share/icons(/hicolor)?
usr/share/icons/hicolor/[0-9]+x[0-9]+(/apps(/(x9can|x9viewer)\.png)?)?
usr/share/icons/hicolor/scalable(/apps(/(x9can|x9viewer)\.svg)?)?
usr/share/man(/man1(/(x9can(-demo|-socketcan)?|x9capture|x9viewer)\.1\.gz)?)?
usr/share/metainfo(/com\.example\.(x9can|x9viewer)\.metainfo\.xml)?
usr/share/mime(/packages(/x9can\.xml)?)?
END
)" "$work/paths") || (($? == 1)) # 2: grep itself failed
[[ -z $unexpected ]] || fail "files outside the layout:"$'\n'"$unexpected"
for path in usr/lib/x9can/X9CAN usr/lib/x9can/X9Viewer usr/bin/x9viewer usr/share/applications/x9viewer.desktop \
            usr/share/mime/packages/x9can.xml usr/share/metainfo/com.example.x9viewer.metainfo.xml usr/lib/x9can/virtual-adapter/libControlCAN.so usr/lib/x9can/socketcan/libControlCAN.so \
            usr/bin/x9can usr/bin/x9can-demo usr/bin/x9can-socketcan usr/bin/x9capture usr/share/applications/x9can.desktop \
            usr/share/applications/x9can-demo.desktop usr/share/applications/x9can-socketcan.desktop \
            usr/share/metainfo/com.example.x9can.metainfo.xml; do
  grep -qx "$path" "$work/paths" || fail "$path is missing"
done
odd=$(grep -vE '^(drwxr-xr-x|-rw-r--r--) root/root |^-rwxr-xr-x root/root .*(/usr/bin/(x9can(-demo|-socketcan)?|x9capture|x9viewer)|/X9CAN|/X9Viewer)$' \
        "$work/contents") || (($? == 1))
[[ -z $odd ]] || fail "owners or permissions that should not be:"$'\n'"$odd"

dpkg-deb -x "$package" "$work/tree"
for binary in usr/lib/x9can/X9CAN usr/lib/x9can/X9Viewer usr/bin/x9capture usr/lib/x9can/{virtual-adapter,socketcan}/libControlCAN.so; do
  readelf -d "$work/tree/$binary" >"$work/elf"
  ! grep -E 'RPATH|RUNPATH' "$work/elf" || fail "$binary looks for libraries in a folder of the build"
  readelf -SW "$work/tree/$binary" >"$work/elf"
  ! grep -E '\.debug_|\.symtab' "$work/elf" || fail "$binary is not stripped"
  readelf -hldW --dyn-syms "$work/tree/$binary" >"$work/elf"
  for mark in 'Type: +DYN' GNU_RELRO '\(FLAGS\).*BIND_NOW' __stack_chk_fail; do
    grep -qE "$mark" "$work/elf" || fail "$binary was built without what shows as $mark"
  done
  # The program calls nothing that is checked as it runs, the adapter does.
  [[ $binary != *.so ]] || grep -qE '__[a-z]+_chk\b' "$work/elf" || fail "$binary was built without _FORTIFY_SOURCE"
  # The mark of the whole file is missing where the system's own start-up code has none.
  if [[ $(dpkg --print-architecture) == amd64 ]]; then
    (($(objdump -d --no-show-raw-insn "$work/tree/$binary" | grep -cw endbr64) > 100)) ||
      fail "$binary was built without control-flow protection"
  fi
done
! grep -rlF "$root" "$work/tree" || fail "these files tell where they were built"

step "what others say about it"
desktop-file-validate "$work"/tree/usr/share/applications/*.desktop
appstreamcli validate --no-net "$work"/tree/usr/share/metainfo/com.example.{x9can,x9viewer}.metainfo.xml
# Each kind of file that the viewer is offered for has a name, the package's or the system's.
mkdir -p "$work/mime/packages"
cp "$work/tree/usr/share/mime/packages/x9can.xml" /usr/share/mime/packages/freedesktop.org.xml "$work/mime/packages"
XDG_DATA_HOME=$work XDG_DATA_DIRS=$work update-mime-database "$work/mime" >"$work/log" 2>&1 || { cat "$work/log" >&2; fail "the MIME types are wrong"; }
! grep -i warning "$work/log" || fail "the MIME types have faults"
for type in $(sed -n 's/^MimeType=//p' "$work/tree/usr/share/applications/x9viewer.desktop" | tr ';' ' '); do
  [[ -e $work/mime/$type.xml ]] || fail "nothing knows the kind $type"
done
appstreamcli validate-tree --no-net "$work/tree"
# The package does not go to Debian's archive, so there is no bug that its first changelog entry closes.
lintian --allow-root --fail-on error,warning --suppress-tags initial-upload-closes-no-bugs "$package"

# --- on this machine

step "installing"
installing=yes
"${as_root[@]}" dpkg --install "$package" >"$work/log" 2>&1 || { cat "$work/log" >&2; fail "dpkg cannot install it"; }
mapfile -t installed < <(dpkg -L x9can)
for program in x9can x9can-demo x9can-socketcan x9viewer; do
  [[ $(command -v "$program") == "/usr/bin/$program" ]] || fail "$program is not found"
done

# As somebody who may not write into the program's folder, with a home that is new.
home=$work/home
mkdir "$home" "$work/tmp"
as_user=()
if ((EUID == 0)); then
  as_user=(setpriv --reuid=nobody --regid=nogroup --clear-groups)
  chmod 711 "$work"
  chown nobody:nogroup "$home" "$work/tmp"
fi
cd /
as_user+=(env -i "PATH=/usr/bin:/bin" "HOME=$home" "TMPDIR=$work/tmp" LANG=C.UTF-8
          QT_LOGGING_RULES=qt.qpa.xcb=false)

mkfifo "$work/display"
number=
for try in 1 2 3; do
  "${as_user[@]}" Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp \
    3<>"$work/display" >/dev/null 2>"$work/xvfb" &
  pids+=($!)
  ! read -rt 30 number <"$work/display" || break
  echo "test-package: try $try: Xvfb does not start:" >&2
  cat "$work/xvfb" >&2
done
[[ -n $number ]] || fail "there is no screen"
as_user+=("DISPLAY=:$number")
cp "$root/tools/x11-windows.py" "$work/tmp/"
chmod 644 "$work/tmp/x11-windows.py"
windows() { "${as_user[@]}" python3 "$work/tmp/x11-windows.py" "$@"; }

start() { # start <launcher> <working folder> <adapter library, empty for none>: the program is $program then
  "${as_user[@]}" "$1" >"$work/output" 2>&1 &
  program=$!
  pids+=("$program")
  windows show "$program" || { cat "$work/output" >&2; fail "$1 shows no window"; }
  local process=/proc/$program
  [[ $(readlink "$process/exe") == /usr/lib/x9can/X9CAN ]] || fail "$1 starts another program"
  [[ $(readlink "$process/cwd") == "$2" ]] || fail "$1 starts it in another folder"
  local adapter
  adapter=$(awk '/libControlCAN/ { print $6; exit }' "$process/maps")
  [[ $adapter == "$3" ]] || fail "$1 has loaded the adapter library '$adapter' and not '$3'"
}
ended() { # ended <expected status>...
  timeout 30 tail --pid="$program" -s 0.1 -f /dev/null || fail "the program does not end"
  local status=0
  wait "$program" || status=$?
  [[ " $* " == *" $status "* ]] || { cat "$work/output" >&2; fail "the program ended with $status"; }
}

folder=/usr/lib/x9can
declare -A places=([x9can-demo]=$folder/virtual-adapter [x9can-socketcan]=$folder/socketcan)
for launcher in x9can x9can-demo x9can-socketcan; do
  step "$launcher"
  where=${places[$launcher]:-$folder}
  library=${places[$launcher]:+$where/libControlCAN.so}
  start "$launcher" "$where" "$library"
  kill -TERM "$program"
  ended 143 0
  # What the killed one left behind must not be in the way, and the normal end takes it along.
  start "$launcher" "$where" "$library"
  windows close "$program" || fail "$launcher does not close"
  ended 0
done

step "x9viewer"
echo '(1700000000.000000) can0 100#01' >"$work/tmp/drive.log"
chmod 644 "$work/tmp/drive.log"
"${as_user[@]}" x9viewer "$work/tmp/drive.log" >"$work/output" 2>&1 &
program=$!
pids+=("$program")
windows show "$program" >"$work/title" || { cat "$work/output" >&2; fail "x9viewer shows no window"; }
grep -qxF "drive.log - X9Viewer" "$work/title" || fail "the window is called $(<"$work/title")"
[[ $(readlink "/proc/$program/exe") == "$folder/X9Viewer" ]] || fail "x9viewer starts another program"
windows close "$program" || fail "x9viewer does not close"
ended 0

step "what the programs wrote"
written=$(find "$home" ! -type d -printf '%P\n' |
          grep -vE '^\.config/X9CAN/Init\.ini$|^\.config/X9Viewer/X9Viewer\.ini$|^\.cache/fontconfig/') || (($? == 1))
[[ -z $written ]] || fail "in the home folder:"$'\n'"$written"
[[ $(find $folder | sort) == "$(printf '%s\n' "${installed[@]}" | grep "^$folder" | sort)" ]] ||
  fail "something was written to $folder"

step "removing"
"${as_root[@]}" touch $folder/Init.ini
"${as_root[@]}" dpkg --remove x9can >"$work/log" 2>&1 || { cat "$work/log" >&2; fail "dpkg cannot remove it"; }
[[ -e $folder/Init.ini ]] || fail "removing must leave the settings"
"${as_root[@]}" dpkg --purge x9can >"$work/log" 2>&1 || { cat "$work/log" >&2; fail "dpkg cannot purge it"; }
for path in "${installed[@]}"; do
  # Folders may be other packages', too.
  [[ ! -e $path ]] || { [[ -d $path ]] && dpkg -S "$path" >/dev/null 2>&1; } || fail "$path is left behind"
done
left=$(find /usr /etc /var/lib/dpkg -xdev \( -iname '*x9can*' -o -iname '*x9viewer*' \) -not -path "$root/*" 2>/dev/null || true)
[[ -z $left ]] || fail "left behind:"$'\n'"$left"

echo "The package is good: $(basename "$package")"
