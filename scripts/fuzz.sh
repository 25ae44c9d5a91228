#!/bin/bash
# Feeds one reader changed inputs for a while and keeps what brings it down. Needs Clang; fuzz/README.md says more.
# Usage: scripts/fuzz.sh TARGET [SECONDS]
#   TARGET   media, document or csv
#   SECONDS  how long; 300 unless told
set -euo pipefail
export LC_ALL=C.UTF-8
cd "$(dirname "${BASH_SOURCE[0]}")/.."

folder=build/fuzz-inputs

main() {
    local target=${1-} seconds=${2:-300} largest
    case $target in
    media) largest=65536 ;;
    document | csv) largest=8192 ;;
    *) fail "usage: scripts/fuzz.sh media|document|csv [SECONDS]" ;;
    esac
    [[ $seconds =~ ^[1-9][0-9]*$ ]] || fail "\"$seconds\" is not a number of seconds"
    command -v clang++ >/dev/null || fail "Clang is missing: apt-get install clang"

    scripts/build.sh fuzz "fuzz_$target"
    fuzz/make-seeds.sh "$folder/seeds"
    fuzz "$target" "$seconds" "$largest"
}

fail() {
    printf 'fuzz: %s\n' "$*" >&2
    exit 1
}

# Goes on after a finding until the time is over.
fuzz() {
    local target=$1 seconds=$2 largest=$3 corpus=$folder/corpus/$1 found=$folder/found/$1 log=$folder/$1.log
    mkdir -p "$corpus" "$found"
    : >"$log"
    # FFmpeg asks for memory as the file says and takes a refusal for an answer.
    export ASAN_OPTIONS=allocator_may_return_null=1 UBSAN_OPTIONS=print_stacktrace=1
    local end=$((SECONDS + seconds))
    while ((SECONDS < end)); do
        nice -n 19 "build/fuzz/fuzz_$target" -max_total_time=$((end - SECONDS)) -max_len="$largest" -rss_limit_mb=2048 \
            -timeout=20 -print_final_stats=1 -artifact_prefix="$found/" "$corpus" "$folder/seeds/$target" >>"$log" 2>&1 || true
    done
    grep -E 'stat::number_of_executed_units|^SUMMARY|DONE' "$log" || true
    printf 'fuzz: %s findings in %s, the whole story in %s\n' \
        "$(find "$found" -type f ! -name 'slow-unit-*' | wc -l)" "$found" "$log"
}

main "$@"
