// Burns the scoreboard into a video: one call exports one file.
#pragma once

#include "export/EncodingOptions.h"
#include "export/ExportOptions.h"
#include "export/TrimRange.h"
#include "files/InputFile.h"
#include "files/NewFile.h"
#include "media/MediaInfo.h"
#include "model/Marker.h"
#include "model/MatchConfig.h"
#include "render/TemplateID.h"

#include <atomic>
#include <functional>
#include <optional>
#include <QImage>
#include <QPointF>
#include <QString>
#include <string>
#include <vector>

namespace pointloom {

/// What is burned in: everything about the overlay that does not change while exporting.
struct OverlayDescription {
    std::vector<Marker> markers;
    SportScoreState initialScore; // before the first marker
    MatchConfig config;
    TemplateID templateID = TemplateID::classic;
    QPointF scoreboardPosition{0.15, 0.1}; // centre, fractions of the upright picture from its top left
    double scoreboardUserScale = 1.0;      // [0.1, ...]; smaller values count as 0.1
    std::optional<QString> watermarkPath;  // PNG or JPEG
    WatermarkCorner watermarkCorner = WatermarkCorner::bottomRight;
    bool isLicensed = false; // without a licence a mark stands along the lower edge
};

/// A stretch of an export that is encoded on its own, to be joined with its neighbours: pictures only, the
/// first one at 0.
struct SegmentWindow {
    FrameWindow window;
    QString comment; // kept in the file
};

struct ExportJob {
    QString videoPath;
    QString projectPath; // the document that the job was made of; empty when there is none
    QString outputPath;
    IfExists ifExists = IfExists::replace; // when `outputPath` is taken
    ExportFormat format = ExportFormat::h264;
    ExportPreset preset = ExportPreset::original;
    OverlayDescription overlay;
    double trimStart = 0;          // seconds of the source's timeline
    std::optional<double> trimEnd; // none: to the end of the video
    media::EncodingQuality quality = media::EncodingQuality::standard;
    media::EncoderKind encoder = media::EncoderKind::software; // see settleEncoder for those in hardware
    std::string encoderPreset;            // of x264 or x265; empty for the encoder's default
    bool lossless = false;                // H.264 and HEVC only; for tests that read pixels back
    int exportsAtOnce = 1;                // on this machine, which share its processors
    bool withChapters = true;             // labelled markers become chapters
    std::optional<SegmentWindow> segment; // none: all of it
};

struct ExportProgress {
    double fraction = 0; // 0..1; stays at or below 0.95 until the file is complete
    std::int64_t frames = 0;
    std::int64_t expectedFrames = 1;
};

/// What is worth knowing about a complete file.
struct ExportReport {
    media::Damage damage; // of the source in the exported range
    QString outputPath;   // where the file is
};

/// The files that the job reads: none is ever replaced.
std::vector<InputFile> inputFiles(const ExportJob& job);

namespace ExportManager {

using CancelQuery = std::function<bool()>;
using ProgressReport = std::function<void(const ExportProgress&)>;

/// Blocks until the file is complete. `isCancelled` is polled at each frame, at each run of sound and while a
/// frame is waited for, and `onProgress` called at each whole per cent, both on the calling thread.
/// `framesWritten`, when given, counts the frames as they are written. The file takes its place when it is
/// whole and on the disk. Throws ExportError, and ExportCancelled when `isCancelled` said so; what was there
/// stays in both cases, and nothing else is left. A damaged video gives what can be decoded.
ExportReport exportVideo(const ExportJob& job, const CancelQuery& isCancelled,
                         const ProgressReport& onProgress,
                         std::atomic<std::int64_t>* framesWritten = nullptr);

/// The frame shown at `time` (seconds), upright, with the overlay that the export would give it.
/// Throws ExportError.
QImage renderStill(const ExportJob& job, double time);

}

}
