#!/usr/bin/env bash
# tools/windows/test-package.sh [--32]   Builds and packs the Windows program, checks what the portable ZIP and the
# installer hold, and tries both under Wine on a virtual screen: starts the unpacked program and works with it, installs for
# the user and for all users, replaces an older version, uninstalls; packs once more, signed. --32 does so with the 32-bit
# program, in an i386 system (tools/windows/wine32.sh); where there can be none it checks the packages, starts nothing, and says
# so loudly. Ends with 3 where Qt for Windows is not at hand.
set -Eeuo pipefail
cd "$(dirname "$0")/../.."
root=$PWD

fail() { echo "windows/test-package: $*" >&2; exit 1; }
trap 'echo "windows/test-package: line $LINENO ended with $?: $BASH_COMMAND" >&2' ERR
step() { echo "== $*"; }

arguments=("$@")
preset=windows bits=64 triplet=x86_64-w64-mingw32 exceptions=libgcc_s_seh-1 format=pei-x86-64 of_wine=x86_64 options=()
marks=(HIGH_ENTROPY_VA DYNAMIC_BASE NX_COMPAT)
if [[ ${1:-} == --32 ]]; then
  preset=windows32 bits=32 triplet=i686-w64-mingw32 exceptions=libgcc_s_dw2-1 format=pei-i386 of_wine=i386 options=(--32)
  marks=(DYNAMIC_BASE NX_COMPAT)
fi

# Everything that Wine starts, its server too, needs the same screen: the script runs itself inside one.
if [[ -z ${X9_WINE_SCREEN:-} ]]; then
  tools/install-packages.sh build run windows wine windows-package
  inside=() where=yes
  if ((bits == 32)); then
    code=0
    tools/windows/wine32.sh true || code=$?
    case $code in
      0) inside=(tools/windows/wine32.sh) ;;
      3) where=nowhere ;;
      *) exit "$code" ;;
    esac
  fi
  exec "${inside[@]}" env "X9_WINE_SCREEN=$where" xvfb-run -a -s "-screen 0 1280x900x24 -dpi 96" \
    tools/windows/test-package.sh "${arguments[@]}"
fi

source tools/windows/wine.sh
source tools/loudly.sh
work=$(mktemp -d)
# Names that are not ASCII, in the console's encoding, and an environment that knows nothing of the build.
wine=(env -i "PATH=${X9_WINE_ROOT:+$X9_WINE_ROOT/x9-commands:}/usr/bin:/bin" "HOME=$work/home" "DISPLAY=$DISPLAY" "XAUTHORITY=${XAUTHORITY:-}" LC_ALL=C.UTF-8
      "WINEPREFIX=$work/wine" WINEDEBUG=-all WINEDLLOVERRIDES=winemenubuilder.exe=d)
clean_up() {
  "${wine[@]}" wineserver --kill || true
  rm -rf "$work"
}
trap clean_up EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

# --- the packages

step "building and packing"
tools/windows/build.sh "${options[@]}" X9CAN X9Viewer x9capture ControlCAN x9_program_under_test >"$work/log" 2>&1 || { code=$?; tail -50 "$work/log" >&2; exit $code; }
pack() { # pack <folder> [<argument of cpack>...]
  # Loose permissions and the time zone of the one who builds must not get into the packages.
  (umask 077 && TZ=Asia/Shanghai cpack --config "build/$preset/CPackConfig.cmake" -B "$@") >"$work/log" 2>&1 ||
    { cat "$work/log" >&2; fail "cpack failed"; }
}
pack "$work/first"
pack "$work/second"
for name in .zip -setup.exe; do
  cmp "$work/first/"*"$name" "$work/second/"*"$name" || fail "packing twice does not give the same package"
