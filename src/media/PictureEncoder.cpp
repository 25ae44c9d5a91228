#include "media/PictureEncoder.h"

#include "media/ColorTags.h"
#include "media/EncoderOptions.h"
#include "media/FFmpegError.h"
#include "media/HdrSideData.h"

namespace pointloom::media {

namespace {

constexpr auto couldNotEncode = "a picture could not be encoded";

CodecPtr makeCodec(const VideoSettings& settings) {
    const char* name = encoderName(settings.encoder, settings.codec);
    const AVCodec* encoder = name == nullptr ? nullptr : avcodec_find_encoder_by_name(name);
    if (encoder == nullptr)
        throw EncoderError(name == nullptr ? std::string("it has no encoder for this format")
                                           : std::string("this system's FFmpeg has no encoder ") + name);
    CodecPtr context(avcodec_alloc_context3(encoder));
    if (!context)
        throw MediaError("out of memory");
    return context;
}

void requireOpened(int code) {
    if (code < 0)
        throw EncoderError("the video encoder could not be opened: " + errorText(code), faultOf(code));
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
    context.codec_tag = codecTag(settings);
}

}

PictureEncoder::PictureEncoder(const VideoSettings& settings, bool wantsGlobalHeaders)
    : m_settings(settings)
    , m_codec(makeCodec(settings))
    , m_packet(makePacket()) {
    describePictures(*m_codec, settings);
    if (m_codec->pix_fmt == AV_PIX_FMT_NONE)
        throw EncoderError("the video encoder cannot take this sample layout");
    if (settings.encoder != EncoderKind::software)
        m_input.emplace(*m_codec, settings);
    if (wantsGlobalHeaders)
        m_codec->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    Options options;
    chooseOptions(*m_codec, settings, options);
    requireOpened(avcodec_open2(m_codec.get(), m_codec->codec, options.pointer()));
}

void PictureEncoder::send(const VideoFrame& frame, std::int64_t timestamp) {
    AVFramePtr picture(av_frame_clone(frame.handle()));
    if (!picture)
        throw MediaError("out of memory");
    picture->pts = timestamp;
    picture->pict_type = AV_PICTURE_TYPE_NONE; // the source's choice of key pictures is not ours
    setTags(*picture, tagsFor(m_settings));
    dropStaleMetadata(*picture);
    picture->sample_aspect_ratio = m_codec->sample_aspect_ratio;
    tellingTheEncoder([&] {
        if (m_input)
            picture = m_input->convert(*picture);
        check(avcodec_send_frame(m_codec.get(), picture.get()), couldNotEncode);
    });
}

void PictureEncoder::finish() {
    tellingTheEncoder([&] { check(avcodec_send_frame(m_codec.get(), nullptr), couldNotEncode); });
}

AVPacket* PictureEncoder::next() {
    const int result = avcodec_receive_packet(m_codec.get(), m_packet.get());
    if (result == AVERROR(EAGAIN) || result == AVERROR_EOF)
        return nullptr;
    tellingTheEncoder([&] { check(result, couldNotEncode); });
    return m_packet.get();
}

template <class Call>
void PictureEncoder::tellingTheEncoder(const Call& call) const {
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
