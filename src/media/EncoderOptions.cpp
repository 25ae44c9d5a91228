#include "media/EncoderOptions.h"

#include "media/HdrSideData.h"

#include <algorithm>
#include <thread>

namespace pointloom::media {

namespace {

int processors() {
    return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

/// Of one of several encoders that share the processors.
int shareOf(int threads, const VideoSettings& settings) {
    return std::max(1, threads / settings.encodersAtOnce);
}

/// x264 takes three threads for two processors, which leaves them idle a tenth of the time while its threads
/// wait for each other. Two a processor fill small machines; larger ones have enough with its own choice.
int h264Threads(const VideoSettings& settings) {
    constexpr int smallMachine = 8;
    if (processors() <= smallMachine)
        return shareOf(2 * processors(), settings);
    return settings.encodersAtOnce > 1 ? shareOf(processors() * 3 / 2, settings) : 0;
}

std::string x265Parameters(const VideoSettings& settings) {
    std::string parameters = "log-level=none"; // it writes to standard error by itself, past FFmpeg's log
    if (settings.joinable)
        parameters += ":info=0"; // a message in the headers that names its threads
    if (settings.encodersAtOnce > 1)
        parameters += ":pools=" + std::to_string(shareOf(processors(), settings));
    if (settings.lossless)
        parameters += ":lossless=1";
    if (settings.isHdr())
        parameters += x265HdrParameters(settings.hdr);
    return parameters;
}

void chooseRateFactor(const VideoSettings& settings, Options& options) {
    if (settings.quality != EncodingQuality::standard)
        options.set("crf", rateFactor(settings.codec, settings.quality));
}

/// Of FFmpeg's encoder: LT, 422 and HQ.
int proresProfile(EncodingQuality quality) {
    switch (quality) {
    case EncodingQuality::smaller:
        return 1;
    case EncodingQuality::standard:
        return 2;
    case EncodingQuality::better:
        break;
    }
    return 3;
}

void chooseSoftwareOptions(AVCodecContext& context, const VideoSettings& settings, Options& options) {
    context.thread_count = 0;
    switch (settings.codec) {
    case VideoCodec::h264:
        context.thread_count = h264Threads(settings);
        chooseRateFactor(settings, options);
        if (settings.lossless)
            options.set("qp", "0");
        break;
    case VideoCodec::hevc:
        chooseRateFactor(settings, options);
        options.set("x265-params", x265Parameters(settings).c_str());
        break;
    case VideoCodec::prores:
        context.profile = proresProfile(settings.quality);
        if (settings.encodersAtOnce > 1)
            context.thread_count = shareOf(processors(), settings);
        return;
    }
    if (!settings.encoderPreset.empty())
        options.set("preset", settings.encoderPreset.c_str());
}

/// Of VideoToolbox, [1, 100]; larger is better.
int videoToolboxQuality(EncodingQuality quality) {
    switch (quality) {
    case EncodingQuality::smaller:
        return 45;
    case EncodingQuality::standard:
        return 55;
    case EncodingQuality::better:
        break;
    }
    return 70;
}

// A quality that is kept whatever it takes, as x264 and x265 do it.
void chooseHardwareOptions(AVCodecContext& context, const VideoSettings& settings, Options& options) {
    const int quantiser = rateFactor(settings.codec, settings.quality);
    context.max_b_frames = 0; // pictures stay in order, whose times any rate of frames may have
    switch (settings.encoder) {
    case EncoderKind::vaapi:
        options.set("rc_mode", "CQP");
        options.set("qp", quantiser);
        break;
    case EncoderKind::nvenc:
        context.bit_rate = 0;
        options.set("rc", "vbr");
        options.set("cq", quantiser);
        break;
    case EncoderKind::qsv:
        context.global_quality = quantiser;
        break;
    case EncoderKind::videotoolbox:
        context.flags |= AV_CODEC_FLAG_QSCALE;
        context.global_quality = videoToolboxQuality(settings.quality) * FF_QP2LAMBDA;
        break;
    case EncoderKind::software:
        break;
    }
}

}

const char* encoderName(EncoderKind kind, VideoCodec codec) {
    struct Names {
        EncoderKind kind;
        const char* h264;
        const char* hevc;
        const char* prores;
    };
    static constexpr Names table[] = {
        {EncoderKind::software, "libx264", "libx265", "prores"},
        {EncoderKind::vaapi, "h264_vaapi", "hevc_vaapi", nullptr},
        {EncoderKind::nvenc, "h264_nvenc", "hevc_nvenc", nullptr},
        {EncoderKind::qsv, "h264_qsv", "hevc_qsv", nullptr},
        {EncoderKind::videotoolbox, "h264_videotoolbox", "hevc_videotoolbox", nullptr},
    };
    const auto* names =
        std::find_if(std::begin(table), std::end(table), [&](const Names& row) { return row.kind == kind; });
    switch (codec) {
    case VideoCodec::h264:
        return names->h264;
    case VideoCodec::hevc:
        return names->hevc;
    case VideoCodec::prores:
        break;
    }
    return names->prores;
}

unsigned codecTag(const VideoSettings& settings) {
    switch (settings.codec) {
    case VideoCodec::h264:
        return MKTAG('a', 'v', 'c', '1');
    case VideoCodec::hevc:
        return MKTAG('h', 'v', 'c', '1');
    case VideoCodec::prores:
        break;
    }
    switch (settings.quality) {
    case EncodingQuality::smaller:
        return MKTAG('a', 'p', 'c', 's');
    case EncodingQuality::standard:
        return MKTAG('a', 'p', 'c', 'n');
    case EncodingQuality::better:
        break;
    }
    return MKTAG('a', 'p', 'c', 'h');
}

void chooseOptions(AVCodecContext& context, const VideoSettings& settings, Options& options) {
    if (settings.encoder == EncoderKind::software)
        chooseSoftwareOptions(context, settings, options);
    else
        chooseHardwareOptions(context, settings, options);
}

}
