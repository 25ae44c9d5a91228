#!/usr/bin/env bash
# Encodes the segments of a plan on several machines with GNU Parallel over SSH, and joins them here.
#
#   scripts/segments-parallel.sh PLAN.json HOST...
#
# HOST is what ssh takes, ":" is this machine; "2/HOST" runs two segments at a time there. All machines see the plan and
# the video under the same paths and have the same version of pointloom-cli ($POINTLOOM_CLI, else pointloom-cli).
# Run it again after a failure: finished segments are kept. The times are in PLAN.joblog.
set -euo pipefail

if [ $# -lt 2 ] || [ "${1#-}" != "$1" ]; then
    sed -n '2,8s/^# \{0,1\}//p' "$0" >&2
    exit 2
fi
plan=$(realpath -- "$1")
shift
cli=${POINTLOOM_CLI:-pointloom-cli}
hosts=$(for host in "$@"; do # one segment at a time where nothing else is said
    case $host in */*) printf '%s,' "$host" ;; *) printf '1/%s,' "$host" ;; esac
done)
segments=$(grep -c '^ *"seconds":' "$plan") || { printf '%s: no plan\n' "$plan" >&2; exit 1; }

parts() {
    grep -q '^ *"hasSound": true' "$plan" && printf 'audio\n'
    seq "$segments"
}

# A segment whose worker dies is given to another; three times in all.
parts | parallel --sshlogin "${hosts%,}" --jobs 100% --retries 3 --joblog "${plan%.json}.joblog" --workdir / \
    "$cli" segment "$(printf '%q' "$plan")" {} --progress none
exec "$cli" join "$plan"
