# Sourced by scripts that run Windows programs under Wine, on screens of their own. The screens and Wine's servers end with
# the script.

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

# make_wine_screens PRESET COUNT   So many virtual screens, each with a Windows installation of its own, in
# build/PRESET/screens/<number>, from 1 on. screens.json there tells CTest of them. Programs find the DLLs of Qt and of the
# compiler.
make_wine_screens() {
  local compiler=x86_64-w64-mingw32-g++-posix exceptions=libgcc_s_seh-1.dll library
  [[ $1 != windows32 ]] || compiler=i686-w64-mingw32-g++-posix exceptions=libgcc_s_dw2-1.dll
  X9_SCREENS=$PWD/build/$1/screens
  export X9_SCREENS
  rm -rf "$X9_SCREENS"
  # Copies: an i386 system does not see the compiler's folders.
  mkdir -p "$X9_SCREENS/compiler"
  for library in libstdc++-6.dll libwinpthread-1.dll "$exceptions"; do
    cp "$("$compiler" -print-file-name="$library")" "$X9_SCREENS/compiler"
  done
  WINEPATH="$(windows_path "$PWD/build/$1-libraries/bin");$(windows_path "$X9_SCREENS/compiler")"
  export WINEPATH
  export WINEDEBUG=-all
  choose_fonts
  screen_ids=()
  screen_count=$2
  trap end_wine_screens EXIT
  local screen
  for ((screen = 1; screen <= screen_count; ++screen)); do
    start_screen "$X9_SCREENS/$screen"
  done

  # One installation is made, the others are copies.
  use_screen 1
  set_up_windows "$X9_SCREENS/log" wineboot --init
  # There is no window manager on these screens. Wine would wait two seconds for it whenever a window is hidden.
  wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null
  wineserver --kill # which writes the registry
  wineserver --wait
  for ((screen = 2; screen <= screen_count; ++screen)); do
    cp -a "$X9_SCREENS/1/wine" "$X9_SCREENS/$screen/wine"
  done
  # One program runs all the time, waiting for its input. When the last one ends, Wine's services end a little later, and
  # the next program waits ten seconds for them.
  for ((screen = 1; screen <= screen_count; ++screen)); do
    use_screen "$screen"
    mkfifo "$WINEPREFIX/no-input"
    wine cmd <>"$WINEPREFIX/no-input" >/dev/null 2>&1 &
  done

  printf '{"version": {"major": 1, "minor": 0}, "local": [{"screens": [%s]}]}\n' \
    "$(for ((screen = 1; screen <= screen_count; ++screen)); do echo "{\"id\": \"$screen\", \"slots\": 1}"; done | paste -sd,)" \
    >"$X9_SCREENS/screens.json"
}

# choose_fonts   The fonts of the host that Wine shows its programs, beside its own, in a folder of their own: sizes depend on
# them, on every computer others are installed, and Wine takes whole folders.
choose_fonts() {
  local font fonts=$X9_SCREENS/fonts
  mkdir -p "$fonts"
  while read -r font; do
    ln -s "$font" "$fonts"
  done < <(dpkg -L fonts-dejavu-core fonts-noto-cjk | grep -E '\.tt[cf]$')
  cat >"$fonts.conf" <<END
<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig><dir>$fonts</dir><cachedir>$fonts.cache</cachedir></fontconfig>
END
  export FONTCONFIG_FILE=$fonts.conf
}

# start_screen FOLDER   A screen that only this user can reach; FOLDER/display is its number.
start_screen() {
  local try
  mkdir -p "$1"
  for try in 1 2 3; do
    Xvfb -displayfd 3 -screen 0 1400x1000x24 -nolisten tcp 3>"$1/display" >/dev/null 2>"$1/log" &
    screen_ids+=($!)
    # It writes its number when it is ready.
    timeout 30 sh -c 'until [ -s "$1" ] || ! kill -0 "$2"; do sleep 0.05; done' wait "$1/display" $! || true
    [[ ! -s $1/display ]] || return 0
    echo "wine: try $try: Xvfb does not start:" >&2
    cat "$1/log" >&2
  done
  return 1
}

# use_screen NUMBER   Programs that are started now appear there.
use_screen() {
  DISPLAY=:$(<"$X9_SCREENS/$1/display")
  WINEPREFIX=$X9_SCREENS/$1/wine
  export DISPLAY WINEPREFIX
}

end_wine_screens() {
  local screen
  for ((screen = 1; screen <= screen_count; ++screen)); do
    WINEPREFIX=$X9_SCREENS/$screen/wine wineserver --kill || true
  done
  kill "${screen_ids[@]}" 2>/dev/null || true
}

# set_temporary_folders FOLDER   A folder below it for each screen, where programs of this computer can be told of the files
# in it, too.
set_temporary_folders() {
  local screen path
  local writers=()
  for ((screen = 1; screen <= screen_count; ++screen)); do
    mkdir -p "$1/$screen"
    path=$(windows_path "$1/$screen")
    printf 'Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\Environment]\r\n"TEMP"="%s"\r\n"TMP"="%s"\r\n' \
      "${path//\\/\\\\}" "${path//\\/\\\\}" | iconv -t UTF-16 >"$X9_SCREENS/$screen/temporary.reg"
    use_screen "$screen"
    wine reg import "$(windows_path "$X9_SCREENS/$screen/temporary.reg")" >/dev/null 2>&1 &
    writers+=($!)
  done
  wait "${writers[@]}"
}
