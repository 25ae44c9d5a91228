// What the pixels are after a conversion.
#include "media/FrameConverter.h"

#include "media/FFmpeg.h"
#include "TestFrames.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pointloom::test {

using namespace media;
using testing::ElementsAre;

namespace {

constexpr ColorDescription sd{Matrix::bt601, Range::limited, Transfer::sdr, Primaries::bt601_525,
                              ChromaLocation::left};
constexpr ColorDescription hd{};
constexpr ColorDescription fullHd{Matrix::bt709, Range::full, Transfer::sdr, Primaries::bt709,
                                  ChromaLocation::left};
constexpr ColorDescription hdr10{Matrix::bt2020, Range::limited, Transfer::pq, Primaries::bt2020,
                                 ChromaLocation::left};
constexpr ColorDescription hlg{Matrix::bt2020, Range::limited, Transfer::hlg, Primaries::bt2020,
                               ChromaLocation::left};
constexpr ColorDescription p3{Matrix::bt709, Range::limited, Transfer::sdr, Primaries::displayP3,
                              ChromaLocation::left};

VideoTrackInfo trackOf(const VideoFrame& frame) {
    VideoTrackInfo track;
    track.storedSize = QSize(frame.width(), frame.height());
    track.format = frame.format();
    track.color = frame.format()->color;
    return track;
}

FrameTarget targetOf(QSize size, const FrameFormat& format) {
    FrameTarget target;
    target.size = size;
    target.picture = QRect(QPoint(), size);
    target.format = format;
    return target;
}

VideoFrame convert(VideoFrame frame, const FrameTarget& target) {
    FrameConverter converter(trackOf(frame), target);
    converter.push(std::move(frame));
    converter.finish();
    std::optional<VideoFrame> result = converter.pull();
    if (!result)
        throw std::runtime_error("no frame came out");
    return std::move(*result);
}

void expectNear(const Sample& actual, const Sample& expected, int tolerance) {
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.cb, expected.cb, tolerance);
    EXPECT_NEAR(actual.cr, expected.cr, tolerance);
}

}

TEST(FrameConverter, AFrameThatIsRightPassesWithoutACopy) {
    const FrameFormat format{Subsampling::s420, 8, hd};
    VideoFrame frame = solidFrame(QSize(64, 48), format, {100, 110, 120}, {1, 600}, 77);
    const std::byte* before = frame.planes()[0].data;
    const VideoFrame after = convert(std::move(frame), targetOf(QSize(64, 48), format));
    EXPECT_EQ(after.planes()[0].data, before);
    EXPECT_EQ(after.timestamp(), 77);
}

TEST(FrameConverter, ColoursMeanTheSameAfterAsBefore) {
    const std::array<double, 3> clay = {0.78, 0.36, 0.2};
    const std::array layouts = {
        FrameFormat{Subsampling::s420, 8, sd},      FrameFormat{Subsampling::s420, 8, hd},
        FrameFormat{Subsampling::s422, 8, fullHd},  FrameFormat{Subsampling::s420, 10, hd},
        FrameFormat{Subsampling::s444, 12, fullHd}, FrameFormat{Subsampling::s422, 10, sd},
    };
    for (const FrameFormat& from : layouts) {
        for (const FrameFormat& to : layouts) {
            SCOPED_TRACE(testing::Message()
                         << "bits " << from.bitDepth << " to " << to.bitDepth << ", matrix "
                         << int(from.color.matrix) << " to " << int(to.color.matrix) << ", range "
                         << int(from.color.range) << " to " << int(to.color.range));
            const VideoFrame result =
                convert(solidFrame(QSize(64, 48), from, encode(clay, from)), targetOf(QSize(96, 64), to));
            EXPECT_EQ(result.format(), to);
            EXPECT_EQ(QSize(result.width(), result.height()), QSize(96, 64));
            const int coarsest = 1 << (to.bitDepth - std::min(from.bitDepth, to.bitDepth));
            expectNear(sampleAt(result, 48, 32), encode(clay, to), 3 * coarsest);
        }
    }
}

TEST(FrameConverter, TheMarginsAreBlackInEveryRange) {
    for (const FrameFormat& format :
         {FrameFormat{Subsampling::s420, 8, hd}, FrameFormat{Subsampling::s420, 8, fullHd},
          FrameFormat{Subsampling::s422, 10, hd}}) {
        FrameTarget target = targetOf(QSize(128, 72), format);
        target.picture = QRect(43, 0, 41, 72); // not on whole chroma samples
        const Sample white = encode({1, 1, 1}, format);
        const VideoFrame result = convert(solidFrame(QSize(40, 70), format, white), target);
        const Sample black = encode({0, 0, 0}, format);
        EXPECT_EQ(sampleAt(result, 0, 0), black);
        EXPECT_EQ(sampleAt(result, 42, 71), black);
        EXPECT_EQ(sampleAt(result, 90, 40), black);
        EXPECT_EQ(sampleAt(result, 60, 0).y, white.y);
        EXPECT_EQ(sampleAt(result, 60, 71).y, white.y);
        EXPECT_EQ(result.format(), format);
    }
}

