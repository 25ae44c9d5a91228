#!/bin/bash
# Makes small inputs for the fuzz targets to start from: every kind of video, document and table that is read.
# Usage: fuzz/make-seeds.sh FOLDER   writes FOLDER/media, FOLDER/document and FOLDER/csv
set -euo pipefail
export LC_ALL=C.UTF-8

folder=${1:?usage: fuzz/make-seeds.sh FOLDER}

main() {
    mkdir -p "$folder"/{media,document,csv}
    make_videos
    make_documents
    make_tables
}

make_videos() {
    local picture=(-f lavfi -i testsrc2=s=64x48:r=10:d=0.8) sound=(-f lavfi -i sine=r=44100:d=0.8)
    video h264-aac.mp4 "${picture[@]}" "${sound[@]}" -c:v libx264 -g 4 -pix_fmt yuv420p -c:a aac -b:a 32k
    video index-first.mp4 "${picture[@]}" "${sound[@]}" -c:v libx264 -pix_fmt yuv420p -c:a aac -b:a 32k \
        -movflags +faststart
    video fragmented.mp4 "${picture[@]}" "${sound[@]}" -c:v libx264 -g 4 -pix_fmt yuv420p -c:a aac -b:a 32k \
        -movflags +frag_keyframe+empty_moov
    video interlaced.mp4 "${picture[@]}" -c:v libx264 -pix_fmt yuv420p -flags +ilme+ildct -top 1
    video late-picture.mp4 -itsoffset 0.4 "${picture[@]}" "${sound[@]}" -c:v libx264 -pix_fmt yuv420p -c:a aac -b:a 32k
    video hlg.mov "${picture[@]}" -c:v libx265 -x265-params log-level=none -tag:v hvc1 -pix_fmt yuv420p10le \
        -colorspace bt2020nc -color_primaries bt2020 -color_trc arib-std-b67
    video mjpeg-pcm.mov "${picture[@]}" "${sound[@]}" -frames:v 3 -c:v mjpeg -q:v 20 -c:a pcm_s16le -ar 8000 -t 0.4
    video prores.mov "${picture[@]}" -frames:v 2 -c:v prores_ks -profile:v 0 -bits_per_mb 200
    video two-tracks.m4v "${picture[@]}" "${sound[@]}" "${sound[@]}" -map 0 -map 1 -map 2 -c:v mpeg4 -c:a alac \
        -ar 8000 -aspect 4:3 -f mp4
    video sound-only.mp4 "${sound[@]}" -c:a aac -b:a 32k
    turn "$folder/media/h264-aac.mp4" "$folder/media/turned.mp4"
}

# video NAME ARGUMENTS...
video() {
    local name=$1
    shift
    ffmpeg -nostdin -v error -y "$@" -threads 1 -fflags +bitexact "$folder/media/$name"
}

turn() {
    ffmpeg -nostdin -v error -y -display_rotation 90 -i "$1" -c copy "$2" 2>/dev/null ||
        ffmpeg -nostdin -v error -y -i "$1" -c copy -metadata:s:v rotate=90 "$2"
}

make_documents() {
    local score='{"sets":[{"team1":6,"team2":7,"tiebreak":4}],"currentGame":{"team1":"forty","team2":"zero"},"servingTeam":2}'
    local points='{"sets":[{"team1":25,"team2":23}],"currentGame":{"team1":1,"team2":2},"servingTeam":1}'
    local marker='"id":"11111111-2222-3333-4444-555555555555","startTime":7.5,"label":"Set","score":'
    local place='"scoreboardPositionX":0.5,"scoreboardPositionY":0.2,"trimStart":0.5,"trimEnd":9,"videoPath":"/a/b.mp4"'
    local match='"matchConfig":{"sport":"tennis","format":"singles","team1":{"player1":"Dravnik","flag1":"FR"},"team2":{"player1":"Solvane"},"numberOfSets":3}'
    local logo='"watermarkCorner":"topRight","watermarkPath":"/a/logo.png"'
    printf '{"version":1,"selectedSport":"tennis","selectedTemplate":"classic",%s,%s,%s,"scoreboardUserScale":1.5,"markers":[{%s{"type":"tennis","score":%s}},{%s{"type":"points","score":%s}}]}\n' \
        "$match" "$place" "$logo" "$marker" "$score" "$marker" "$points" >"$folder/document/current.plp"
    printf '{%s,%s,"initialScore":%s,"markers":[{%s%s}]}\n' "$place" "$logo" "$score" "$marker" "$score" \
        >"$folder/document/legacy.plp"
}

make_tables() {
    printf 'startTime,label,servingTeam,game_team1,game_team2,set1_team1,set1_team2\n0,First,1,0,15,0,0\n00:01:02.5,,2,40,A,6,7\n' \
        >"$folder/csv/table.csv"
    printf '# a comment\n1.5,x,team1,30,40,6,4,3,2\r\n' >"$folder/csv/windows.csv"
}

main
