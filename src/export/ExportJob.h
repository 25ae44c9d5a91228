// The vocabulary of exports: job, control, progress, report, errors.
#pragma once

#include "export/ExportSettings.h"
#include "export/TrimRange.h"
#include "files/FileDescriptor.h"
#include "files/NewFile.h"
#include "media/MediaError.h"
#include "media/Recording.h"
#include "model/Marker.h"
#include "model/MatchConfig.h"
#include "render/TemplateID.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <optional>
#include <QPointF>
#include <QString>
#include <stdexcept>
#include <vector>

namespace pointloom {

/// An export that could not be done. `what()` is fit for a user.
class ExportError : public std::runtime_error {
public:
    static ExportError noVideoTrack();
    /// "Export failed: " and the message.
    static ExportError exportFailed(const QString& message,
                                    media::MediaFault fault = media::MediaFault::other);

    /// From an error of a module below; `what` ends with a colon and a space.
    static ExportError from(const char* what, const media::MediaError& reason);
    static ExportError from(const char* what, const FileError& reason);

    /// `sentence` and, in parentheses, the reason.
    static ExportError refusal(const char* sentence, const media::MediaError& reason);

    /// From the exception in flight, which creating a writer threw: MediaError, FileError or std::bad_alloc.
    static ExportError fromWriter();

    media::MediaFault fault() const { return m_fault; }

private:
    ExportError(const std::string& message, media::MediaFault fault)
        : std::runtime_error(message)
        , m_fault(fault) {}

    media::MediaFault m_fault;
};

/// Thrown by an export that was cancelled; not an error of the export.
class ExportCancelled : public std::exception {
public:
    const char* what() const noexcept override { return "The export was cancelled."; }
};

/// Returns what `work` returns. Throws its MediaError and FileError as ExportError that begin with `what`.
template <class Work>
auto withExportErrors(const char* what, const Work& work) {
    try {
        return work();
    } catch (const media::MediaError& error) {
        throw ExportError::from(what, error);
    } catch (const FileError& error) {
        throw ExportError::from(what, error);
    }
}

/// In JSON an object of "x" and "y".
template <>
struct json::Codec<QPointF> {
    static OrderedValue encode(QPointF point);
    static QPointF decode(const Value& value, const Path& path);
};

/// The overlay of one export: everything about it that does not change from frame to frame.
struct OverlayDescription {
    std::vector<Marker> markers;
    SportScoreState initialScore; // before the first marker
    MatchConfig config;
    TemplateID templateID = TemplateID::classic;
    QPointF scoreboardPosition{0.15, 0.1}; // centre, fractions of the upright picture from its top left
    double scoreboardUserScale = 1.0;      // [0.1, ...]; smaller values count as 0.1
    std::optional<QString> watermarkPath;  // PNG or JPEG
    bool isLicensed = false;               // without a licence a mark is drawn at the lower edge

    bool operator==(const OverlayDescription&) const = default;

    static constexpr auto jsonFields() {
        using Self = OverlayDescription;
        return std::tuple{json::field("markers", &Self::markers),
                          json::field("initialScore", &Self::initialScore),
                          json::field("matchConfig", &Self::config),
                          json::field("template", &Self::templateID),
                          json::field("scoreboardPosition", &Self::scoreboardPosition),
                          json::field("scoreboardUserScale", &Self::scoreboardUserScale),
                          json::field("watermarkPath", &Self::watermarkPath),
                          json::field("isLicensed", &Self::isLicensed)};
    }
};

/// One segment of an export: its frames alone, without sound, the first one at 0.
struct ExportSegment {
    FrameWindow window;
    QString comment; // kept in the file

    bool operator==(const ExportSegment&) const = default;
};

/// Everything that one export needs, apart from the session and the document.
struct ExportJob {
    QString videoPath;
    std::optional<std::vector<QString>> videoFiles; // of a split recording, `videoPath` first
    QString outputPath;
    ExportSettings settings;
    OverlayDescription overlay;
    double trimStart = 0;             // seconds of the source's timeline
    std::optional<double> trimEnd;    // none: to the end of the video
    std::vector<TimeSpan> leftOut;    // of the range, in any order
    std::vector<FrameWindow> windows; // of the range, settled in a plan; else empty: see `frameWindows`

