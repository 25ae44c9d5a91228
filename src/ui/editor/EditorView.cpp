#include "ui/editor/EditorView.h"

#include "session/PointEdits.h"
#include "ui/common/MarkerText.h"
#include "ui/common/Preferences.h"
#include "ui/style/Announcement.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"
#include "ui/timeline/TimelineCanvas.h"

#include <algorithm>
#include <QApplication>
#include <QContextMenuEvent>
#include <QHideEvent>
#include <QVBoxLayout>
#include <utility>

namespace pointloom {

namespace {

constexpr QSize smallest{760, 440};
constexpr int narrowSidebar = 260;
constexpr int roomySidebar = 304;
constexpr int roomyWindow = 1000;
constexpr std::string_view sidebarWidthKey = "sidebarWidth";
constexpr std::string_view timelineHeightKey = "timelineHeight";

QSplitter* makeSplitter(Qt::Orientation orientation, QWidget* parent) {
    auto* splitter = new QSplitter(orientation, parent);
    splitter->setHandleWidth(1); // Qt lets it be taken from a little further away
    splitter->setChildrenCollapsible(false);
    return splitter;
}

// The length that the user gave to a part of the window, in points. Empty while none was chosen and where
// what is stored is no sensible length.
std::optional<int> chosenLength(const UserDefaults& defaults, std::string_view key) {
    constexpr int longest = 10'000; // points; no screen is larger
    const int length = Preferences::remembered(defaults, key).toInt();
    return length > 0 && length <= longest ? std::optional(length) : std::nullopt;
}

void rememberLength(UserDefaults& defaults, std::string_view key, std::optional<int> length) {
    if (length && length != chosenLength(defaults, key))
        Preferences::remember(defaults, key, QByteArray::number(*length));
}

}

EditorView::EditorView(const UiContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_playback(context)
    , m_stage(new PictureStage(context, m_playback, this))
    , m_transport(new TransportBar(context, m_playback, this))
    , m_timeline(new TimelineView(context, this))
    , m_sidebar(new EditorSidebar(context, this))
    , m_columns(makeSplitter(Qt::Horizontal, this))
    , m_rows(makeSplitter(Qt::Vertical, this))
    , m_keys(new EditorKeys(*this, context.keys, actions())) {
    setProperty("background", QStringLiteral("window"));
    setAttribute(Qt::WA_StyledBackground);
    setFocusPolicy(Qt::ClickFocus); // a click beside every control gives the keys back to the editor
    m_rows->addWidget(makePictureColumn());
    m_rows->addWidget(m_timeline);
    m_rows->installEventFilter(this);
    m_rows->setStretchFactor(0, 1);
    m_columns->addWidget(m_rows);
    m_columns->addWidget(m_sidebar);
    m_columns->setStretchFactor(0, 1);
    connect(m_columns, &QSplitter::splitterMoved, this,
            [this] { m_sidebarWidth = m_columns->sizes().back(); });
    connect(m_rows, &QSplitter::splitterMoved, this, [this] { m_timelineHeight = m_rows->sizes().back(); });
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_columns);

    connect(m_stage, &PictureStage::importRequested, this, &EditorView::importRequested);
    connect(&m_stage->overlay(), &ScoreboardOverlayView::picturePressed, this,
            [this] { setFocus(Qt::MouseFocusReason); });
    connect(&m_stage->overlay(), &ScoreboardOverlayView::editNamesRequested, this,
            &EditorView::editNamesRequested);
    connect(m_transport, &TransportBar::previewFrameRequested, this, &EditorView::previewFrameRequested);
    connect(m_timeline, &TimelineView::seekRequested, &m_playback, &EditorPlayback::seek);
    connect(m_timeline, &TimelineView::scrubbingChanged, this, &EditorView::holdWhileScrubbing);
    connect(m_timeline, &TimelineView::commandRequested, this, &EditorView::run);
    connect(m_sidebar, &EditorSidebar::exportRequested, this, &EditorView::exportRequested);
    connect(m_sidebar, &EditorSidebar::screenRequested, this, &EditorView::screenRequested);
    connect(m_sidebar, &EditorSidebar::nameRequested, this, &EditorView::nameRequested);
    connect(m_sidebar, &EditorSidebar::addMarkerRequested, this,
            [this] { EditorCommands::addMarker(m_context, shownFrame()); });
    connect(m_sidebar, &EditorSidebar::seekRequested, this,
            [this](double seconds) { m_playback.seek(seconds); });
    m_bindings.watch(context.state.isPlaying, [this] {
        if (m_context.state.isPlaying)
            m_keys->endTyping();
    });
    m_playback.start();
}

EditorView::~EditorView() {
    // The widgets go first: they are connected to the player's signals.
    delete m_columns;
}

QSize EditorView::minimumSizeHint() const {
    return smallest;
}

QWidget* EditorView::makePictureColumn() {
    auto* column = new QWidget(m_rows);
    auto* layout = Controls::layout<QVBoxLayout>(column, {0, 0, 0, 0}, 0);
    layout->addWidget(m_stage, 1);
    layout->addWidget(m_transport);
    return column;
}

void EditorView::showEvent(QShowEvent*) {
    setFocus();
    if (std::exchange(m_isArranged, true))
        return;
    m_sidebarWidth = chosenLength(m_context.defaults, sidebarWidthKey);
    m_timelineHeight = chosenLength(m_context.defaults, timelineHeightKey);
    arrange();
}

// Not at the editor's own resize: one that was resized while hidden has its splitters resized later.
bool EditorView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_rows && event->type() == QEvent::Resize && !m_timelineHeight)
        giveTimelineWhatThePictureLeaves();
    return QWidget::eventFilter(watched, event);
}

