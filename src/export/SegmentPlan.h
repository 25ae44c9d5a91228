// How one export is cut into segments that machines encode on their own: all that they need, in one file.
#pragma once

#include "export/ExportManager.h"
#include "export/FileFingerprint.h"

namespace pointloom {

/// A plan that cannot be read or does not hold together. `what()` names the file and the place.
class PlanError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The frames of the source from `from` up to, not including, `until`, in ticks of the source's picture
/// track.
struct PlannedSegment {
    std::optional<std::int64_t> from;  // none: where the exported range begins
    std::optional<std::int64_t> until; // none: where it ends
    double seconds = 0;                // how long it lasts, roughly

    bool operator==(const PlannedSegment&) const = default;

    static constexpr auto jsonFields() {
        using Self = PlannedSegment;
        return std::tuple{json::field("from", &Self::from), json::field("until", &Self::until),
                          json::field("seconds", &Self::seconds)};
    }
};

struct SegmentPlan {
    static constexpr int mostSegments = 1000;

    std::int64_t version = 2;
    QString program;                       // version of the program: all machines use the same
    QString checksum;                      // SHA-256 of all else, hexadecimal
    FileFingerprint video;                 // the source
    std::vector<FileFingerprint> pictures; // logo and watermark
    QString output;                        // where the joined video is to stand
    ExportFormat format = ExportFormat::h264;
    ExportPreset preset = ExportPreset::original;
    media::EncodingQuality quality = media::EncodingQuality::standard;
    QString encoderPreset;
    bool withChapters = true;
    double trimStart = 0; // seconds
    std::optional<double> trimEnd;
    std::vector<Marker> markers;
    SportScoreState initialScore;
    MatchConfig matchConfig;
    TemplateID templateID = TemplateID::classic;
    double scoreboardPositionX = 0;
    double scoreboardPositionY = 0;
    double scoreboardUserScale = 1;
    std::optional<QString> watermarkPath;
    WatermarkCorner watermarkCorner = WatermarkCorner::bottomRight;
    bool isLicensed = false;
    bool hasSound = false;
    std::int64_t ticksPerSecond = 1; // of the source's picture track
    std::vector<PlannedSegment> segments;

    bool operator==(const SegmentPlan&) const = default;

    /// Cuts the job's range at key frames into `count` segments of about the same length, fewer where key
    /// frames stand too far apart or a segment would be shorter than a second. `program` is this program's
    /// version. Throws ExportError.
    static SegmentPlan make(const ExportJob& job, int count, const QString& program);

    /// Throws PlanError: not to be read, not a plan, changed by hand, or made by another version.
    static SegmentPlan load(const QString& path, const QString& program);

    /// `load` of a plan's content. `path` is only named in errors.
    static SegmentPlan decode(const QByteArray& bytes, const QString& path, const QString& program);

    /// Replaces the file in one step. Throws PlanError.
    void save(const QString& path) const;

    /// The export as a whole; `part` and the paths of parts are for others to fill in.
    ExportJob job() const;

    /// The window of a segment, counted from 1. Throws PlanError when there is none of that number.
    FrameWindow window(int number) const;

    /// Where the first frame of a segment stands in the joined video, ticks.
    std::int64_t offset(int number) const;

    int count() const { return static_cast<int>(segments.size()); }

    /// Throws ExportError when the source, the logo or the watermark is another file than when the plan was
    /// made.
    void requireUnchangedInputs() const;

    static constexpr auto jsonFields() {
        using Self = SegmentPlan;
        return std::tuple{json::field("version", &Self::version),
                          json::field("program", &Self::program),
                          json::field("checksum", &Self::checksum),
                          json::field("video", &Self::video),
                          json::field("pictures", &Self::pictures),
                          json::field("output", &Self::output),
                          json::field("format", &Self::format),
                          json::field("preset", &Self::preset),
                          json::field("quality", &Self::quality),
                          json::field("encoderPreset", &Self::encoderPreset),
                          json::field("withChapters", &Self::withChapters),
                          json::field("trimStart", &Self::trimStart),
                          json::field("trimEnd", &Self::trimEnd),
                          json::field("markers", &Self::markers),
                          json::field("initialScore", &Self::initialScore),
                          json::field("matchConfig", &Self::matchConfig),
                          json::field("template", &Self::templateID),
                          json::field("scoreboardPositionX", &Self::scoreboardPositionX),
                          json::field("scoreboardPositionY", &Self::scoreboardPositionY),
                          json::field("scoreboardUserScale", &Self::scoreboardUserScale),
                          json::field("watermarkPath", &Self::watermarkPath),
                          json::field("watermarkCorner", &Self::watermarkCorner),
                          json::field("isLicensed", &Self::isLicensed),
                          json::field("hasSound", &Self::hasSound),
                          json::field("ticksPerSecond", &Self::ticksPerSecond),
                          json::field("segments", &Self::segments)};
    }
};

}
