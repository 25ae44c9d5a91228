// The session: every piece of editing state, each field observable by itself, and the undoable edits.
// One instance lives as long as the application; main thread only.
#pragma once

#include "export/ExportSettings.h"
#include "l10n/Language.h"
#include "media/Recording.h"
#include "model/Marker.h"
#include "model/MatchConfig.h"
#include "render/TemplateID.h"
#include "rules/MatchCount.h"
#include "session/PartChoice.h"

#include <functional>
#include <optional>
#include <QPointF>
#include <QProperty>
#include <QSizeF>
#include <QString>
#include <QUrl>
#include <QUuid>
#include <string>
#include <tuple>
#include <vector>

// Qt asks an optional's content whether it can be ordered, and a variant says yes without asking its own.
template <>
struct QTypeTraits::has_operator_less_than<std::optional<pointloom::SportScoreState>> : std::false_type {};

namespace pointloom {

class AppState;
class UndoStack;

/// Storage of the session between launches. None of the functions throws.
class SessionStore {
public:
    virtual ~SessionStore() = default;

    /// Stores the whole session. What cannot be stored leaves the stored session as it was.
    virtual void save(const AppState& state) noexcept = 0;

    /// Deletes the stored session.
    virtual void clear() noexcept = 0;

    /// Tries again the last of the above if it failed.
    virtual void retry() noexcept = 0;
};

/// The exported range, seconds from the start of the source.
struct TrimTimes {
    double start = 0;
    std::optional<double> end; // absent: the end of the video

    bool operator==(const TrimTimes&) const = default;
};

struct ScoreboardPlace {
    QPointF position;     // centre, fractions of the picture
    double userScale = 1; // 0.3..5

    bool operator==(const ScoreboardPlace&) const = default;
};

/// A score that was typed in.
struct TypedScore {
    std::optional<QUuid> marker; // absent: the initial score
    CountedMatch before;         // the match without it
};

/// The wizard's screens in their order, then the editor.
enum class Screen { sport, scoreboard, match, video, editor };

/// Reading a field inside a binding registers the reader; assigning an equal value notifies no reader.
/// Assigning a field does not save: the edits below do, and `save` does for everything else. A new field that
/// starts anew with each session is listed in `resetFields`, one that is stored in StoredFields.h.
class AppState {
public:
    struct ExportStatus {
        enum class Stage { idle, exporting, done, error };

        Stage stage = Stage::idle;
        QString message; // of an error, fit for a user

        bool operator==(const ExportStatus&) const = default;
    };

    static constexpr QPointF defaultScoreboardPosition{0.15, 0.1};

    /// The session is saved in `store`, which outlives it; without one it is not saved.
    explicit AppState(SessionStore* store = nullptr);

    QProperty<Screen> step{Screen::sport};
    QProperty<Language> language{Language::english};
    QProperty<std::optional<TemplateID>> selectedTemplate;
    QProperty<SportID> selectedSport{SportID::tennis};
    QProperty<std::optional<MatchConfig>> matchConfig; // absent until its screen is confirmed
    QProperty<std::vector<std::string>> rules;         // as for `rulesOfMatch`: words, or `byHand`

    QProperty<std::optional<QUrl>> videoURL;
    QProperty<std::vector<QString>> videoFiles; // of a split recording; stale unless `videoURL` is its first
    QProperty<std::optional<QString>> absentVideo; // path of the film of this match while it is not open
    QProperty<double> videoDuration{0};            // seconds
    QProperty<int> videoWidth{0};                  // pixels, upright
    QProperty<int> videoHeight{0};
    QProperty<double> currentTime{0}; // playhead, seconds from the start of the source
    QProperty<bool> isPlaying{false};
    QProperty<double> trimStart{0};           // seconds
    QProperty<std::optional<double>> trimEnd; // seconds; absent: the end of the video
    QProperty<PartChoice> parts;              // of the range between them

    QProperty<QPointF> scoreboardPosition{defaultScoreboardPosition}; // centre, fractions of the picture
    QProperty<double> scoreboardUserScale{1.0};
    QProperty<QPointF> scoreboardDrawOrigin{QPointF(30, 20)}; // top left, preview points
    QProperty<QSizeF> previewAreaSize{QSizeF(0, 0)};          // points

    QProperty<std::vector<Marker>> markers;                 // sorted by start time
    QProperty<std::optional<SportScoreState>> initialScore; // before the first marker, if the user set one
    QProperty<std::optional<QUuid>> selectedMarkerID;

    // By PointEdits, to be told to the user.
    QProperty<std::optional<QUuid>> recountStoppedAt; // the marker that kept its score
    QProperty<std::optional<TypedScore>> typedScore;  // could be carried on through the markers after it

    QProperty<std::vector<CutZone>> cuts; // an export leaves them out only when `parts` says so
    QProperty<std::optional<QUuid>> selectedCutID;

    QProperty<double> exportProgress{0}; // 0..1
    QProperty<ExportStatus> exportStatus;
    QProperty<std::optional<QUrl>> watermarkURL;
    QProperty<WatermarkCorner> watermarkCorner{WatermarkCorner::bottomRight};
    QProperty<bool> isLicensed{false};
    QProperty<bool> showLicenseSheet{false};
    QProperty<std::optional<QUrl>> currentProjectURL; // last saved to or opened from

    /// The score at the playhead: of the markers, else `initialScore`, else the empty score of the match;
    /// absent without a match configuration. Readers inside a binding register themselves.
    const std::optional<SportScoreState>& liveScore() const { return m_liveScore.value(); }
    QBindable<std::optional<SportScoreState>> bindableLiveScore() const { return &m_liveScore; }

