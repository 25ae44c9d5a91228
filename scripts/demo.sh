#!/bin/bash
# Shows what the program does: builds it, makes a project with markers, exports it, and puts frames from
# before and after each marker side by side.
# Usage: scripts/demo.sh [CLIP] [OUT]
#   CLIP  a video (MP4, MOV, M4V); without one a sample match is drawn, whose markers fit what happens in it
#   OUT   the MP4 file to write; build/demo/scoreboard.mp4 without one
set -euo pipefail
export LC_ALL=C.UTF-8

main() {
    if (($# > 2)) || [[ ${1-} == -* ]]; then
        printf 'usage: scripts/demo.sh [CLIP] [OUT]\n' >&2
        exit 2
    fi
    clip=${1:+$(realpath -- "$1")}
    out=${2:+$(realpath -m -- "$2")}
    if [[ -n $clip && ! -f $clip ]]; then
        printf 'demo: %s: no such file\n' "$1" >&2
        exit 1
    fi
    cd "$(dirname "${BASH_SOURCE[0]}")/.."
    folder=$PWD/build/demo
    out=${out:-$folder/scoreboard.mp4}
    markers=$folder/markers.csv
    project=$folder/project.plp
    sheet=${out%.*}_sheet.png
    mkdir -p "$folder" "$(dirname "$out")"
    keep_qt_quiet

    scripts/build.sh release sample-clip pointloom-cli
    if [[ -z $clip ]]; then
        draw_sample
    else
        spread_markers
    fi
    make_project
    export_video
    make_sheet
    report
}

# Qt warns where the desktop has not set up a folder for the session.
keep_qt_quiet() {
    if [[ -z ${XDG_RUNTIME_DIR-} ]]; then
        XDG_RUNTIME_DIR=$(mktemp -d)
        export XDG_RUNTIME_DIR
        trap 'rm -rf "$XDG_RUNTIME_DIR"' EXIT
    fi
}

draw_sample() {
    clip=$folder/sample.mp4
    if [[ ! $markers -nt build/release/sample-clip || ! -f $clip ]]; then
        printf '== drawing the sample match\n'
        rm -f "$markers" # it is written last, so it stands for both
        build/release/sample-clip "$clip" --markers "$markers"
    fi
}

# Nobody knows the score of a clip from elsewhere: six points, evenly spaced.
spread_markers() {
    local duration
    duration=$(ffprobe -v error -select_streams v:0 -show_entries format=duration -of csv=p=0 "file:$clip")
    markers=$folder/spread_markers.csv
    awk -v duration="$duration" '
        BEGIN { print "startTime,label,servingTeam,game_team1,game_team2,set1_t1,set1_t2,set2_t1,set2_t2,set3_t1,set3_t2" }
        { printf "%.3f,%s\n", duration * (NR - 1) / 6, $0 }' >"$markers" <<'SCORES'
Start,1,30,30,6,4,4,4,0,0
Point,1,40,30,6,4,4,4,0,0
Point,1,deuce,deuce,6,4,4,4,0,0
Point,1,ad,40,6,4,4,4,0,0
Game,2,0,0,6,4,5,4,0,0
Point,2,15,0,6,4,5,4,0,0
SCORES
}

make_project() {
    printf '== project\n'
    rm -f "$project"
    build/release/pointloom-cli new -o "$project" --sport tennis --template classic \
        --team1 "A. Moreau" --flags1 FR --team2 "L. Ortega" --flags2 ES --sets 3 \
        --video "$clip" --markers "$markers"
}

export_video() {
    local started
    printf '== export\n'
    started=$(date +%s%N)
    build/release/pointloom-cli export "$project" -o "$out"
    milliseconds=$((($(date +%s%N) - started) / 1000000))
}

# A row a marker: the last moment of the old score, the first of the new one.
make_sheet() {
    local tiles time tile=0
    tiles=$(mktemp -d -p "$folder")
    while read -r time; do
        take_tile "$(awk -v t="$time" 'BEGIN { print (t > 0.2 ? t - 0.2 : 0) }')"
        take_tile "$(awk -v t="$time" 'BEGIN { print t + 0.2 }')"
    done < <(awk -F, 'NR > 1 && $1 > 0 { print $1 }' "$markers")
    ffmpeg -nostdin -v error -y -i "$tiles/%02d.png" \
        -filter:v "tile=2x$((tile / 2)):padding=8:margin=8:color=0x202428" -frames:v 1 "file:$sheet"
    rm -r "$tiles"
}

take_tile() {
    local label="drawtext=font=Liberation Sans:text='$1 s':x=w-tw-14:y=h-th-12:fontsize=22:fontcolor=white:box=1"
    ffmpeg -nostdin -v error -ss "$1" -i "file:$out" -frames:v 1 \
        -vf "scale=960:540:force_original_aspect_ratio=decrease:flags=lanczos,$label:boxcolor=black@0.6:boxborderw=6" \
        "$tiles/$(printf '%02d' "$tile").png"
    tile=$((tile + 1))
}

report() {
    local length
    length=$(ffprobe -v error -show_entries format=duration -of csv=p=0 "file:$out")
    printf '\nsource   %s\nproject  %s\nresult   %s\nframes   %s\n' "$clip" "$project" "$out" "$sheet"
    printf 'exported %.1f s of video in %d.%01d s\n' "$length" $((milliseconds / 1000)) $((milliseconds % 1000 / 100))
}

main "$@"
