#!/usr/bin/env bash
# Times exports against FFmpeg doing the same work, side by side, and prints ratios.
#
#   scripts/bench.sh [--pairs N] [--rows TEXT] [--again SECONDS] [CLIP ...]
#
# Each row runs ours and theirs in turn N times (5 unless told) and shows the median of the pairs' ratios, so that
# a machine whose speed drifts does not decide, and the least and the greatest of them, which tell how much it
# drifted. One 1080p clip as a small handheld camera records it is made, and one of 4K HLG as a phone does; clips
# given are measured beside the first. MLT's melt is measured where it is installed. With --rows, exports are run
# only for rows whose title holds TEXT, and nothing else is measured; --rows "two hours" is the window with a long
# recording. --again is the length of the clip that is exported again after a change (600 unless told). Nothing here
# passes or fails.
set -euo pipefail
cd "$(dirname "$0")/.."

pairs=5
rows=
again=600
clips=()
while [ $# -gt 0 ]; do
    case "$1" in
        --pairs) pairs=$2; shift 2 ;;
        --rows) rows=$2; shift 2 ;;
        --again) again=$2; shift 2 ;;
        -h|--help) sed -n '2,12s/^# \{0,1\}//p' "$0"; exit 0 ;;
        *) clips+=("$(realpath "$1")"); shift ;;
    esac
done

scripts/build.sh release
cli=build/release/pointloom-cli
work=build/bench
mkdir -p "$work"

if [ ! -s "$work/action.mp4" ]; then
    echo "Making a 10 s clip of 1080p30 as a small camera records it: noise, then smoothed by scaling ..."
    build/release/sample-clip "$work/sensor.mp4" --size 1280x720 --fps 30 --seconds 10 --camera-noise >/dev/null
    ffmpeg -nostdin -v error -y -i "$work/sensor.mp4" -vf scale=1920:1080:flags=bicubic -c:v libx264 -preset veryfast \
        -b:v 16M -c:a copy "$work/action.mp4"
fi
if [ ! -s "$work/phone.mov" ]; then
    echo "Making a 2 s clip of 4K HLG at 30 frames a second ..."
    ffmpeg -nostdin -v error -y -i "$work/action.mp4" -t 2 -vf scale=3840:2160:flags=bicubic,format=yuv420p10le \
        -c:v libx265 -preset ultrafast -crf 18 -tag:v hvc1 -c:a copy \
        -x265-params colorprim=bt2020:transfer=arib-std-b67:colormatrix=bt2020nc:log-level=error "$work/phone.mov"
fi
clips=("$work/action.mp4" ${clips[@]+"${clips[@]}"})

duration_of() { ffprobe -v error -show_entries format=duration -of csv=p=0 "$1"; }
size_of() { ffprobe -v error -select_streams v:0 -show_entries stream=width,height -of csv=p=0:s=x "$1" | head -n 1 | tr -d '\r'; }

# project CLIP MARKERS: a document whose markers are spread over the clip.
project() {
    local clip=$1 count=$2 file=$work/$(basename "$1").$2.plp csv=$work/$(basename "$1").$2.csv
    awk -v n="$count" -v d="$(duration_of "$clip")" 'BEGIN {
        split("0 15 30 40 adv", point, " ");
        print "startTime,label,servingTeam,game_team1,game_team2,set1_t1,set1_t2,set2_t1,set2_t2,set3_t1,set3_t2";
        for (i = 0; i < n; i++)
            printf "%.4f,,%d,%s,%s,%d,%d,%d,%d,0,0\n", i * d / n, i % 2 + 1, point[i % 5 + 1], point[(i * 3) % 4 + 1], \
                   (i / 9) % 7, (i / 13) % 7, (i / 17) % 7, (i / 23) % 7;
    }' >"$csv"
    document "$file" "$clip" "$csv"
    echo "$file"
}

# document FILE CLIP CSV
document() {
    "$cli" new --force -o "$1" --sport tennis --template classic --team1 "Dravnik" --team2 "Solvane" \
        --flags1 FR --flags2 ES --sets 3 --video "$2" --markers "$3" >/dev/null
}

# boards PROJECT MARKERS CLIP: the scoreboard's pictures as a list for FFmpeg's concat demuxer.
boards() {
    local plp=$1 count=$2 clip=$3 i step list
    list=$work/$(basename "$clip").$count.boards.txt
    step=$(awk -v n="$count" -v d="$(duration_of "$clip")" 'BEGIN { printf "%.4f", d / n }')
    if [ ! -s "$list" ]; then
        for ((i = 0; i < count; i++)); do
            local at; at=$(awk -v i="$i" -v s="$step" 'BEGIN { printf "%.4f", i * s + 0.0005 }')
            "$cli" scoreboard "$plp" --at "$at" -o "$work/board.$count.$i.png" >/dev/null
            printf "file 'board.%d.%d.png'\nduration %s\n" "$count" "$i" "$step"
        done >"$list"
        printf "file 'board.%d.%d.png'\n" "$count" $((count - 1)) >>"$list"
    fi
    echo "$list"
}

