#include "export/ExportManager.h"

#include "crash/CrashReporter.h"
#include "export/Captions.h"
#include "export/ExportSound.h"
#include "export/ExportSource.h"
#include "export/ExportTimeline.h"
#include "export/FrameOverlay.h"
#include "export/FrameSource.h"
#include "export/OverlayExport.h"
#include "export/UprightImage.h"

#include <future>
#include <limits>
#include <new>
#include <QCoreApplication>
#include <system_error>

namespace pointloom {

namespace {

using media::MediaError;
using media::MediaWriter;

std::optional<ExportSound> openSound(const ExportJob& job, const ExportTimeline& timeline,
                                     media::Rational timeBase) {
    if (job.segment)
        return std::nullopt;
    try {
        return ExportSound::open(job.recording(), timeline.parts, timeBase);
    } catch (const MediaError&) {
        return std::nullopt; // trouble with the sound never fails an export
    }
}

MediaWriter openWriter(const QString& path, const ExportJob& job, const ResolvedExport& resolved,
                       const TimeMap& map, bool withAudio) {
    try {
        return MediaWriter::create(path, resolved.encoder, withAudio, textsOf(job, map));
    } catch (const std::exception&) {
        throw ExportError::fromWriter();
    }
}

// Feeds the writer sound so that it keeps just ahead of the frames.
class SoundTrack {
public:
    SoundTrack(std::optional<ExportSound> reader, MediaWriter& writer, const ExportControl& control)
        : m_reader(writer.hasAudio() ? std::move(reader) : std::nullopt)
        , m_writer(writer)
        , m_control(control) {}

    void writeUntil(double time) {
        while (m_reader && m_writtenUntil <= time)
            writeNext();
    }

    void writeRest() { writeUntil(std::numeric_limits<double>::infinity()); }

private:
    void writeNext() {
        m_control.throwIfCancelled();
        try {
            if (const auto run = m_reader->read()) {
                m_writtenUntil =
                    static_cast<double>(run->firstSample + run->sampleCount) / media::audioSampleRate;
                (void)m_writer.writeAudio(*run); // a refused run is left out
                return;
            }
        } catch (const MediaError&) {
            // The sound ends where it can no longer be read.
        }
        m_reader.reset();
    }

