# Sourced by scripts that run Windows programs under Wine, on a screen of their own. Wine's server, which the first
# program starts, ends with the script.

windows_path() { echo "Z:${1//\//\\}"; }

# set_up_windows LOG COMMAND...   Has Wine make its Windows, or bring it up to date: the command is wineboot. Once in a long
# while that fails, and why is not known: what Wine said is shown then, and it is tried again, twice at most.
set_up_windows() {
  local log=$1 try code
  shift
  for try in 1 2 3; do
    code=0
    "$@" >"$log" 2>&1 || code=$?
    ((code)) || return 0
    echo "wine: try $try: wineboot ended with $code:" >&2
    cat "$log" >&2
  done
  return 1
}

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
  set_up_windows "$WINEPREFIX.log" wineboot --init
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