TEST(FrameConverter, ThePartThatIsSeenIsCountedOnTheUprightPicture) {
    const FrameFormat format{Subsampling::s420, 8, hd};
    const auto seen = [&](Orientation orientation, const QRectF& part) {
        FrameTarget target = targetOf(QSize(40, 80), format);
        target.orientation = orientation;
        target.seen = part;
        return quarters(convert(quarteredFrame(QSize(65, 47), format), target)); // odd: loses a line
    };
    const QRectF left(0, 0, 0.5, 1);
    const QRectF lower(0, 0.5, 1, 0.5);
    EXPECT_THAT(seen({false, 0}, left), ElementsAre(40, 40, 140, 140));
    EXPECT_THAT(seen({false, 0}, lower), ElementsAre(140, 190, 140, 190));
    EXPECT_THAT(seen({false, 1}, left), ElementsAre(140, 140, 190, 190));
    EXPECT_THAT(seen({false, 1}, lower), ElementsAre(190, 90, 190, 90));
    EXPECT_THAT(seen({false, 2}, left), ElementsAre(190, 190, 90, 90));
    EXPECT_THAT(seen({false, 3}, left), ElementsAre(90, 90, 40, 40));
    EXPECT_THAT(seen({true, 0}, left), ElementsAre(90, 90, 190, 190));
    EXPECT_THAT(seen({true, 1}, lower), ElementsAre(140, 40, 140, 40));
    EXPECT_THAT(seen({true, 3}, left), ElementsAre(40, 40, 90, 90));
}

TEST(FrameConverter, PicturesAreTurnedClockwiseAfterMirroring) {
    const FrameFormat format{Subsampling::s420, 8, hd};
    const auto turned = [&](Orientation orientation) {
        FrameTarget target = targetOf(orientation.swapsSides() ? QSize(48, 64) : QSize(64, 48), format);
        target.orientation = orientation;
        return quarters(convert(quarteredFrame(QSize(64, 48), format), target));
    };
    EXPECT_THAT(turned({false, 0}), ElementsAre(40, 90, 140, 190));
    EXPECT_THAT(turned({false, 1}), ElementsAre(140, 40, 190, 90));
    EXPECT_THAT(turned({false, 2}), ElementsAre(190, 140, 90, 40));
    EXPECT_THAT(turned({false, 3}), ElementsAre(90, 190, 40, 140));
    EXPECT_THAT(turned({true, 0}), ElementsAre(90, 40, 190, 140));
    EXPECT_THAT(turned({true, 1}), ElementsAre(190, 90, 140, 40));
    EXPECT_THAT(turned({true, 2}), ElementsAre(140, 190, 40, 90));
    EXPECT_THAT(turned({true, 3}), ElementsAre(40, 140, 90, 190));
}

