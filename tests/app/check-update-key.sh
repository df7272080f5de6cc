#!/usr/bin/env bash
# tests/app/check-update-key.sh SOURCE BUILD CMAKE   X9_UPDATE_KEY arrives in the program, and what is no key ends the
# configuring. Of a second build, configured as the build in BUILD, one file is compiled.
set -euo pipefail

source=$1 build=$2 cmake=$3
key=$(sed -n 2p "$source/tests/data/minisign/test-only.pub")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "check-update-key: $*" >&2; exit 1; }

check() { "$cmake" "-DX9_UPDATE_KEY=$1" -P "$source/cmake/UpdateKey.cmake" 2>"$work/said"; }
check "" || fail "no key at all is refused"
check "$key" || fail "a key is refused: $(<"$work/said")"
for wrong in "${key%?}" "${key}A" "${key%?}=" "${key%?}_" "RU${key#RW}" "untrusted comment: minisign" "$(tr A-Z a-z <<<"$key")"; do
  ! check "$wrong" || fail "'$wrong' is taken as a key"
  grep -q 'no public key' "$work/said" || fail "'$wrong' is refused without a word: $(<"$work/said")"
done

configure() { # configure KEY
  "$cmake" -S "$source" -B "$work/build" -G Ninja "-DX9_UPDATE_KEY=$1" -DX9_BUILD_TESTS=OFF -DX9_BUILD_BENCH=OFF \
    -DX9_BUILD_PACKAGE=OFF "-DCMAKE_CXX_COMPILER=$(sed -n 's/^CMAKE_CXX_COMPILER:[A-Z]*=//p' "$build/CMakeCache.txt")" \
    >"$work/log" 2>&1
}
! configure "${key%?}" || fail "a wrong key does not end the configuring"
configure "$key" || { cat "$work/log" >&2; fail "it cannot be configured"; }
object=app/CMakeFiles/x9_app.dir/UpdateKey.cpp.o
# Alone: without the files that others of this library are made of.
mkdir -p "$work/build/$(dirname "$object")"
python3 - "$work/build" <<'END' || fail "UpdateKey.cpp cannot be compiled"
import json, subprocess, sys
with open(sys.argv[1] + "/compile_commands.json") as commands:
    (command,) = [entry["command"] for entry in json.load(commands) if entry["file"].endswith("/app/UpdateKey.cpp")]
sys.exit(subprocess.run(command, shell=True, cwd=sys.argv[1]).returncode)
END
grep -qF "$key" "$work/build/$object" || fail "the key did not arrive"
