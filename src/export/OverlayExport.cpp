#include "export/OverlayExport.h"

#include "export/Compositor.h"
#include "export/ExportSource.h"
#include "export/ExportTimeline.h"
#include "media/AlphaMovie.h"
#include "media/FrameTimes.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QPainter>

namespace pointloom {

namespace {

using media::MediaError;

// Receives the images. What was written is removed with a sink that was not finished.
class ImageSink {
public:
    ImageSink() = default;
    virtual ~ImageSink() = default;
    ImageSink(const ImageSink&) = delete;
    ImageSink& operator=(const ImageSink&) = delete;

    /// The image that is written from now on; Format_RGBA8888.
    virtual void setImage(const QImage& image) = 0;
    virtual void write(const TrimRange::Stay& stay) = 0;
    /// Returns the path.
    virtual QString finish() = 0;
};

class MovieSink final : public ImageSink {
public:
    MovieSink(const ExportJob& job, QSize size, const media::VideoTrackInfo& track)
        : m_file(job.outputPath, job.ifExists)
        , m_movie(media::AlphaMovie::create(m_file.temporaryPath(), size, track.timeBase, track.frameRate))
        , m_usualDuration(std::max<std::int64_t>(
              1, std::llround(1 / (track.frameRate.value() * track.timeBase.value())))) {}

    void setImage(const QImage& image) override {
        m_movie.setImage({image.constBits(), static_cast<std::size_t>(image.sizeInBytes())});
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

class FolderSink final : public ImageSink {
public:
    explicit FolderSink(const ExportJob& job)
        : m_folder(job.outputPath, job.ifExists) {}

    void setImage(const QImage& image) override {
        m_png.clear();
        QBuffer buffer(&m_png);
        buffer.open(QIODevice::WriteOnly);
        if (!image.save(&buffer, "PNG"))
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

std::unique_ptr<ImageSink> makeSink(const ExportJob& job, OverlayFormat format, QSize size,
                                    const media::VideoTrackInfo& track) {
    const bool isFolder = format == OverlayFormat::png;
    if (isFolder && job.ifExists == IfExists::replace && !NewFolder::canBeAt(job.outputPath))
        throw ExportError::exportFailed(
            QStringLiteral("Writer failed: the folder for the pictures is not empty"));
    try {
        if (isFolder)
            return std::make_unique<FolderSink>(job);
        return std::make_unique<MovieSink>(job, size, track);
    } catch (const std::exception&) {
        throw ExportError::fromWriter();
    }
}

QImage drawnOverlay(const Compositor& compositor, QSize size, const SportScoreState& score) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        compositor.draw(painter, score);
    }
    return image.convertToFormat(QImage::Format_RGBA8888);
}

// Calls `use` with the stay of each frame of the range and the source's time from which it is shown.
template <class Use>
void forEachFrame(media::FrameTimes& times, const TrimRange& range, const ExportControl& control,
                  const Use& use) {
    const media::Rational timeBase = times.timeBase();
    auto current = times.next();
    while (current) {
        control.throwIfCancelled();
        const auto following = times.next();
        const auto stay = range.place(*current, 0, following, timeBase);
        if (stay)
            use(*stay, range.shownFrom(static_cast<double>(*current) * timeBase.value()));
        else if (range.isAfter(*current, timeBase))
            return;
        current = following;
    }
}

Compositor compositorFor(const ExportJob& job, const PictureLayout& layout) {
    return {job, {layout.canvas.toSize(), layout.nativeVideoSize, layout.isFilled()}};
}

}

QImage renderOverlay(const ExportJob& job, const PictureLayout& layout, double time) {
    const Compositor compositor = compositorFor(job, layout);
    return drawnOverlay(compositor, layout.canvas.toSize(), *ScoreCursor(job.overlay).changedAt(time));
}

ExportReport exportOverlay(const ExportJob& job, OverlayFormat format, const ExportControl& control) {
    const media::MediaInfo info = openSource(job.recording()).info();
    requireOtherFile(job, job.outputPath);
    requireRange(job, info.duration);
    const ResolvedExport resolved = resolveExport(job, info);
    const QSize size = resolved.layout.canvas.toSize();
    const Compositor compositor = compositorFor(job, resolved.layout);
    ScoreCursor score(job.overlay);
    const ExportTimeline timeline = exportTimeline(job, info);
    ProgressMeter progress(control, timeline.expectedFrames);
    const auto sink = makeSink(job, format, size, *info.video);
    return withExportErrors("Writer error: ", [&]() -> ExportReport {
        auto times = media::FrameTimes::open(
            job.recording(), timeline.parts.front().range.decodingStart(info.video->timeBase));
        const media::Rational timeBase = times.timeBase();
        for (const ExportPart& part : timeline.parts) {
            if (&part != &timeline.parts.front())
                times.seek(part.range.decodingStart(timeBase));
            forEachFrame(times, part.range, control, [&](TrimRange::Stay stay, double sourceTime) {
                if (const SportScoreState* changed = score.changedAt(sourceTime))
                    sink->setImage(drawnOverlay(compositor, size, *changed));
                stay.timestamp += part.offset;
                sink->write(stay);
                progress.countFrame();
            });
        }
        if (progress.frames() == 0)
            throw ExportError::exportFailed(QStringLiteral("the trim range holds no frame of the video"));
        const QString path = sink->finish();
        progress.finish();
        return {.damage = {}, .outputPath = path};
    });
}

}