// Chroma that rises by four levels a luma sample in both directions, stored and read where its samples are
// sited.
TEST(FrameConverter, ChromaStaysWhereItIsSited) {
    struct Point {
        double x;
        double y;
    };
    const auto site = [](const FrameFormat& format, int column, int row) {
        const bool isCentred = format.color.chromaLocation == ChromaLocation::center;
        const bool isAtTop = format.color.chromaLocation == ChromaLocation::topLeft;
        return Point{format.chromaShiftX() ? column * 2 + (isCentred ? 0.5 : 0.0) : column,
                     format.chromaShiftY() ? row * 2 + (isAtTop ? 0.0 : 0.5) : row};
    };
    const auto sited = [](Subsampling subsampling, ChromaLocation location) {
        FrameFormat format{subsampling, 8, hd};
        format.color.chromaLocation = location;
        return format;
    };
    constexpr QSize stored(48, 32);
    const std::array layouts{
        sited(Subsampling::s420, ChromaLocation::left), sited(Subsampling::s420, ChromaLocation::topLeft),
        sited(Subsampling::s420, ChromaLocation::center), sited(Subsampling::s422, ChromaLocation::left),
        sited(Subsampling::s444, ChromaLocation::left)};
    for (const FrameFormat& from : layouts) {
        for (const FrameFormat& to : layouts) {
            for (const Orientation orientation : {Orientation{}, Orientation{false, 1}, Orientation{true, 0},
                                                  Orientation{true, 3}, Orientation{false, 2}}) {
                for (const double enlarged : {1.0, 1.5}) {
                    if (enlarged == 1.0 && to.subsampling == from.subsampling)
                        continue;
                    const auto upright = [&](Point point) {
                        int width = stored.width();
                        int height = stored.height();
                        if (orientation.mirrored)
                            point.x = width - 1 - point.x;
                        for (int turn = 0; turn < orientation.quarterTurns; ++turn) {
                            point = {height - 1 - point.y, point.x};
                            std::swap(width, height);
                        }
                        return point;
                    };
                    const QSize size = (orientation.swapsSides() ? stored.transposed() : stored) * enlarged;
                    VideoFrame frame = solidFrame(stored, from, {100, 128, 128});
                    const std::array<Plane, 3> planes = frame.planes();
                    for (int row = 0; row < planes[1].height; ++row) {
                        for (int column = 0; column < planes[1].width; ++column) {
                            const Point point = upright(site(from, column, row));
                            planes[1].data[row * planes[1].bytesPerRow + column] =
                                std::byte(std::lround(30 + 4 * point.x));
                            planes[2].data[row * planes[2].bytesPerRow + column] =
                                std::byte(std::lround(30 + 4 * point.y));
                        }
                    }
                    FrameTarget target = targetOf(size, to);
                    target.orientation = orientation;
                    const VideoFrame result = convert(std::move(frame), target);
                    const std::array<Plane, 3> converted = result.planes();
                    const int column = converted[1].width / 2 - 1;
                    const int row = converted[1].height / 2 - 1;
                    const Point place = site(to, column, row);
                    const auto levelAt = [&](double position) {
                        return 30 + 4 * ((position + 0.5) / enlarged - 0.5);
                    };
                    SCOPED_TRACE(testing::Message()
                                 << int(from.subsampling) << '/' << int(from.color.chromaLocation) << " to "
                                 << int(to.subsampling) << '/' << int(to.color.chromaLocation) << ", turned "
                                 << orientation.quarterTurns << (orientation.mirrored ? " mirrored" : "")
                                 << ", times " << enlarged);
                    EXPECT_NEAR(int(converted[1].data[row * converted[1].bytesPerRow + column]),
                                levelAt(place.x), 1.01);
                    EXPECT_NEAR(int(converted[2].data[row * converted[2].bytesPerRow + column]),
                                levelAt(place.y), 1.01);
                }
            }
        }
    }
}

TEST(FrameConverter, AnOddEdgeIsCutAndNothingIsScaled) {
    const FrameFormat format{Subsampling::s420, 8, hd};
    VideoFrame frame = quarteredFrame(QSize(65, 47), format);
    const std::byte* before = frame.planes()[0].data;
    const VideoFrame result = convert(std::move(frame), targetOf(QSize(64, 46), format));
    EXPECT_EQ(result.planes()[0].data, before);
    EXPECT_EQ(QSize(result.width(), result.height()), QSize(64, 46));
}

TEST(FrameConverter, OnlyFramesMarkedInterlacedAreDeinterlacedAndNoneIsLost) {
    const FrameFormat format{Subsampling::s420, 8, hd};
    VideoTrackInfo track = trackOf(solidFrame(QSize(64, 48), format, {}));
    track.interlaced = true;
    FrameConverter converter(track, targetOf(QSize(64, 48), format));
    std::vector<VideoFrame> results;
    for (int n = 0; n < 4; ++n) {
        VideoFrame frame = solidFrame(QSize(64, 48), format, {60, 128, 128}, {1, 25}, 10 * n);
        const Plane luma = frame.planes()[0];
        for (int y = 1; y < 48; y += 2)
            std::fill_n(luma.data + y * luma.bytesPerRow, 64, std::byte{180});
#if LIBAVUTIL_VERSION_INT >= AV_VERSION_INT(58, 7, 100)
        frame.handle()->flags |= n < 3 ? AV_FRAME_FLAG_INTERLACED | AV_FRAME_FLAG_TOP_FIELD_FIRST : 0;
#else
        frame.handle()->interlaced_frame = n < 3 ? 1 : 0;
        frame.handle()->top_field_first = 1;
#endif
        converter.push(std::move(frame));
        while (std::optional<VideoFrame> result = converter.pull())
            results.push_back(std::move(*result));
    }
    converter.finish();
    while (std::optional<VideoFrame> result = converter.pull())
        results.push_back(std::move(*result));

    ASSERT_EQ(results.size(), 4U);
    for (int n = 0; n < 4; ++n)
        EXPECT_EQ(results[static_cast<std::size_t>(n)].timestamp(), 10 * n);
    EXPECT_NEAR(sampleAt(results[1], 32, 25).y, 60, 4) << "the top field alone is left";
    EXPECT_EQ(sampleAt(results[3], 32, 25).y, 180) << "a progressive frame keeps its lines";
}

