#!/bin/bash
# Uses the real program in a real window as a person would, with keys that come from the X server: two
# markers, save, undo, save, quit. Runs within xvfb-run.
# Usage: smoke.sh POINTLOOM POINTLOOM_CLI
set -euo pipefail
export LC_ALL=C.UTF-8

program=$1
cli=$2
folder=$(mktemp -d)
trap 'kill "${running-}" 2>/dev/null || true; rm -rf "$folder"' EXIT

main() {
    prepare
    "$program" "$folder/match.plp" 2>"$folder/stderr" &
    running=$!
    window=$(wait_for_window) || fail "no window came"
    await_title 'match.plp — Pointloom'
    settle
    press m
    press Right Right Right Right Right
    settle
    press 1
    await_title 'match.plp* — Pointloom'
    press ctrl+s
    await_title 'match.plp — Pointloom'
    expect_markers 2
    press ctrl+z
    await_title 'match.plp* — Pointloom'
    press ctrl+s
    await_title 'match.plp — Pointloom'
    expect_markers 1
    press ctrl+q
    wait "$running" || fail "it ended with status $?"
    printf 'smoke: markers, saving, undo and quitting work in a real window\n'
}

prepare() {
    mkdir -p "$folder"/{config/Pointloom,data}
    mkdir -m 700 "$folder/runtime"
    export XDG_CONFIG_HOME=$folder/config XDG_DATA_HOME=$folder/data XDG_RUNTIME_DIR=$folder/runtime
    export QT_QPA_PLATFORM=xcb LIBGL_ALWAYS_SOFTWARE=1
    printf '[General]\ncrashConsentAsked=true\n' >"$XDG_CONFIG_HOME/Pointloom/Pointloom.ini"
    ffmpeg -nostdin -v error -f lavfi -i testsrc2=s=320x180:r=25:d=4 -c:v libx264 -preset ultrafast \
        -pix_fmt yuv420p "$folder/match.mp4"
    "$cli" new -o "$folder/match.plp" --sport tennis --template classic --team1 Dravnik --team2 Solvane --sets 3 \
        --video "$folder/match.mp4" >/dev/null
}

wait_for_window() {
    timeout 30 xdotool search --sync --onlyvisible --name 'match.plp' | head -n 1
}

# There is no window manager here that would hand the keys over.
press() {
    xdotool windowfocus --sync "$window" key --delay 60 "$@"
}

# Keys count once the clip can be seen.
settle() {
    sleep 1
}

await_title() {
    local title tries
    for ((tries = 0; tries < 100; tries++)); do
        title=$(xdotool getwindowname "$window" 2>/dev/null || true)
        if [[ $title == "$1" ]]; then
            return
        fi
        kill -0 "$running" 2>/dev/null || fail "it ended"
        sleep 0.1
    done
    fail "expected the title '$1', found '$title'"
}

expect_markers() {
    local count
    count=$(grep -c '"startTime"' "$folder/match.plp" || true)
    ((count == $1)) || fail "expected $1 markers in the document, found $count"
}

fail() {
    printf 'smoke: %s\n' "$*" >&2
    cat "$folder/stderr" >&2
    exit 1
}

main
