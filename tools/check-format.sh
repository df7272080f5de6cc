#!/usr/bin/env bash
# tools/check-format.sh [--fix]   Fails on sources that clang-format would write otherwise; --fix rewrites them.
set -euo pipefail
cd "$(dirname "$0")/.."
mode=(--dry-run --Werror)
[[ ${1:-} == --fix ]] && mode=(-i)
git ls-files -z -- '*.h' '*.cpp' | xargs -0 -r clang-format --style=file "${mode[@]}"
