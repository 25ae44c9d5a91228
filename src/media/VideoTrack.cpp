#include "media/VideoTrack.h"

#include "media/ColorTags.h"
#include "media/DisplayMatrix.h"
#include "media/HdrSideData.h"
#include "media/InputFile.h"
#include "media/MediaError.h"

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>

namespace pointloom::media {

namespace {

bool isPictureTrack(const AVStream& stream) {
    constexpr int notThePicture = AV_DISPOSITION_ATTACHED_PIC | AV_DISPOSITION_TIMED_THUMBNAILS;
    return stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO && (stream.disposition & notThePicture) == 0 &&
           canDecode(stream);
}

/// A single picture is mostly a cover that came along as a track of its own.
bool hasMovingPictures(const AVStream& stream) {
    return avformat_index_get_entries_count(&stream) > 1;
}

bool hasSamples(const AVStream& stream) {
    return avformat_index_get_entries_count(&stream) > 0;
}

/// In fragmented files the index grows while reading, so a track without entries may still have samples.
bool hasKnownPictures(const AVStream& stream) {
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
        rate = stream.avg_frame_rate; // of a variable rate the guess may be the clock
    if (ratio(rate) <= 0 || ratio(rate) > highestPlausible)
        return {30, 1};
    constexpr int largestTerm = 100'000; // encoders reckon with these
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

/// Of one that is not known, the four letters by which the file calls it.
std::string codecName(const AVCodecParameters& codec) {
    if (codec.codec_id != AV_CODEC_ID_NONE)
        return avcodec_get_name(codec.codec_id);
    std::array<char, AV_FOURCC_MAX_STRING_SIZE> letters{};
    return av_fourcc_make_string(letters.data(), codec.codec_tag);
}

}

std::optional<int> findVideoTrack(const AVFormatContext& context) {
    for (const auto& suits : {hasMovingPictures, hasSamples, hasKnownPictures}) {
        for (unsigned i = 0; i < context.nb_streams; ++i) {
            const AVStream& stream = *context.streams[i];
            if (isPictureTrack(stream) && suits(stream))
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

Rational pictureClock(const AVStream& stream) {
    const Rational tick = fromAv(stream.time_base);
    return {tick.numerator, tick.denominator * static_cast<int>(clockRefinement(stream))};
}

std::int64_t refinedTicks(std::int64_t ticks, std::int64_t refinement) {
    const std::int64_t farthest = std::numeric_limits<std::int64_t>::max() / 2 / refinement;
    return refinement == 1 ? ticks : std::clamp(ticks, -farthest, farthest) * refinement;
}

VideoTrackInfo describeVideoTrack(AVFormatContext& context, int streamIndex) {
    AVStream& stream = *context.streams[streamIndex];
    const AVCodecParameters& parameters = *stream.codecpar;
    VideoTrackInfo track;
    track.codecName = QString::fromLatin1(avcodec_get_name(parameters.codec_id));
    track.storedSize = QSize(parameters.width, parameters.height);
    track.sampleAspectRatio = pixelShape(context, stream);
    track.orientation = readOrientation(stream);
    track.frameRate = nominalFrameRate(context, stream);
    track.timeBase = pictureClock(stream);
    track.interlaced = isInterlacedOrder(parameters.field_order);
    track.color =
        describeColor(tagsOf(parameters), track.storedSize, static_cast<AVPixelFormat>(parameters.format));
    return track;
}

void describeByPicture(VideoTrackInfo& track, const AVFrame& picture) {
    const auto layout = static_cast<AVPixelFormat>(picture.format);
    track.storedSize = QSize(picture.width, picture.height);
    track.color = describeColor(tagsOf(picture), track.storedSize, layout);
    if (const AVPixFmtDescriptor* descriptor = av_pix_fmt_desc_get(layout))
        track.bitDepth = descriptor->comp[0].depth;
    track.hdr = readHdrMetadata(picture);
    track.format.reset();
    if (const std::optional<SampleLayout> samples = sampleLayout(layout))
        track.format = FrameFormat{samples->subsampling, samples->bitDepth, track.color};
    track.interlaced = track.interlaced || isInterlaced(picture);
}

void completeTags(AVFrame& picture, const AVStream& stream) {
    completeHdrMetadata(picture, stream);
    const auto layout = static_cast<AVPixelFormat>(picture.format);
    ColorTags tags = tagsOf(picture);
    if (!sampleLayout(layout)) {
        setTags(picture, filledFrom(tags, tagsOf(*stream.codecpar)));
        return;
    }
    ColorTags container = tagsOf(*stream.codecpar);
    for (ColorTags* candidate : {&tags, &container})
        if (candidate->matrix == AVCOL_SPC_RGB) // ProRes's "unknown" comes out as this
            candidate->matrix = AVCOL_SPC_UNSPECIFIED;
    const ColorTags known = filledFrom(tags, container);
    const QSize size(picture.width, picture.height);
    setTags(picture, filledFrom(known, tagsFor(describeColor(known, size, layout))));
    if (isFullRangeAlias(layout))
        picture.color_range = AVCOL_RANGE_JPEG;
    picture.format = withoutFullRangeAlias(layout);
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

double timelineDuration(const AVFormatContext& context, std::optional<int> videoStream) {
    double end =
        context.duration == AV_NOPTS_VALUE ? 0 : static_cast<double>(context.duration) / AV_TIME_BASE;
    if (!videoStream)
        return end;
    const AVStream& stream = *context.streams[*videoStream];
    if (stream.duration != AV_NOPTS_VALUE) {
        // Added as fractions: of a damaged file the sum may be more than 64 bits hold.
        const double start = stream.start_time == AV_NOPTS_VALUE ? 0 : static_cast<double>(stream.start_time);
        end = std::max(end, (start + static_cast<double>(stream.duration)) * ratio(stream.time_base));
    }
    return end;
}

}
