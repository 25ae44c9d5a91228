// Keeps the session across launches: written whole after each edit, read back once at the next start.
#pragma once

#include "export/ExportSettings.h"
#include "l10n/Language.h"
#include "model/MatchConfig.h"
#include "persistence/LegacyMarker.h"
#include "persistence/SessionLock.h"
#include "persistence/UserDefaults.h"
#include "render/TemplateID.h"
#include "session/SessionStore.h"
#include "json/JsonFields.h"

#include <chrono>
#include <functional>
#include <optional>
#include <QString>
#include <QTimer>
#include <tuple>
#include <vector>

namespace pointloom {

/// Every failure is silent: the session goes on, and what is stored stays as it was. What the disk did not
/// take is tried again at intervals, by the thread's event loop, until it or a later change succeeds. A
/// session that JSON cannot hold, or that passes a limit of `json::ParseLimits`, is not stored. A stored
/// value that fits no record (of a newer version, perhaps) is left in place, and copied to a file of its own
/// beside the settings before the next save replaces it.
class Persistence final : public SessionStore {
public:
    struct Snapshot;
    struct LegacySnapshot;
    using LegacyMarker = pointloom::LegacyMarker;

    static constexpr std::string_view sessionKey = "pointloom.session";

    /// Only the holder of the lock may store a session. Both outlive this.
    Persistence(UserDefaults& defaults, const SessionLock& lock,
                std::chrono::milliseconds retryInterval = std::chrono::seconds(10));

    /// `state` exists as long as events are processed.
    void save(const AppState& state) noexcept override;

    /// Restores the stored session, if there is one, and goes back to the first screen; the video is never
    /// restored. A session in the older form is rewritten in the current one at once.
    void load(AppState& into) noexcept;

    void clear() noexcept override;

    void retry() noexcept override;

private:
    using Change = std::function<void()>;

    void attempt(Change change) noexcept;
    void store(const AppState& state);
    void removeStored();
    void setAsideWhatCannotBeRead();

    UserDefaults& m_defaults;
    Change m_failed; // the latest change, when the disk did not take it
    QTimer m_retry;
    bool m_isStoredValueOurs = false; // absent, or known to be read whole
};

/// Neither the video nor the screen is part of it.
struct Persistence::Snapshot {
    std::optional<SportID> selectedSport;
    std::optional<TemplateID> selectedTemplate;
    std::optional<MatchConfig> matchConfig;
    std::vector<Marker> markers;
    std::vector<CutZone> cuts;
    std::optional<SportScoreState> initialScore;
    double scoreboardPositionX = 0; // fractions of the picture
    double scoreboardPositionY = 0;
    std::optional<double> scoreboardUserScale; // written, but each launch starts at 1
    double trimStart = 0;                      // seconds
    std::optional<double> trimEnd;
    std::optional<Language> language;
    std::optional<QString> watermarkPath; // absolute
    std::optional<WatermarkCorner> watermarkCorner;

    bool operator==(const Snapshot&) const = default;

    static Snapshot of(const AppState& state);
    void restore(AppState& into) const;

    static constexpr auto jsonFields() {
        using json::field;
        return std::tuple{field("selectedSport", &Snapshot::selectedSport),
                          field("selectedTemplate", &Snapshot::selectedTemplate),
                          field("matchConfig", &Snapshot::matchConfig),
                          field("markers", &Snapshot::markers),
                          field("cuts", &Snapshot::cuts),
                          field("initialScore", &Snapshot::initialScore),
                          field("scoreboardPositionX", &Snapshot::scoreboardPositionX),
                          field("scoreboardPositionY", &Snapshot::scoreboardPositionY),
                          field("scoreboardUserScale", &Snapshot::scoreboardUserScale),
                          field("trimStart", &Snapshot::trimStart),
                          field("trimEnd", &Snapshot::trimEnd),
                          field("language", &Snapshot::language),
                          field("watermarkPath", &Snapshot::watermarkPath),
                          field("watermarkCorner", &Snapshot::watermarkCorner)};
    }
};

/// From before there was any sport but tennis. Only read.
struct Persistence::LegacySnapshot {
    std::optional<TemplateID> selectedTemplate;
    std::optional<MatchConfig> matchConfig;
    std::vector<LegacyMarker> markers;
    std::vector<CutZone> cuts;
    std::optional<ScoreState> initialScore;
    double scoreboardPositionX = 0;
    double scoreboardPositionY = 0;
    double trimStart = 0;
    std::optional<double> trimEnd;
    std::optional<Language> language;
    std::optional<QString> watermarkPath;
    std::optional<WatermarkCorner> watermarkCorner;

    /// The same session in the current form; its sport and scale stay absent.
    Snapshot migrated() const;

    static constexpr auto jsonFields() {
        using json::field;
        return std::tuple{field("selectedTemplate", &LegacySnapshot::selectedTemplate),
                          field("matchConfig", &LegacySnapshot::matchConfig),
                          field("markers", &LegacySnapshot::markers),
                          field("cuts", &LegacySnapshot::cuts),
                          field("initialScore", &LegacySnapshot::initialScore),
                          field("scoreboardPositionX", &LegacySnapshot::scoreboardPositionX),
                          field("scoreboardPositionY", &LegacySnapshot::scoreboardPositionY),
                          field("trimStart", &LegacySnapshot::trimStart),
                          field("trimEnd", &LegacySnapshot::trimEnd),
                          field("language", &LegacySnapshot::language),
                          field("watermarkPath", &LegacySnapshot::watermarkPath),
                          field("watermarkCorner", &LegacySnapshot::watermarkCorner)};
    }
};

}
