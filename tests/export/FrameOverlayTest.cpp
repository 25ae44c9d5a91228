// The overlay blended into a frame's own planes against the same overlay drawn into a bitmap.
#include "export/FrameOverlay.h"
#include "export/LayerColor.h"
#include "media/VideoFrame.h"
#include "model/ScoringEngine.h"
#include "render/DevicePixels.h"
#include "render/ScoreboardTemplate.h"

#include <cmath>
#include <gtest/gtest.h>
#include <QPainter>
#include <QTemporaryDir>
#include <sstream>

namespace pointloom {

namespace {

using media::ChromaLocation;
using media::FrameFormat;
using media::Matrix;
using media::Range;
using media::Subsampling;
using media::VideoFrame;

constexpr QRgb ground = qRgb(40, 120, 70);

struct Case {
    FrameFormat format;
    media::Orientation orientation;
    media::Rational pixelShape{1, 1};
};

std::ostream& operator<<(std::ostream& out, const Case& test) {
    return out << "4:2:0, 4:2:2, 4:4:4 number " << static_cast<int>(test.format.subsampling) << ", "
               << test.format.bitDepth << " bits, matrix " << static_cast<int>(test.format.color.matrix)
               << ", range " << static_cast<int>(test.format.color.range) << ", chroma "
               << static_cast<int>(test.format.color.chromaLocation) << ", turned "
               << test.orientation.quarterTurns << ", mirrored " << test.orientation.mirrored;
}

ExportJob jobWith(const QString& watermark) {
    ExportJob job;
    OverlayDescription& description = job.overlay;
    description.config.team1 = {QStringLiteral("Dravnik"), {}, QStringLiteral("FR"), {}};
    description.config.team2 = {QStringLiteral("Solvane"), {}, QStringLiteral("ES"), {}};
    description.config.numberOfSets = 3;
    description.initialScore = ScoringEngine::getInitialScore(description.config);
    description.templateID = TemplateID::minimal; // a translucent panel
    description.scoreboardPosition = {0.4, 0.35};
    description.watermarkPath = watermark;
    return job;
}

PictureLayout layoutOf(const Case& test) {
    media::VideoTrackInfo track;
    track.storedSize = {640, 360};
    track.orientation = test.orientation;
    track.sampleAspectRatio = test.pixelShape;
    return planPicture(track, ExportPreset::original);
}

template <class SampleType>
void fillPlane(const media::Plane& plane, double value) {
    for (int y = 0; y < plane.height; ++y) {
        auto* row = reinterpret_cast<SampleType*>(plane.data + y * plane.bytesPerRow);
        std::fill_n(row, plane.width, static_cast<SampleType>(std::lround(value)));
    }
}

double sampleAt(const media::Plane& plane, int x, int y, int bitDepth) {
    const std::byte* row = plane.data + y * plane.bytesPerRow;
    return bitDepth > 8 ? reinterpret_cast<const std::uint16_t*>(row)[x]
                        : reinterpret_cast<const std::uint8_t*>(row)[x];
}

VideoFrame flatFrame(QSize size, const FrameFormat& format) {
    VideoFrame frame = media::makeBlackFrame(size.width(), size.height(), format, {1, 25});
    const CodeValues values = LayerColor(format).codeValues(ground);
    const auto planes = frame.planes();
    for (std::size_t i = 0; i < 3; ++i) {
        if (format.bitDepth > 8)
            fillPlane<std::uint16_t>(planes[i], values[i]);
        else
            fillPlane<std::uint8_t>(planes[i], values[i]);
    }
    return frame;
}

// In a square of 0.12 of the canvas's shorter side, 20 pixels from both edges of its corner.
void drawMark(QPainter& painter, const QImage& mark, WatermarkCorner corner, QSizeF canvas) {
    const double box = 0.12 * std::min(canvas.width(), canvas.height());
    const QSizeF size = QSizeF(mark.size()).scaled(box, box, Qt::KeepAspectRatio);
    QRectF place({20, 20}, size);
    if (corner == WatermarkCorner::topRight || corner == WatermarkCorner::bottomRight)
        place.moveRight(canvas.width() - 20);
    if (corner == WatermarkCorner::bottomLeft || corner == WatermarkCorner::bottomRight)
        place.moveBottom(canvas.height() - 20);
    drawImage(painter, mark, place);
}

// The same overlay drawn into a bitmap of the whole upright frame, turned to the stored orientation.
QImage reference(const ExportJob& job, const PictureLayout& layout) {
    const OverlayDescription& description = job.overlay;
    const QSize size = layout.uprightFrameSize();
    const QSizeF canvas = layout.canvas;
    QImage bitmap(size, QImage::Format_ARGB32_Premultiplied);
    bitmap.fill(ground);
    QPainter painter(&bitmap);
    painter.scale(size.width() / canvas.width(), size.height() / canvas.height());
    drawMark(painter, QImage(*description.watermarkPath), job.settings.watermarkCorner, canvas);
    licenceMarkPart(canvas).draw(painter);

    const double scale = canvas.width() / layout.nativeVideoSize.width() * description.scoreboardUserScale;
    const ScoreboardTemplate& board = TemplateRegistry::templateFor(description.templateID);
    const QSizeF drawn = board.canvasSize(3, description.config) * scale;
    const QPointF center(description.scoreboardPosition.x() * canvas.width(),
                         description.scoreboardPosition.y() * canvas.height());
    const QPointF corner = center - QPointF(drawn.width() / 2, drawn.height() / 2);
    painter.scale(scale, scale);
    board.draw(painter, {description.initialScore, description.config, canvas / scale, {}},
               corner / scale + QPointF(10, 10));
    painter.end();
    return bitmap.transformed(QTransform().rotate(-90.0 * layout.orientation.quarterTurns))
        .mirrored(layout.orientation.mirrored, false);
}

struct Position {
    int at;
    double weight;
};

std::vector<Position> lumaPositions(int chroma, bool isSubsampled, bool isCosited, int size) {
    if (!isSubsampled)
        return {{chroma, 1}};
    const auto inside = [&](int at) { return std::clamp(at, 0, size - 1); };
    if (isCosited)
        return {{inside(2 * chroma - 1), 0.25}, {2 * chroma, 0.5}, {inside(2 * chroma + 1), 0.25}};
    return {{2 * chroma, 0.5}, {inside(2 * chroma + 1), 0.5}};
}

double expectedSample(const QImage& bitmap, const LayerColor& color, const FrameFormat& format,
                      std::size_t plane, int x, int y) {
    const bool isChroma = plane != 0;
    const auto location = format.color.chromaLocation;
    const auto across = lumaPositions(x, isChroma && format.chromaShiftX() != 0,
                                      location != ChromaLocation::center, bitmap.width());
    const auto down = lumaPositions(y, isChroma && format.chromaShiftY() != 0,
                                    location == ChromaLocation::topLeft, bitmap.height());
    double sum = 0;
    for (const auto& [row, vertical] : down) {
        for (const auto& [column, horizontal] : across)
            sum += vertical * horizontal * color.codeValues(bitmap.pixel(column, row))[plane];
    }
    return sum;
}

double largestDifference(const VideoFrame& frame, const QImage& bitmap, const FrameFormat& format) {
    const LayerColor color(format);
    const auto planes = frame.planes();
    double largest = 0;
    for (std::size_t i = 0; i < planes.size(); ++i) {
        for (int y = 0; y < planes[i].height; ++y) {
            for (int x = 0; x < planes[i].width; ++x) {
                const double difference = std::abs(sampleAt(planes[i], x, y, format.bitDepth) -
                                                   expectedSample(bitmap, color, format, i, x, y));
                largest = std::max(largest, difference);
            }
        }
    }
    return largest / (1 << (format.bitDepth - 8));
}

std::vector<Case> cases() {
    std::vector<Case> all;
    for (const auto subsampling : {Subsampling::s420, Subsampling::s422, Subsampling::s444}) {
        for (const int bitDepth : {8, 10, 12}) {
            for (const auto matrix : {Matrix::bt601, Matrix::bt709, Matrix::bt2020}) {
                for (const auto range : {Range::limited, Range::full}) {
                    FrameFormat format{subsampling, bitDepth, {}};
                    format.color.matrix = matrix;
                    format.color.range = range;
                    all.push_back({format, {}, {1, 1}});
                }
            }
        }
    }
    for (int turns = 0; turns < 4; ++turns) {
        for (const bool mirrored : {false, true}) {
            for (const auto location :
                 {ChromaLocation::left, ChromaLocation::center, ChromaLocation::topLeft}) {
                FrameFormat format;
                format.color.chromaLocation = location;
                all.push_back({format, {mirrored, turns}, {1, 1}});
            }
        }
    }
    all.push_back({{}, {}, {64, 45}});
    all.push_back({{}, {false, 1}, {64, 45}});
    return all;
}

QString savedMark(const QTemporaryDir& folder, QSize size) {
    QImage mark(size, QImage::Format_ARGB32);
    mark.fill(qRgba(220, 30, 90, 160));
    // Colours whose chroma is at the ends of the range of levels.
    for (int y = 0; y < mark.height(); ++y) {
        for (int x = 0; x < 20; ++x)
            mark.setPixel(x, y, x < 10 ? qRgb(0, 0, 255) : qRgb(255, 0, 0));
    }
    QString path = folder.filePath(QStringLiteral("mark.png"));
    EXPECT_TRUE(mark.save(path));
    return path;
}

}

class FrameOverlayTest : public testing::TestWithParam<Case> {};

TEST_P(FrameOverlayTest, BlendedPlanesAgreeWithTheBitmapWithinRounding) {
    const QTemporaryDir folder;
    const ExportJob job = jobWith(savedMark(folder, {50, 40}));
    const PictureLayout layout = layoutOf(GetParam());
    const FrameFormat format = GetParam().format;

    VideoFrame frame = flatFrame(layout.frameSize, format);
    FrameOverlay(job, layout, format).drawInto(frame, 0);

    // The bitmap rounds each of its layers to 8 bits, the planes round once.
    EXPECT_LE(largestDifference(frame, reference(job, layout), format), 2.5);
}

INSTANTIATE_TEST_SUITE_P(EveryLayout, FrameOverlayTest, testing::ValuesIn(cases()));

TEST(FrameOverlay, NoTemplateReachesBeyondItsLayer) {
    const QTemporaryDir folder;
    ExportJob job = jobWith(savedMark(folder, {30, 70}));
    OverlayDescription& description = job.overlay;
    description.scoreboardUserScale = 1.3;
    description.scoreboardPosition = {0.5, 0.42};
    const PictureLayout layout = layoutOf({});
    for (const TemplateID id : allCases<TemplateID>()) {
        description.templateID = id;
        description.config.sport = sportOf(id);
        description.initialScore = ScoringEngine::getInitialScore(description.config);
        job.settings.watermarkCorner = allCases<WatermarkCorner>()[static_cast<std::size_t>(id) % 4];
        VideoFrame frame = flatFrame(layout.frameSize, {});
        FrameOverlay(job, layout, {}).drawInto(frame, 0);
        EXPECT_LE(largestDifference(frame, reference(job, layout), {}), 2.5) << rawValue(id);
    }
}

TEST(FrameOverlay, AScoreboardOverTheEdgeIsCutThere) {
    ExportJob job = jobWith({});
    const PictureLayout layout = layoutOf({});
    for (const QPointF place : {QPointF(0, 0.5), QPointF(1, 0.5), QPointF(0.5, 0), QPointF(0.5, 1)}) {
        job.overlay.scoreboardPosition = place;
        VideoFrame frame = flatFrame(layout.frameSize, {});
        FrameOverlay(job, layout, {}).drawInto(frame, 0);
        EXPECT_LE(largestDifference(frame, reference(job, layout), {}), 2.5)
            << place.x() << ", " << place.y();
    }
}

TEST(FrameOverlay, DrawsEachScoreAtItsTimeAndLeavesTheRestOfTheFrameUntouched) {
    ExportJob job = jobWith({});
    OverlayDescription& description = job.overlay;
    description.isLicensed = true;
    SportScoreState served = description.initialScore;
    std::get<ScoreState>(served).servingTeam = 2;
    description.markers = {{QUuid::createUuid(), 2.0, served, {}}};
    const PictureLayout layout = layoutOf({});
    FrameOverlay frameOverlay(job, layout, {});
    const auto drawn = [&](double time) {
        VideoFrame frame = flatFrame(layout.frameSize, {});
        frameOverlay.drawInto(frame, time);
        const auto plane = frame.planes()[0];
        QByteArray luma;
        for (int y = 0; y < plane.height; ++y)
            luma.append(reinterpret_cast<const char*>(plane.data + y * plane.bytesPerRow), plane.width);
        return luma;
    };
    const QByteArray before = drawn(1.999);
    const QByteArray after = drawn(2.0);
    EXPECT_NE(before, after);
    EXPECT_EQ(drawn(0), before); // and back again
    EXPECT_EQ(before.at(before.size() - 1), after.at(after.size() - 1));
    const auto untouched = static_cast<char>(std::lround(LayerColor({}).codeValues(ground)[0]));
    EXPECT_EQ(before.last(640 * 100), QByteArray(640 * 100, untouched));
}

TEST(LayerColor, DrawnWhiteStandsAtTheReferenceLevelInHdr) {
    FrameFormat format{Subsampling::s420, 10, {}};
    format.color = {Matrix::bt2020, Range::limited, media::Transfer::hlg, media::Primaries::bt2020,
                    ChromaLocation::left};
    const double hlg = (LayerColor(format).codeValues(qRgb(255, 255, 255))[0] / 4 - 16) / 219;
    EXPECT_NEAR(hlg, 0.75, 0.002); // BT.2408
    format.color.transfer = media::Transfer::pq;
    const auto white = LayerColor(format).codeValues(qRgb(255, 255, 255));
    EXPECT_NEAR((white[0] / 4 - 16) / 219, 0.58, 0.002); // BT.2408
    EXPECT_NEAR(white[1], 512, 0.5);
    EXPECT_NEAR(LayerColor(format).codeValues(qRgb(0, 0, 0))[0], 64, 0.01);
}

TEST(LayerColor, CodeValuesAreThoseOfTheStandards) {
    using media::Primaries;
    using media::Transfer;
    struct Sample {
        QRgb color;
        int bitDepth;
        Matrix matrix;
        Range range;
        Transfer transfer;
        Primaries primaries;
        CodeValues expected;
    };
    constexpr QRgb red = qRgb(255, 0, 0);
    constexpr QRgb sky = qRgb(30, 120, 200);
    // From the formulas of BT.601, BT.709, BT.2020, BT.2100 and SMPTE EG 432-1, computed outside of this
    // program.
    const Sample samples[] = {
        {red, 8, Matrix::bt709, Range::limited, Transfer::sdr, Primaries::bt709, {62.56, 102.34, 240}},
        {qRgb(0, 255, 0),
         10,
         Matrix::bt601,
         Range::limited,
         Transfer::sdr,
         Primaries::bt709,
         {578.21, 215.19, 136.86}},
        {qRgb(0, 0, 255),
         8,
         Matrix::bt2020,
         Range::full,
         Transfer::sdr,
         Primaries::bt709,
         {15.12, 255, 117.75}},
        {red, 8, Matrix::bt709, Range::limited, Transfer::sdr, Primaries::displayP3, {92.28, 102.68, 208.96}},
        {sky, 8, Matrix::bt709, Range::limited, Transfer::sdr, Primaries::displayP3, {111.48, 167.23, 99.01}},
        {red, 10, Matrix::bt2020, Range::limited, Transfer::pq, Primaries::bt2020, {392.21, 438.37, 607.93}},
        {sky, 10, Matrix::bt2020, Range::limited, Transfer::pq, Primaries::bt2020, {416.35, 566.28, 482.63}},
        {red, 10, Matrix::bt2020, Range::limited, Transfer::hlg, Primaries::bt2020, {392.11, 395.45, 714.94}},
        {sky, 10, Matrix::bt2020, Range::limited, Transfer::hlg, Primaries::bt2020, {431.74, 636.74, 449.60}},
    };
    for (const Sample& sample : samples) {
        FrameFormat format{Subsampling::s420, sample.bitDepth, {}};
        format.color = {sample.matrix, sample.range, sample.transfer, sample.primaries, ChromaLocation::left};
        const CodeValues values = LayerColor(format).codeValues(sample.color);
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(values[i], sample.expected[i], 0.02)
                << "sample " << &sample - samples << ", plane " << i;
    }
}

}
