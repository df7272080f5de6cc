#!/usr/bin/env bash
# tools/check-style.sh [--fix] [--all | COMMIT]   Fails on what clang-format would write otherwise, in all sources, and on what
# clang-tidy finds by .clang-tidy in the sources that differ from COMMIT; --fix mends what can be mended without a thought,
# --all takes all sources. COMMIT is $X9_TIDY_BASE by default, or where this branch left origin/main. In a clone of main itself
# it is the sources that commits of the last four hours before the newest touched, on whichever branch: they came together.
#
# A header is checked with the source of its name, or else with one that includes it. Sources for other systems, which this
# one cannot compile, are left out. Needs no finished build: only what the build generates is made (preset release).
set -euo pipefail
cd "$(dirname "$0")/.."

fix=
all=
base=${X9_TIDY_BASE:-}
for argument in "$@"; do
  case $argument in
    --fix) fix=yes ;;
    --all) all=yes ;;
    -*) sed -n '2,/^$/s/^# \{0,1\}//p' "$0" >&2; exit 2 ;;
    *) base=$argument ;;
  esac
done

mode=(--dry-run --Werror)
[[ -z $fix ]] || mode=(-i)
git ls-files -z -- '*.h' '*.cpp' | xargs -0 -r clang-format --style=file "${mode[@]}"

if [[ -z $base ]]; then
  base=$(git merge-base HEAD origin/main 2>/dev/null || true)
  [[ $base != "$(git rev-parse HEAD)" ]] || base=
fi
changed() {
  if [[ -n $all ]]; then
    git ls-files -- "$@"
    return
  fi
  if [[ -n $base ]]; then
    git diff --name-only --diff-filter=d "$base" -- "$@"
  else
    git log --since="$(($(git log -1 --format=%ct) - 4 * 3600))" --no-merges --name-only --format= -- "$@" | sort -u |
      while read -r path; do [[ ! -e $path ]] || echo "$path"; done
  fi
  git ls-files --others --exclude-standard -- "$@"
}
files=$(
  {
    changed '*.cpp'
    changed '*.h' | while read -r header; do
      if [[ -e ${header%.h}.cpp ]]; then
        echo "${header%.h}.cpp"
      else
        git grep -lF "#include \"$header\"" -- '*.cpp' | head -n 1 || true
      fi
    done
  } | sort -u
)
[[ -n $files ]] || exit 0

# What the compiler is called with, without the precompiled headers: so sources are also seen to name all that they need.
cmake --preset release >/dev/null
generated=$(ninja -C build/release -t targets all | sed -nE 's/^([a-zA-Z0-9_]+_autogen): phony$/\1/p')
xargs -r ninja -C build/release --quiet <<<"$generated"
mkdir -p build/tidy
sed -E 's/ -Winvalid-pch -include [^ ]*cmake_pch\.hxx//' build/release/compile_commands.json >build/tidy/compile_commands.json
files=$(grep -xFf <(sed -nE 's|^ *"file": "'"$PWD"'/(.*)".*|\1|p' build/tidy/compile_commands.json) <<<"$files" || true)

echo "clang-tidy: $(grep -c . <<<"$files") sources${base:+ (changed since ${base:0:10})}"
[[ -z $fix ]] || fix=--fix
# Of Qt's macros that may end before their "...": QSKIP.
quiet=(--extra-arg=-Wno-unknown-warning-option --extra-arg=-Wno-gnu-zero-variadic-macro-arguments)
xargs -r -P "$(nproc)" -n 1 clang-tidy -p build/tidy --quiet --warnings-as-errors='*' "${quiet[@]}" \
  $fix <<<"$files" 2> >(grep -vE '^[0-9]+ warnings? (generated|treated)|^Suppressed|^Use -' >&2 || true)
