#include "export/OverlayExport.h"

#include "export/Compositor.h"
#include "export/ExportSource.h"
#include "export/PictureLayout.h"
#include "export/ProgressMeter.h"
#include "export/TrimRange.h"
#include "media/AlphaMovie.h"
#include "media/FrameTimes.h"
#include "media/MediaError.h"
#include "model/ScoringEngine.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QPainter>

namespace pointloom::OverlayExport {

namespace {

using ExportSource::failure;
using media::MediaError;

// Receives the pictures. What was written is removed with a sink that was not finished.
class Sink {
public:
    Sink() = default;
    virtual ~Sink() = default;
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;

    /// The picture that is written from now on; Format_RGBA8888.
    virtual void setPicture(const QImage& picture) = 0;
    virtual void write(const TrimRange::Stay& stay) = 0;
    /// Returns the path.
    virtual QString finish() = 0;
};

class MovieSink final : public Sink {
public:
    MovieSink(const ExportJob& job, QSize size, const media::VideoTrackInfo& track)
        : m_file(job.outputPath, job.ifExists)
        , m_movie(media::AlphaMovie::create(m_file.temporaryPath(), size, track.timeBase, track.frameRate))
        , m_usualDuration(std::max<std::int64_t>(
              1, std::llround(1 / (track.frameRate.value() * track.timeBase.value())))) {}

    void setPicture(const QImage& picture) override {
        m_movie.setImage({picture.constBits(), static_cast<std::size_t>(picture.sizeInBytes())});
    }

    void write(const TrimRange::Stay& stay) override {
        m_movie.write(stay.timestamp, stay.duration > 0 ? stay.duration : m_usualDuration);
    }

    QString finish() override {
        m_movie.finish();
        return m_file.keep();
    }

private:
    NewFile m_file;
    media::AlphaMovie m_movie;
    std::int64_t m_usualDuration; // ticks
};

class FolderSink final : public Sink {
public:
    explicit FolderSink(const ExportJob& job)
        : m_folder(job.outputPath, job.ifExists) {}

    void setPicture(const QImage& picture) override {
        m_png.clear();
        QBuffer buffer(&m_png);
        buffer.open(QIODevice::WriteOnly);
        if (!picture.save(&buffer, "PNG"))
            throw MediaError("a picture could not be encoded as PNG");
    }

    void write(const TrimRange::Stay&) override {
        QFile file(QDir(m_folder.temporaryPath())
                       .filePath(QStringLiteral("frame_%1.png").arg(++m_count, 6, 10, QLatin1Char('0'))));
        if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly) || file.write(m_png) != m_png.size() ||
            !file.flush())
            throw MediaError("a picture could not be written: " + file.errorString().toStdString());
    }

    QString finish() override { return m_folder.keep(); }

private:
    NewFolder m_folder;
    QByteArray m_png;
    std::int64_t m_count = 0;
};

std::unique_ptr<Sink> makeSink(const ExportJob& job, Format format, QSize size,
                               const media::VideoTrackInfo& track) {
    if (format == Format::png && job.ifExists == IfExists::replace && !NewFolder::canBeAt(job.outputPath))
        throw ExportError::exportFailed(
            QStringLiteral("Writer failed: the folder for the pictures is not empty"));
    try {
        if (format == Format::png)
            return std::make_unique<FolderSink>(job);
        return std::make_unique<MovieSink>(job, size, track);
    } catch (const std::exception&) {
        throw ExportSource::writerError();
    }
}

// Draws the overlay when what it shows changes.
class OverlayPicture {
public:
    OverlayPicture(const OverlayDescription& overlay, const PictureLayout& layout)
        : m_overlay(overlay)
        , m_canvas{layout.canvas.toSize(), layout.nativeVideoSize}
        , m_pictures(Compositor::Pictures::load(overlay)) {}

    /// The picture for a time of the source, when it differs from the last one.
    std::optional<QImage> changedAt(double time) {
        const Marker* marker = ScoringEngine::markerAtTime(m_overlay.markers, time);
        const SportScoreState& score = marker ? marker->score : m_overlay.initialScore;
        const bool isShown = m_shown && (m_shown == &score || *m_shown == score);
        m_shown = &score;
        if (isShown)
            return std::nullopt;
        QImage picture(m_canvas.size.toSize(), QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        {
            QPainter painter(&picture);
            Compositor::drawOverlay(painter, m_canvas, m_overlay, m_pictures, score);
        }
        return picture.convertToFormat(QImage::Format_RGBA8888);
    }

private:
    const OverlayDescription& m_overlay;
    Compositor::Canvas m_canvas;
    Compositor::Pictures m_pictures;
    const SportScoreState* m_shown = nullptr; // inside of m_overlay
};

void writeFrames(const ExportJob& job, media::FrameTimes times, OverlayPicture& overlay, Sink& sink,
                 ProgressMeter& progress, const ExportManager::CancelQuery& isCancelled) {
    const TrimRange range(job.trimStart, job.trimEnd);
    const media::Rational timeBase = times.timeBase();
    auto current = times.next();
    while (current) {
        throwIfCancelled(isCancelled);
        const auto following = times.next();
        const double time = static_cast<double>(*current) * timeBase.value();
        const auto stay = range.place(*current, 0, following, timeBase);
        if (!stay && range.end() && time >= *range.end())
            break;
        if (stay) {
            if (const auto picture = overlay.changedAt(range.shownFrom(time)))
                sink.setPicture(*picture);
            sink.write(*stay);
            progress.countFrame();
        }
        current = following;
    }
    if (progress.frames() == 0)
        throw ExportError::exportFailed(QStringLiteral("the trim range holds no frame of the video"));
}

}

ExportReport run(const ExportJob& job, Format format, const ExportManager::CancelQuery& isCancelled,
                 const ExportManager::ProgressReport& onProgress) {
    const media::MediaInfo info = ExportSource::open(job.videoPath).info();
    ExportSource::requireOtherFile(job, job.outputPath);
    ExportSource::requireRange(job, info.duration);
    const PictureLayout layout = planPicture(*info.video, job.preset);
    OverlayPicture overlay(job.overlay, layout);
    const double length = ExportSource::endOfRange(job.trimEnd, info.duration) - job.trimStart;
    ProgressMeter progress(onProgress, static_cast<std::int64_t>(length * info.video->frameRate.value()));
    const auto sink = makeSink(job, format, layout.canvas.toSize(), *info.video);
    try {
        writeFrames(job, media::FrameTimes::open(job.videoPath, job.trimStart), overlay, *sink, progress,
                    isCancelled);
        const QString path = sink->finish();
        progress.finish();
        return {.damage = {}, .outputPath = path};
    } catch (const MediaError& error) {
        throw failure("Writer error: ", error);
    } catch (const FileError& error) {
        throw failure("Writer error: ", error);
    }
}

}
