#include "media/VideoEncoder.h"

#include "media/ColorTags.h"
#include "media/DisplayMatrix.h"
#include "media/FFmpegError.h"
#include "media/HdrSideData.h"

#include <algorithm>
#include <cmath>
#include <thread>

namespace pointloom::media {

namespace {

const char* encoderName(VideoCodec codec) {
    switch (codec) {
    case VideoCodec::h264:
        return "libx264";
    case VideoCodec::hevc:
        return "libx265";
    case VideoCodec::prores:
        return "prores";
    }
    return "";
}

unsigned codecTag(VideoCodec codec) {
    switch (codec) {
    case VideoCodec::h264:
        return MKTAG('a', 'v', 'c', '1');
    case VideoCodec::hevc:
        return MKTAG('h', 'v', 'c', '1');
    case VideoCodec::prores:
        return MKTAG('a', 'p', 'c', 'n');
    }
    return 0;
}

CodecPtr makeEncoder(VideoCodec codec) {
    const AVCodec* encoder = avcodec_find_encoder_by_name(encoderName(codec));
    if (encoder == nullptr)
        throw MediaError(std::string("this system's FFmpeg has no encoder ") + encoderName(codec));
    CodecPtr context(avcodec_alloc_context3(encoder));
    if (!context)
        throw MediaError("out of memory");
    return context;
}

ColorTags tagsFor(const VideoSettings& settings) {
    ColorTags tags = tagsFor(settings.format.color);
    if (settings.codec == VideoCodec::prores) { // knows fewer names for the same curve and matrix
        if (settings.format.color.transfer == Transfer::sdr)
            tags.transfer = AVCOL_TRC_BT709;
        if (settings.format.color.matrix == Matrix::bt601)
            tags.matrix = AVCOL_SPC_SMPTE170M;
    }
    return tags;
}

void describePictures(AVCodecContext& context, const VideoSettings& settings) {
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
    context.codec_tag = codecTag(settings.codec);
}

/// x264 takes three threads for two processors, which leaves them idle a tenth of the time while its threads
/// wait for each other. Two a processor fill small machines; larger ones have enough with its own choice.
int h264Threads() {
    constexpr unsigned smallMachine = 8;
    const unsigned processors = std::thread::hardware_concurrency();
    return processors > 0 && processors <= smallMachine ? static_cast<int>(2 * processors) : 0;
}

bool isHdr(const VideoSettings& settings) {
    return settings.format.color.transfer != Transfer::sdr;
}

std::string x265Parameters(const VideoSettings& settings) {
    std::string parameters = "log-level=none"; // it writes to standard error by itself, past FFmpeg's log
    if (settings.joinable)
        parameters += ":info=0"; // a message in the headers that names its threads
    if (settings.lossless)
        parameters += ":lossless=1";
    if (isHdr(settings))
        parameters += x265Parameters(settings.hdr);
    return parameters;
}

/// Nothing but what was asked for: rate and quality stay the encoder's own.
void choosePreset(AVCodecContext& context, const VideoSettings& settings, Options& options) {
    context.thread_count = 0;
    switch (settings.codec) {
    case VideoCodec::h264:
        context.thread_count = h264Threads();
        if (settings.lossless)
            options.set("qp", "0");
        break;
    case VideoCodec::hevc:
        options.set("x265-params", x265Parameters(settings).c_str());
        break;
    case VideoCodec::prores:
        context.profile = 2; // "standard", which is ProRes 422
        return;
    }
    if (!settings.encoderPreset.empty())
        options.set("preset", settings.encoderPreset.c_str());
}

}

VideoEncoder::VideoEncoder(OutputFile& file, const VideoSettings& settings)
    : m_file(file)
    , m_settings(settings)
    , m_codec(makeEncoder(settings.codec))
    , m_packet(makePacket()) {
    describePictures(*m_codec, settings);
    if (m_codec->pix_fmt == AV_PIX_FMT_NONE)
        throw MediaError("the video encoder cannot take this sample layout");
    if (file.wantsGlobalHeaders())
        m_codec->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    Options options;
    choosePreset(*m_codec, settings, options);
    check(avcodec_open2(m_codec.get(), m_codec->codec, options.pointer()),
          "the video encoder could not be opened");
    m_track = &file.addTrack(*m_codec);
    writeOrientation(*m_track, settings.orientation, settings.size);
    if (isHdr(settings))
        writeHdrMetadata(*m_track, settings.hdr);
    const double ticks = 1 / (settings.frameRate.value() * settings.timeBase.value());
    m_usualDuration = std::max<std::int64_t>(1, std::llround(ticks));
}

void VideoEncoder::write(const VideoFrame& frame) {
    if (QSize(frame.width(), frame.height()) != m_settings.size || frame.format() != m_settings.format)
        throw MediaError("a picture does not have the size or layout that the file was made for");
    const std::int64_t timestamp =
        av_rescale_q(frame.timestamp(), toAv(frame.timeBase()), toAv(m_settings.timeBase));
    if (m_lastTimestamp != AV_NOPTS_VALUE && timestamp <= m_lastTimestamp)
        throw MediaError("the times of the pictures do not rise");
    m_lastTimestamp = timestamp;
    const std::int64_t duration =
        av_rescale_q(frame.duration(), toAv(frame.timeBase()), toAv(m_settings.timeBase));
    if (m_settings.codec == VideoCodec::hevc)
        m_decodeTimes.pictureWentIn(timestamp);
    m_durations[timestamp] = duration > 0 ? duration : m_usualDuration;

    AVFramePtr picture(av_frame_clone(frame.handle()));
    if (!picture)
        throw MediaError("out of memory");
    picture->pts = timestamp;
    picture->pict_type = AV_PICTURE_TYPE_NONE; // the source's choice of key pictures is not ours
    setTags(*picture, tagsFor(m_settings));
    dropStaleMetadata(*picture);
    picture->sample_aspect_ratio = m_codec->sample_aspect_ratio;
    send(picture.get());
}

void VideoEncoder::finish() {
    send(nullptr);
}

void VideoEncoder::send(const AVFrame* picture) {
    check(avcodec_send_frame(m_codec.get(), picture), "a picture could not be encoded");
    for (;;) {
        const int result = avcodec_receive_packet(m_codec.get(), m_packet.get());
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF)
            return;
        check(result, "a picture could not be encoded");
        if (const auto found = m_durations.find(m_packet->pts); found != m_durations.end()) {
            m_packet->duration = found->second;
            m_durations.erase(found);
        }
        if (m_settings.codec == VideoCodec::hevc)
            m_packet->dts = m_decodeTimes.next();
        m_file.write(*m_packet, *m_track, m_codec->time_base);
    }
}

}
