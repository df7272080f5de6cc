#!/usr/bin/env bash
# tools/windows/sign.sh [OPTION VALUE]... FILE...   Signs programs, DLLs and installers for Windows (Authenticode), in place.
#   --certificate FILE     certificate with its chain in PEM, or PKCS#12 with its key; or else $X9_SIGN_CERTIFICATE
#   --key FILE             its key, where the certificate's file has none; or else $X9_SIGN_KEY
#   --password-file FILE   first line: the password of the key or of the PKCS#12 file; or else $X9_SIGN_PASSWORD_FILE
#   --time-server URL      which confirms the time (RFC 3161), so that signatures outlive the certificate; or else
#                          $X9_SIGN_TIME_SERVER
# When these variables are set, cpack signs with this script what it packs, and the installer. A file that is signed already
# is signed anew. Ends with 1, and leaves the file as it was, where one cannot be signed.
set -euo pipefail

certificate=${X9_SIGN_CERTIFICATE:-} key=${X9_SIGN_KEY:-} password_file=${X9_SIGN_PASSWORD_FILE:-}
time_server=${X9_SIGN_TIME_SERVER:-}
while [[ ${1:-} == --* ]]; do
  case $1 in
    --certificate) certificate=${2:?} ;;
    --key) key=${2:?} ;;
    --password-file) password_file=${2:?} ;;
    --time-server) time_server=${2:?} ;;
    *) set -- ; break ;;
  esac
  shift 2
done
if (($# == 0)); then
  sed -n '2,9s/^# //p' "$0" >&2
  exit 2
fi
fail() { echo "windows/sign: $*" >&2; exit 1; }
[[ -n $certificate ]] || fail "no certificate is named."
command -v osslsigncode >/dev/null || fail "osslsigncode is missing (Debian's package of that name)."

options=(-h sha256 -n X9CAN)
case ${certificate,,} in
  *.p12 | *.pfx) options+=(-pkcs12 "$certificate") ;;
  *) options+=(-certs "$certificate" -key "${key:-$certificate}") ;;
esac
[[ -z $password_file ]] || options+=(-readpass "$password_file")
[[ -z $time_server ]] || options+=(-ts "$time_server")

for file in "$@"; do
  signed=$(mktemp "$file.XXXXXX")
  # It wants to make the file itself.
  rm "$signed"
  if ! said=$(osslsigncode sign "${options[@]}" -in "$file" -out "$signed" 2>&1); then
    rm -f "$signed"
    fail "$file cannot be signed:"$'\n'"$said"
  fi
  chmod --reference "$file" "$signed"
  mv "$signed" "$file"
done