    // These are not in the JSON of a job.
    QString projectPath;                   // the document that the job was made of; empty when there is none
    IfExists ifExists = IfExists::replace; // when `outputPath` is taken
    int exportsAtOnce = 1;                 // on this machine, which share its processors
    std::optional<ExportSegment> segment;  // none: the whole range
    bool lossless = false;                 // H.264 and HEVC only; for tests that read pixels back

    bool operator==(const ExportJob&) const = default;

    media::Recording recording() const { return {videoPath, videoFiles}; }

    static constexpr auto jsonFields() {
        using Self = ExportJob;
        return std::tuple{
            json::field("videoPath", &Self::videoPath),   json::field("videoFiles", &Self::videoFiles),
            json::field("outputPath", &Self::outputPath), json::field("settings", &Self::settings),
            json::field("overlay", &Self::overlay),       json::field("trimStart", &Self::trimStart),
            json::field("trimEnd", &Self::trimEnd),       json::field("leftOut", &Self::leftOut),
            json::field("windows", &Self::windows)};
    }
};

/// The files that the job reads: none is ever replaced.
std::vector<InputFile> inputFiles(const ExportJob& job);

/// Throws ExportError when a file written to `path` would replace one that the job reads.
void requireOtherFile(const ExportJob& job, const QString& path);

/// Throws ExportError when the job's range is no range of a video that lasts `videoDuration` seconds.
void requireRange(const ExportJob& job, double videoDuration);

/// The end of a range that `requireRange` accepted: `trimEnd`, but not after the end of the video. Seconds; a
/// duration of 0 is unknown.
double endOfRange(std::optional<double> trimEnd, double videoDuration);

struct ExportProgress {
    double fraction = 0; // 0..1; stays at or below 0.95 until the file is complete
    std::int64_t frames = 0;
    std::int64_t expectedFrames = 1;
    std::int64_t reusedFrames = 0; // of `frames`, kept from an earlier export
};

/// The control of a running export. All members may be empty.
struct ExportControl {
    std::function<bool()> isCancelled = {}; // polled by the calling thread; a pause blocks it
    std::function<void(const ExportProgress&)> onProgress = {}; // called at each whole per cent, as above
    std::atomic<std::int64_t>* framesWritten = nullptr;         // set to their number at each frame

    void throwIfCancelled() const {
        if (isCancelled && isCancelled())
            throw ExportCancelled();
    }
};

/// Reports how far an export is, once for each whole per cent.
class ProgressMeter {
public:
    /// `control` must outlive the meter.
    explicit ProgressMeter(const ExportControl& control, std::int64_t expectedFrames = 1)
        : m_control(control)
        , m_progress{0, 0, std::max<std::int64_t>(1, expectedFrames)} {}

    void countFrame() {
        const std::int64_t frames = m_progress.frames + 1;
        if (m_control.framesWritten != nullptr)
            *m_control.framesWritten = frames;
        update({static_cast<double>(frames) / static_cast<double>(m_progress.expectedFrames), frames,
                m_progress.expectedFrames});
    }

    void update(const ExportProgress& progress) {
        constexpr double mostBeforeTheEnd = 0.95; // the encoders' last frames and the index take time too
        m_progress = progress;
        const int percent = static_cast<int>(progress.fraction * 100);
        if (percent != std::exchange(m_lastPercent, percent))
            send(std::min(progress.fraction, mostBeforeTheEnd));
    }

    void finish() const { send(1.0); }

    std::int64_t frames() const { return m_progress.frames; }

private:
    void send(double fraction) const {
        if (m_control.onProgress)
            m_control.onProgress({fraction, m_progress.frames,
                                  std::max(m_progress.expectedFrames, m_progress.frames),
                                  m_progress.reusedFrames});
    }

    const ExportControl& m_control;
    ExportProgress m_progress;
    int m_lastPercent = -1;
};

/// Average speed of an export and the time it still takes.
struct ExportPace {
    double framesPerSecond = 0;
    double secondsLeft = 0;
};

/// Empty until there is something to judge by.
std::optional<ExportPace> paceOf(const ExportProgress& progress, double elapsedSeconds);

struct EncoderFallback {
    media::EncoderKind requested = media::EncoderKind::software;
    QString reason; // why it does not work here
};

/// The result of an export that was completed.
struct ExportReport {
    media::Damage damage;                         // of the source in the exported range
    QString outputPath;                           // where the file is
    std::optional<EncoderFallback> fallback = {}; // for the requested encoder, where it did not work
    std::optional<QString> captionsFault = {};    // why the captions beside the file are missing
};

}