# switched MARKERS CLIP: fills `chain` with FFmpeg's arguments for one overlay filter a picture, each with its
# own time, as people write it by hand.
switched() {
    local count=$1 step i shown='0:v' graph=
    step=$(awk -v n="$count" -v d="$(duration_of "$2")" 'BEGIN { printf "%.4f", d / n }')
    chain=()
    for ((i = 0; i < count; i++)); do
        chain+=(-i "$work/board.$count.$i.png")
        graph+=$(awk -v i="$i" -v s="$step" -v shown="$shown" 'BEGIN {
            printf "[%s][%d:v]overlay=30:20:enable=\047gte(t,%.4f)*lt(t,%.4f)\047[v%d];", shown, i + 1, i * s, (i + 1) * s, i }')
        shown=v$i
    done
    chain+=(-filter_complex "${graph%;}" -map "[$shown]" -map 0:a?)
}

# measured COMMAND ...: "seconds kilobytes" of one run.
measured() {
    local report=$work/time.txt
    if ! /usr/bin/time -f '%e %M' -o "$report" "$@" >"$work/run.log" 2>&1; then
        echo "failed: $*" >&2
        tail -n 3 "$work/run.log" >&2
        exit 1
    fi
    tail -n 1 "$report"
}

median() { sort -n | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }
spread() { sort -n | awk '{ v[NR] = $1 } END { printf "%.2f-%.2f", v[1], v[NR] }'; }

# compare TITLE TARGET: runs the arrays `ours` and `theirs` in turn.
compare() {
    local title=$1 target=$2 a b
    [[ $title == *"$rows"* ]] || return 0
    : >"$work/ratios"; : >"$work/memory"; : >"$work/ours"; : >"$work/theirs"
    measured "${ours[@]}" >/dev/null # warms the caches for both
    for ((pair = 0; pair < pairs; pair++)); do
        a=$(measured "${ours[@]}")
        b=$(measured "${theirs[@]}")
        awk -v a="$a" -v b="$b" 'BEGIN { split(a, x, " "); split(b, y, " "); printf "%.4f\n", x[1] / y[1] }' >>"$work/ratios"
        awk -v a="$a" -v b="$b" 'BEGIN { split(a, x, " "); split(b, y, " "); printf "%.4f\n", x[2] / y[2] }' >>"$work/memory"
        echo "${a% *}" >>"$work/ours"
        echo "${b% *}" >>"$work/theirs"
    done
    printf '| %-58s | %5.2f | %9s | %6s | %5.2f | %6.2f | %6.2f |\n' "$title" "$(median <"$work/ratios")" \
        "$(spread <"$work/ratios")" "$target" "$(median <"$work/memory")" "$(median <"$work/ours")" "$(median <"$work/theirs")"
}

# exported_again TITLE TARGET COMMAND ...: seconds of one run against those of the first export, `first`.
exported_again() {
    local title=$1 target=$2 seconds
    seconds=$(measured "${@:3}")
    printf '| %-58s | %5s | %9s | %6s | %5s | %6.2f | %6.2f |\n' "$title" \
        "$(awk -v a="${seconds% *}" -v b="$first" 'BEGIN { printf "%.3f", a / b }')" '' "$target" '' "${seconds% *}" "$first"
}

# Segments are kept here, and only the rows about exporting again use them.
kept=$PWD/$work/kept
export XDG_CACHE_HOME=$kept
again_to=("$cli" export --progress none -o)

sound=(-c:a aac -b:a 192k -ar 44100 -ac 2)
ff=(ffmpeg -nostdin -v error -y)
as_ours=(-c:v libx264 -preset faster -crf 23 -x264-params rc-lookahead=40:subme=3)

