// Project documents (*.plp): one editing session as a JSON file.
#pragma once

#include "export/ExportSettings.h"
#include "model/MatchConfig.h"
#include "persistence/LegacyMarker.h"
#include "render/TemplateID.h"

#include <optional>
#include <QPointF>
#include <QString>
#include <vector>

namespace pointloom {

using LegacyProjectFileMarker = LegacyMarker;

/// The older document format, which is still read but no longer written.
struct LegacyProjectFile {
    std::optional<std::int64_t> version;
    std::optional<SportID> selectedSport;
    std::optional<TemplateID> selectedTemplate;
    std::optional<MatchConfig> matchConfig;
    std::vector<LegacyProjectFileMarker> markers;
    std::optional<ScoreState> initialScore;
    double scoreboardPositionX = 0;
    double scoreboardPositionY = 0;
    double trimStart = 0; // seconds
    std::optional<double> trimEnd;
    std::optional<QString> watermarkPath;
    std::optional<WatermarkCorner> watermarkCorner;
    std::optional<QString> videoPath;

    static constexpr auto jsonFields() {
        using Self = LegacyProjectFile;
        return std::tuple{json::field("version", &Self::version),
                          json::field("selectedSport", &Self::selectedSport),
                          json::field("selectedTemplate", &Self::selectedTemplate),
                          json::field("matchConfig", &Self::matchConfig),
                          json::field("markers", &Self::markers),
                          json::field("initialScore", &Self::initialScore),
                          json::field("scoreboardPositionX", &Self::scoreboardPositionX),
                          json::field("scoreboardPositionY", &Self::scoreboardPositionY),
                          json::field("trimStart", &Self::trimStart),
                          json::field("trimEnd", &Self::trimEnd),
                          json::field("watermarkPath", &Self::watermarkPath),
                          json::field("watermarkCorner", &Self::watermarkCorner),
                          json::field("videoPath", &Self::videoPath)};
    }
};

/// The current document format. It holds neither cut zones nor the interface language.
struct ProjectFile {
    std::int64_t version = 1; // not checked on reading
    std::optional<SportID> selectedSport;
    std::optional<TemplateID> selectedTemplate;
    std::optional<MatchConfig> matchConfig;
    std::vector<Marker> markers;
    std::optional<SportScoreState> initialScore; // before the first marker
    double scoreboardPositionX = 0;              // fraction of the picture's width, as stored
    double scoreboardPositionY = 0;              // fraction of the picture's height, as stored
    std::optional<double> scoreboardUserScale;
    double trimStart = 0;                 // seconds
    std::optional<double> trimEnd;        // seconds; none: to the end of the video
    std::optional<QString> watermarkPath; // paths are plain and absolute, never URLs
    std::optional<WatermarkCorner> watermarkCorner;
    std::optional<QString> videoPath;

    bool operator==(const ProjectFile&) const = default;

    /// Reads a document of either format. Throws DocumentError: the file cannot be read, is not a regular
    /// file, passes a limit of `json::ParseLimits`, or is neither a current nor a legacy document; then the
    /// fault is that of the format whose form the document has.
    static ProjectFile load(const QString& path);

    /// `load` of a document's content. `path` is only named in errors.
    static ProjectFile decode(const QByteArray& bytes, const QString& path);

    /// An old document in the current form: its scores become tennis scores.
    static ProjectFile migrating(const LegacyProjectFile& legacy);

    /// Writes the document in one step, keys sorted and indented. On any failure the file that stood there
    /// is kept. Throws DocumentError, also for a document that passes a limit of reading.
    void save(const QString& path) const;

    /// The position to draw with: as stored, or the default when either part is above 1, as in documents
    /// that stored points instead of fractions.
    QPointF scoreboardPosition() const;

    static constexpr QPointF defaultScoreboardPosition{0.15, 0.1};

    static constexpr auto jsonFields() {
        using Self = ProjectFile;
        return std::tuple{json::field("version", &Self::version),
                          json::field("selectedSport", &Self::selectedSport),
                          json::field("selectedTemplate", &Self::selectedTemplate),
                          json::field("matchConfig", &Self::matchConfig),
                          json::field("markers", &Self::markers),
                          json::field("initialScore", &Self::initialScore),
                          json::field("scoreboardPositionX", &Self::scoreboardPositionX),
                          json::field("scoreboardPositionY", &Self::scoreboardPositionY),
                          json::field("scoreboardUserScale", &Self::scoreboardUserScale),
                          json::field("trimStart", &Self::trimStart),
                          json::field("trimEnd", &Self::trimEnd),
                          json::field("watermarkPath", &Self::watermarkPath),
                          json::field("watermarkCorner", &Self::watermarkCorner),
                          json::field("videoPath", &Self::videoPath)};
    }
};

}
