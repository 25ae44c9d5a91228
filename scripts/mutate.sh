#!/bin/bash
# Tries the tests: changes one line of the sources at a time, builds, runs the tests of that folder, and says which
# changes none of them noticed. Works in a copy of the tree with a build of its own; goes on where it was ended.
# Usage: scripts/mutate.sh [--count N] [--seed N] [--own] [--again RESULTS] [--report] [FOLDER ...]
#   --count N        changes that compile, over all folders in proportion to their size, 12 in each at the least; 200
#                    unless told
#   --seed N         which ones; 1 unless told
#   --own            runs only the tests of the folder itself, which is faster; --again then runs the others too
#   --again RESULTS  tries the unnoticed ones of an earlier results file instead
#   --report         only prints the table of build/mutate/results.tsv
#   FOLDER           of src/; model, session, persistence, render, media and export unless told
# build/mutate/results.tsv has a line for each change: folder, file, line, kind, old line, new line, what noticed it.
set -euo pipefail
export LC_ALL=C.UTF-8
cd "$(dirname "${BASH_SOURCE[0]}")/.."

work=$PWD/build/mutate
build=$work/tree/build/mutate # as far from the sources as every other build, so that the compiler cache knows its files
results=$work/results.tsv
own=0
count=200
seed=1
least=12 # of each folder

# The test programs that exercise a folder, its own first.
programs_of() {
    local -a programs
    mapfile -t programs < <(all_programs_of "$1" | tr ' ' '\n')
    ((${#programs[@]} > 0)) || fail "no tests are known for src/$1"
    ((own)) && echo "${programs[0]}" || printf '%s\n' "${programs[@]}"
}

all_programs_of() {
    case $1 in
    model) echo test_model test_session test_persistence test_render test_export test_cli ;;
    rules) echo test_rules test_cli ;;
    session) echo test_session test_persistence test_torture test_cli ;;
    persistence) echo test_persistence test_session test_torture test_cli ;;
    render) echo test_render test_export test_cli ;;
    media) echo test_media test_export test_compatibility test_cli ;;
    export) echo test_export test_cli test_compatibility ;;
    esac
}

main() {
    local again='' modules=()
    while (($# > 0)); do
        case $1 in
        --count) count=$2; shift 2 ;;
        --own) own=1; shift ;;
        --seed) seed=$2; shift 2 ;;
        --again) again=$(realpath "$2"); shift 2 ;;
        --report) report; return ;;
        -*) sed -n '2,14s/^# \{0,1\}//p' "$0" >&2; exit 2 ;;
        *) modules+=("$1"); shift ;;
        esac
    done
    ((${#modules[@]} > 0)) || modules=(model rules session persistence render media export)

    copy_tree
    configure
    check_unchanged "${modules[@]}"
    if [[ -n $again ]]; then
        results=$work/again.tsv
        try_again "$again" "${modules[@]}"
    else
        try_sample "${modules[@]}"
    fi
    report
}

fail() {
    printf 'mutate: %s\n' "$*" >&2
    exit 1
}

# Files that differ are written anew, so that the build sees them; what a killed run left goes away too.
copy_tree() {
    mkdir -p "$work/tree"
    touch "$work/results.tsv"
    put_back_programs
    local file
    while IFS= read -r -d '' file; do
        if ! cmp -s "$file" "$work/tree/$file"; then
            mkdir -p "$work/tree/$(dirname "$file")"
            rm -f "$work/tree/$file"
            cp "$file" "$work/tree/$file"
        fi
    done < <(git ls-files -z --cached --others --exclude-standard)
}

# Optimised a little and without debug information: most of the time goes into compiling and linking.
configure() {
    local linker=()
    if command -v mold >/dev/null; then
        linker=(-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=mold)
    elif command -v ld.lld >/dev/null; then
        linker=(-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld)
    fi
    cmake -G Ninja -S "$work/tree" -B "$build" -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O1 \
        -DPOINTLOOM_UNITY=OFF -DPOINTLOOM_BENCHMARKS=OFF -DPOINTLOOM_DESKTOP=OFF "${linker[@]}" --log-level=WARNING >/dev/null
}

# What a test program is made of: some start another.
parts_of() {
    case $1 in
    test_cli) echo pointloom-cli test_cli ;;
    test_torture) echo torture_child test_torture ;;
    *) echo "$1" ;;
    esac
}