// By a key, where the focus has no menu of its own: for what is selected.
void EditorView::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() == QContextMenuEvent::Keyboard)
        QApplication::sendEvent(&m_timeline->canvas(), event);
}

// Lengths that were chosen in a larger window are limited to half of this one.
void EditorView::arrange() {
    const int usual = width() < roomyWindow ? narrowSidebar : roomySidebar;
    const int sidebar = std::min(m_sidebarWidth.value_or(usual), std::max(usual, width() / 2));
    m_columns->setSizes({width() - sidebar, sidebar});
    if (!m_timelineHeight)
        return;
    const int timeline = std::min(*m_timelineHeight, height() / 2);
    m_rows->setSizes({height() - timeline, timeline});
}

// Most clips are wide: the timeline gets the height that would be black above and below the picture.
void EditorView::giveTimelineWhatThePictureLeaves() {
    constexpr double usualShape = 16.0 / 9;
    const int picture = static_cast<int>(m_rows->width() / usualShape) + m_transport->sizeHint().height();
    const int timeline = std::clamp(m_rows->height() - picture, m_timeline->minimumSizeHint().height(),
                                    m_timeline->sizeHint().height());
    m_rows->setSizes({m_rows->height() - timeline, timeline});
}

// Playback pauses when another screen is shown, not when the window is minimised.
void EditorView::hideEvent(QHideEvent* event) {
    if (event->spontaneous())
        return;
    m_playback.pause();
    rememberLength(m_context.defaults, sidebarWidthKey, m_sidebarWidth);
    rememberLength(m_context.defaults, timelineHeightKey, m_timelineHeight);
}

EditorCommands::ShownFrame EditorView::shownFrame() const {
    return {m_context.state.currentTime, m_playback.frameDuration()};
}

