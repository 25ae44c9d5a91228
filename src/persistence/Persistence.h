// Storage of the session across launches: written whole after each edit, read once at the next start.
#pragma once

#include "persistence/SessionLock.h"
#include "persistence/StoredFields.h"
#include "persistence/UserDefaults.h"

#include <chrono>
#include <functional>
#include <QTimer>

namespace pointloom {

/// Every failure is silent: the session goes on, and the stored one stays as it was. A write that failed is
/// tried again at intervals, by the thread's event loop, until it or a later change succeeds. A
/// session that JSON cannot hold, or that passes a limit of `json::ParseLimits`, is not stored. A stored
/// value that fits no record (of a newer version, perhaps) is left in place, and copied to a file of its own
/// beside the settings before the next save replaces it.
class Persistence final : public SessionStore {
public:
    struct Snapshot;
    struct LegacySnapshot;

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

/// Neither the video nor the screen is part of it. The scale is written, but each launch starts at 1.
struct Persistence::Snapshot : StoredProject<SportScoreState> {
    std::optional<SportID> selectedSport;
    std::vector<CutZone> cuts;
    std::optional<double> scoreboardUserScale;
    std::optional<Language> language;
    std::optional<std::vector<std::string>> rules{}; // as in documents
    std::optional<PartChoice> parts{};               // as in documents

    bool operator==(const Snapshot&) const = default;

    static Snapshot of(const AppState& state) { return recordOf<Snapshot>(state); }

    static constexpr auto jsonFields() { return storedFields<Snapshot>(); }
};

/// From before there were other sports than tennis. Only read.
struct Persistence::LegacySnapshot : StoredProject<ScoreState> {
    std::vector<CutZone> cuts;
    std::optional<Language> language;

    /// The same session in the current form; its sport and scale stay absent.
    Snapshot migrated() const {
        return {StoredProject::migrated(), std::nullopt, cuts, std::nullopt, language};
    }

    static constexpr auto jsonFields() { return storedFields<LegacySnapshot>(); }
};

}
