#!/usr/bin/env bash
# tools/sign-update.sh --key FILE release VERSION KIND[,KIND]... PACKAGE
# tools/sign-update.sh --key FILE firmware PRODUCT VERSION PACKAGE
#   Signs a package for the update server with minisign, as PACKAGE.minisig beside it, for programs that were built with the
#   public key. FILE is the secret key; minisign asks for its password. VERSION is "versionNo" as the update server tells it.
#   KIND says for which programs a release is: windows-64bit, windows-32bit, linux-x86_64. PRODUCT is the code under which a
#   firmware is published. docs/publishing.md tells more. Ends with 1 where nothing was signed, with 2 where it is called
#   wrongly.
set -euo pipefail

usage() { sed -n '2,8s/^# //p' "$0" >&2; exit 2; }
fail() { echo "sign-update: $*" >&2; exit 1; }

[[ $# == 6 && $1 == --key && -n $2 ]] || usage
key=$2 package=$6
case $3 in
  release)
    version=$4
    [[ $version =~ ^[0-9]+(\.[0-9]+)*$ ]] || fail "a release's version is made of numbers and dots: '$version' is not"
    for kind in ${5//,/ }; do
      [[ $kind =~ ^(windows-(64|32)bit|linux-[a-z0-9_]+)$ ]] || fail "no program is of the kind '$kind'"
    done
    comment="X9CAN release $version ${5//,/ }" ;;
  firmware)
    comment="X9CAN firmware $4 $5" ;;
  *) usage ;;
esac
# The program takes as one word what stands between two blanks.
for word in "$4" "$5"; do
  [[ $word =~ ^[^[:space:][:cntrl:]]+$ ]] || fail "'$word' is no word without blanks"
done
[[ -s $package ]] || fail "$package is empty or not there"
command -v minisign >/dev/null || fail "minisign is missing (Debian's package of that name)"

# Beside it first: a signature that is there already is not touched before there is another one.
new=$(mktemp "$package.minisig.XXXXXX")
trap 'rm -f "$new"' EXIT
minisign -S -s "$key" -m "$package" -x "$new" -c "signature of $(basename "$package")" -t "$comment" ||
  fail "minisign signed nothing"
chmod 644 "$new"
mv "$new" "$package.minisig"
echo "$package.minisig: $comment"
