// Every kind of footage through whole exports, measured in the files that come out.
#include "compatibility/DecodedClip.h"
#include "compatibility/OverlayReference.h"
#include "compatibility/Report.h"
#include "compatibility/Source.h"
#include "export/ExportManager.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace pointloom::test {

namespace {

constexpr double soundTolerance = 0.010;     // seconds
constexpr double pictureEndTolerance = 0.02; // seconds; some files round the length of the last frame
constexpr double soundEndTolerance = 0.1;    // seconds; AAC comes in runs of 1024 samples
constexpr double colorTolerance = 2;         // levels of 255
constexpr double sourceTolerance = 8;        // levels of 255, of lossy clips
constexpr double overlayTolerance = 3;       // levels of 255
constexpr double timeTolerance = 0.0005;     // seconds
constexpr double trimTolerance = 1 / 1200.0; // seconds; ranges are held in units of 1/600 s

struct Trial {
    const Source* source;
    ExportFormat format;
    ExportPreset preset;
};

std::vector<Trial> trials() {
    std::vector<Trial> all;
    for (const Source& source : sources()) {
        all.push_back({&source, ExportFormat::h264, ExportPreset::original});
        if (source.inEveryFormat) {
            all.push_back({&source, ExportFormat::hevc, ExportPreset::original});
            all.push_back({&source, ExportFormat::prores, ExportPreset::original});
        }
        if (source.inOtherSizes) {
            all.push_back({&source, ExportFormat::h264, ExportPreset::instagram916});
            all.push_back({&source, ExportFormat::prores, ExportPreset::twitter1080p});
        }
    }
    all.push_back({&sourceNamed("Plain"), ExportFormat::h264, ExportPreset::youtube4k});
    return all;
}

std::string nameOf(const Trial& trial) {
    constexpr std::array formats = {"H264", "Hevc", "ProRes"};
    constexpr std::array presets = {"Original", "YouTube4k", "Twitter1080p", "Instagram916"};
    return trial.source->name + "_" + formats.at(static_cast<std::size_t>(trial.format)) + "_" +
           presets.at(static_cast<std::size_t>(trial.preset));
}

/// The part of the exported picture that the source's fills; fractions.
QSizeF filledPart(QSizeF source, QSizeF exported) {
    const double from = source.width() / source.height();
    const double to = exported.width() / exported.height();
    constexpr double nearlyEqual = 0.02;
    if (std::abs(from - to) < nearlyEqual)
        return {1, 1};
    return {std::min(1.0, from / to), std::min(1.0, to / from)};
}

/// The place in the export's shown picture of a point of the source's; fractions.
QPointF fitted(QPointF point, QSizeF source, QSizeF exported) {
    const QSizeF filled = filledPart(source, exported);
    const QPointF fromCentre = point - QPointF(0.5, 0.5);
    return QPointF(fromCentre.x() * filled.width(), fromCentre.y() * filled.height()) + QPointF(0.5, 0.5);
}

double distance(const Rgb& a, const Rgb& b) {
    double largest = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        largest = std::max(largest, std::abs(a[i] - b[i]));
    return largest;
}

std::ostream& operator<<(std::ostream& out, const Trial& trial) {
    return out << trial.source->title;
}

}

class Compatibility : public testing::TestWithParam<Trial> {
protected:
    void SetUp() override {
        const QString clip = make(source(), m_folder);
        m_job = OverlayReference::job(m_folder, clip, GetParam().format);
        m_job.settings.preset = GetParam().preset;
        m_job.trimStart = trimStart(source());
        m_before.emplace(clip);
        if (const auto size =
                targetSize(m_job.settings.preset)) // the scoreboard grows with the frame, bars and all
            m_job.overlay.scoreboardUserScale *= filledPart(m_before->shownSize(), *size).width();
        ASSERT_NO_THROW(ExportManager::exportVideo(m_job));
        m_after.emplace(m_job.outputPath);
        m_overlay.emplace(m_job, m_before->shownSize(), m_after->shownSize());
    }