echo
echo "Machine: $(nproc) cores, $(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -n 1); $pairs pairs a row"
echo
printf '| %-58s | %5s | %9s | %6s | %5s | %6s | %6s |\n' "export against FFmpeg" time spread target mem "ours s" "its s"
echo '|---|---|---|---|---|---|---|'
for clip in "${clips[@]}"; do
    name="$(basename "$clip") $(size_of "$clip")"
    five=$(project "$clip" 5)
    hundred=$(project "$clip" 100)
    thousand=$(project "$clip" 1000)
    list=$(boards "$hundred" 100 "$clip")
    overlay='[0:v][1:v]overlay=30:20:eof_action=repeat'
    out=$work/ours.mp4
    export_to=("$cli" export --progress none --fresh -o)

    ours=("${export_to[@]}" "$out" "$five")
    theirs=("${ff[@]}" -i "$clip" "${as_ours[@]}" "${sound[@]}" -movflags +faststart "$work/its.mp4")
    compare "$name, 5 markers, plain transcode" "1.00"
    theirs=("${ff[@]}" -i "$clip" -c:v libx264 -preset medium -crf 23 "${sound[@]}" -movflags +faststart "$work/its.mp4")
    compare "$name, 5 markers, transcode with preset medium" "0.60"
    ours+=(--quality fast)
    compare "$name, 5 markers, fast, transcode with preset medium" "0.40"
    theirs=("${ff[@]}" -i "$clip" "${as_ours[@]}" "${sound[@]}" -movflags +faststart "$work/its.mp4")
    ours=("${export_to[@]}" "$out" "$thousand")
    compare "$name, 1,000 markers, plain transcode" "1.02"
    ours=("${export_to[@]}" "$out" "$hundred")
    theirs=("${ff[@]}" -i "$clip" -f concat -safe 0 -i "$list" -filter_complex "$overlay" "${as_ours[@]}" "${sound[@]}" -movflags +faststart "$work/its.mp4")
    compare "$name, 100 markers, overlay filter" "0.97"
    ours=("${export_to[@]}" "$out" "$hundred" --encoder-preset veryfast)
    theirs=("${ff[@]}" -i "$clip" -f concat -safe 0 -i "$list" -filter_complex "$overlay" -c:v libx264 -preset veryfast "${sound[@]}" -movflags +faststart "$work/its.mp4")
    compare "$name, 100 markers, overlay filter, veryfast" "0.85"
    switched 100 "$clip"
    theirs=("${ff[@]}" -i "$clip" "${chain[@]}" -c:v libx264 -preset veryfast "${sound[@]}" -movflags +faststart "$work/its.mp4")
    compare "$name, 100 markers, 100 overlay filters, veryfast" "0.85"
    ours=("${export_to[@]}" "$work/ours.mov" "$five" --format prores)
    theirs=("${ff[@]}" -i "$clip" -i "$work/board.100.0.png" -filter_complex '[0:v][1:v]overlay=30:20:format=yuv422p10' -c:v prores_ks -profile:v standard "${sound[@]}" "$work/its.mov")
    compare "$name, ProRes, prores_ks with overlay" "0.40"
    if command -v melt >/dev/null; then
        ours=("${export_to[@]}" "$out" "$five" --encoder-preset medium)
        theirs=(melt -silent "$clip" -filter "watermark:$work/board.100.0.png" "composite.geometry=30/20:$(size_of "$work/board.100.0.png")"
            -consumer "avformat:$work/its.mp4" vcodec=libx264 acodec=aac ab=192k ar=44100 movflags=+faststart real_time=-2)
        compare "$name, 5 markers, melt with watermark filter" "0.75"
    fi
done

# The same work on both sides, the scoreboard apart: decoding 4K, scaling it, encoding 1080p.
hdr=$(project "$work/phone.mov" 5)
ours=("${export_to[@]}" "$out" "$hdr" --format hevc --preset twitter1080p)
theirs=("${ff[@]}" -i "$work/phone.mov" -vf scale=1920:1080 -c:v libx265 -preset veryfast -crf 27.5 -x265-params log-level=error -tag:v hvc1
    "${sound[@]}" -movflags +faststart "$work/its.mp4")
compare "4K HLG to 1080p HEVC, HDR kept, plain ten-bit transcode" "1.05"
ours=("${export_to[@]}" "$out" "$hdr" --preset twitter1080p)
theirs=("${ff[@]}" -i "$work/phone.mov" -vf scale=1920:1080,format=yuv420p "${as_ours[@]}" "${sound[@]}"
    -movflags +faststart "$work/its.mp4")
compare "4K HLG to 1080p H.264, tone-mapped, plain eight-bit one" "1.25"

# Where the folder for segments cannot be made, the export is one piece.
title="1080p, 40 s, first export against one piece"
if [[ $title == *"$rows"* ]]; then
    ffmpeg -nostdin -v error -y -stream_loop 3 -i "$work/action.mp4" -c copy "$work/forty.mp4"
    forty=$(project "$work/forty.mp4" 100)
    ours=("${export_to[@]}" "$out" "$forty")
    theirs=(env XDG_CACHE_HOME=/dev/null "${again_to[@]}" "$out" "$forty")
    compare "$title" "1.03"
