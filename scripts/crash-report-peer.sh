#!/bin/bash
# Sends crash reports of real crashes to another implementation of the protocol, the development-time receiver
# Spotlight, on loopback, and shows what it understood. Needs npm, and port 80 (a DSN's port is not carried over).
# Usage: scripts/crash-report-peer.sh
set -euo pipefail
export LC_ALL=C.UTF-8
cd "$(dirname "${BASH_SOURCE[0]}")/.."

folder=$PWD/build/crash-report-peer
programs=$PWD/build/debug/tests
base=http://127.0.0.1

main() {
    install_receiver
    scripts/build.sh debug crash_victim crash_sender
    start_receiver
    local way
    for way in null exception-in-thread number; do
        crash_and_send "$way"
    done
    show_what_arrived
}

install_receiver() {
    mkdir -p "$folder"
    cat >"$folder/package.json" <<'END'
{
  "private": true,
  "dependencies": { "@spotlightjs/spotlight": "4.11.8" },
  "overrides": { "hono": "4.10.1" }
}
END
    (cd "$folder" && npm install --no-audit --no-fund --silent)
}

start_receiver() {
    if curl --silent --output /dev/null "$base/"; then
        printf 'crash-report-peer: something else is listening on port 80\n' >&2
        exit 1
    fi
    "$folder/node_modules/.bin/spotlight" server -p 80 >"$folder/server.log" 2>&1 &
    receiver=$!
    trap 'kill "$receiver" 2>/dev/null; kill "${tail:-$receiver}" 2>/dev/null; true' EXIT
    wait_until "the receiver to start" curl --silent --output /dev/null "$base/"
    "$folder/node_modules/.bin/spotlight" tail errors -p 80 -f json >"$folder/errors.json" 2>"$folder/tail.log" &
    tail=$!
    curl --silent --no-buffer "$base/stream" >"$folder/stream.txt" &
    sleep 2 # until both listen
}

crash_and_send() {
    local home
    home=$(mktemp -d)
    { XDG_DATA_HOME=$home "$programs/crash_victim" "$1" || true; } 2>/dev/null
    printf '== %s left\n' "$1"
    cat "$home/Pointloom/pending_crash.json"
    printf '\n'
    XDG_DATA_HOME=$home "$programs/crash_sender" http://key@127.0.0.1/1
    if [[ -e $home/Pointloom/pending_crash.json ]]; then
        printf 'crash-report-peer: the record is still there\n' >&2
        exit 1
    fi
    rm -r "$home"
}

show_what_arrived() {
    wait_until "three errors to arrive" three_arrived
    printf '\n== what the receiver understood\n'
    cat "$folder/errors.json"
    printf '\n== the stream of envelopes is in %s\n' "$folder/stream.txt"
}

three_arrived() {
    (($(grep -c 'event_id\|exception' "$folder/errors.json") >= 3))
}

wait_until() {
    local what=$1 attempt
    shift
    for attempt in {1..100}; do
        if "$@"; then
            return
        fi
        sleep 0.2
    done
    printf 'crash-report-peer: waited in vain for %s\n' "$what" >&2
    exit 1
}

main
