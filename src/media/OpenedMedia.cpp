#include "media/OpenedMedia.h"

#include "media/ColorTags.h"
#include "media/SideData.h"

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>
#include <span>

namespace pointloom::media {

namespace {

bool isFrameTrack(const AVStream& stream) {
    constexpr int notThePicture = AV_DISPOSITION_ATTACHED_PIC | AV_DISPOSITION_TIMED_THUMBNAILS;
    return stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO && (stream.disposition & notThePicture) == 0 &&
           canDecode(stream);
}

/// A single frame is mostly a cover stored as a track of its own.
bool hasSeveralFrames(const AVStream& stream) {
    return avformat_index_get_entries_count(&stream) > 1;
}

bool hasSamples(const AVStream& stream) {
    return avformat_index_get_entries_count(&stream) > 0;
}

/// In fragmented files the index grows while reading, so a track without entries may still have samples.
bool hasKnownSize(const AVStream& stream) {
    return stream.codecpar->width > 0 && stream.codecpar->height > 0 && stream.codecpar->format >= 0;
}

double ratio(AVRational value) {
    return value.den == 0 ? 0 : av_q2d(value);
}

Rational nominalFrameRate(AVFormatContext& context, AVStream& stream) {
    constexpr double highestPlausible = 1000; // frames a second
    const double average = ratio(stream.avg_frame_rate);
    AVRational rate = av_guess_frame_rate(&context, &stream, nullptr);
    if (ratio(rate) <= 0 || (average > 0 && ratio(rate) > 2 * average))
        rate = stream.avg_frame_rate; // for a variable rate the guess may be the clock
    if (ratio(rate) <= 0 || ratio(rate) > highestPlausible)
        return {30, 1};
    constexpr int largestTerm = 100'000; // a limit of encoders
    av_reduce(&rate.num, &rate.den, rate.num, rate.den, largestTerm);
    return fromAv(rate);
}

Rational pixelShape(AVFormatContext& context, AVStream& stream) {
    constexpr double widestPlausible = 16;
    const AVRational shape = av_guess_sample_aspect_ratio(&context, &stream, nullptr);
    const double width = ratio(shape);
    if (width < 1 / widestPlausible || width > widestPlausible)
        return {1, 1};
    return fromAv(shape);
}

bool isInterlacedOrder(AVFieldOrder order) {
    return order == AV_FIELD_TT || order == AV_FIELD_BB || order == AV_FIELD_TB || order == AV_FIELD_BT;
}

/// FFmpeg's name, else the file's four letters for the codec.
std::string codecName(const AVCodecParameters& codec) {
    if (codec.codec_id != AV_CODEC_ID_NONE)
        return avcodec_get_name(codec.codec_id);
    std::array<char, AV_FOURCC_MAX_STRING_SIZE> letters{};
    return av_fourcc_make_string(letters.data(), codec.codec_tag);
}

}

std::optional<int> findVideoTrack(const AVFormatContext& context) {
    for (const auto& suits : {hasSeveralFrames, hasSamples, hasKnownSize}) {
        for (unsigned i = 0; i < context.nb_streams; ++i) {
            const AVStream& stream = *context.streams[i];
            if (isFrameTrack(stream) && suits(stream))
                return static_cast<int>(i);
        }
    }
    return std::nullopt;
}

void requireDecoders(const AVFormatContext& context) {
    for (unsigned i = 0; i < context.nb_streams; ++i) {
        const AVCodecParameters& codec = *context.streams[i]->codecpar;
        if (codec.codec_type != AVMEDIA_TYPE_VIDEO || canDecode(*context.streams[i]))
            continue;
        throw MediaError("there is no decoder for " + codecName(codec), MediaFault::unsupportedCodec);
    }
}

std::int64_t clockRefinement(const AVStream& stream) {
    constexpr int finest = 600; // ticks a second that trim ranges are held in
    const AVRational tick = stream.time_base;
    return std::int64_t{tick.num} * finest > tick.den ? finest / std::gcd(finest, tick.den) : 1;
}

Rational frameClock(const AVStream& stream) {
    const Rational tick = fromAv(stream.time_base);
    return {tick.numerator, tick.denominator * static_cast<int>(clockRefinement(stream))};
}

std::int64_t refinedTicks(std::int64_t ticks, std::int64_t refinement) {
    const std::int64_t farthest = std::numeric_limits<std::int64_t>::max() / 2 / refinement;
    return refinement == 1 ? ticks : std::clamp(ticks, -farthest, farthest) * refinement;
}

void completeTags(AVFrame& frame, const AVStream& stream) {
    completeHdrMetadata(frame, stream);
    const auto layout = static_cast<AVPixelFormat>(frame.format);
    ColorTags tags = tagsOf(frame);
    if (!sampleLayout(layout)) {
        setTags(frame, filledFrom(tags, tagsOf(*stream.codecpar)));
        return;
    }
    ColorTags container = tagsOf(*stream.codecpar);
    for (ColorTags* candidate : {&tags, &container})
        if (candidate->matrix == AVCOL_SPC_RGB) // how ProRes's "unknown" is decoded
            candidate->matrix = AVCOL_SPC_UNSPECIFIED;
    const ColorTags known = filledFrom(tags, container);
    const QSize size(frame.width, frame.height);
    setTags(frame, filledFrom(known, tagsFor(describeColor(known, size, layout))));
    if (isFullRangeAlias(layout))
        frame.color_range = AVCOL_RANGE_JPEG;
    frame.format = withoutFullRangeAlias(layout);
}

std::vector<int> findAudioTracks(const AVFormatContext& context) {
    std::vector<int> tracks;
    for (unsigned i = 0; i < context.nb_streams; ++i) {
        const AVStream& stream = *context.streams[i];
        if (stream.codecpar->codec_type == AVMEDIA_TYPE_AUDIO && canDecode(stream))
            tracks.push_back(static_cast<int>(i));
    }
    return tracks;
}

namespace {

/// The track as the container describes it.
VideoTrackInfo describeVideoTrack(AVFormatContext& context, int streamIndex) {
    AVStream& stream = *context.streams[streamIndex];
    const AVCodecParameters& parameters = *stream.codecpar;
    VideoTrackInfo track;
    track.codecName = QString::fromLatin1(avcodec_get_name(parameters.codec_id));
    track.storedSize = QSize(parameters.width, parameters.height);
    track.sampleAspectRatio = pixelShape(context, stream);
    track.orientation = readOrientation(stream);
    track.frameRate = nominalFrameRate(context, stream);
    track.timeBase = frameClock(stream);
    track.interlaced = isInterlacedOrder(parameters.field_order);
    track.color =
        describeColor(tagsOf(parameters), track.storedSize, static_cast<AVPixelFormat>(parameters.format));
    return track;
}

/// Overrides the container's values with those of the first decoded frame.
void describeByFrame(VideoTrackInfo& track, const AVFrame& frame) {
    const auto layout = static_cast<AVPixelFormat>(frame.format);
    track.storedSize = QSize(frame.width, frame.height);
    track.color = describeColor(tagsOf(frame), track.storedSize, layout);
    if (const AVPixFmtDescriptor* descriptor = av_pix_fmt_desc_get(layout))
        track.bitDepth = descriptor->comp[0].depth;
    track.hdr = readHdrMetadata(frame);
    track.format.reset();
    if (const std::optional<SampleLayout> samples = sampleLayout(layout))
        track.format = FrameFormat{samples->subsampling, samples->bitDepth, track.color};
    track.interlaced = track.interlaced || isInterlaced(frame);
}

/// Seconds from time zero of the presentation timeline to its end: as the container says, and not before the
/// video ends. Of a file that starts late, newer versions of FFmpeg tell the time from the first frame on, so
/// that the sound's end counts too.
double timelineDuration(const AVFormatContext& context) {
    double end =
        context.duration == AV_NOPTS_VALUE ? 0 : static_cast<double>(context.duration) / AV_TIME_BASE;
    const bool startsLate = context.start_time != AV_NOPTS_VALUE && context.start_time > 0;
    for (const AVStream* stream : std::span(context.streams, context.nb_streams)) {
        const AVMediaType type = stream->codecpar->codec_type;
        const bool counts = type == AVMEDIA_TYPE_VIDEO || (type == AVMEDIA_TYPE_AUDIO && startsLate);
        if (!counts || stream->duration == AV_NOPTS_VALUE)
            continue;
        // Added as fractions: in a damaged file the sum may exceed 64 bits.
        const double start =
            stream->start_time == AV_NOPTS_VALUE ? 0 : static_cast<double>(stream->start_time);
        end = std::max(end, (start + static_cast<double>(stream->duration)) * ratio(stream->time_base));
    }
    return end;
}

}

OpenedMedia openMedia(InputFile& file, int decoderThreads) {
    AVFormatContext& context = *file.context();
    OpenedMedia media;
    media.info.audioTracks = static_cast<int>(findAudioTracks(context).size());
    const std::optional<int> stream = findVideoTrack(context);
    media.info.duration = timelineDuration(context);
    if (!stream) {
        if (media.info.audioTracks == 0) {
            requireDecoders(context);
            throw NoVideoTrackError("the file holds no picture and no sound that can be decoded");
        }
        return media;
    }

    media.videoStream = *stream;
    media.info.video = describeVideoTrack(context, *stream);
    file.keepOnly(*stream);
    media.decoder.emplace(&context, *stream, decoderThreads);
    constexpr std::int64_t mostPackets = 500; // before the first good frame
    media.firstFrame = media.decoder->next(mostPackets);
    if (!media.firstFrame && media.decoder->isAtEnd())
        throw MediaError("no picture could be decoded", MediaFault::damaged);
    if (media.firstFrame) {
        completeTags(*media.firstFrame, *context.streams[*stream]);
        describeByFrame(*media.info.video, *media.firstFrame);
    }
    return media;
}

}