    std::optional<ExportSound> m_reader;
    MediaWriter& m_writer;
    const ExportControl& m_control;
    double m_writtenUntil = 0; // seconds of the new file
};

// The loop over all frames. Throws ExportCancelled.
void writeFrames(FrameSource& frames, FrameOverlay& overlay, MediaWriter& writer, SoundTrack& sound,
                 ProgressMeter& progress, const ExportControl& control) {
    constexpr double soundAhead = 0.5; // seconds
    while (true) {
        control.throwIfCancelled();
        const auto next = withExportErrors("Reader error: ", [&] { return frames.next(control); });
        if (!next)
            break;
        overlay.drawInto(next->frame, next->sourceTime);
        withExportErrors("Append failed: ", [&] { writer.writeVideo(next->frame); });
        progress.countFrame();
        const double time = static_cast<double>(next->frame.timestamp()) * next->frame.timeBase().value();
        sound.writeUntil(time + soundAhead);
    }
    if (progress.frames() == 0)
        throw ExportError::exportFailed(
            frames.damage().secondsMissing > 0
                ? QStringLiteral("the video is cut short before the trim range starts")
                : QStringLiteral("the trim range holds no frame of the video"),
            media::MediaFault::nothingInRange);
    sound.writeRest();
    control.throwIfCancelled();
}

ExportReport exportFile(const ExportJob& job, const ExportControl& control,
                        std::optional<media::VideoReader> source) {
    media::VideoReader reader = source ? *std::move(source) : openSource(job.recording());
    const media::MediaInfo info = reader.info();
    requireOtherFile(job, job.outputPath);
    requireRange(job, info.duration);
    const ResolvedExport resolved = resolveExport(job, info);
    const ExportTimeline timeline = exportTimeline(job, info);
    // Opening takes a tenth of a second, in which the overlay is prepared.
    auto opening =
        std::async(std::launch::async, [&] { return openSound(job, timeline, info.video->timeBase); });
    FrameOverlay overlay(job, resolved.layout, resolved.encoder.format);
    ConvertedFrames converted(std::move(reader), resolved.target);

    const auto file = withExportErrors(
        "Writer failed: ", [&] { return std::make_unique<NewFile>(job.outputPath, job.ifExists); });
    std::optional<ExportSound> audio = opening.get();
    MediaWriter writer = openWriter(file->temporaryPath(), job, resolved, timeline.map, audio.has_value());
    SoundTrack sound(std::move(audio), writer, control);
    ProgressMeter progress(control, timeline.expectedFrames);
    FrameSource frames(std::move(converted), timeline.parts);
    writeFrames(frames, overlay, writer, sound, progress, control);
    const QString path = withExportErrors("Writer error: ", [&] {
        writer.finish();
        return file->keep(endingOfCaptions(job));
    });
    ExportReport report{.damage = frames.damage(), .outputPath = path};
    writeCaptionsBeside(report, job, timeline.map, job.ifExists);
    progress.finish();
    return report;
}

// The system's own errors do not say what they were for.
ExportReport exportInWords(const ExportJob& job, const ExportControl& control,
                           std::optional<media::VideoReader> source) {
    try {
        return exportFile(job, control, std::move(source));
    } catch (const std::bad_alloc&) {
        throw ExportError::exportFailed(QStringLiteral("there is not enough memory"));
    } catch (const std::system_error& error) {
        throw ExportError::exportFailed(QStringLiteral("Reader failed: no thread could be started: ") +
                                        QString::fromUtf8(error.what()));
    }
}

// Reports the error to the crash reporter, on the main thread.
void recordError(const QString& description) {
    const auto record = [description] {
        CrashReporter::shared().captureError(description,
                                             {{QStringLiteral("step"), QStringLiteral("export")}});
    };
    if (QCoreApplication* application = QCoreApplication::instance())
        QMetaObject::invokeMethod(application, record, Qt::QueuedConnection);
}

}

ExportReport ExportManager::exportVideo(const ExportJob& job, const ExportControl& control,
                                        std::optional<media::VideoReader> source) {
    try {
        return exportInWords(job, control, std::move(source));
    } catch (const ExportCancelled&) {
        throw;
    } catch (const std::exception& error) {
        recordError(QString::fromUtf8(error.what()));
        throw;
    }
}

namespace {

media::VideoFrame frameAt(media::VideoReader reader, const ResolvedExport& resolved, double time) {
    reader.seek(time);
    auto frame = ConvertedFrames(std::move(reader), resolved.target).next();
    if (!frame)
        throw MediaError("there is no picture at that time", media::MediaFault::nothingInRange);
    return std::move(*frame);
}

QImage shownImage(const media::VideoFrame& frame, const PictureLayout& layout) {
    return uprightImage(media::toRgb(frame), layout.orientation)
        .scaled(layout.canvas.toSize(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

}

QImage ExportManager::renderStill(const ExportJob& job, double time) {
    media::VideoReader reader = openSource(job.recording());
    const ResolvedExport resolved = resolveExport(job, reader.info());
    return withExportErrors("Reader error: ", [&] {
        media::VideoFrame frame = frameAt(std::move(reader), resolved, time);
        frame.makeWritable();
        FrameOverlay(job, resolved.layout, resolved.encoder.format).drawInto(frame, frame.time());
        return shownImage(frame, resolved.layout);
    });
}

ExportManager::StillLayers ExportManager::renderStillLayers(const ExportJob& job, double time) {
    media::VideoReader reader = openSource(job.recording());
    const PictureLayout layout = resolveExport(job, reader.info()).layout;
    ExportJob whole = job;
    whole.settings.preset = ExportPreset::original;
    const ResolvedExport resolved = resolveExport(whole, reader.info());
    return withExportErrors("Reader error: ", [&]() -> StillLayers {
        const media::VideoFrame frame = frameAt(std::move(reader), resolved, time);
        return {shownImage(frame, resolved.layout), renderOverlay(job, layout, frame.time())};
    });
}

}
