// A plan cuts one export into segments that machines encode independently: all that they need, in one file.
#pragma once

#include "export/ExportJob.h"

namespace pointloom {

/// A plan that cannot be read or is inconsistent. `what()` names the file and the place.
class PlanError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Tells whether a file is still the one that was seen before.
struct FileFingerprint {
    QString path;              // absolute
    std::int64_t size = 0;     // bytes
    std::int64_t modified = 0; // seconds since 1970, UTC
    QString hash;              // SHA-256 of the first and the last MiB, hexadecimal

    bool operator==(const FileFingerprint&) const = default;

    /// Throws ExportError when the file cannot be read.
    static FileFingerprint of(const QString& path);

    /// Throws ExportError, which names the file, when it is gone or is another one.
    void requireUnchanged() const;

    static constexpr auto jsonFields() {
        using Self = FileFingerprint;
        return std::tuple{json::field("path", &Self::path), json::field("size", &Self::size),
                          json::field("modified", &Self::modified), json::field("hash", &Self::hash)};
    }
};

/// The frames of the source from `from` up to, not including, `until`, in ticks of the source's video track.
struct PlannedSegment {
    std::optional<std::int64_t> from;  // none: from the start of the exported range
    std::optional<std::int64_t> until; // none: to its end
    double seconds = 0;                // length, roughly

    bool operator==(const PlannedSegment&) const = default;

    static constexpr auto jsonFields() {
        using Self = PlannedSegment;
        return std::tuple{json::field("from", &Self::from), json::field("until", &Self::until),
                          json::field("seconds", &Self::seconds)};
    }
};

struct SegmentPlan {
    static constexpr int mostSegments = 1000;

    std::int64_t version = 4;
    QString program;       // version of the program: all machines use the same
    QString checksum;      // SHA-256 of all else, hexadecimal
    ExportJob job;         // the whole export, with absolute paths
    FileFingerprint video; // the source, or the first file of a split one
    std::optional<std::vector<FileFingerprint>> furtherFiles; // of the source
    std::vector<FileFingerprint> pictures;                    // logo and watermark
    bool hasSound = false;
    std::int64_t ticksPerSecond = 1; // of the source's video track
    std::vector<PlannedSegment> segments;

    bool operator==(const SegmentPlan&) const = default;

    /// Cuts the job's range at key frames into `count` segments of about the same length, fewer where key
    /// frames are too far apart or a segment would be shorter than a second or eight frames. `program` is
    /// this program's version. Throws ExportError.
    static SegmentPlan make(const ExportJob& job, int count, const QString& program);

    /// Cuts at the first key frame of each `spacing` seconds of the source, more of them for a source of many
    /// hours: plans of other ranges of the same source have the same cuts. `info` tells of the source. Empty
    /// when there would be fewer than `fewest` segments. Otherwise as `make`.
    static std::optional<SegmentPlan> onGrid(const ExportJob& job, const media::MediaInfo& info,
                                             double spacing, int fewest, const QString& program);

    /// Throws PlanError: cannot be read, not a plan, changed by hand, or made by another version.
    static SegmentPlan load(const QString& path, const QString& program);

    /// `load` of a plan's content. `path` is only named in errors.
    static SegmentPlan decode(const QByteArray& bytes, const QString& path, const QString& program);

    /// Replaces the file in one step. Throws PlanError.
    void save(const QString& path) const;

    /// The window of a segment, counted from 1. Throws PlanError when there is none of that number.
    FrameWindow window(int number) const;

    /// The distance of a segment's first frame from the start of the joined video, ticks.
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
                          json::field("job", &Self::job),
                          json::field("video", &Self::video),
                          json::field("furtherFiles", &Self::furtherFiles),
                          json::field("pictures", &Self::pictures),
                          json::field("hasSound", &Self::hasSound),
                          json::field("ticksPerSecond", &Self::ticksPerSecond),
                          json::field("segments", &Self::segments)};
    }
};

}
