#!/bin/bash
# Takes pictures of every screen, in every language, dark and light, at scales 1 and 2.
# Usage: scripts/screenshots.sh [FOLDER] [OPTION...]
#   FOLDER  where they go, as SCALEx/THEME/LANGUAGE/SCREEN.png; build/screenshots without one
#   OPTION  limits the tour: --language en, --theme dark, --screen editor; SCALES="1" in the environment
set -euo pipefail
export LC_ALL=C.UTF-8

main() {
    if [[ ${1-} == --help || ${1-} == -h ]]; then
        sed -n '2,5s/^# //p' "$0"
        exit 0
    fi
    local folder=
    if (($# > 0)) && [[ $1 != --* ]]; then
        mkdir -p "$1"
        folder=$(realpath -- "$1")
        shift
    fi
    cd "$(dirname "${BASH_SOURCE[0]}")/.."
    folder=${folder:-$PWD/build/screenshots}
    keep_qt_quiet

    scripts/build.sh release sample-clip pointloom-cli screenshots
    make_project
    for scale in ${SCALES:-1 2}; do
        printf '== screens at scale %s\n' "$scale"
        QT_SCALE_FACTOR=$scale build/release/screenshots "$project" "$folder/${scale}x" "$@"
    done
    printf '%s pictures in %s\n' "$(find "$folder" -name '*.png' | wc -l)" "$folder"
}

# Qt warns where the desktop has not set up a folder for the session.
keep_qt_quiet() {
    if [[ -z ${XDG_RUNTIME_DIR-} ]]; then
        XDG_RUNTIME_DIR=$(mktemp -d)
        export XDG_RUNTIME_DIR
        trap 'rm -rf "$XDG_RUNTIME_DIR"' EXIT
    fi
}

make_project() {
    local scratch=$PWD/build/screenshots-match
    project=$scratch/match.plp
    mkdir -p "$scratch"
    if [[ ! $scratch/markers.csv -nt build/release/sample-clip || ! -f $scratch/match.mp4 ]]; then
        printf '== drawing the sample match\n'
        rm -f "$scratch/markers.csv" # it is written last, so it stands for both
        build/release/sample-clip "$scratch/match.mp4" --markers "$scratch/markers.csv"
    fi
    rm -f "$project"
    build/release/pointloom-cli new -o "$project" --sport tennis --template classic \
        --team1 "A. Moreau" --flags1 FR --team2 "L. Ortega" --flags2 ES --sets 3 \
        --video "$scratch/match.mp4" --markers "$scratch/markers.csv"
}

main "$@"
