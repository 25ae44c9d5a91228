#!/usr/bin/env bash
# Kills the program while it saves, a thousand times unless told otherwise, then fills its disk and takes its
# right to write away; after each of them a fresh process must find the session. Takes some minutes.
#
#     scripts/torture.sh [KILLS] [PRESET]
set -euo pipefail
cd "$(dirname "$0")/.."

kills=${1:-1000}
preset=${2:-release}

scripts/build.sh "$preset" test_torture
POINTLOOM_TORTURE_KILLS=$kills QT_QPA_PLATFORM=offscreen "build/$preset/tests/test_torture"
