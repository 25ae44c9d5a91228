#include "export/ExportManager.h"

#include "crash/CrashReporter.h"
#include "export/ExportPlan.h"
#include "export/ExportSource.h"
#include "export/FrameOverlay.h"
#include "export/FrameSource.h"
#include "export/ProgressMeter.h"
#include "export/UprightImage.h"
#include "media/MediaError.h"
#include "media/MediaWriter.h"

#include <limits>
#include <new>
#include <QCoreApplication>
#include <system_error>

namespace pointloom {

namespace {

using ExportSource::failure;
using media::AudioReader;
using media::FrameConverter;
using media::MediaError;
using media::MediaWriter;
using media::VideoReader;

std::optional<AudioReader> openAudio(const ExportJob& job, const ExportPlan& plan) {
    if (job.segment)
        return std::nullopt;
    try {
        return AudioReader::open(job.videoPath, plan.range.start(), plan.range.end());
    } catch (const MediaError&) {
        return std::nullopt; // trouble with the sound never fails an export
    }
}

MediaWriter openWriter(const QString& path, const ExportJob& job, const ExportPlan& plan,
                       const media::VideoTrackInfo& track, bool withAudio) {
    try {
        return MediaWriter::create(path, videoSettings(job, plan, track), withAudio, plan.chapters,
                                   job.segment ? job.segment->comment : QString());
    } catch (const std::exception&) {
        throw ExportSource::writerError();
    }
}

// Feeds the writer sound so that it keeps just ahead of the pictures.
class SoundTrack {
public:
    SoundTrack(std::optional<AudioReader> reader, MediaWriter& writer,
               const ExportManager::CancelQuery& isCancelled)
        : m_reader(writer.hasAudio() ? std::move(reader) : std::nullopt)
        , m_writer(writer)
        , m_isCancelled(isCancelled) {}

    void writeUntil(double time) {
        while (m_reader && m_writtenUntil <= time)
            writeNext();
    }

