#!/bin/bash
# Builds one preset of CMakePresets.json into build/PRESET, after installing what is missing.
# Usage: scripts/build.sh PRESET [TARGET...]
set -euo pipefail
export LC_ALL=C.UTF-8
cd "$(dirname "${BASH_SOURCE[0]}")/.."

if (($# == 0)); then
    printf 'usage: scripts/build.sh PRESET [TARGET...]; presets: debug release package asan tsan fuzz\n' >&2
    exit 2
fi
preset=$1
shift
targets=()
if (($# > 0)); then
    targets=(--target "$@")
fi

if [[ $preset == fuzz ]]; then
    scripts/setup.sh --fuzz
else
    scripts/setup.sh
fi
cmake --preset "$preset" --log-level=WARNING
cmake --build --preset "$preset" --parallel "$(nproc)" "${targets[@]}"
