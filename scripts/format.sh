#!/bin/bash
# Formats the C++ sources as .clang-format says.
# Usage: scripts/format.sh [--check]
#   --check  changes nothing; fails and names the places that are not formatted
set -euo pipefail
export LC_ALL=C.UTF-8
cd "$(dirname "${BASH_SOURCE[0]}")/.."

case "${1-}" in
"") mode=(-i) ;;
--check) mode=(--dry-run --Werror) ;;
*)
    printf 'usage: scripts/format.sh [--check]\n' >&2
    exit 2
    ;;
esac
if ! command -v clang-format >/dev/null; then
    printf 'format: clang-format is not installed (Debian package clang-format); nothing done\n' >&2
    exit 0
fi
folders=()
for folder in src tests samples bench fuzz; do
    if [[ -d $folder ]]; then
        folders+=("$folder")
    fi
done
find "${folders[@]}" -type f \( -name '*.cpp' -o -name '*.h' \) -print0 |
    xargs -0 --no-run-if-empty clang-format "${mode[@]}"