fi
title="1080p, $again s, 100 markers"
if [[ "$title, exported again" == *"$rows"* ]]; then
    clip=$work/again.mp4
    ffmpeg -nostdin -v error -y -stream_loop $((again / 10 - 1)) -i "$work/action.mp4" -c copy "$clip"
    hundred=$(project "$clip" 100)
    awk -F, -v OFS=, 'NR == 52 { $6 = ($6 + 1) % 7 } 1' "$work/again.mp4.100.csv" >"$work/changed.csv"
    document "$work/changed.plp" "$clip" "$work/changed.csv"
    ours=("${again_to[@]}" "$out")
    rm -rf "$kept"
    first=$(measured "${ours[@]}" "$hundred")
    first=${first% *}
    exported_again "$title, again with nothing changed" 0.02 "${ours[@]}" "$hundred"
    exported_again "$title, again with one changed" 0.05 "${ours[@]}" "$work/changed.plp"
    rm -rf "$kept"
    : >"$work/progress.json"
    "$cli" export --progress json -o "$out" "$hundred" >"$work/progress.json" 2>/dev/null &
    half=$!
    until tail -n 1 "$work/progress.json" | grep -q '"progress":0\.[5-9]'; do sleep 0.2; done
    kill -9 "$half"
    wait "$half" 2>/dev/null || true
    exported_again "$title, again after kill -9 at half" 0.50 "${ours[@]}" "$hundred"
fi
rm -rf "$kept"

# The sample match over and over, 2 GB that stay in build/bench.
two_hours() {
    local clip=$work/twohours.mp4
    if [ ! -s "$clip" ]; then
        build/release/sample-clip "$work/sample.mp4" >/dev/null
        ffmpeg -nostdin -v error -y -stream_loop 359 -i "$work/sample.mp4" -c copy "$clip"
    fi
    echo
    printf '| %-74s | %22s | %10s |\n' "two hours with 1,000 markers" "" target
    echo '|---|---|---|'
    sync # edits wait for the disk
    build/release/two-hours "$clip" 2>/dev/null
}
if [[ "two hours" == *"$rows"* ]] && [ -x build/release/two-hours ]; then
    two_hours
fi
if [ -n "$rows" ]; then
    rm -f "$work"/ours.* "$work"/its.*
    exit 0
fi

echo
printf '| %-58s | %7s | %7s | %7s | %7s |\n' "each stage alone, ms a frame" decode convert blend encode
echo '|---|---|---|---|---|'
# stages TITLE CLIP OPTION ...
stages() { printf '| %-58s ' "$1"; build/release/frame-stages "${@:2}"; }
stages "1080p to H.264" "$work/action.mp4"
stages "1080p to ProRes" "$work/action.mp4" --format prores
stages "4K HLG to 1080p HEVC, HDR kept" "$work/phone.mov" --format hevc --preset twitter1080p
stages "4K HLG to 1080p H.264, tone-mapped" "$work/phone.mov" --preset twitter1080p

echo
echo "Memory over the clip's length (ultrafast):"
if [ ! -s "$work/long.mp4" ]; then
    ffmpeg -nostdin -v error -y -f lavfi -i smptebars=s=1920x1080:r=30:d=600 -f lavfi -i sine=d=600 -c:v libx264 -preset ultrafast -pix_fmt yuv420p -c:a aac "$work/long.mp4"
fi
long=$(project "$work/long.mp4" 1000)
short_kb=$(measured "$cli" export --progress none --fresh -o "$work/ours.mp4" "$long" --trim-end 10 --encoder-preset ultrafast)
long_kb=$(measured "$cli" export --progress none --fresh -o "$work/ours.mp4" "$long" --encoder-preset ultrafast)
awk -v a="${short_kb#* }" -v b="${long_kb#* }" 'BEGIN { printf "10 s: %.0f MB, 10 min: %.0f MB, ratio %.3f (target 0.95 to 1.05)\n", a / 1024, b / 1024, b / a }'
rm -f "$work"/ours.* "$work"/its.*

# seeks TITLE CLIP: in the clip, then in its small copy, which is made first.
seeks() {
    echo
    echo "Seeking in $1:"
    build/release/seek-endurance "$2" 120
    echo "with its quick preview:"
    build/release/seek-endurance "$2" 120 "$2.quick.mp4"
}
if [ -x build/release/seek-endurance ]; then
    for codec in libx264 libx265; do
        if [ ! -s "$work/$codec.mp4" ]; then
            side=$([ $codec = libx264 ] && echo 3840:2160 || echo 1920:1080)
            ffmpeg -nostdin -v error -y -i "$work/action.mp4" -vf scale=$side -c:v $codec -preset ultrafast -g 60 -c:a copy "$work/ten.mp4"
            ffmpeg -nostdin -v error -y -stream_loop 11 -i "$work/ten.mp4" -c copy "$work/$codec.mp4"
        fi
    done
    seeks "4K H.264, two minutes" "$work/libx264.mp4"
    seeks "1080p HEVC, two minutes" "$work/libx265.mp4"
fi

echo
for program in build/release/bench_*; do
    if [ -x "$program" ]; then
        QT_QPA_PLATFORM=offscreen "$program" --benchmark_min_time=0.5 2>/dev/null
    fi
done