done
zip=$(echo "$work/first/"X9CAN-*"-windows-${bits}bit.zip")
setup=$(echo "$work/first/"X9CAN-*"-windows-${bits}bit-setup.exe")
name=$(basename "$zip" .zip)
version=${name#X9CAN-}
version=${version%-windows-*}
# What an older version would be: another number, and a file that is gone now.
mkdir -p "$work/retired/plugins/retired"
touch "$work/retired/plugins/retired/retired.dll"
pack "$work/older" -G NSIS -D CPACK_PACKAGE_VERSION=1.0.0 -D "CPACK_INSTALLED_DIRECTORIES=$work/retired;."
older=$(echo "$work/older/"*-setup.exe)

step "what is in the ZIP"
# As a user may have it: Chinese letters, blanks, and the longest path that Windows takes, 259 characters with the drive.
place="$work/测试 文件夹"
longest=$(unzip -Z1 "$zip" | awk 'length > longest { longest = length } END { print longest }')
room=$((259 - 2 - $(printf '%s//' "$place" | LC_ALL=C.UTF-8 wc -m) - longest))
((room > 50 && room < 200)) || fail "there is room for $room characters"
place+=/$(printf 'a long path %.0s' {1..20} | cut -c "1-$((room - 1))")x
mkdir -p "$place"
unzip -q "$zip" -d "$place"
folder=$place/$name
[[ $(ls "$place") == "$name" ]] || fail "the ZIP does not unpack to one folder"
(cd "$folder" && find . ! -type d -printf '%P\n' | sort) >"$work/paths"
unexpected=$(grep -vxE "$(paste -sd'|' <<END
(X9CAN|X9Viewer|x9capture)\.exe
X9CAN demo\.cmd
(Qt5(Concurrent|Core|Gui|Network|Widgets)|qwt|$exceptions|libsodium-23|libstdc\+\+-6|libwinpthread-1)\.dll
qt\.conf
plugins/(platforms/qwindows|imageformats/qico)\.dll
translations/qtbase_zh_CN\.qm
virtual-adapter/(ControlCAN\.dll|example\.virtual-adapter\.json)
doc/(changelog|filters|formats|guide|guide\.zh|virtual-adapter)\.html
doc/licences\.txt
doc/licences/[A-Za-z0-9.-]+\.txt
doc/screenshots/[a-z-]+\.png
END
)" "$work/paths") || (($? == 1)) # 2: grep itself failed
[[ -z $unexpected ]] || fail "files outside the layout:"$'\n'"$unexpected"
while read -r binary; do
  [[ $("$triplet-objdump" -f "$folder/$binary" 2>&1) == *"file format $format"* ]] ||
    fail "$binary is not for $bits-bit programs"
done < <(grep -E '\.(exe|dll)$' "$work/paths")
for binary in X9CAN.exe X9Viewer.exe x9capture.exe virtual-adapter/ControlCAN.dll; do
  "$triplet-objdump" -p "$folder/$binary" >"$work/pe"
  for mark in "${marks[@]}"; do
    grep -qw "$mark" "$work/pe" || fail "$binary was built without $mark"
  done
  # Wine cannot show what it is for: no DLL is taken from the working directory by its name alone.
  [[ $binary != X9[CV]* ]] || grep -qw SetDllDirectoryW "$work/pe" || fail "$binary looks for DLLs where it is started"
  grep -qF 'stack smashing detected' "$folder/$binary" || fail "$binary was built without a guard of its stack"
done
# On 64-bit Windows a 32-bit program may have 4 GB of memory instead of 2.
for binary in X9CAN.exe X9Viewer.exe; do
  "$triplet-objdump" -p "$folder/$binary" >"$work/pe"
  grep -qw 'large address aware' "$work/pe" || fail "$binary leaves half of the memory alone"
done
for path in X9CAN.exe X9Viewer.exe x9capture.exe qwt.dll "X9CAN demo.cmd" qt.conf plugins/platforms/qwindows.dll plugins/imageformats/qico.dll \
            translations/qtbase_zh_CN.qm virtual-adapter/ControlCAN.dll \
            virtual-adapter/example.virtual-adapter.json doc/guide.html doc/guide.zh.html doc/formats.html \
            doc/virtual-adapter.html doc/changelog.html doc/licences.txt \
            doc/licences/{Qt,Qwt,LGPL-2.1,LGPL-3,GPL-3,GCC-runtime,libsodium,mingw-w64,nlohmann-json,Qt-translations}.txt; do
  [[ -s $folder/$path ]] || fail "$path is missing"
done
! grep -rlF "$root" "$folder" || fail "these files tell where they were built"
while read -r picture; do
  [[ -s $folder/doc/$picture ]] || fail "a page shows $picture, which is missing"
done < <(grep -ohE 'src="[^"]+"' "$folder"/doc/*.html | sed 's/src="//; s/"$//' | sort -u)

# What no package needs to bring, as Windows 10 and later have it.
windows_has=" advapi32 bcrypt crypt32 d3d11 dnsapi dwmapi dxgi gdi32 imm32 iphlpapi kernel32 mpr msvcrt netapi32 ole32
 oleaut32 secur32 shell32 user32 userenv uxtheme version winmm ws2_32 wtsapi32 "
while read -r binary; do
  "$triplet-objdump" -h "$folder/$binary" >"$work/sections"
  ! grep -E '\.(debug|stab|gnu_debug)' "$work/sections" || fail "$binary has debug information"
  "$triplet-objdump" -t "$folder/$binary" >"$work/symbols"
  grep -q 'no symbols' "$work/symbols" || fail "$binary is not stripped"
  "$triplet-objdump" -p "$folder/$binary" >"$work/tables"
  while read -r import; do
    base=${import%.*}
    [[ -e $folder/$import || $windows_has == *[[:space:]]${base,,}[[:space:]]* ]] ||
      fail "$binary needs $import, which neither the package nor Windows has"
  done < <(sed -n 's/^.*DLL Name: //p' "$work/tables")
done < <(grep -E '\.(exe|dll)$' "$work/paths")

# --- under Wine

if [[ $X9_WINE_SCREEN == nowhere ]]; then
  loudly "THE 32-BIT PACKAGES WERE CHECKED, BUT NOTHING IN THEM WAS STARTED OR INSTALLED:" \
    "there is no i386 system on this machine; docs/windows.md tells more."
  exit 0
fi

step "Wine"
mkdir "$work/home"
mkfifo "$work/nothing"
start_wine() {
  set_up_windows "$work/log" "${wine[@]}" wineboot
  # One program that runs all the time: Wine ends with the last one, and what starts just then fails.
  "${wine[@]}" wine cmd <>"$work/nothing" >/dev/null 2>&1 &
}
start_wine
user=$(basename "$(find "$work/wine/drive_c/users" -mindepth 1 -maxdepth 1 ! -name Public)")
drive=$work/wine/drive_c
find "$drive" | sort >"$work/before"

windows() { "${wine[@]}" python3 "$root/tools/x11-windows.py" "$@"; }
running() { # running <name>: the id of the program in this Wine
  local process
  for process in /proc/[0-9]*; do
    if [[ $(cat "$process/comm" 2>/dev/null) == "$1" ]] &&
       tr '\0' '\n' 2>/dev/null <"$process/environ" | grep -qxF "WINEPREFIX=$work/wine"; then
      basename "$process"
      return
    fi
  done
  return 1
}
start() { # start <program folder> <working folder> <command>...: the program is $program then, its starter $starter
  local at=$1 where=$2
  shift 2
  "${wine[@]}" "$@" >"$work/output" 2>&1 &
  starter=$!
  local tries
  for ((tries = 0; tries < 300; ++tries)); do
    ! program=$(running X9CAN.exe) || break
    sleep 0.1
  done
  [[ -n $program ]] || { cat "$work/output" >&2; fail "$* starts no program"; }
  windows show "$program" >"$work/title" || { cat "$work/output" >&2; fail "$* shows no window"; }
  grep -qxF "X9CAN V$version" "$work/title" || fail "the window is called $(<"$work/title")"
  # Within the i386 system, folders are where the system sees them.
  local cwd
  cwd=$(readlink "/proc/$program/cwd")
  [[ ${cwd#"${X9_WINE_ROOT:-}"} == "$where" ]] || fail "$* starts it in $cwd"
  local loaded expected
  # Everything that is no part of Wine.
  loaded=$(sed -n 's|^[^/]* /|/|p' "/proc/$program/maps" | sed "s|^${X9_WINE_ROOT:-}/|/|" | sort -u |
           grep -iE '\.(dll|exe)$' | grep -v "/wine/$of_wine-" | grep -v "^$drive/windows/") || true
  expected=$(printf "$at/%s\n" X9CAN.exe Qt5{Core,Gui,Network,Widgets}.dll "$exceptions.dll" libsodium-23.dll \
                                  libstdc++-6.dll libwinpthread-1.dll plugins/platforms/qwindows.dll plugins/imageformats/qico.dll
             [[ ! -e $where/ControlCAN.dll ]] || echo "$where/ControlCAN.dll")
  diff <(sort <<<"$expected") <(sort <<<"$loaded") || fail "these files should be loaded (<), these are (>)"
}
close() { # close: in the normal way
  windows close "$program" || fail "the program does not close"
  local status=0
  wait "$starter" || status=$?
  ((status == 0)) || { cat "$work/output" >&2; fail "the program ended with $status"; }
  program=
}
# view <folder> <command>...: starts the viewer of a folder with the capture $work/drive.log, and closes it
view() {
  local at=$1 tries title
  shift
  "${wine[@]}" "$@" "$(windows_path "$work/drive.log")" >"$work/output" 2>&1 &
  starter=$!
  for ((tries = 0; tries < 300; ++tries)); do
    ! program=$(running X9Viewer.exe) || break
    sleep 0.1
  done
  [[ -n $program ]] || { cat "$work/output" >&2; fail "$* starts no viewer"; }
  windows show "$program" >"$work/title" || { cat "$work/output" >&2; fail "$* shows no window"; }
  title=$(<"$work/title")
  [[ $title == "drive.log - X9Viewer" ]] || fail "the window is called $title"
  sed -n 's|^[^/]* /|/|p' "/proc/$program/maps" | sed "s|^${X9_WINE_ROOT:-}/|/|" | sort -u >"$work/loaded"
  "$triplet-objdump" -p "$at/X9Viewer.exe" | sed -n 's/^.*DLL Name: //p' | while read -r import; do
    [[ ! -e $at/$import ]] || grep -qxF "$at/$import" "$work/loaded" || fail "$import is not loaded from $at"
  done
  close
}
echo '(1700000000.000000) can0 100#01' >"$work/drive.log"
program=
starter=

step "the unpacked program, in a folder with Chinese letters, blanks and a long path"
cd "$folder"
start "$folder" "$folder" wine X9CAN.exe
close
step "the viewer in it"
view "$folder" wine X9Viewer.exe
step "X9CAN demo.cmd"
start "$folder" "$folder/virtual-adapter" wine cmd /c "X9CAN demo.cmd"
close
cd "$root"
diff "$work/paths" <(cd "$folder" && find . ! -type d -printf '%P\n' | sort) ||
  fail "something was written to the folder"

step "the unpacked program at work"
# The program with a script in it, as the tests have it, in the package's folder and with the package's libraries.
session="$work/session"
cp -r "$folder" "$session"
cp "build/$preset/tests/program/x9_program_under_test.exe" "build/$preset-libraries/bin/Qt5Test.dll" "$session"
cd "$session/virtual-adapter"
"${wine[@]}" X9_STEPS=openCAN,receive,save,wait,close "X9_LOG=$(windows_path "$session/log")" \
  "X9_REAL_TIME=$(windows_path "$session/报文.csv")" wine ../x9_program_under_test.exe >"$work/output" 2>&1 &
starter=$!
saved=0
for ((tries = 0; tries < 600 && saved < 200; ++tries)); do
  [[ ! -e $session/报文.csv ]] || saved=$(wc -l <"$session/报文.csv")
  kill -0 "$starter" 2>/dev/null || break
  sleep 0.1
done
touch go
wait "$starter" || { cat "$work/output" "$session/log" >&2; fail "the program under test ends with $?"; }
cd "$root"
sed -i 's/\r$//' "$session/log"
((saved >= 200)) || { cat "$session/log" >&2; fail "$saved lines are saved"; }
grep -qx 'receiving on 2 channels' "$session/log" || { cat "$session/log" >&2; fail "frames do not arrive on both channels"; }
grep -qE '^closing with [0-9]{3,} rows' "$session/log" || { cat "$session/log" >&2; fail "the program did not close"; }
starter=
rm -r "$session"

# --- the installer

uninstall_key='Software\Microsoft\Windows\CurrentVersion\Uninstall\X9CAN'
registry() { # registry <root> <name>: a value of the installation
  # On a Chinese Windows, what a program prints is in that code page.
  "${wine[@]}" wine reg query "$1\\$uninstall_key" /v "$2" 2>/dev/null | iconv -f GBK | tr -d '\r' | awk -v name="$2" '
    $1 == name { sub(/^ *[^ ]+ +REG_[A-Z]+ +/, ""); print }'
}
wine_path() { "${wine[@]}" winepath -w "$1" 2>/dev/null; }
run_setup() { # run_setup <expected code> <program> <argument>...
  local code=0
  "${wine[@]}" wine "${@:2}" || code=$?
  ((code == $1)) || fail "${*:2} ends with $code"
}
check_registry() { # check_registry <root> <folder> <version>
  local at pair
  at=$(wine_path "$2")
  for pair in "DisplayName=X9CAN ($bits-bit)" "DisplayVersion=$3" "Publisher=X9CAN developers" "DisplayIcon=$at\\X9CAN.exe" \
              "InstallLocation=$at" "UninstallString=\"$at\\Uninstall.exe\"" \
              "QuietUninstallString=\"$at\\Uninstall.exe\" /S" NoModify=0x1 NoRepair=0x1; do
    [[ $(registry "$1" "${pair%%=*}") == "${pair#*=}" ]] ||
      fail "the registry has ${pair%%=*} '$(registry "$1" "${pair%%=*}")' and not '${pair#*=}'"
  done
  local size
  size=$(registry "$1" EstimatedSize)
  # In KiB; the sum of the files, give or take the rounding of each.
  local files
  files=$((($(find "$folder" -type f -printf '%s\n' | paste -sd+)) / 1024))
  ((size > files - 100 && size < files + 200)) || fail "EstimatedSize is $((size)) KiB, the files have $files"
}
check_files() { # check_files <folder>: what the ZIP has, and the uninstaller
  diff -r "$folder" "$1" >"$work/log" || true
  [[ $(<"$work/log") == "Only in $1: Uninstall.exe" ]] ||
    { cat "$work/log" >&2; fail "installed is not what was packed"; }
}
class() { # class <root> <key> [<name>]: a value below Software\Classes, by default the key's own
  local which=(/ve)
  [[ -z ${3:-} ]] || which=(/v "$3")
  "${wine[@]}" wine reg query "$1\\Software\\Classes\\$2" "${which[@]}" 2>/dev/null | iconv -f GBK | tr -d '\r' |
    sed -n 's/^ .*REG_SZ *//p'
}
endings="can canfd csv txt log candump asc blf pcapng ntar pcap cap trc"
check_offers() { # check_offers <root> <folder>: captures may be opened with the viewer, and are not by themselves
  local at ending
  at=$(wine_path "$2")
  for key in 'Applications\X9Viewer.exe' X9Viewer.Capture; do
    [[ $(class "$1" "$key\\shell\\open\\command") == "\"$at\\X9Viewer.exe\" \"%1\"" ]] || fail "$key opens nothing with the viewer"
  done
  for ending in $endings; do
    "${wine[@]}" wine reg query "$1\\Software\\Classes\\.$ending\\OpenWithProgids" /v X9Viewer.Capture >/dev/null 2>&1 ||
      fail "the viewer is not offered for .$ending"
    [[ $(class "$1" ".$ending") != X9Viewer* ]] || fail "the viewer takes .$ending for itself"
  done
}
check_no_offers() { # check_no_offers <root>
  ! "${wine[@]}" wine reg query "$1\\Software\\Classes" /s 2>/dev/null | grep -a X9Viewer || fail "traces of the viewer stay"
}
check_shortcuts() { # check_shortcuts <folder of the start menu> <name>...
  diff <(printf '%s.lnk\n' "${@:2}" | sort) <(ls "$1/X9CAN" | sort) ||
    fail "these shortcuts should be there (<), these are (>)"
}
uninstall() { # uninstall <root> <folder>
  run_setup 0 "$(wine_path "$2")\\Uninstall.exe" /S
  # It goes on in a copy of itself, and has done everything when the registry does not know the program any more.
  local tries
  for ((tries = 0; tries < 300; ++tries)); do
    [[ -n $(registry "$1" DisplayName) ]] || return 0
    sleep 0.1
  done
  fail "the registry still has the program"
}
left() { # left: what there is more on the drive than before, without what Wine and the programs' font cache write
  comm -13 "$work/before" <(find "$drive" | sort) | sed "s|^$drive/||" |
    grep -vE '^windows/|^ProgramData/Microsoft|^users/[^/]+/(AppData/)?(Local/)?Temp(/|$)' |
    grep -vE '^users/[^/]+/AppData/(Roaming/Microsoft|Local(/(Programs|X9CAN|X9Viewer(/X9Viewer\.ini)?))?$)' || true
}
english=("X9CAN" "X9Viewer" "X9CAN (virtual adapter)" "X9CAN guide" "Uninstall X9CAN")
chinese=("X9CAN" "X9Viewer" "X9CAN（虚拟适配器）" "X9CAN 用户手册" "卸载 X9CAN")
user_menu="$drive/users/$user/AppData/Roaming/Microsoft/Windows/Start Menu/Programs"
all_menu="$drive/ProgramData/Microsoft/Windows/Start Menu/Programs"

step "an older version for the user"
installed="$drive/users/$user/AppData/Local/Programs/X9CAN"
run_setup 0 "$older" /S /CurrentUser
[[ -e $installed/plugins/retired/retired.dll ]] || fail "the older version lacks its file"
check_registry HKCU "$installed" 1.0.0
[[ -z $(registry HKLM DisplayName) ]] || fail "installing for the user writes to the registry of all"
# What is the user's.
printf '[General]\nlanguage=1\n' >"$installed/Init.ini"
echo "frame" >"$installed/报文 1.csv"
cp "$folder/virtual-adapter/ControlCAN.dll" "$installed/ControlCAN.dll"
cp "$folder/virtual-adapter/example.virtual-adapter.json" "$installed/virtual-adapter/virtual-adapter.json"
mkdir "$work/users-own" "$work/users-own/virtual-adapter"
own=(Init.ini "报文 1.csv" ControlCAN.dll virtual-adapter/virtual-adapter.json)
for path in "${own[@]}"; do cp "$installed/$path" "$work/users-own/$path"; done

step "this version over it"
run_setup 0 "$setup" /S
check_registry HKCU "$installed" "$version"
check_shortcuts "$user_menu" "${english[@]}"
check_offers HKCU "$installed"
[[ ! -e $installed/plugins/retired ]] || fail "a file of the older version stays"
for path in "${own[@]}"; do
  cmp "$work/users-own/$path" "$installed/$path" || fail "installing changes the user's $path"
  mv "$installed/$path" "$work/users-own/$path"
done
check_files "$installed"

step "the installed program"
menu='C:\users\'$user'\AppData\Roaming\Microsoft\Windows\Start Menu\Programs\X9CAN\'
start "$installed" "$installed" wine start /wait "${menu}X9CAN.lnk"
step "while it runs"
run_setup 2 "$setup" /S
run_setup 2 "$(wine_path "$installed")\\Uninstall.exe" /S "_?=$(wine_path "$installed")"
check_files "$installed"
close
start "$installed" "$installed/virtual-adapter" wine start /wait "${menu}X9CAN (virtual adapter).lnk"
close
view "$installed" wine start /wait "${menu}X9Viewer.lnk"
check_files "$installed"

step "uninstalling leaves what is the user's"
for path in "${own[@]}"; do mv "$work/users-own/$path" "$installed/$path"; done
uninstall HKCU "$installed"
diff <(printf '%s\n' "${own[@]}" | sort) <(cd "$installed" && find . -type f -printf '%P\n' | sort) ||
  fail "these files should stay (<), these do (>)"
rm -r "$installed"
check_no_offers HKCU
[[ ! -e $user_menu/X9CAN ]] || fail "shortcuts stay"
[[ -z $(left) ]] || fail "left behind:"$'\n'"$(left)"

step "for all users, on a Chinese Windows"
mkdir "$work/locales"
localedef -i zh_CN -f UTF-8 "$work/locales/zh_CN.UTF-8"
"${wine[@]}" wineserver --kill
wine+=(LC_ALL=zh_CN.UTF-8 "LOCPATH=$work/locales")
start_wine
installed="$drive/Program Files/X9CAN"
run_setup 0 "$setup" /S /AllUsers /Desktop
check_registry HKLM "$installed" "$version"
[[ -z $(registry HKCU DisplayName) ]] || fail "installing for all users writes to the user's registry"
check_files "$installed"
check_shortcuts "$all_menu" "${chinese[@]}"
check_offers HKLM "$installed"
[[ ! -e $user_menu/X9CAN ]] || fail "installing for all users puts shortcuts into the user's menu"
[[ -e $drive/users/Public/Desktop/X9CAN.lnk ]] || fail "no icon on the desktop"
start "$installed" "$installed/virtual-adapter" \
  wine start /wait 'C:\ProgramData\Microsoft\Windows\Start Menu\Programs\X9CAN\X9CAN（虚拟适配器）.lnk'
close
# Once more, and the choice of the desktop icon is kept.
run_setup 0 "$setup" /S
check_files "$installed"
[[ -e $drive/users/Public/Desktop/X9CAN.lnk ]] || fail "installing again removes the icon from the desktop"

step "into another folder"
run_setup 0 "$setup" /S /AllUsers '/D=C:\工具\X9CAN'
[[ ! -e $installed ]] || fail "the installation in the folder before stays"
installed="$drive/工具/X9CAN"
check_registry HKLM "$installed" "$version"
run_setup 0 "$setup" /S
check_files "$installed"
uninstall HKLM "$installed"
rmdir "$drive/工具"
check_no_offers HKLM
[[ ! -e $all_menu/X9CAN ]] || fail "shortcuts stay"
[[ -z $(left) ]] || fail "left behind:"$'\n'"$(left)"

# --- signatures

step "signed packages"
mkdir "$work/publisher" "$work/signed-zip"
openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj "/CN=X9CAN test" -addext extendedKeyUsage=codeSigning \
  -keyout "$work/publisher/key.pem" -out "$work/publisher/certificate.pem" 2>"$work/log" ||
  { cat "$work/log" >&2; fail "no certificate"; }
is_signed() { # is_signed <file>: by that publisher, and unchanged since
  osslsigncode verify -CAfile "$work/publisher/certificate.pem" -in "$1" >"$work/log" 2>&1
}
sign() { tools/windows/sign.sh "$@" >"$work/log" 2>&1; }
cp "$folder/X9CAN.exe" "$work/publisher/X9CAN.exe"
! is_signed "$work/publisher/X9CAN.exe" || fail "a program without a signature passes for signed"
! sign "$work/publisher/X9CAN.exe" || fail "something is signed without a certificate"
! sign --certificate "$work/publisher/certificate.pem" "$work/publisher/X9CAN.exe" || fail "something is signed without a key"
cmp "$folder/X9CAN.exe" "$work/publisher/X9CAN.exe" || fail "what cannot be signed is changed"
sign --certificate "$work/publisher/certificate.pem" --key "$work/publisher/key.pem" "$work/publisher/X9CAN.exe"
is_signed "$work/publisher/X9CAN.exe" || { cat "$work/log" >&2; fail "a signed program does not pass"; }
printf x | dd of="$work/publisher/X9CAN.exe" bs=1 seek=4096 conv=notrunc status=none
! is_signed "$work/publisher/X9CAN.exe" || fail "a signed program that was changed passes"

X9_SIGN_CERTIFICATE=$work/publisher/certificate.pem X9_SIGN_KEY=$work/publisher/key.pem pack "$work/signed"
unzip -q "$work/signed/$name.zip" -d "$work/signed-zip"
installed="$drive/Program Files/X9CAN"
run_setup 0 "$work/signed/$name-setup.exe" /S /AllUsers
while read -r binary; do
  # Signed once for each package, and so with different times.
  is_signed "$work/signed-zip/$name/$binary" || fail "$binary in the ZIP is not signed"
  is_signed "$installed/$binary" || fail "the installed $binary is not signed"
done < <(grep -E '\.(exe|dll)$' "$work/paths")
is_signed "$work/signed/$name-setup.exe" || fail "the installer is not signed"
is_signed "$installed/Uninstall.exe" || fail "the uninstaller is not signed"
uninstall HKLM "$installed"

echo "The packages are good: $(basename "$zip"), $(basename "$setup")"