EditorKeys::Actions EditorView::actions() {
    using enum Command;
    const auto count = [this](Side side) {
        return [this, side] {
            if (EditorCommands::countPoint(m_context, shownFrame(), side))
                sayScore();
            else
                m_sidebar->count().sayThatMatchIsOver();
        };
    };
    const auto stepBack = [this](Side side) {
        return [this, side] {
            EditorCommands::stepPoint(m_context, shownFrame(), side, StepDirection::previous);
            sayScore();
        };
    };
    return {
        {playPause, [this] { m_playback.togglePlaying(); }},
        {frameBack, [this] { m_playback.stepFrames(-1); }},
        {frameForward, [this] { m_playback.stepFrames(1); }},
        {secondBack, [this] { m_playback.seekBy(-1); }},
        {secondForward, [this] { m_playback.seekBy(1); }},
        {previousMarker, [this] { goToNeighbour(EditorCommands::Neighbour::previous); }},
        {nextMarker, [this] { goToNeighbour(EditorCommands::Neighbour::next); }},
        {previousRallyEnd, [this] { m_timeline->goToRallyEnd(TimelineView::Direction::back); }},
        {nextRallyEnd, [this] { m_timeline->goToRallyEnd(TimelineView::Direction::forward); }},
        {jumpBack, [this] { m_playback.seekBy(-5); }},
        {pause, [this] { m_playback.pause(); }},
        {playFaster, [this] { m_playback.playFaster(); }},
        {goToStart, [this] { m_playback.seek(0); }},
        {goToEnd, [this] { m_playback.goToEnd(); }},
        {goToTime, [this] { m_transport->typeTime(); }},
        {playKept,
         [this] {
             if (m_context.state.parts.value().isMade())
                 m_playback.setPlaysOnlyKept(!m_playback.playsOnlyKept());
             else
                 m_timeline->chooseParts(); // there is nothing to skip yet
         }},
        {addMarker, [this] { EditorCommands::addMarker(m_context, shownFrame()); }},
        {pointFirst, count(Side::first)},
        {pointSecond, count(Side::second)},
        {pointBackFirst, stepBack(Side::first)},
        {pointBackSecond, stepBack(Side::second)},
        {swapServe,
         [this] {
             EditorCommands::swapServeOfSelectedMarker(m_context);
             sayScore();
         }},
        {trimStart, [this] { m_timeline->trimStartAtPlayhead(); }},
        {trimEnd, [this] { m_timeline->trimEndAtPlayhead(); }},
        {addCut, [this] { m_timeline->cutAtPlayhead(); }},
        {deleteSelection, [this] { m_timeline->removeSelection(); }},
        {renameMarker, [this] { m_sidebar->markers().renameSelected(); }},
        {zoomIn, [this] { m_timeline->zoomIn(); }},
        {zoomOut, [this] { m_timeline->zoomOut(); }},
        {zoomToFit, [this] { m_timeline->zoomToFit(); }},
        {editNames, [this] { Q_EMIT editNamesRequested(); }},
        {resetScoreboardPlace, [this] { m_stage->overlay().resetPosition(); }},
        {resetScoreboardSize, [this] { m_stage->overlay().resetSize(); }},
        {previewFrame,
         [this] {
             if (m_context.state.videoURL.value())
                 Q_EMIT previewFrameRequested();
         }},
    };
}

// Playback pauses while the pointer scrubs and resumes at its release.
void EditorView::holdWhileScrubbing(bool isScrubbing) {
    if (isScrubbing) {
        m_resumes = m_context.state.isPlaying;
        m_playback.pause();
    } else if (std::exchange(m_resumes, false)) {
        m_playback.play();
    }
}

// So that one can score without looking.
void EditorView::sayScore() {
    const Marker* marker = EditorCommands::selectedMarker(m_context.state);
    if (!marker)
        return;
    QStringList words{scoreAsSpoken(m_context, marker->score)};
    if (const auto match = PointEdits::countedMatch(m_context.state)) {
        const auto place =
            std::ranges::find(match->markers, marker->id, &Marker::id) - match->markers.begin();
        words.prepend(countText(m_context, *match, static_cast<std::size_t>(place)));
    }
    words.removeAll(QString());
    announce(*this, words.join(QStringLiteral(". ")));
}

void EditorView::goToNeighbour(EditorCommands::Neighbour which) {
    const Marker* marker = EditorCommands::neighbour(m_context.state, shownFrame(), which);
    if (!marker)
        return;
    const double time = marker->startTime;
    m_context.state.selectedMarkerID = marker->id;
    m_playback.seek(time);
}

}
