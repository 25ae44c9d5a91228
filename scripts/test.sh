#!/bin/bash
# Installs what is missing, builds and runs every test.
# Usage: scripts/test.sh [--sanitize]
#   --sanitize  under the address, undefined-behaviour and thread sanitizers instead: slower, finds more
set -euo pipefail
export LC_ALL=C.UTF-8
cd "$(dirname "${BASH_SOURCE[0]}")/.."

main() {
    case "${1-}" in
    "")
        check_dependencies
        # Optimised, because most of the time goes into encoding and decoding.
        run_tests release
        ;;
    --sanitize)
        check_dependencies
        run_tests asan
        run_tests tsan
        ;;
    *)
        printf 'usage: scripts/test.sh [--sanitize]\n' >&2
        exit 2
        ;;
    esac
}

check_dependencies() {
    printf '== dependencies\n'
    scripts/check-dependencies.sh
}

run_tests() {
    local preset=$1
    printf '== build %s\n' "$preset"
    scripts/build.sh "$preset"
    printf '== test %s\n' "$preset"
    ctest --preset "$preset" --parallel "$(nproc)"
}

main "$@"
