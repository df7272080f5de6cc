#!/usr/bin/env bash
# tools/windows/test.sh [CTEST ARGUMENT...]   Builds for Windows (tools/windows/build.sh) and runs the tests under Wine on
# a virtual screen. Ends with 3 where Qt for Windows is not at hand.
set -euo pipefail
cd "$(dirname "$0")/../.."

tools/install-packages.sh run windows wine
tools/windows/build.sh

# Everything that Wine starts, its server too, needs the same screen: the script runs itself inside one.
if [[ -z ${X9_WINE_SCREEN:-} ]]; then
  exec env X9_WINE_SCREEN=yes xvfb-run -a -s "-screen 0 1400x1000x24" "$0" "$@"
fi

windows_path() { echo "Z:${1//\//\\}"; }
folder_of() { dirname "$(realpath "$(x86_64-w64-mingw32-g++-posix -print-file-name="$1")")"; }

libraries=$PWD/build/windows-libraries
WINEPATH="$(windows_path "$libraries/bin");$(windows_path "$(folder_of libstdc++-6.dll)")"
WINEPATH+=";$(windows_path "$(folder_of libwinpthread-1.dll)")"
export WINEPATH
QT_PLUGIN_PATH=$(windows_path "$libraries/plugins")
export QT_PLUGIN_PATH
export WINEPREFIX=$PWD/build/windows/wine
export WINEDEBUG=-all

rm -rf "$WINEPREFIX" build/windows/temp
mkdir build/windows/temp
trap 'wineserver --kill || true' EXIT
wineboot --init >/dev/null 2>&1
# Temporary files lie where programs of this computer can be told of them, too.
for variable in TEMP TMP; do
  wine reg add 'HKCU\Environment' /v "$variable" /d "$(windows_path "$PWD/build/windows/temp")" /f >/dev/null
done
# There is no window manager on this screen. Wine would wait two seconds for it whenever a window is hidden.
wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null
ctest --preset windows -j "$(nproc)" "$@"
