# Sourced by scripts that need to know where Qt and the other libraries for Windows are. PRESET is windows or windows32.

# qt_archive PRESET   The archive of a folder of Qt that is looked for.
qt_archive() {
  case $1 in
    windows) echo "${X9_QT_WINDOWS_ARCHIVE:-../shared/qt5-windows.tar.xz}" ;;
    windows32) echo "${X9_QT_WINDOWS32_ARCHIVE:-../shared/qt5-windows32.tar.xz}" ;;
  esac
}

# qt_source PRESET   The folder that tools/windows/build-qt.sh made, or else the archive. Fails where there is neither.
qt_source() {
  if [[ -d build/qt-$1 ]]; then
    echo "build/qt-$1"
  elif [[ -f $(qt_archive "$1") ]]; then
    qt_archive "$1"
  else
    return 1
  fi
}

# The other libraries, for both presets in one archive.
libraries_archive=${X9_WINDOWS_LIBRARIES_ARCHIVE:-../shared/windows-libraries.tar.xz}

# libraries_source PRESET   The folder that tools/windows/build-libraries.sh made, or else the archive. Fails where there is
# neither.
libraries_source() {
  if [[ -d build/libraries-$1 ]]; then
    echo "build/libraries-$1"
  elif [[ -f $libraries_archive ]]; then
    echo "$libraries_archive"
  else
    return 1
  fi
}
