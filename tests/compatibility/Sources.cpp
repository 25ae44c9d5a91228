// The table of footage.
#include "compatibility/Source.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace pointloom::test {

namespace {

const std::string lossless264 = "-c:v libx264 -qp 0 -preset ultrafast";
const std::string lossless265 =
    "-c:v libx265 -preset ultrafast -tag:v hvc1 -x265-params lossless=1:log-level=none";

const SourceColor bt601{"smpte170m", "smpte170m", "smpte170m", "tv", true};
const SourceColor bt601Untagged{"smpte170m", "smpte170m", "smpte170m", "tv", false};
const SourceColor bt601Pal{"bt470bg", "smpte170m", "bt470bg", "tv", true};
const SourceColor bt601Full{"smpte170m", "smpte170m", "smpte170m", "pc", true};
const SourceColor bt709Full{"bt709", "bt709", "bt709", "pc", true};
const SourceColor bt2020{"bt2020", "bt2020-10", "bt2020nc", "tv", true};
const SourceColor displayP3{"smpte432", "bt709", "bt709", "tv", true};
const SourceColor hlg{"bt2020", "arib-std-b67", "bt2020nc", "tv", true};
const SourceColor pq{"bt2020", "smpte2084", "bt2020nc", "tv", true};
const SourceColor rgb{"bt709", "bt709", "gbr", "pc", false};

std::vector<Source> turned() {
    return {
        {.name = "Turned90",
         .title = "Phone held upright: turned by 90°",
         .turn = {0, 1, -1, 0},
         .inEveryFormat = true,
         .inOtherSizes = true},
        {.name = "Turned180", .title = "Phone upside down: turned by 180°", .turn = {-1, 0, 0, -1}},
        {.name = "Turned270", .title = "Phone held upright: turned by 270°", .turn = {0, -1, 1, 0}},
        {.name = "Mirrored",
         .title = "Front camera: mirrored",
         .turn = {-1, 0, 0, 1},
         .inEveryFormat = true,
         .inOtherSizes = true},
        {.name = "MirroredAndTurned",
         .title = "Front camera: mirrored and turned by 90°",
         .turn = {0, 1, 1, 0}},
    };
}

std::vector<Source> layouts() {
    return {
        {.name = "Plain",
         .title = "H.264, 8 bits, 4:2:0, BT.709",
         .inEveryFormat = true,
         .inOtherSizes = true},
        {.name = "H264TenBits", .title = "H.264, 10 bits, 4:2:0", .layout = "yuv420p10le"},
        {.name = "H264With422", .title = "H.264, 8 bits, 4:2:2", .layout = "yuv422p"},
        {.name = "H264TenBitsWith422",
         .title = "H.264, 10 bits, 4:2:2",
         .layout = "yuv422p10le",
         .inEveryFormat = true},
        {.name = "H264With444", .title = "H.264, 8 bits, 4:4:4", .layout = "yuv444p"},
        {.name = "HevcEightBits", .title = "HEVC, 8 bits, 4:2:0", .pictures = lossless265},
        {.name = "HevcTenBits",
         .title = "HEVC, 10 bits, 4:2:0",
         .layout = "yuv420p10le",
         .pictures = lossless265},
        {.name = "HevcTenBitsWith422",
         .title = "HEVC, 10 bits, 4:2:2",
         .layout = "yuv422p10le",
         .pictures = lossless265},
        {.name = "HevcTwelveBitsWith444",
         .title = "HEVC, 12 bits, 4:4:4",
         .layout = "yuv444p12le",
         .pictures = lossless265},
    };
}

std::vector<Source> colors() {
    return {
        {.name = "Bt601",
         .title = "BT.601 (525 lines), limited range",
         .color = bt601,
         .inEveryFormat = true},
        {.name = "Bt601Pal", .title = "BT.601 (625 lines), limited range", .color = bt601Pal},
        {.name = "Bt601Full", .title = "BT.601, full range", .color = bt601Full},
        {.name = "Bt709Full", .title = "BT.709, full range", .color = bt709Full, .inEveryFormat = true},
        {.name = "Bt2020", .title = "BT.2020, 10 bits, not HDR", .layout = "yuv420p10le", .color = bt2020},
        {.name = "DisplayP3", .title = "Display P3", .color = displayP3},
        {.name = "Untagged", .title = "Small picture without colour tags", .color = bt601Untagged},
        {.name = "Hlg",
         .title = "HDR: HLG, 10 bits",
         .layout = "yuv420p10le",
         .color = hlg,
         .pictures = lossless265,
         .inEveryFormat = true,
         .inOtherSizes = true},
        {.name = "Pq",
         .title = "HDR10: PQ, 10 bits, mastering display and light levels",
         .layout = "yuv420p10le",
         .color = pq,
         .pictures = lossless265 + ":master-display=G(13250,34500)B(7500,3000)R(34000,16000)WP(15635,16450)"
                                   "L(10000000,50):max-cll=1000,400",
         .inEveryFormat = true},
        {.name = "HlgWith422",
         .title = "HDR: HLG, 10 bits, 4:2:2, H.264",
         .layout = "yuv422p10le",
         .color = hlg},
    };
}

std::vector<Source> rates() {
    std::vector<Source> rows;
    for (const auto& [name, rate, title] : std::to_array<std::array<const char*, 3>>({
             {"Fps23976", "24000/1001", "23.976 frames a second"},
             {"Fps24", "24", "24 frames a second"},
             {"Fps2997", "30000/1001", "29.97 frames a second"},
             {"Fps50", "50", "50 frames a second"},
             {"Fps5994", "60000/1001", "59.94 frames a second"},
             {"Fps120", "120", "120 frames a second"},
         }))
        rows.push_back({.name = name, .title = title, .rate = rate});
    rows.push_back({.name = "VariableRate",
                    .title = "Variable frame rate",
                    .pictureFilters = "settb=1/90000,setpts=(N+0.3*mod(N\\,3))/25/TB",
                    // Newer versions give the last frame no duration by themselves.
                    .container =
                        "-bf 0 -fps_mode passthrough -enc_time_base 1/90000 -video_track_timescale 90000 "
                        "-bsf:v setts=duration=3600",
                    .inEveryFormat = true});
    rows.push_back({.name = "VariableRateWithGap",
                    .title = "Variable frame rate, half a second without a frame",
                    .pictureFilters = "settb=1/600,setpts=(N+12*gt(N\\,20))/25/TB",
                    .container = "-fps_mode passthrough -enc_time_base 1/600 -video_track_timescale 600"});
    return rows;
}

std::vector<Source> trims() {
    std::vector<Source> rows;
    for (const char* rate : {"24000/1001", "24", "25", "30000/1001", "30", "48", "50", "60000/1001", "60",
                             "100", "120000/1001", "120", "240"}) {
        const std::string name = rate;
        const bool isWhole = name.find('/') == std::string::npos;
        const std::string whole = name.substr(0, name.find("000/"));
        const std::string words = isWhole         ? name
                                  : whole == "24" ? "23.976"
                                  : whole == "30" ? "29.97"
                                  : whole == "60" ? "59.94"
                                                  : "119.88";
        rows.push_back({.name = "TrimmedFps" + whole + (isWhole ? "" : "Ntsc"),
                        .title = words + " frames a second, cut to begin with a frame",
                        .rate = rate,
                        .trimmedFrames = 7});
    }
    for (const char* rate : {"24", "25", "30"})
        rows.push_back({.name = std::string("TrimmedClock") + rate,
                        .title = std::string("Clock of 1/") + rate + " s, cut to begin between two frames",
                        .rate = rate,
                        .container = std::string("-video_track_timescale ") + rate,
                        .trimmedFrames = 7.5});
    return rows;
}

std::vector<Source> files() {
    const std::string withB = "-c:v libx264 -qp 1 -preset fast -bf 3 -g 12";
    return {
        {.name = "EditList",
         .title = "Edit list that begins between key frames",
         .pictures = withB,
         .secondPass = "-ss 0.2 | -c copy",
         .inEveryFormat = true},
        {.name = "LateStart", .title = "Picture and sound begin at 2 s", .container = "-output_ts_offset 2"},
        {.name = "LatePicture",
         .title = "Picture begins 0.4 s after the sound",
         .pictureOffset = "0.4",
         .container = "-fps_mode passthrough"},
        {.name = "EarlyDecodeTimes",
         .title = "B-frames, decode times before zero",
         .pictures = withB,
         .container = "-movflags +negative_cts_offsets"},
        {.name = "BFramesWithoutEditList",
         .title = "B-frames, no edit list",
         .pictures = withB,
         .container = "-use_editlist 0"},
        {.name = "Fragmented",
         .title = "Fragmented",
         .pictures = lossless264 + " -g 5",
         .container = "-movflags +frag_keyframe+empty_moov+default_base_moof"},
        {.name = "IndexInFront", .title = "Index in front of the media", .container = "-movflags +faststart"},
        {.name = "Mov", .title = "QuickTime file", .file = "clip.mov"},
        {.name = "M4v", .title = "File named .m4v", .file = "clip.m4v", .container = "-f mp4"},
        {.name = "Timecode",
         .title = "Timecode track and subtitles",
         .file = "clip.mov",
         .inputs = "-i note.srt -map 0 -map 1 -map 2",
         .container = "-c:s mov_text -timecode 01:00:00:00"},
        {.name = "Cover",
         .title = "Cover picture",
         .inputs = "-f lavfi -i testsrc=s=96x96:d=0.04 -map 0 -map 1 -map 2",
         .container = "-c:v:1 png -disposition:v:1 attached_pic"},
        {.name = "CoverTrackFirst",
         .title = "Cover picture as a track of its own, before the video",
         .file = "clip.mov",
         .inputs = "-f lavfi -i testsrc=s=96x96:r=25:d=0.04 -map 2 -map 0 -map 1",
         .container = "-c:v:0 mjpeg -pix_fmt:v:0 yuvj420p -filter:v:0 null"},
    };
}

std::vector<Source> shapes() {
    return {
        {.name = "WidePixels",
         .title = "Pixels wider than high (4:3)",
         .pictureFilters = "setsar=4/3",
         .inEveryFormat = true,
         .inOtherSizes = true},
        {.name = "NarrowTurned",
         .title = "Pixels narrower than high (8:9), turned by 90°",
         .pictureFilters = "setsar=8/9",
         .turn = {0, 1, -1, 0}},
        {.name = "OddSize",
         .title = "Odd width and height",
         .pictureFilters = "scale=321:193:flags=neighbor",
         .layout = "yuv444p"},
        {.name = "OddSizeTurned",
         .title = "Odd width and height, turned by 270°",
         .pictureFilters = "scale=323:195:flags=neighbor",
         .layout = "yuv444p",
         .turn = {0, -1, 1, 0}},
        {.name = "TopFieldFirst",
         .title = "Interlaced, top field first",
         .frames = 60,
         .rate = "50",
         .pictureFilters = "tinterlace=interleave_top,fieldorder=tff",
         .pictures = lossless264 + " -flags +ilme+ildct -x264-params tff=1",
         .isInterlaced = true,
         .inEveryFormat = true,
         .inOtherSizes = true},
        {.name = "BottomFieldFirst",
         .title = "Interlaced, bottom field first",
         .frames = 60,
         .rate = "50",
         .pictureFilters = "tinterlace=interleave_bottom,fieldorder=bff",
         .pictures = lossless264 + " -flags +ilme+ildct -x264-params bff=1",
         .isInterlaced = true},
    };
}

std::vector<Source> codecs() {
    return {
        {.name = "Mjpeg",
         .title = "Motion JPEG in MOV, PCM sound",
         .file = "clip.mov",
         .layout = "yuvj422p",
         .color = bt601Full,
         .pictures = "-c:v mjpeg -q:v 2",
         .sound = "-c:a pcm_s16le"},
        {.name = "ProRes",
         .title = "ProRes 422 HQ in MOV, 24-bit PCM",
         .file = "clip.mov",
         .layout = "yuv422p10le",
         .pictures = "-c:v prores_ks -profile:v hq",
         .sound = "-c:a pcm_s24le",
         .inEveryFormat = true},
        {.name = "ProRes4444",
         .title = "ProRes 4444 with alpha",
         .file = "clip.mov",
         .layout = "yuva444p10le",
         .pictures = "-c:v prores_ks -profile:v 4444"},
        {.name = "ProResInterlaced",
         .title = "ProRes, interlaced",
         .file = "clip.mov",
         .frames = 60,
         .rate = "50",
         .pictureFilters = "tinterlace=interleave_top,fieldorder=tff",
         .layout = "yuv422p10le",
         .pictures = "-c:v prores_ks -flags +ildct",
         .isInterlaced = true},
        {.name = "Mpeg4", .title = "MPEG-4 part 2", .color = bt601Untagged, .pictures = "-c:v mpeg4 -q:v 1"},
        {.name = "Uncompressed",
         .title = "Uncompressed 4:2:2 in MOV",
         .file = "clip.mov",
         .layout = "uyvy422",
         .pictures = "-c:v rawvideo"},
        {.name = "Animation",
         .title = "QuickTime Animation (R'G'B')",
         .file = "clip.mov",
         .layout = "rgb24",
         .color = rgb,
         .pictures = "-c:v qtrle"},
        {.name = "DnxHr",
         .title = "DNxHR HQ in MOV",
         .file = "clip.mov",
         .layout = "yuv422p",
         .pictures = "-c:v dnxhd -profile:v dnxhr_hq"},
    };
}

std::vector<Source> sounds() {
    const std::string mov = "clip.mov";
    std::vector<Source> rows{
        {.name = "Silent", .title = "No sound", .sound = ""},
        {.name = "Mono8", .title = "AAC, mono, 8 kHz", .soundRate = 8000, .speakers = "mono"},
        {.name = "Surround", .title = "AAC, 5.1", .sound = "-c:a aac -b:a 384k", .speakers = "5.1"},
        {.name = "Rate96", .title = "AAC, 96 kHz", .soundRate = 96000},
        {.name = "Rate32", .title = "AAC, 32 kHz", .soundRate = 32000},
        {.name = "Pcm8",
         .title = "8-bit PCM, mono, 11.025 kHz",
         .file = mov,
         .sound = "-c:a pcm_u8",
         .soundRate = 11025,
         .speakers = "mono"},
        {.name = "Pcm96",
         .title = "24-bit PCM, 96 kHz",
         .file = mov,
         .sound = "-c:a pcm_s24le",
         .soundRate = 96000},
        {.name = "PcmBigEndian",
         .title = "16-bit PCM, big-endian, 5.1",
         .file = mov,
         .sound = "-c:a pcm_s16be",
         .speakers = "5.1"},
        {.name = "Alac", .title = "ALAC", .sound = "-c:a alac"},
        {.name = "Mp3", .title = "MP3, 44.1 kHz", .sound = "-c:a libmp3lame", .soundRate = 44100},
        {.name = "Ac3", .title = "AC-3, 5.1", .sound = "-c:a ac3", .speakers = "5.1"},
        {.name = "Opus", .title = "Opus", .sound = "-c:a libopus -strict -2"},
        {.name = "LongSound", .title = "Sound longer than the picture", .soundLength = 2.5},
        {.name = "ShortSound", .title = "Sound shorter than the picture", .soundLength = 0.8},
        {.name = "LateSound", .title = "Sound begins 0.3 s late", .soundOffset = 0.3, .inEveryFormat = true},
        {.name = "LatePcm",
         .title = "PCM sound begins 0.3 s late",
         .file = mov,
         .sound = "-c:a pcm_s16le",
         .soundOffset = 0.3},
        {.name = "TwoTracks",
         .title = "Two sound tracks, the first one silent",
         .inputs = "-f lavfi -i anullsrc=cl=mono:d=1.2 -map 0:v -map 2:a -map 1:a"},
    };
    return rows;
}

std::vector<Source> all() {
    std::vector<Source> rows;
    for (const auto& part :
         {turned(), layouts(), colors(), rates(), trims(), files(), shapes(), codecs(), sounds()})
        rows.insert(rows.end(), part.begin(), part.end());
    return rows;
}

}

std::span<const Source> sources() {
    static const std::vector<Source> rows = all();
    return rows;
}

const Source& sourceNamed(const std::string& name) {
    const auto found = std::ranges::find(sources(), name, &Source::name);
    if (found == sources().end())
        throw std::runtime_error("no source of the name " + name);
    return *found;
}

}
