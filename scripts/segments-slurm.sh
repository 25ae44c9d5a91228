#!/usr/bin/env bash
# Encodes the segments of a plan as an array of Slurm jobs, and joins them in a job that waits for all.
#
#   scripts/segments-slurm.sh PLAN.json [SBATCH-OPTION...]
#
# All nodes see the plan and the video under the same paths and have the same version of pointloom-cli
# ($POINTLOOM_CLI, else pointloom-cli). Prints the number of the joining job. Run it again after a failure:
# finished segments are kept.
set -euo pipefail

if [ $# -lt 1 ] || [ "${1#-}" != "$1" ]; then
    sed -n '2,8s/^# \{0,1\}//p' "$0" >&2
    exit 2
fi
plan=$(realpath -- "$1")
shift
cli=${POINTLOOM_CLI:-pointloom-cli}
segments=$(grep -c '^ *"seconds":' "$plan") || { printf '%s: no plan\n' "$plan" >&2; exit 1; }
quoted=$(printf '%q' "$plan")

# Slurm queues again what its node took down; a worker that was killed on a living node queues itself again.
again='|| { [ $? -gt 128 ] && [ "${SLURM_RESTART_COUNT:-0}" -lt 2 ] && scontrol requeue "$SLURM_JOB_ID"; exit 1; }'

submit() {
    sbatch --parsable --output="${plan%.json}.%A_%a.log" "$@"
}

array=$(submit --requeue --array="1-$segments" "$@" --job-name=pointloom-segment \
    --wrap "$cli segment $quoted \$SLURM_ARRAY_TASK_ID --progress none $again")
needed=$array
if grep -q '^ *"hasSound": true' "$plan"; then
    needed+=:$(submit --requeue "$@" --job-name=pointloom-audio --wrap "$cli segment $quoted audio --progress none $again")
fi
submit "$@" --job-name=pointloom-join --dependency="afterok:$needed" --kill-on-invalid-dep=yes \
    --wrap "$cli join $quoted --progress none"