    void TearDown() override {
        const auto text = [](std::string_view label) {
            return QString::fromUtf8(label.data(), static_cast<qsizetype>(label.size()));
        };
        m_measured.isToneMapped = isToneMapped();
        report(QString::fromStdString(source().title), text(rawValue(GetParam().preset)),
               text(rawValue(GetParam().format)), m_measured, !HasFailure());
    }

    const Source& source() const { return *GetParam().source; }
    std::size_t firstFrame() const { return static_cast<std::size_t>(source().trimmedFrames); }
    bool isToneMapped() const { return source().color.isHdr() && GetParam().format == ExportFormat::h264; }

    void checkTimes();
    void checkSound();
    void checkTags() const;
    void checkColors();
    void checkToneMapping() const;
    void checkFields() const;
    void checkOverlay();

    QPointF pointOf(int patch) const;
    std::optional<double> flashTime() const;

    const ClipFolder m_folder;
    ExportJob m_job;
    std::optional<DecodedClip> m_before;
    std::optional<DecodedClip> m_after;
    std::optional<OverlayReference> m_overlay;
    Measured m_measured;
};

TEST_P(Compatibility, ComesOutAsItWentIn) {
    checkTimes();
    checkSound();
    checkTags();
    if (isToneMapped())
        checkToneMapping();
    else
        checkColors();
    if (source().isInterlaced)
        checkFields();
    checkOverlay();
}

INSTANTIATE_TEST_SUITE_P(Matrix, Compatibility, testing::ValuesIn(trials()),
                         [](const auto& trial) { return nameOf(trial.param); });

void Compatibility::checkTimes() {
    const double start = trimStart(source());
    std::vector<double> expected(m_before->times().begin() + static_cast<std::ptrdiff_t>(firstFrame()),
                                 m_before->times().end());
    for (double& time : expected)
        time = std::max(0.0, time - start); // the one on screen at the start is shown from its first moment
    const std::vector<double>& actual = m_after->times();
    m_measured.frames = static_cast<int>(actual.size());
    m_measured.framesExpected = static_cast<int>(expected.size());
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i)
        m_measured.worstTime = std::max(m_measured.worstTime, std::abs(actual[i] - expected[i]));
    if (start > 0) {
        EXPECT_EQ(actual.front(), 0);
    }
    EXPECT_LE(m_measured.worstTime, timeTolerance + (start > 0 ? trimTolerance : 0));
    EXPECT_NEAR(m_after->pictureEnd(), m_before->pictureEnd() - start, pictureEndTolerance);
    const int pattern = source().frames / (source().isInterlaced ? 2 : 1);
    if (source().secondPass.empty()) {
        EXPECT_EQ(m_before->times().size(), static_cast<std::size_t>(pattern))
            << "the clip itself is not as it should be";
    }
}

std::optional<double> Compatibility::flashTime() const {
    for (std::size_t frame = 0; frame < m_after->times().size(); ++frame) {
        const Rgb color =
            m_after->colorAt(static_cast<int>(frame), pointOf(Pattern::flash), m_after->color());
        if (color[1] > 110)
            return m_after->times()[frame];
    }
    return std::nullopt;
}

void Compatibility::checkSound() {
    ASSERT_EQ(m_after->audio().is_null(), source().sound.empty());
    const auto flash = flashTime();
    ASSERT_TRUE(flash);
    if (source().sound.empty())
        return;
    const auto beep = m_after->beepTime();
    ASSERT_TRUE(beep) << "no beep is heard";
    m_measured.soundLate = *beep - *flash;
    EXPECT_NEAR(*beep, *flash, soundTolerance);
    EXPECT_NEAR(m_after->soundEnd(), m_before->soundEnd() - trimStart(source()), soundEndTolerance);
}

void Compatibility::checkTags() const {
    const SourceColor tags = m_after->color();
    if (isToneMapped()) {
        EXPECT_EQ(tags.primaries, "bt709");
        EXPECT_EQ(tags.transfer, "bt709");
        EXPECT_EQ(tags.matrix, "bt709");
        return;
    }
    const SourceColor& expected = source().color;
    if (expected.matrix == "gbr")
        return;
    const bool isProRes = GetParam().format == ExportFormat::prores; // which has fewer names
    EXPECT_EQ(tags.primaries, expected.primaries);
    if (!isProRes || expected.isHdr()) {
        EXPECT_EQ(tags.transfer, expected.transfer);
    }
    EXPECT_EQ(tags.matrix, isProRes && expected.matrix == "bt470bg" ? "smpte170m" : expected.matrix);
    if (!isProRes || !tags.range.empty()) { // newer versions of ffprobe tell none of ProRes
        EXPECT_EQ(tags.range, isProRes ? "tv" : expected.range);
    }
}