    void writeRest() { writeUntil(std::numeric_limits<double>::infinity()); }

private:
    void writeNext() {
        throwIfCancelled(m_isCancelled);
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

    std::optional<AudioReader> m_reader;
    MediaWriter& m_writer;
    const ExportManager::CancelQuery& m_isCancelled;
    double m_writtenUntil = 0; // seconds of the new file
};

std::optional<TrimmedFrame> nextFrame(FrameSource& frames, const ExportManager::CancelQuery& isCancelled) {
    try {
        return frames.next(isCancelled);
    } catch (const MediaError& error) {
        throw failure("Reader error: ", error);
    }
}

// The loop over all frames. Throws ExportCancelled.
void writeFrames(FrameSource& frames, FrameOverlay& overlay, MediaWriter& writer, SoundTrack& sound,
                 ProgressMeter& progress, const ExportManager::CancelQuery& isCancelled) {
    constexpr double soundAhead = 0.5; // seconds
    bool wroteAny = false;
    while (true) {
        throwIfCancelled(isCancelled);
        const auto next = nextFrame(frames, isCancelled);
        if (!next)
            break;
        overlay.drawInto(next->frame, next->sourceTime);
        try {
            writer.writeVideo(next->frame);
        } catch (const MediaError& error) {
            throw failure("Append failed: ", error);
        }
        wroteAny = true;
        progress.countFrame();
        const double time = static_cast<double>(next->frame.timestamp()) * next->frame.timeBase().value();
        sound.writeUntil(time + soundAhead);
    }
    if (!wroteAny && frames.damage().secondsMissing > 0)
        throw ExportError::exportFailed(QStringLiteral("the video is cut short before the trim range starts"),
                                        media::MediaFault::nothingInRange);
    if (!wroteAny)
        throw ExportError::exportFailed(QStringLiteral("the trim range holds no frame of the video"),
                                        media::MediaFault::nothingInRange);
    sound.writeRest();
    throwIfCancelled(isCancelled);
}

// Errors that are not fatal are told to the crash reporter, on the main thread.
void recordError(const QString& description) {
    const auto record = [description] {
        CrashReporter::shared().captureError(description,
                                             {{QStringLiteral("step"), QStringLiteral("export")}});
    };
    if (QCoreApplication* application = QCoreApplication::instance())
        QMetaObject::invokeMethod(application, record, Qt::QueuedConnection);
}

ExportReport runSync(const ExportJob& job, const ExportManager::CancelQuery& isCancelled,
                     const ExportManager::ProgressReport& onProgress,
                     std::atomic<std::int64_t>* framesWritten) {
    VideoReader reader = ExportSource::open(job.videoPath);
    const media::MediaInfo info = reader.info();
    ExportSource::requireOverlaySize(*info.video);
    ExportSource::requireOtherFile(job, job.outputPath);
    ExportSource::requireRange(job, info.duration);
    const ExportPlan plan = makePlan(job, info);
    auto audio = openAudio(job, plan);
    FrameOverlay overlay(job.overlay, plan.layout, plan.frameFormat);
    FrameConverter converter(*info.video, pictureTarget(plan, *info.video));

    const auto file = ExportSource::writing(
        "Writer failed: ", [&] { return std::make_unique<NewFile>(job.outputPath, job.ifExists); });
    MediaWriter writer = openWriter(file->temporaryPath(), job, plan, *info.video, audio.has_value());
    SoundTrack sound(std::move(audio), writer, isCancelled);
    ProgressMeter progress(onProgress, plan.expectedFrames, framesWritten);
    FrameSource frames(std::move(reader), std::move(converter), plan.range);
    writeFrames(frames, overlay, writer, sound, progress, isCancelled);
    try {
        writer.finish();
    } catch (const MediaError& error) {
        throw failure("Writer error: ", error);
    }
    const QString path = ExportSource::writing("Writer error: ", [&] { return file->keep(); });
    progress.finish();
    return {frames.damage(), path};
}

// What the system refuses comes without a word of what it was for.
ExportReport runInWords(const ExportJob& job, const ExportManager::CancelQuery& isCancelled,
                        const ExportManager::ProgressReport& onProgress,
                        std::atomic<std::int64_t>* framesWritten) {
    try {
        return runSync(job, isCancelled, onProgress, framesWritten);
    } catch (const std::bad_alloc&) {
        throw ExportError::exportFailed(QStringLiteral("there is not enough memory"));
    } catch (const std::system_error& error) {
        throw ExportError::exportFailed(QStringLiteral("Reader failed: no thread could be started: ") +
                                        QString::fromUtf8(error.what()));
    }
}

}

ExportReport ExportManager::exportVideo(const ExportJob& job, const CancelQuery& isCancelled,
                                        const ProgressReport& onProgress,
                                        std::atomic<std::int64_t>* framesWritten) {
    try {
        return runInWords(job, isCancelled, onProgress, framesWritten);
    } catch (const ExportCancelled&) {
        throw;
    } catch (const std::exception& error) {
        recordError(QString::fromUtf8(error.what()));
        throw;
    }
}

QImage ExportManager::renderStill(const ExportJob& job, double time) {
    VideoReader reader = ExportSource::open(job.videoPath);
    const media::MediaInfo info = reader.info();
    ExportSource::requireOverlaySize(*info.video);
    const ExportPlan plan = makePlan(job, info);
    FrameConverter converter(*info.video, pictureTarget(plan, *info.video));
    try {
        reader.seek(time);
        std::optional<media::VideoFrame> frame;
        while (!(frame = converter.pull())) {
            auto decoded = reader.read();
            if (!decoded)
                break;
            converter.push(std::move(*decoded));
        }
        if (!frame) {
            converter.finish();
            frame = converter.pull();
        }
        if (!frame)
            throw MediaError("there is no picture at that time", media::MediaFault::nothingInRange);
        frame->makeWritable();
        FrameOverlay(job.overlay, plan.layout, plan.frameFormat).drawInto(*frame, frame->time());
        return uprightImage(media::toRgb(*frame), plan.layout.orientation)
            .scaled(plan.layout.canvas.toSize(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    } catch (const MediaError& error) {
        throw failure("Reader error: ", error);
    }
}

}
