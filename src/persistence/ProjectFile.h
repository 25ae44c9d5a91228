// Project documents (*.plp): one editing session as a JSON file.
#pragma once

#include "persistence/StoredFields.h"

namespace pointloom {

/// The older document format, which is still read but no longer written.
struct LegacyProjectFile : StoredProject<ScoreState> {
    std::optional<std::int64_t> version;
    std::optional<SportID> selectedSport;
    std::optional<QString> videoPath;

    static constexpr auto jsonFields() { return storedFields<LegacyProjectFile>(); }
};

/// The current document format. It holds no interface language, and cut zones only where the export leaves
/// them out.
struct ProjectFile : StoredProject<SportScoreState> {
    std::int64_t version = 1; // not checked on reading
    std::optional<SportID> selectedSport;
    std::optional<double> scoreboardUserScale;
    std::optional<QString> videoPath;
    std::optional<std::vector<QString>> videoFiles{}; // of a split recording; `videoPath` is its first
    std::optional<std::vector<std::string>> rules{};  // words, or "by-hand"; absent: the sport's usual rules
    std::optional<PartChoice> parts{};                // absent: all of the range is exported
    std::optional<std::vector<CutZone>> cuts{};

    bool operator==(const ProjectFile&) const = default;

    /// Reads a document of either format. Throws DocumentError: the file cannot be read, is not a regular
    /// file, passes a limit of `json::ParseLimits`, or is neither a current nor a legacy document; then the
    /// fault is that of the format whose form the document has.
    static ProjectFile load(const QString& path);

    /// `load` of a document's content. `path` is only named in errors.
    static ProjectFile decode(const QByteArray& bytes, const QString& path);

    /// An old document in the current form: its scores become tennis scores.
    static ProjectFile migrating(const LegacyProjectFile& legacy);

    /// Writes the document in one step, keys sorted and indented. On any failure the file that was there is
    /// kept. Throws DocumentError, also for a document that passes a limit of reading.
    void save(const QString& path) const;

    static constexpr auto jsonFields() { return storedFields<ProjectFile>(); }
};

}