QPointF Compatibility::pointOf(int patch) const {
    const QPointF shown = m_before->shownPoint(Pattern::areaOf(patch).center());
    return fitted(shown, m_before->shownSize(), m_after->shownSize());
}

void Compatibility::checkColors() {
    for (std::size_t i = 0; i < m_after->times().size(); ++i) {
        const int frame = static_cast<int>(i);
        for (int patch = 0; patch < Pattern::patches; ++patch) {
            const QPointF point = pointOf(patch);
            if (m_overlay->covers(point) || (source().isInterlaced && patch == Pattern::counter))
                continue;
            const QPointF stored = m_before->shownPoint(Pattern::areaOf(patch).center());
            const int before = frame + static_cast<int>(firstFrame());
            const Rgb expected = m_before->colorAt(before, stored, source().color);
            if (patch != Pattern::flash && patch != Pattern::counter) {
                ASSERT_LE(distance(expected, Pattern::colorOf(patch, frame, source().frames)),
                          sourceTolerance)
                    << "patch " << patch << " of the clip itself is not as it should be";
            }
            const Rgb actual = m_after->colorAt(frame, point, m_after->color());
            const double difference = distance(actual, expected);
            m_measured.worstColor = std::max(m_measured.worstColor, difference);
            ASSERT_LE(difference, colorTolerance)
                << "patch " << patch << " of frame " << frame << ": " << testing::PrintToString(actual)
                << " was " << testing::PrintToString(expected);
        }
    }
}

/// Greys stay grey and in order, from black to white.
void Compatibility::checkToneMapping() const {
    double before = 0;
    for (std::size_t i = 0; i < m_after->times().size(); ++i) {
        const Rgb grey = m_after->colorAt(static_cast<int>(i), pointOf(Pattern::counter), m_after->color());
        EXPECT_NEAR(grey[0], grey[1], colorTolerance);
        EXPECT_NEAR(grey[2], grey[1], colorTolerance);
        EXPECT_GE(grey[1], before);
        before = grey[1];
    }
    const auto flashAt = [&](int frame) {
        return m_after->colorAt(frame, pointOf(Pattern::flash), m_after->color())[1];
    };
    EXPECT_NEAR(flashAt(0), 0, colorTolerance);
    EXPECT_GT(flashAt(Pattern::flashFrame(source().frames)), 240);
}

/// Each frame shows the first one of the two fields that it was made of.
void Compatibility::checkFields() const {
    const QPointF point = pointOf(Pattern::counter);
    const QPointF stored = m_before->shownPoint(Pattern::areaOf(Pattern::counter).center());
    EXPECT_GT(m_before->combAt(4, stored), 2) << "the clip itself is not as it should be";
    for (std::size_t i = 0; i < m_after->times().size(); ++i) {
        const int frame = static_cast<int>(i);
        EXPECT_LT(m_after->combAt(frame, point), 1) << frame;
        const double grey = Pattern::colorOf(Pattern::counter, 2 * frame, source().frames)[1];
        EXPECT_NEAR(m_after->colorAt(frame, point, m_after->color())[1], grey, 4) << frame;
    }
}

void Compatibility::checkOverlay() {
    const auto spots = m_overlay->flatSpots(m_after->color());
    ASSERT_FALSE(spots.empty());
    for (const auto& [point, expected] : spots) {
        const Rgb actual = m_after->colorAt(0, point, m_after->color());
        const double difference = distance(actual, expected);
        m_measured.worstOverlay = std::max(m_measured.worstOverlay, difference);
        EXPECT_LE(difference, overlayTolerance)
            << "at " << point.x() << ", " << point.y() << ": " << testing::PrintToString(actual)
            << " instead of " << testing::PrintToString(expected);
    }
}

}
