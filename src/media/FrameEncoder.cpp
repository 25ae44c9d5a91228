#include "media/FrameEncoder.h"

#include "media/ColorTags.h"
#include "media/SideData.h"

#include <algorithm>
#include <array>
#include <thread>

namespace pointloom::media {

namespace {

int processors() {
    return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

/// The threads of one of several encoders that share the processors.
int shareOf(int threads, const VideoSettings& settings) {
    return std::max(1, threads / settings.encodersAtOnce);
}

/// By itself x264 takes three threads for two processors, which leaves them idle a tenth of the time while
/// threads wait for each other. Two per processor fill small machines; for larger ones its own choice (0) is
/// enough.
int h264Threads(const VideoSettings& settings) {
    constexpr int smallMachine = 8;
    if (processors() <= smallMachine)
        return shareOf(2 * processors(), settings);
    return settings.encodersAtOnce > 1 ? shareOf(processors() * 3 / 2, settings) : 0;
}

std::string x265Parameters(const VideoSettings& settings, const std::string& more) {
    std::string parameters = "log-level=none"; // it writes to standard error, not to FFmpeg's log
    if (!more.empty())
        parameters += ":" + more;
    if (settings.joinable)
        parameters += ":info=0"; // else the headers name its threads
    if (settings.encodersAtOnce > 1)
        parameters += ":pools=" + std::to_string(shareOf(processors(), settings));
    if (settings.lossless)
        parameters += ":lossless=1";
    if (settings.isHdr())
        parameters += x265HdrParameters(settings.hdr);
    return parameters;
}

/// What x264 or x265 is told for a quality.
struct SoftwareRate {
    const char* preset; // of speed
    const char* rateFactor;
    const char* parameters = ""; // that differ from the preset's
};

struct HardwareRate {
    int h264Quantiser; // [0, 51]; smaller is better
    int hevcQuantiser;
    int videoToolboxQuality; // [1, 100]; larger is better
};

struct ProresProfile {
    int profile; // of FFmpeg's encoder
    unsigned tag;
};

constexpr ProresProfile lt{1, MKTAG('a', 'p', 'c', 's')};
constexpr ProresProfile plain{2, MKTAG('a', 'p', 'c', 'n')};
constexpr ProresProfile hq{3, MKTAG('a', 'p', 'c', 'h')};

struct QualityRow {
    EncodingQuality quality;
    SoftwareRate h264;
    SoftwareRate hevc;
    HardwareRate hardware;
    ProresProfile prores;
};

// Chosen by measuring, which docs/PERFORMANCE.md tells. A look further ahead saves data for a twentieth of
// the time, and estimating motion less finely takes a tenth off and is hardly seen.
constexpr SoftwareRate h264At(const char* rateFactor) {
    return {"faster", rateFactor, "rc-lookahead=40:subme=3"};
}

constexpr SoftwareRate hevcAt(const char* rateFactor) {
    return {"veryfast", rateFactor};
}

constexpr SoftwareRate h264Fast{"superfast", "22", "mbtree=1:rc-lookahead=20:subme=2:weightp=1"};
constexpr SoftwareRate hevcFast{"superfast", "26"};

// A seek decodes eight frames at most; more frames between key frames save no data worth it. `ultrafast` takes twice
// the data for a tenth less of time.
constexpr SoftwareRate h264Preview{"superfast", "25", "keyint=8:min-keyint=8:bframes=0:cabac=0"};

constexpr std::array qualities{
    QualityRow{EncodingQuality::standard, h264At("23"), hevcAt("27.5"), {23, 28, 55}, plain},
    QualityRow{EncodingQuality::fast, h264Fast, hevcFast, {23, 28, 55}, plain},
    QualityRow{EncodingQuality::smaller, h264At("27"), hevcAt("31.5"), {27, 32, 45}, lt},
    QualityRow{EncodingQuality::better, h264At("18"), hevcAt("22.5"), {18, 23, 70}, hq},
    QualityRow{EncodingQuality::preview, h264Preview, hevcFast, {27, 32, 45}, lt},
};

const QualityRow& rowOf(EncodingQuality quality) {
    return *std::ranges::find(qualities, quality, &QualityRow::quality);
}

/// A preset that was asked for comes without the parameters of the other.
void chooseRate(const SoftwareRate& rate, const VideoSettings& settings, Options& options) {
    const bool isOwnPreset = settings.encoderPreset.empty();
    options.set("preset", isOwnPreset ? rate.preset : settings.encoderPreset.c_str());
    if (!settings.lossless)
        options.set("crf", rate.rateFactor);
    if (settings.codec == VideoCodec::hevc)
        options.set("x265-params", x265Parameters(settings, isOwnPreset ? rate.parameters : "").c_str());
    else if (isOwnPreset)
        options.set("x264-params", rate.parameters);
}

void chooseSoftwareOptions(AVCodecContext& context, const VideoSettings& settings, Options& options) {
    context.thread_count = 0;
    switch (settings.codec) {
    case VideoCodec::h264:
        context.thread_count = h264Threads(settings);
        chooseRate(rowOf(settings.quality).h264, settings, options);
        if (settings.lossless)
            options.set("qp", "0");
        break;
    case VideoCodec::hevc:
        chooseRate(rowOf(settings.quality).hevc, settings, options);
        break;
    case VideoCodec::prores:
        context.profile = rowOf(settings.quality).prores.profile;
        if (settings.encodersAtOnce > 1)
            context.thread_count = shareOf(processors(), settings);
        break;
    }
}

// Constant quality at any data rate, as x264 and x265 do it.
void chooseHardwareOptions(AVCodecContext& context, const VideoSettings& settings, Options& options) {
    const QualityRow& row = rowOf(settings.quality);
    const int quantiser =
        settings.codec == VideoCodec::hevc ? row.hardware.hevcQuantiser : row.hardware.h264Quantiser;
    context.max_b_frames = 0; // frames stay in order, whatever their times
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
        context.global_quality = row.hardware.videoToolboxQuality * FF_QP2LAMBDA;
        break;
    case EncoderKind::software:
        break;
    }
}

/// FFmpeg's name of the encoder; null when that kind has none for the codec.
const char* encoderName(EncoderKind kind, VideoCodec codec) {
    using Names = std::array<const char*, 3>; // by VideoCodec
    static constexpr std::array<Names, 5> table{{
        // by EncoderKind
        {"libx264", "libx265", "prores"},
        {"h264_vaapi", "hevc_vaapi", nullptr},
        {"h264_nvenc", "hevc_nvenc", nullptr},
        {"h264_qsv", "hevc_qsv", nullptr},
        {"h264_videotoolbox", "hevc_videotoolbox", nullptr},
    }};
    return table[static_cast<std::size_t>(kind)][static_cast<std::size_t>(codec)];
}

/// The container's name of the codec, which for ProRes names the profile too.
unsigned codecTag(const VideoSettings& settings) {
    switch (settings.codec) {
    case VideoCodec::h264:
        return MKTAG('a', 'v', 'c', '1');
    case VideoCodec::hevc:
        return MKTAG('h', 'v', 'c', '1');
    case VideoCodec::prores:
        break;
    }
    return rowOf(settings.quality).prores.tag;
}

/// Sets only what was requested: rate and quality stay the encoder's own, except in hardware, whose defaults
/// are made for live streams.
void chooseOptions(AVCodecContext& context, const VideoSettings& settings, Options& options) {
    if (settings.encoder == EncoderKind::software)
        chooseSoftwareOptions(context, settings, options);
    else
        chooseHardwareOptions(context, settings, options);
}

constexpr auto couldNotEncode = "a picture could not be encoded";

CodecPtr makeCodec(const VideoSettings& settings) {
    const char* name = encoderName(settings.encoder, settings.codec);
    const AVCodec* encoder = name == nullptr ? nullptr : avcodec_find_encoder_by_name(name);
    if (encoder == nullptr)
        throw EncoderError(name == nullptr ? std::string("it has no encoder for this format")
                                           : std::string("this system's FFmpeg has no encoder ") + name);
    return allocated(CodecPtr(avcodec_alloc_context3(encoder)));
}

ColorTags tagsFor(const VideoSettings& settings) {
    ColorTags tags = tagsFor(settings.format.color);
    if (settings.codec == VideoCodec::prores) { // has fewer values for the same curve and matrix
        if (settings.format.color.transfer == Transfer::sdr)
            tags.transfer = AVCOL_TRC_BT709;
        if (settings.format.color.matrix == Matrix::bt601)
            tags.matrix = AVCOL_SPC_SMPTE170M;
    }
    return tags;
}

void describeFrames(AVCodecContext& context, const VideoSettings& settings) {
    const ColorTags tags = tagsFor(settings);
    context.width = settings.size.width();
    context.height = settings.size.height();
    context.pix_fmt = pixelFormat(settings.format.subsampling, settings.format.bitDepth);
    context.sample_aspect_ratio = toAv(settings.sampleAspectRatio);
    context.color_primaries = tags.primaries;
    context.color_trc = tags.transfer;
    context.colorspace = tags.matrix;
    context.color_range = tags.range;
    context.chroma_sample_location = tags.chromaLocation;
    context.time_base = toAv(settings.timeBase);
    context.framerate = toAv(settings.frameRate);
    context.codec_tag = codecTag(settings);
}

}

FrameEncoder::FrameEncoder(const VideoSettings& settings, bool wantsGlobalHeaders)
    : m_settings(settings)
    , m_codec(makeCodec(settings))
    , m_packet(makePacket()) {
    describeFrames(*m_codec, settings);
    if (m_codec->pix_fmt == AV_PIX_FMT_NONE)
        throw EncoderError("the video encoder cannot take this sample layout");
    if (settings.encoder != EncoderKind::software)
        m_input.emplace(*m_codec, settings);
    if (wantsGlobalHeaders)
        m_codec->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    Options options;
    chooseOptions(*m_codec, settings, options);
    const int opened = avcodec_open2(m_codec.get(), m_codec->codec, options.pointer());
    if (opened < 0)
        throw EncoderError("the video encoder could not be opened: " + errorText(opened), faultOf(opened));
}

void FrameEncoder::send(const VideoFrame& frame, std::int64_t timestamp) {
    AVFramePtr entering = cloned(*frame.handle());
    entering->pts = timestamp;
    entering->pict_type = AV_PICTURE_TYPE_NONE; // the source's key frames are not the export's
    setTags(*entering, tagsFor(m_settings));
    dropStaleMetadata(*entering);
    entering->sample_aspect_ratio = m_codec->sample_aspect_ratio;
    withEncoderName([&] {
        if (m_input)
            entering = m_input->convert(*entering);
        check(avcodec_send_frame(m_codec.get(), entering.get()), couldNotEncode);
    });
}

void FrameEncoder::finish() {
    withEncoderName([&] { check(avcodec_send_frame(m_codec.get(), nullptr), couldNotEncode); });
}

AVPacket* FrameEncoder::next() {
    const int result = avcodec_receive_packet(m_codec.get(), m_packet.get());
    if (result == AVERROR(EAGAIN) || result == AVERROR_EOF)
        return nullptr;
    withEncoderName([&] { check(result, couldNotEncode); });
    return m_packet.get();
}

template <class Call>
void FrameEncoder::withEncoderName(const Call& call) const {
    try {
        call();
    } catch (const MediaError& error) {
        if (!m_input)
            throw;
        throw MediaError(std::string(nameOf(m_settings.encoder)) +
                         " failed, the software encoder works everywhere: " + error.what());
    }
}

}
