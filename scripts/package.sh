#!/bin/bash
# Makes the Debian packages `pointloom` (desktop) and `pointloom-cli` (headless) in build/packages.
# Usage: scripts/package.sh
# Built twice from the same sources, the packages are the same byte for byte.
set -euo pipefail
export LC_ALL=C.UTF-8
umask 022
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Every time inside the packages: the last change's, or the changelog's where there is no history.
SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct 2>/dev/null || stat --format=%Y CHANGELOG.md)}
export SOURCE_DATE_EPOCH

logged() {
    "$@" >build/package/package.log 2>&1 || {
        printf 'package: "%s" failed; the end of what it said:\n' "$*" >&2
        tail -n 20 build/package/package.log >&2
        exit 1
    }
}

scripts/setup.sh
printf 'package: building\n'
mkdir -p build/package
logged cmake --preset package --log-level=WARNING
logged cmake --build --preset package --parallel "$(nproc)"
rm -rf build/packages
logged cpack --config build/package/CPackConfig.cmake -B build/packages
rm -rf build/packages/_CPack_Packages
printf 'package: made\n'
ls -1 build/packages/*.deb
