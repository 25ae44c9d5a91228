#!/bin/bash
# Feeds one reader changed inputs for a while and keeps what brings it down. fuzz/README.md says more.
# Usage: scripts/fuzz.sh TARGET [SECONDS [INPUTS]]
#   TARGET   csv, document, dsn, info, legacy, licence-answer, licence-file, media, plan or settings
#   SECONDS  how long; 300 unless told
#   INPUTS   ends earlier after as many
set -euo pipefail
export LC_ALL=C.UTF-8
cd "$(dirname "${BASH_SOURCE[0]}")/.."

folder=build/fuzz-inputs

main() {
    local target=${1-} seconds=${2:-300} inputs=${3:-1000000000} largest
    case $target in
    media) largest=16384 ;;
    document | legacy | settings) largest=4096 ;;
    info | licence-answer | licence-file | plan) largest=2048 ;;
    csv) largest=1024 ;;
    dsn) largest=256 ;;
    *) fail "usage: scripts/fuzz.sh TARGET [SECONDS [INPUTS]]; targets: csv document dsn info legacy" \
        "licence-answer licence-file media plan settings" ;;
    esac
    [[ $seconds =~ ^[1-9][0-9]*$ ]] || fail "\"$seconds\" is not a number of seconds"
    [[ $inputs =~ ^[1-9][0-9]*$ ]] || fail "\"$inputs\" is not a number of inputs"

    scripts/build.sh fuzz "fuzz_$target"
    seeds=fuzz/corpus/$target
    if [[ $target == media ]]; then
        seeds=$folder/seeds
        fuzz/make-seeds.sh "$seeds"
    fi
    corpus=$folder/corpus/$target
    found=$folder/found/$target
    log=$folder/$target.log
    mkdir -p "$corpus" "$found"
    fuzz "$target" "$seconds" "$inputs" "$largest"
    judge_slow_inputs "$target"
    printf 'fuzz: %s findings in %s, the whole story in %s\n' "$(find "$found" -type f | wc -l)" "$found" "$log"
}

fail() {
    printf 'fuzz: %s\n' "$*" >&2
    exit 1
}

# Goes on after a finding until the time is over or enough inputs were tried.
fuzz() {
    local target=$1 seconds=$2 inputs=$3 largest=$4 tried=0 centiseconds=0 part user system
    # FFmpeg asks for memory as the file says and takes a refusal for an answer. The rest is for speed: freed memory is
    # watched for less long, and traces of allocations are short; a finding tried alone has long ones.
    export ASAN_OPTIONS=allocator_may_return_null=1:malloc_context_size=2:quarantine_size_mb=4
    ASAN_OPTIONS+=:thread_local_quarantine_size_kb=64
    export UBSAN_OPTIONS=print_stacktrace=1
    local end=$((SECONDS + seconds)) TIMEFORMAT='%2U %2S'
    : >"$log"
    while ((SECONDS < end && tried < inputs)); do
        { time nice -n 19 "build/fuzz/fuzz_$target" -max_total_time=$((end - SECONDS)) -runs=$((inputs - tried)) \
            -max_len="$largest" -rss_limit_mb=2048 -timeout=60 -report_slow_units=1 -print_final_stats=1 -reload=0 \
            -artifact_prefix="$found/" "$corpus" "$seeds" >"$log.part" 2>&1 || true; } 2>"$log.time"
        part=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log.part")
        tried=$((tried + ${part:-0}))
        read -r user system <"$log.time"
        centiseconds=$((centiseconds + 10#${user/./} + 10#${system/./}))
        cat "$log.part" >>"$log"
        rm "$log.part" "$log.time"
    done
    grep -E '^SUMMARY|does not hold' "$log" || true
    grep -oE 'cov: [0-9]+' "$log" | tail -1
    printf 'fuzz: %s: %d inputs in %d seconds of the processor, %d a second; %d by the clock\n' "$target" "$tried" \
        $((centiseconds / 100)) $((tried * 100 / (centiseconds + 1))) $((SECONDS - end + seconds))
}

# On a busy machine "slow" inputs are mostly the machine's: only time of the processor counts.
judge_slow_inputs() {
    local input
    for input in "$found"/slow-unit-* "$found"/timeout-*; do
        if [[ -e $input ]] && (ulimit -t 1 && "build/fuzz/fuzz_$1" "$input" >/dev/null 2>&1); then
            rm "$input"
        fi
    done
}

main "$@"
