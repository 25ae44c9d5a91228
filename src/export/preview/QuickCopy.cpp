#include "export/preview/QuickCopy.h"

#include "export/FrameSource.h"
#include "export/segments/SegmentPlan.h"
#include "media/EncoderProbe.h"
#include "media/MediaWriter.h"
#include "media/SameFrames.h"

#include <array>
#include <chrono>
#include <cmath>
#include <limits>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>

namespace pointloom::QuickCopy {

namespace {

using media::VideoTrackInfo;

constexpr int mostLines = 720;
constexpr auto version = "quick-1"; // another one for copies that are made differently

int even(double side) {
    return std::max(2, 2 * static_cast<int>(std::lround(side / 2)));
}

// The size of the stored frames. Their pixels keep their shape.
QSize smallSize(const VideoTrackInfo& track) {
    const QSize stored = track.storedSize;
    const double scale =
        std::min(1.0, static_cast<double>(mostLines) / std::min(stored.width(), stored.height()));
    return {even(stored.width() * scale), even(stored.height() * scale)};
}

media::VideoSettings encoding(const VideoTrackInfo& track) {
    const media::FrameFormat source =
        track.format.value_or(media::FrameFormat{media::Subsampling::s420, track.bitDepth, track.color});
    media::VideoSettings settings;
    settings.quality = media::EncodingQuality::preview;
    settings.size = smallSize(track);
    settings.format = media::encodableFormat(settings.codec, source);
    settings.orientation = track.orientation;
    settings.sampleAspectRatio = track.sampleAspectRatio;
    settings.timeBase = track.timeBase;
    settings.frameRate = track.frameRate;
    return settings;
}

media::FrameTarget conversion(const media::VideoSettings& settings) {
    media::FrameTarget target;
    target.size = settings.size;
    target.picture = QRect(QPoint(0, 0), settings.size);
    target.sampleAspectRatio = settings.sampleAspectRatio;
    target.format = settings.format;
    return target;
}

// By the names that cameras give to their small copies.
QStringList candidates(const QFileInfo& video) {
    const QString base = video.completeBaseName();
    QStringList names;
    for (const char* suffix : {"LRV", "LRF", "GLV"}) { // GoPro, DJI, Garmin
        for (const QString& ending : {QString::fromLatin1(suffix), QString::fromLatin1(suffix).toLower()}) {
            names << base + u'.' + ending;
            if (base.startsWith(QLatin1String("GH")) || base.startsWith(QLatin1String("GX")))
                names << QStringLiteral("GL") + base.mid(2) + u'.' + ending; // GoPro, since HERO8
        }
    }
    names << QStringLiteral("../SUB/") + base + QStringLiteral("S03.MP4"); // Sony
    QStringList paths;
    for (const QString& name : names)
        paths << QDir::cleanPath(video.dir().filePath(name));
    return paths;
}

// Stops when the whole copy, as large as its beginning lets expect, would not be kept.
class RoomCheck {
public:
    RoomCheck(const SegmentCache& cache, QString path)
        : m_cache(cache)
        , m_path(std::move(path)) {}

    bool lacks(double fraction) const {
        constexpr double tellingFraction = 0.03;
        if (fraction < tellingFraction)
            return false;
        return !m_cache.makeRoom(std::llround(static_cast<double>(QFileInfo(m_path).size()) / fraction));
    }

private:
    const SegmentCache& m_cache;
    QString m_path;
};

}

double seekTime(const media::Recording& video, const ExportControl& control) {
    using Clock = std::chrono::steady_clock;
    auto reader = media::VideoReader::open(video);
    const double duration = reader.info().duration;
    std::array<double, 5> seconds{};
    seconds.fill(std::numeric_limits<double>::infinity());
    for (std::size_t i = 0; i < 2 * seconds.size(); ++i) {
        control.throwIfCancelled();
        // Such fractions of the length meet frames at all distances from their key frames. Each is looked for
        // twice, since other work comes in between.
        double& quickest = seconds.at(i % seconds.size());
        const auto start = Clock::now();
        reader.seek(duration * std::fmod(0.31 + 0.618 * static_cast<double>(i % seconds.size()), 1),
                    control.isCancelled);
        static_cast<void>(reader.read());
        quickest = std::min(quickest, std::chrono::duration<double>(Clock::now() - start).count());
    }
    std::ranges::sort(seconds);
    return seconds.at(seconds.size() / 2);
}

std::optional<QString> ofCamera(const QString& video) {
    for (const QString& path : candidates(QFileInfo(video))) {
        if (QFileInfo(path).isFile() && media::isSmallCopy(path, video))
            return path;
    }
    return std::nullopt;
}

QString keyOf(const media::Recording& video) {
    QStringList facts{QLatin1String(version), media::encodingLibraries()};
    for (const QString& path : video.files()) {
        const FileFingerprint file = FileFingerprint::of(path);
        facts << QString::number(file.size) << QString::number(file.modified) << file.hash;
    }
    const QByteArray text = facts.join(u'|').toUtf8();
    return QString::fromLatin1(QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex());
}

void make(const media::Recording& video, const QString& path, const ExportControl& control) {
    auto reader = media::VideoReader::open(video);
    const double duration = reader.info().duration;
    const double rate = reader.track().frameRate.value();
    const media::VideoSettings settings = encoding(reader.track());
    ConvertedFrames frames(std::move(reader), conversion(settings));
    auto writer = media::MediaWriter::create(path, settings, false);
    ProgressMeter meter(control, std::llround(duration * rate));
    std::int64_t written = 0;
    while (const auto frame = frames.next()) {
        control.throwIfCancelled();
        writer.writeVideo(*frame);
        meter.update({.fraction = duration > 0 ? frame->time() / duration : 0, .frames = ++written});
    }
    writer.finish();
    meter.finish();
}

namespace {

std::optional<QString> makeKept(const media::Recording& video, const SegmentCache& cache, const QString& key,
                                const NewFile& file, const ExportControl& control) {
    const RoomCheck room(cache, file.temporaryPath());
    bool isTooLarge = false;
    const ExportControl watched{
        .isCancelled = [&] { return isTooLarge || (control.isCancelled && control.isCancelled()); },
        .onProgress =
            [&](const ExportProgress& progress) {
                isTooLarge = room.lacks(progress.fraction);
                if (control.onProgress)
                    control.onProgress(progress);
            },
    };
    make(video, file.temporaryPath(), watched);
    cache.keep(key, file.temporaryPath(), {});
    return cache.find(key);
}

}

std::optional<QString> find(const media::Recording& video, const SegmentCache& cache,
                            const ExportControl& control, double slow) {
    try {
        const QString key = keyOf(video);
        // One name for all: what a killed process left is removed with the next video.
        const NewFile file(QDir(cache.folder()).filePath(QStringLiteral("quick.mp4")));
        if (auto known = cache.find(key))
            return known;
        if (seekTime(video, control) < slow)
            return std::nullopt;
        const auto recorded = video.isSplit() ? std::nullopt : ofCamera(video.first());
        if (recorded && seekTime(*recorded, control) < slow)
            return recorded;
        if (!cache.makeRoom(1))
            return std::nullopt;
        return makeKept(video, cache, key, file, control);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

}
