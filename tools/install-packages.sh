#!/usr/bin/env bash
# tools/install-packages.sh GROUP...   Installs what is missing of the named groups (build, run, witness, check, socketcan,
# coverage, docs, fuzz, windows, windows-libraries, windows-qt, wine, wine32, windows-package, package) from Debian's
# packages, quietly; does nothing when all is there. As root, or through sudo.
set -euo pipefail

declare -A packages=(
  [build]="cmake ninja-build g++ ccache mold qtbase5-dev qttools5-dev-tools nlohmann-json3-dev libsodium-dev libqwt-qt5-dev
           zlib1g-dev libdeflate-dev librsvg2-bin icoutils"
  [run]="xvfb xauth fonts-noto-cjk libqt5gui5 qttranslations5-l10n python3 minisign"
  [check]="clang-format clang-tidy can-utils"
  [socketcan]="qemu-system-x86 busybox-static cpio can-utils iproute2 util-linux"
  [coverage]="gcovr python3"
  [docs]="pngquant"
  [fuzz]="clang libclang-rt-14-dev"
  [windows]="g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix qttranslations5-l10n xz-utils"
  [windows-libraries]="autoconf automake libtool make patch dpkg-dev xz-utils"
  [windows-qt]="g++ make perl"
  [wine]="wine wine64 fonts-wine fonts-dejavu-core fonts-noto-cjk locales"
  [wine32]="debootstrap debian-archive-keyring util-linux"
  [windows-package]="osslsigncode openssl nsis cmark-gfm netpbm unzip qttranslations5-l10n python3-xlib locales"
  [witness]="python3-canmatrix tshark python3-can can-utils python3"
  [package]="dpkg-dev file desktop-file-utils shared-mime-info appstream lintian binutils xvfb python3 python3-xlib"
)

missing=()
for group in "$@"; do
  for package in ${packages[$group]:?unknown group $group}; do
    state=$(dpkg-query -W -f '${db:Status-Abbrev}' "$package" 2>/dev/null || true)
    [[ $state == ii* ]] || missing+=("$package")
  done
done
((${#missing[@]})) || exit 0

as_root=()
if ((EUID != 0)); then
  command -v sudo >/dev/null || { echo "These packages are missing, and neither root nor sudo is at hand: ${missing[*]}" >&2; exit 1; }
  as_root=(sudo)
fi
echo "Installing: ${missing[*]}"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { "${as_root[@]}" apt-get update -qq &&
       "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
     } >"$log" 2>&1; then
  cat "$log" >&2
  exit 1
fi