    /// The files of the video; absent without a video.
    std::optional<media::Recording> recording() const;

    /// Shows another video. Its readers, which watch `videoURL`, find all of its files.
    void setVideo(const media::Recording& recording);

    /// The range to export, between the trims and within the video.
    TimeSpan exportedRange() const;

    /// The parts of it that are exported, as `PartChoice::keptParts`; all of it while its length is unknown.
    const std::vector<TimeSpan>& keptParts() const { return m_keptParts.value(); }
    QBindable<std::vector<TimeSpan>> bindableKeptParts() const { return &m_keptParts; }

    /// The text of a key in the session's language.
    QString t(L10nKey key) const;

    TrimTimes trim() const { return {trimStart, trimEnd}; }
    ScoreboardPlace scoreboardPlace() const { return {scoreboardPosition, scoreboardUserScale}; }

    // The undoable edits. Each saves the session; without an undo manager it cannot be taken back. The
    // session outlives the undo manager. An unknown identifier changes nothing and saves nothing.

    /// Sorts the marker into place, after those of the same time, and selects it.
    void addMarker(Marker marker, UndoStack* undoManager);
    /// Clears the selection when the marker was selected.
    void removeMarker(const QUuid& id, UndoStack* undoManager);
    void updateMarkerScore(const QUuid& id, const SportScoreState& score, UndoStack* undoManager);
    /// `time` in seconds, stored as given.
    void updateMarkerTime(const QUuid& id, double time, UndoStack* undoManager);
    void updateMarkerLabel(const QUuid& id, const std::optional<QString>& label, UndoStack* undoManager);
    /// Replaces the whole list by one sorted by start time, and the selection; for an import.
    void replaceMarkers(std::vector<Marker> replacement, std::optional<QUuid> selection,
                        UndoStack* undoManager);
    /// The same under the name of another edit.
    void replaceMarkers(std::vector<Marker> replacement, std::optional<QUuid> selection, L10nKey name,
                        UndoStack* undoManager);

    // For these, a change to the values that hold already is no edit.

    /// Absent: the empty score of the match holds before the first marker.
    void setInitialScore(const std::optional<SportScoreState>& score, UndoStack* undoManager);
    void setTrim(const TrimTimes& trim, UndoStack* undoManager);
    /// Gives the match and all of its scores that many sets (0..99), as `withNumberOfSets` does. No step
    /// where no score is touched; without a match nothing happens.
    void setNumberOfSets(std::int64_t count, UndoStack* undoManager);

    /// Selects the cut zone.
    void addCut(const CutZone& cut, UndoStack* undoManager);
    /// Gives the cut zone with the identifier of `cut` its times.
    void updateCut(const CutZone& cut, UndoStack* undoManager);
    /// Clears the selection when the cut zone was selected.
    void removeCut(const QUuid& id, UndoStack* undoManager);

    /// Moves and resizes the scoreboard. `name` is the edit's, as in "Move Scoreboard".
    void placeScoreboard(const ScoreboardPlace& place, L10nKey name, UndoStack* undoManager);
    /// The same for a scoreboard that has followed the pointer from `previous` to its place already.
    void concludePlacing(const ScoreboardPlace& previous, L10nKey name, UndoStack* undoManager);

    /// A fresh start; the stored session is deleted. The language, the licence and the cut zones stay.
    void reset();

    /// Stores the whole session now.
    void save() const;

    /// Stores what could not be stored when it was due, if anything. Before the program ends.
    void retrySave() const;

private:
    std::optional<SportScoreState> resolveLiveScore() const;
    std::vector<TimeSpan> resolveKeptParts() const;

    /// The fields that `reset` gives their start values, in its order.
    static constexpr auto resetFields() {
        using S = AppState;
        return std::tuple{&S::step,
                          &S::selectedTemplate,
                          &S::selectedSport,
                          &S::matchConfig,
                          &S::rules,
                          &S::videoFiles,
                          &S::videoURL,
                          &S::absentVideo,
                          &S::videoDuration,
                          &S::videoWidth,
                          &S::videoHeight,
                          &S::currentTime,
                          &S::isPlaying,
                          &S::trimStart,
                          &S::trimEnd,
                          &S::parts,
                          &S::scoreboardPosition,
                          &S::scoreboardUserScale,
                          &S::scoreboardDrawOrigin,
                          &S::previewAreaSize,
                          &S::selectedMarkerID,
                          &S::recountStoppedAt,
                          &S::typedScore,
                          &S::markers,
                          &S::initialScore,
                          &S::exportProgress,
                          &S::exportStatus,
                          &S::watermarkURL,
                          &S::watermarkCorner,
                          &S::currentProjectURL,
                          &S::showLicenseSheet};
    }

    /// What a number of sets touches.
    struct Sets {
        std::int64_t number = 0;
        std::vector<Marker> markers;
        std::optional<SportScoreState> initialScore;
    };
    void replaceSets(Sets replacement, UndoStack* undoManager);

    void concludeEdit(L10nKey name, UndoStack* undoManager, std::function<void()> inverse) const;

    template <class Value>
    void updateMarker(const QUuid& id, Value Marker::*field, const Value& value, L10nKey name,
                      UndoStack* undoManager);

    SessionStore* m_store;
    QProperty<std::optional<SportScoreState>> m_liveScore;
    QProperty<std::vector<TimeSpan>> m_keptParts;
};

}
