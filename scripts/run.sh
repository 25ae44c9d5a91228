#!/bin/bash
# Installs what is missing, builds the desktop program and starts it.
# Usage: scripts/run.sh [FILE]
#   FILE  a project (.plp) to open or a video (MP4, MOV, M4V) to import
set -euo pipefail

main() {
    if (($# > 1)) || [[ ${1-} == -* ]]; then
        printf 'usage: scripts/run.sh [FILE]\n' >&2
        exit 2
    fi
    local file=()
    if (($# > 0)); then
        if [[ ! -f $1 ]]; then
            printf 'run: %s: no such file\n' "$1" >&2
            exit 1
        fi
        file=("$(realpath -- "$1")")
    fi
    if [[ -z ${DISPLAY-}${WAYLAND_DISPLAY-}${QT_QPA_PLATFORM-} ]]; then
        printf 'run: there is no desktop here to open a window on; scripts/demo.sh needs none\n' >&2
        exit 1
    fi
    cd "$(dirname "${BASH_SOURCE[0]}")/.."
    scripts/build.sh release pointloom
    exec build/release/pointloom "${file[@]}"
}

main "$@"