# Runs every program once without a change: how long it may take, which tests take less than a second and are run
# first, and which fail anyway and are left out.
check_unchanged() {
    local program began quick failed
    local -a programs
    mapfile -t programs < <(for module in "$@"; do programs_of "$module"; done | sort -u)
    make "${programs[@]}" || fail "the tree does not build, see $work/build.log"
    for program in "${programs[@]}"; do
        [[ ! -e $work/$program.seconds || $build/tests/$program -nt $work/$program.seconds ]] || continue
        began=$SECONDS
        failed=
        if ! run "$program" 3600 '*'; then
            failed=$(sed -n 's/^\[  FAILED  \] \([^ ,]*\).*(.*/\1/p' "$work/$program.log" | sort -u | paste -sd:)
            [[ -n $failed ]] || fail "$program fails without a change, see $work/$program.log"
            printf 'left out, since they fail without a change: %s\n' "$failed"
        fi
        quick=$(sed -n 's/^\[       OK \] \([^ ,]*\).*(.\{1,3\} ms)$/\1/p' "$work/$program.log" | paste -sd:)
        printf '%s\n' "$quick" "-$quick${failed:+:$failed}" >"$work/$program.filters"
        echo $((SECONDS - began)) >"$work/$program.seconds"
    done
}

# run PROGRAM SECONDS FILTER [ARGUMENT ...]: at most so long on a processor and ten times as long in all, in a home
# and a temporary folder of its own, since a change may write anywhere.
run() {
    local program=$1 limit=$2 filter=$3
    shift 3
    rm -rf "$work/home"
    mkdir -p "$work/home/tmp"
    (
        ulimit -c 0
        ulimit -f $((4 << 20)) # 4 GiB
        ulimit -t "$limit"     # of the processor: a machine with other work is slow without hanging
        cd "$work/home"
        exec env -u XDG_CONFIG_HOME -u XDG_DATA_HOME -u XDG_CACHE_HOME HOME="$work/home" TMPDIR="$work/home/tmp" \
            QT_QPA_PLATFORM=offscreen timeout --kill-after=5 $((limit * 10)) "$build/tests/$program" \
            --gtest_filter="$filter" "$@"
    ) >"$work/$program.log" 2>&1 </dev/null
}

try_sample() {
    local module total='' progress=1
    local -A quota=() next=() tried=()
    scripts/mutations.pl list "$seed" "$@" >"$work/candidates.tsv"
    total=$(wc -l <"$work/candidates.tsv")
    for module in "$@"; do
        grep "^$module	" "$work/candidates.tsv" >"$work/candidates.$module" || fail "src/$module has no line to change"
        quota[$module]=$(($(wc -l <"$work/candidates.$module") * count / total))
        ((quota[$module] >= least)) || quota[$module]=$least
        next[$module]=0
        tried[$module]=0
    done
    # A change of each folder in turn, so that a run that is ended early has tried all of them.
    while ((progress)); do
        progress=0
        for module in "$@"; do
            while ((tried[$module] < quota[$module])); do
                next[$module]=$((next[$module] + 1))
                IFS= read -r change < <(sed -n "${next[$module]}p" "$work/candidates.$module") || break
                try "$change"
                [[ $outcome == 'does not compile' ]] || { tried[$module]=$((tried[$module] + 1)); progress=1; break; }
            done
        done
    done
}

# Those that nothing noticed, as an earlier run wrote them down.
try_again() {
    local earlier=$1 module change
    shift
    touch "$results"
    while IFS= read -r change; do
        for module in "$@"; do
            [[ $change != "$module	"* ]] || try "$change"
        done
    done < <(grep '	unnoticed$' "$earlier" | sed 's/	unnoticed$//')
}

