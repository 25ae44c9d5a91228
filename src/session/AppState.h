// The session: every piece of editing state, each field observable by itself, and the undoable edits.
// One instance lives as long as the application and belongs to the main thread.
#pragma once

#include "export/ExportSettings.h"
#include "l10n/Language.h"
#include "model/Marker.h"
#include "model/MatchConfig.h"
#include "render/TemplateID.h"
#include "session/SessionStore.h"
#include "session/UndoManager.h"

#include <optional>
#include <QPointF>
#include <QProperty>
#include <QSizeF>
#include <QString>
#include <QUrl>
#include <QUuid>
#include <vector>

// Qt asks an optional's content whether it can be ordered, and a variant says yes without asking its own.
template <>
struct QTypeTraits::has_operator_less_than<std::optional<pointloom::SportScoreState>> : std::false_type {};

namespace pointloom {

/// The wizard's screens in their order, then the editor.
enum class Screen { sport, scoreboard, match, video, editor };

/// Reading a field inside a binding registers the reader; assigning an equal value notifies nobody.
/// Assigning a field does not save: the edits below do, and `save` does for everything else.
class AppState {
public:
    struct ExportStatus {
        enum class Stage { idle, exporting, done, error };

        Stage stage = Stage::idle;
        QString message; // of an error, fit for a person

        bool operator==(const ExportStatus&) const = default;
    };

    static constexpr QPointF defaultScoreboardPosition{0.15, 0.1};
    static constexpr QPointF defaultScoreboardDrawOrigin{30, 20};

    /// The session is saved in `store`, which outlives it; without one it is not saved.
    explicit AppState(SessionStore* store = nullptr);

    QProperty<Screen> step{Screen::sport};
    QProperty<Language> language{Language::english};
    QProperty<std::optional<TemplateID>> selectedTemplate;
    QProperty<SportID> selectedSport{SportID::tennis};
    QProperty<std::optional<MatchConfig>> matchConfig; // absent until its screen is confirmed

    QProperty<std::optional<QUrl>> videoURL;
    QProperty<double> videoDuration{0}; // seconds
    QProperty<int> videoWidth{0};       // pixels, upright
    QProperty<int> videoHeight{0};
    QProperty<double> currentTime{0}; // playhead, seconds from the start of the source
    QProperty<bool> isPlaying{false};
    QProperty<double> trimStart{0};           // seconds
    QProperty<std::optional<double>> trimEnd; // seconds; absent: the end of the video

    QProperty<QPointF> scoreboardPosition{defaultScoreboardPosition}; // centre, fractions of the picture
    QProperty<double> scoreboardUserScale{1.0};
    QProperty<QPointF> scoreboardDrawOrigin{defaultScoreboardDrawOrigin}; // top left, preview points
    QProperty<QSizeF> previewAreaSize{QSizeF(0, 0)};                      // points

    QProperty<std::vector<Marker>> markers;                 // sorted by start time
    QProperty<std::optional<SportScoreState>> initialScore; // before the first marker, if the user set one
    QProperty<std::optional<QUuid>> selectedMarkerID;
    QProperty<std::vector<CutZone>> cuts; // an editing aid; export does not apply them
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

    /// The text of a key in the session's language.
    QString t(L10nKey key) const;

    // The undoable edits. Each saves the session; without an undo manager it cannot be taken back.
    // An unknown identifier changes nothing and saves nothing.

    /// Sorts the marker into place, after those of the same time, and selects it.
    void addMarker(Marker marker, UndoManager* undoManager);
    /// Clears the selection when it was the selected one.
    void removeMarker(const QUuid& id, UndoManager* undoManager);
    void updateMarkerScore(const QUuid& id, const SportScoreState& score, UndoManager* undoManager);
    /// `time` in seconds, stored as given.
    void updateMarkerTime(const QUuid& id, double time, UndoManager* undoManager);
    void updateMarkerLabel(const QUuid& id, const std::optional<QString>& label, UndoManager* undoManager);

    /// Takes a whole other list, sorted by start time, and a selection; as an import does.
    void replaceMarkers(std::vector<Marker> replacement, std::optional<QUuid> selection,
                        UndoManager* undoManager);

    /// A fresh start; the stored session is deleted. The language, the licence and the cut zones stay.
    void reset();

    /// Stores the whole session now.
    void save() const;

    /// Stores what could not be stored when it was due, if anything. Before the program ends.
    void retrySave() const;

private:
    std::optional<SportScoreState> resolveLiveScore() const;

    template <class Value>
    void updateMarker(const QUuid& id, Value Marker::*field, const Value& value, L10nKey name,
                      UndoManager* undoManager);

    SessionStore* m_store;
    QProperty<std::optional<SportScoreState>> m_liveScore;
};

}
