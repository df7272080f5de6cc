# Sourced by scripts that run Windows programs under Wine, on a screen of their own. Wine's server, which the first
# program starts, ends with the script.

windows_path() { echo "Z:${1//\//\\}"; }

# make_wine_prefix FOLDER   A new Windows installation in the folder; all that follows uses it. Programs find the DLLs of
# Qt and of the compiler.
make_wine_prefix() {
  folder_of() { dirname "$(realpath "$(x86_64-w64-mingw32-g++-posix -print-file-name="$1")")"; }
  local libraries=$PWD/build/windows-libraries
  WINEPATH="$(windows_path "$libraries/bin");$(windows_path "$(folder_of libstdc++-6.dll)")"
  WINEPATH+=";$(windows_path "$(folder_of libwinpthread-1.dll)")"
  export WINEPATH
  WINEPREFIX=$(realpath -m "$1")
  export WINEPREFIX
  export WINEDEBUG=-all
  rm -rf "$WINEPREFIX"
  trap 'wineserver --kill || true' EXIT
  wineboot --init >/dev/null 2>&1 || { echo "wine: there is no Windows: wineboot ended with $?." >&2; exit 1; }
  # One program runs all the time, waiting for its input. When the last one ends, Wine's services end a little later, and
  # the next program waits ten seconds for them.
  mkfifo "$WINEPREFIX/no-input"
  wine cmd <>"$WINEPREFIX/no-input" >/dev/null 2>&1 &
  # There is no window manager on this screen. Wine would wait two seconds for it whenever a window is hidden.
  wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null
}

# set_temporary_folder FOLDER   Where programs of this computer can be told of the files in it, too.
set_temporary_folder() {
  local variable
  for variable in TEMP TMP; do
    wine reg add 'HKCU\Environment' /v "$variable" /d "$(windows_path "$1")" /f >/dev/null
  done
}
