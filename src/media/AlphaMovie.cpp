#include "media/AlphaMovie.h"

#include "media/FFmpeg.h"
#include "media/MediaWriter.h"
#include "media/OutputFile.h"

#include <algorithm>
#include <cmath>

namespace pointloom::media {

namespace {

constexpr int planes = 4; // Y, Cb, Cr, alpha

/// Y'CbCr of 10 bits in limited range from R'G'B' of 0 to 255 (ITU-R BT.709, 3.2 and 3.4).
std::array<std::uint16_t, 3> toYCbCr(const std::uint8_t* rgb) {
    constexpr double red = 0.2126;
    constexpr double blue = 0.0722;
    constexpr double green = 1 - red - blue;
    const double luma = (red * rgb[0] + green * rgb[1] + blue * rgb[2]) / 255;
    const double cb = (rgb[2] / 255.0 - luma) / (2 * (1 - blue));
    const double cr = (rgb[0] / 255.0 - luma) / (2 * (1 - red));
    const auto code = [](double value) { return static_cast<std::uint16_t>(std::lround(value)); };
    return {code(64 + 876 * luma), code(512 + 896 * cb), code(512 + 896 * cr)};
}

std::uint16_t toTenBits(std::uint8_t alpha) {
    return static_cast<std::uint16_t>((alpha * 1023 + 127) / 255);
}

/// Upper bound of the encoder's buffer for a packet: 16.2 bytes a pixel, 1.1 GB for the largest frame. Few of
/// these bytes are ever written.
std::size_t largestPacket(const AVCodecContext& codec) {
    constexpr std::size_t bytesPerPixel = 17;
    constexpr std::size_t margin = 1U << 20U;
    return static_cast<std::size_t>(codec.width) * static_cast<std::size_t>(codec.height) * bytesPerPixel +
           margin;
}

CodecPtr openProres4444(const OutputFile& file, QSize size, Rational timeBase, Rational frameRate) {
    // The only one of FFmpeg's ProRes encoders that writes alpha.
    const AVCodec* encoder = avcodec_find_encoder_by_name("prores_ks");
    if (encoder == nullptr)
        throw EncoderError("this system's FFmpeg has no encoder prores_ks");
    CodecPtr context = allocated(CodecPtr(avcodec_alloc_context3(encoder)));
    context->width = size.width();
    context->height = size.height();
    context->pix_fmt = AV_PIX_FMT_YUVA444P10LE;
    context->sample_aspect_ratio = {1, 1};
    context->color_primaries = AVCOL_PRI_BT709;
    context->color_trc = AVCOL_TRC_BT709;
    context->colorspace = AVCOL_SPC_BT709;
    context->color_range = AVCOL_RANGE_MPEG;
    context->time_base = toAv(timeBase);
    context->framerate = toAv(frameRate);
    context->codec_tag = MKTAG('a', 'p', '4', 'h');
    context->bits_per_coded_sample = 32;    // tells readers of the container that there is alpha
    context->thread_type = FF_THREAD_SLICE; // each frame is returned before the next one is taken
    context->thread_count = 0;
    if (file.wantsGlobalHeaders())
        context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    Options options;
    options.set("profile", "4444");
    options.set("alpha_bits", "16");
    const int opened = avcodec_open2(context.get(), encoder, options.pointer());
    if (opened < 0)
        throw EncoderError("the video encoder could not be opened: " + errorText(opened), faultOf(opened));
    return context;
}

}

struct AlphaMovie::State {
    OutputFile file;
    CodecPtr codec;
    AVStream& track;
    PacketPtr encoded; // the image; empty before the first
    std::int64_t images = 0;

    State(const QString& path, QSize size, Rational timeBase, Rational frameRate)
        : file(path, "mov")
        , codec(openProres4444(file, size, timeBase, frameRate))
        , track(file.addTrack(*codec)) {
        file.writeHeader(timeBase);
    }
};

AlphaMovie::AlphaMovie(std::unique_ptr<State> state)
    : m_state(std::move(state)) {}
AlphaMovie::~AlphaMovie() = default;

AlphaMovie AlphaMovie::create(const QString& path, QSize size, Rational timeBase, Rational frameRate) {
    return AlphaMovie(std::make_unique<State>(path, size, timeBase, frameRate));
}

void AlphaMovie::setImage(std::span<const std::uint8_t> rgba) {
    AVCodecContext& codec = *m_state->codec;
    if (rgba.size() !=
        static_cast<std::size_t>(codec.width) * static_cast<std::size_t>(codec.height) * planes)
        throw MediaError("a picture does not have the size that the file was made for");
    const AVFramePtr frame = makeFrame();
    frame->format = codec.pix_fmt;
    frame->width = codec.width;
    frame->height = codec.height;
    frame->color_primaries = codec.color_primaries; // each frame of ProRes carries them
    frame->color_trc = codec.color_trc;
    frame->colorspace = codec.colorspace;
    frame->color_range = codec.color_range;
    check(av_frame_get_buffer(frame.get(), 0), "there is no memory for a picture");
    const std::uint8_t* source = rgba.data();
    for (int y = 0; y < frame->height; ++y) {
        std::array<std::uint16_t*, planes> row{};
        for (std::size_t i = 0; i < row.size(); ++i)
            row[i] = reinterpret_cast<std::uint16_t*>(frame->data[i] + y * frame->linesize[i]);
        for (int x = 0; x < frame->width; ++x, source += planes) {
            const auto samples = toYCbCr(source);
            for (std::size_t i = 0; i < samples.size(); ++i)
                row[i][x] = samples[i];
            row[planes - 1][x] = toTenBits(source[planes - 1]);
        }
    }
    frame->pts = m_state->images++;
    m_state->encoded = makePacket();
    const LargerAllocations allowed(largestPacket(codec));
    check(avcodec_send_frame(&codec, frame.get()), "a picture could not be encoded");
    check(avcodec_receive_packet(&codec, m_state->encoded.get()), "a picture could not be encoded");
}

void AlphaMovie::write(std::int64_t timestamp, std::int64_t duration) {
    if (!m_state->encoded)
        throw MediaError("there is no picture to write");
    const PacketPtr packet = allocated(PacketPtr(av_packet_clone(m_state->encoded.get())));
    packet->pts = timestamp;
    packet->dts = timestamp;
    packet->duration = duration;
    m_state->file.write(*packet, m_state->track, m_state->codec->time_base);
}

void AlphaMovie::finish() {
    m_state->file.finish();
}

}