# Sets `outcome`.
try() {
    local change=$1 module file number kind line changed program
    IFS=$'\x1f' read -r module file number kind line changed < <(tr '\t' '\037' <<<"$change")
    outcome=$(KEY=$change awk -F '\t' 'index($0, ENVIRON["KEY"] "\t") == 1 { print $NF; exit }' "$results")
    [[ -z $outcome ]] || return 0
    mutant=$work/mutant.${file##*.}
    cp "$work/tree/$file" "$mutant"
    if ! scripts/mutations.pl apply "$mutant" "$number" "$line" "$changed"; then
        outcome='line gone'
    elif [[ $file == *.h ]]; then
        try_header
    elif compile "src/$module/CMakeFiles/pointloom_$module.dir/$(basename "$file").o"; then
        run_programs link
        put_back_programs
    else
        outcome='does not compile'
    fi
    printf '%s\t%s\n' "$change" "$outcome" >>"$results"
    printf '%s:%s %s: %s\n' "$file" "$number" "$kind" "$outcome"
}

# Compiles the changed file alone, with the headers of libraries compiled before, which take most of the time.
compile() {
    local headers=$work/headers.$module/headers.h command
    command=$(ninja -C "$build" -t commands -s "$1" | grep -v '^ninja:' |
        sed 's/^[^ ]*ccache //; s/ -MD -MT [^ ]* -MF [^ ]*//; s/ -o [^ ]* -c .*//')
    (
        cd "$build"
        if [[ ! -e $headers.gch ]]; then
            mkdir -p "$(dirname "$headers")"
            # Those of FFmpeg are C and wrapped where they are included.
            grep -hE '^#include <' "$work/tree/src/$module"/*.{cpp,h} | grep -vE '<lib(av|sw)' | sort -u >"$headers"
            eval "$command -x c++-header -o $headers.gch $headers"
        fi
        eval "$command -include $headers -o $work/mutant.o -c $mutant"
    ) >"$work/build.log" 2>&1
}

# Links a program with the changed object, which goes before the one in the archive. The program itself is kept.
link() {
    local target path
    for target in $(parts_of "$1"); do
        path=tests/$target
        [[ -e $build/$path ]] || path=$target
        mv "$build/$path" "$build/$path.original"
        (cd "$build" && eval "$(ninja -t commands -s "$path" | sed "s| -o | $work/mutant.o -o |")") >"$work/build.log" 2>&1 || return 1
    done
}

put_back_programs() {
    local kept
    while read -r kept; do mv "$kept" "${kept%.original}"; done < <(find "$work/tree" -name '*.original')
}

# Much is made of a header, so that the build does it, and again without the change.
try_header() {
    cp "$work/tree/$file" "$work/original"
    cp "$mutant" "$work/tree/$file"
    run_programs make
    cp "$work/original" "$work/tree/$file"
    mapfile -t programs < <(programs_of "$module")
    make "${programs[@]}" || fail "the tree does not build any more, see $work/build.log"
}

make() {
    ninja -C "$build" "$@" >"$work/build.log" 2>&1
}

# Sets `outcome` after making the programs of the folder by the given function one after the other and running each.
run_programs() {
    outcome=unnoticed
    for program in $(programs_of "$module"); do
        if ! "$1" "$program"; then
            outcome='does not compile'
            return
        fi
        if ! passes "$program"; then
            outcome="$program $(sed -n 's/^\[  FAILED  \] \([^ ,]*\).*/\1/p' "$work/$program.log" | head -n 1)"
            [[ $outcome == *[A-Z]* ]] || outcome+='ended or hung'
            return
        fi
    done
}

passes() {
    local filter limit=$(($(<"$work/$1.seconds") * 2 + 20))
    while IFS= read -r filter; do
        run "$1" "$limit" "$filter" --gtest_fail_fast || return 1
    done <"$work/$1.filters"
}

report() {
    awk -F '\t' '
        $NF == "does not compile" || $NF == "line gone" { next }
        { tried[$1]++; all++ }
        $NF != "unnoticed" { noticed[$1]++; noticed_in_all++ }
        END {
            printf "| folder | changes | noticed | share |\n|---|---|---|---|\n"
            for (module in tried) printf "| %s | %d | %d | %.0f %% |\n", module, tried[module], noticed[module], 100 * noticed[module] / tried[module]
            if (all) printf "| all | %d | %d | %.1f %% |\n", all, noticed_in_all, 100 * noticed_in_all / all
        }' "$results"
    awk -F '\t' '$NF == "unnoticed" { printf "%s:%s\n  - %s\n  + %s\n", $2, $3, $5, $6 }' "$results" | sed 's/^\(  [-+]\)  */\1 /'
}

main "$@"