TEST(FrameConverter, HdrBecomesSdrWithNeutralGreysAndPlaceForHighlights) {
    const FrameFormat sdr{Subsampling::s420, 8, hd};
    // PQ and HLG code values (BT.2100): 0, 26, 203 and 1000 cd/m2.
    const struct {
        ColorDescription color;
        std::array<double, 4> signals;
    } sources[] = {{hdr10, {0, 0.376, 0.581, 0.752}}, {hlg, {0, 0.38, 0.75, 1.0}}};
    for (const auto& source : sources) {
        const FrameFormat format{Subsampling::s420, 10, source.color};
        std::array<int, 4> lumas{};
        for (std::size_t i = 0; i < lumas.size(); ++i) {
            const double signal = source.signals[i];
            const VideoFrame result =
                convert(solidFrame(QSize(64, 48), format, encode({signal, signal, signal}, format)),
                        targetOf(QSize(64, 48), sdr));
            EXPECT_EQ(result.format(), sdr);
            const Sample sample = sampleAt(result, 32, 24);
            EXPECT_NEAR(sample.cb, 128, 1);
            EXPECT_NEAR(sample.cr, 128, 1);
            lumas[i] = sample.y;
        }
        EXPECT_NEAR(lumas[0], 16, 1);
        EXPECT_GT(lumas[1], 70);
        EXPECT_LT(lumas[1], 130);
        EXPECT_GT(lumas[2], 180) << "a white shirt stays white";
        EXPECT_LT(lumas[2], 225) << "and leaves room for brighter light";
        EXPECT_NEAR(lumas[3], 235, 3);
    }
}

TEST(FrameConverter, AChangeOfSizeOrColourOnTheWayStillMeetsTheTarget) {
    const FrameFormat format{Subsampling::s420, 8, hd};
    const FrameFormat other{Subsampling::s420, 8, fullHd};
    const std::array<double, 3> grass = {0.2, 0.5, 0.1};
    const VideoFrame first = solidFrame(QSize(64, 48), format, encode(grass, format));
    FrameConverter converter(trackOf(first), targetOf(QSize(32, 24), format));
    converter.push(solidFrame(QSize(64, 48), format, encode(grass, format), {1, 25}, 1));
    converter.push(solidFrame(QSize(128, 96), format, encode(grass, format), {1, 25}, 2));
    converter.push(solidFrame(QSize(64, 48), other, encode(grass, other), {1, 25}, 3));
    converter.push(solidFrame(QSize(32, 24), format, encode(grass, format), {1, 25}, 4));
    converter.finish();
    for (int n = 1; n <= 4; ++n) {
        const std::optional<VideoFrame> result = converter.pull();
        ASSERT_TRUE(result);
        EXPECT_EQ(result->timestamp(), n);
        EXPECT_EQ(QSize(result->width(), result->height()), QSize(32, 24));
        EXPECT_EQ(result->format(), format);
        expectNear(sampleAt(*result, 16, 12), encode(grass, format), 2);
    }
}

TEST(FrameImage, StillsShowTheColoursOfTheFrame) {
    const std::array<double, 3> clay = {0.78, 0.36, 0.2};
    for (const FrameFormat& format :
         {FrameFormat{Subsampling::s420, 8, sd}, FrameFormat{Subsampling::s422, 10, hd},
          FrameFormat{Subsampling::s444, 8, fullHd}}) {
        const RgbaImage picture = toRgb(solidFrame(QSize(62, 46), format, encode(clay, format)));
        ASSERT_EQ(picture.pixels.size(), 62U * 46U * 4U);
        const std::uint8_t* pixel = picture.pixels.data() + (23 * 62 + 31) * 4;
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(pixel[i], 255 * clay[i], 2);
        EXPECT_EQ(pixel[3], 255);
    }
    // Strong red of Display P3 is outside of BT.709: at the edge of that gamut its linear light is (0.831, 0,
    // 0.015).
    const FrameFormat wide{Subsampling::s444, 10, p3};
    const RgbaImage red = toRgb(solidFrame(QSize(64, 48), wide, encode({0.9, 0, 0}, wide)));
    EXPECT_NEAR(red.pixels[0], 236, 2);
    EXPECT_NEAR(red.pixels[1], 0, 2);
    EXPECT_NEAR(red.pixels[2], 44, 3);
}

TEST(VideoFrame, MakeWritableLeavesAFrameThatSharesTheBufferAlone) {
    const FrameFormat format{Subsampling::s420, 8, hd};
    VideoFrame frame = solidFrame(QSize(64, 48), format, {100, 128, 128});
    const VideoFrame other(AVFramePtr(av_frame_clone(frame.handle())), {1, 25});
    frame.makeWritable();
    frame.planes()[0].data[0] = std::byte{7};
    EXPECT_EQ(sampleAt(other, 0, 0).y, 100);
    EXPECT_EQ(sampleAt(frame, 0, 0).y, 7);
    EXPECT_EQ(frame.format(), format);
}

}
