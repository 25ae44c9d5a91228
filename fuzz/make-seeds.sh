#!/bin/bash
# Makes clips of a few kilobytes for the target `media` to start from: one of each kind that is read.
# Usage: fuzz/make-seeds.sh FOLDER   makes FOLDER where it is missing
set -euo pipefail
export LC_ALL=C.UTF-8

folder=${1:?usage: fuzz/make-seeds.sh FOLDER}

main() {
    local picture=(-f lavfi -i testsrc2=s=32x32:r=10:d=0.4) sound=(-f lavfi -i sine=r=8000:d=0.3)
    local h264=(-c:v libx264 -pix_fmt yuv420p -bsf:v filter_units=remove_types=6) aac=(-c:a aac -b:a 16k)
    local hevc=(-c:v libx265 -tag:v hvc1 -pix_fmt yuv420p10le -x265-params log-level=none:ctu=16:no-info=1)
    mkdir -p "$folder"
    clip h264-aac.mp4 "${picture[@]}" "${sound[@]}" "${h264[@]}" -g 2 "${aac[@]}"
    clip index-first.mp4 "${picture[@]}" "${sound[@]}" "${h264[@]}" "${aac[@]}" -movflags +faststart
    clip fragmented.mp4 "${picture[@]}" "${sound[@]}" "${h264[@]}" -g 2 "${aac[@]}" \
        -movflags +frag_keyframe+empty_moov+default_base_moof
    clip interlaced.mp4 "${picture[@]}" "${h264[@]}" -flags +ilme+ildct -top 1
    clip late-picture.mp4 -itsoffset 0.2 "${picture[@]}" "${sound[@]}" "${h264[@]}" "${aac[@]}"
    clip reordered.mp4 "${picture[@]}" "${h264[@]}" -bf 2 -video_track_timescale 30000
    clip hevc.mp4 "${picture[@]}" "${hevc[@]}" -frames:v 2
    clip hlg.mov "${picture[@]}" "${hevc[@]}" -frames:v 2 -colorspace bt2020nc -color_primaries bt2020 \
        -color_trc arib-std-b67
    hevc[-1]+=:repeat-headers=1:max-cll=1000,400
    hevc[-1]+=':master-display=G(13250,34500)B(7500,3000)R(34000,16000)WP(15635,16450)L(10000000,1)'
    clip pq.mp4 "${picture[@]}" "${hevc[@]}" -frames:v 2 -colorspace bt2020nc -color_primaries bt2020 \
        -color_trc smpte2084
    clip mjpeg-pcm.mov "${picture[@]}" "${sound[@]}" -frames:v 2 -c:v mjpeg -pix_fmt yuvj420p -q:v 31 \
        -c:a pcm_s16le -t 0.1
    clip prores.mov "${picture[@]}" -frames:v 2 -c:v prores_ks -profile:v 0 -pix_fmt yuv422p10le
    clip alpha.mov "${picture[@]}" -frames:v 2 -c:v prores_ks -profile:v 4444 -pix_fmt yuva444p10le
    clip two-sounds.m4v "${picture[@]}" "${sound[@]}" "${sound[@]}" -map 0 -map 1 -map 2 -frames:v 3 -c:v mpeg4 \
        -c:a alac -ac 2 -t 0.2 -aspect 4:3 -f mp4
    clip sound-only.m4a "${sound[@]}" "${aac[@]}" -f mp4
    clip cut.mp4 -ss 0.15 -i "$folder/h264-aac.mp4" -c copy # begins inside a group of pictures: an edit list
    clip turned.mp4 -i "$folder/h264-aac.mp4" -c copy -metadata:s:v rotate=90
}

# clip NAME ARGUMENTS...
clip() {
    local name=$1
    shift
    ffmpeg -nostdin -v error -y "$@" -threads 1 -fflags +bitexact -map_metadata -1 "$folder/$name"
}

main
