#include "ui/editor/EditorView.h"

#include "ui/common/Preferences.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <algorithm>
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QHideEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTextEdit>
#include <QVBoxLayout>
#include <utility>

namespace pointloom {

namespace {

constexpr QSize smallest{760, 520};
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

// The digits 1 and 2 by their place on the keyboard: with Shift, and on some keyboards without, their keys
// write other characters.
Qt::Key keyOf(const QKeyEvent& event) {
    constexpr quint32 scanCodeOf1 = 10;
    constexpr quint32 scanCodeOf2 = 11;
    if (event.nativeScanCode() == scanCodeOf1 || event.key() == Qt::Key_Exclam)
        return Qt::Key_1;
    if (event.nativeScanCode() == scanCodeOf2 || event.key() == Qt::Key_At || event.key() == Qt::Key_QuoteDbl)
        return Qt::Key_2;
    return Qt::Key(event.key());
}

QKeyCombination pressed(const QKeyEvent& event) {
    return QKeyCombination(event.modifiers() & ~(Qt::KeypadModifier | Qt::GroupSwitchModifier), keyOf(event));
}

template <class... Kinds>
bool isAnyOf(const QWidget* widget) {
    return (qobject_cast<const Kinds*>(widget) || ...);
}

bool keeps(QWidget* focus, const QKeyEvent& event) {
    if (!focus)
        return false;
    if (isAnyOf<QLineEdit, QAbstractSpinBox, QTextEdit, QPlainTextEdit, QComboBox>(focus))
        return true;
    const int key = event.key();
    if (isAnyOf<QAbstractButton>(focus))
        return key == Qt::Key_Space;
    if (isAnyOf<QAbstractSlider>(focus))
        return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
    if (isAnyOf<QAbstractItemView>(focus) && (key == Qt::Key_Up || key == Qt::Key_Down))
        return true;
    QKeyEvent question(QEvent::ShortcutOverride, key, event.modifiers(), event.text(), event.isAutoRepeat());
    question.ignore();
    QApplication::sendEvent(focus, &question);
    return question.isAccepted();
}

// Handles the keys of the editor's commands, whichever of its parts has the focus.
// A text field keeps all of its keys, and every other control those that it works with itself: a button
// reached by Tab its Space, a slider and the marker list their arrows, and whatever accepts the key's
// ShortcutOverride event.
class EditorKeyFilter : public QObject {
public:
    // Keys of commands without an action are left to the widgets. A held key repeats the commands that say
    // so. `keys` outlives the editor.
    EditorKeyFilter(QWidget& editor, const CommandKeys& keys,
                    std::map<Command, std::function<void()>> actions);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool concernsEditor(const QWidget& receiver) const;

    QPointer<QWidget> m_editor;
    const CommandKeys& m_keys;
    std::map<Command, std::function<void()>> m_actions;
};

EditorKeyFilter::EditorKeyFilter(QWidget& editor, const CommandKeys& keys,
                                 std::map<Command, std::function<void()>> actions)
    : QObject(&editor)
    , m_editor(&editor)
    , m_keys(keys)
    , m_actions(std::move(actions)) {
    qApp->installEventFilter(this);
}

bool EditorKeyFilter::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return false;
    if (!concernsEditor(*static_cast<QWidget*>(watched)))
        return false;
    const auto& key = *static_cast<QKeyEvent*>(event);
    const CommandRow* command = m_keys.editorCommand(pressed(key));
    const auto action = command ? m_actions.find(command->id) : m_actions.end();
    if (action == m_actions.end() || keeps(QApplication::focusWidget(), key))
        return false;
    if (command->repeats || !key.isAutoRepeat())
        action->second();
    return true;
}

bool EditorKeyFilter::concernsEditor(const QWidget& receiver) const {
    if (!m_editor || !m_editor->isVisible() || QApplication::activePopupWidget())
        return false;
    return &receiver == m_editor || &receiver == m_editor->window() || m_editor->isAncestorOf(&receiver);
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
    , m_rows(makeSplitter(Qt::Vertical, this)) {
    setProperty("background", QStringLiteral("window"));
    setAttribute(Qt::WA_StyledBackground);
    setFocusPolicy(Qt::ClickFocus); // a click beside every control gives the keys back to the editor
    m_rows->addWidget(makePictureColumn());
    m_rows->addWidget(m_timeline);
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
    connect(m_transport, &TransportBar::previewFrameRequested, this, &EditorView::previewFrameRequested);
    connect(m_timeline, &TimelineView::seekRequested, &m_playback, &EditorPlayback::seek);
    connect(m_timeline, &TimelineView::scrubbingChanged, this, &EditorView::holdWhileScrubbing);
    connect(m_sidebar, &EditorSidebar::exportRequested, this, &EditorView::exportRequested);
    connect(m_sidebar, &EditorSidebar::addMarkerRequested, this,
            [this] { EditorCommands::addMarker(m_context, shownFrame()); });
    connect(m_sidebar, &EditorSidebar::seekRequested, this,
            [this](double seconds) { m_playback.seek(seconds); });
    new EditorKeyFilter(*this, context.keys, keyActions());
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

void EditorView::resizeEvent(QResizeEvent*) {
    if (m_isArranged && !m_timelineHeight)
        giveTimelineWhatThePictureLeaves();
}

// Lengths that were chosen in a larger window are limited to half of this one.
void EditorView::arrange() {
    const int usual = width() < roomyWindow ? narrowSidebar : roomySidebar;
    const int sidebar = std::min(m_sidebarWidth.value_or(usual), std::max(usual, width() / 2));
    m_columns->setSizes({width() - sidebar, sidebar});
    if (!m_timelineHeight)
        return giveTimelineWhatThePictureLeaves();
    const int timeline = std::min(*m_timelineHeight, height() / 2);
    m_rows->setSizes({height() - timeline, timeline});
}

// Most clips are wide: the timeline gets the height that would be black above and below the picture.
void EditorView::giveTimelineWhatThePictureLeaves() {
    constexpr double usualShape = 16.0 / 9;
    const int picture =
        static_cast<int>(m_columns->sizes().front() / usualShape) + m_transport->sizeHint().height();
    const int timeline = std::clamp(height() - picture, m_timeline->minimumSizeHint().height(),
                                    m_timeline->sizeHint().height());
    m_rows->setSizes({height() - timeline, timeline});
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

std::map<Command, std::function<void()>> EditorView::keyActions() {
    using enum Command;
    const auto step = [this](Side side, StepDirection direction) {
        return
            [this, side, direction] { EditorCommands::stepPoint(m_context, shownFrame(), side, direction); };
    };
    return {
        {playPause, [this] { m_playback.togglePlaying(); }},
        {frameBack, [this] { m_playback.stepFrames(-1); }},
        {frameForward, [this] { m_playback.stepFrames(1); }},
        {secondBack, [this] { m_playback.seekBy(-1); }},
        {secondForward, [this] { m_playback.seekBy(1); }},
        {previousMarker, [this] { goToNeighbour(EditorCommands::Neighbour::previous); }},
        {nextMarker, [this] { goToNeighbour(EditorCommands::Neighbour::next); }},
        {jumpBack, [this] { m_playback.seekBy(-5); }},
        {pause, [this] { m_playback.pause(); }},
        {playFaster, [this] { playFasterStill(); }},
        {goToStart, [this] { m_playback.seek(0); }},
        {goToEnd, [this] { m_playback.goToEnd(); }},
        {addMarker, [this] { EditorCommands::addMarker(m_context, shownFrame()); }},
        {pointFirst, step(Side::first, StepDirection::next)},
        {pointSecond, step(Side::second, StepDirection::next)},
        {pointBackFirst, step(Side::first, StepDirection::previous)},
        {pointBackSecond, step(Side::second, StepDirection::previous)},
        {swapServe, [this] { EditorCommands::swapServeOfSelectedMarker(m_context); }},
        {trimStart, [this] { m_timeline->trimStartAtPlayhead(); }},
        {trimEnd, [this] { m_timeline->trimEndAtPlayhead(); }},
        {addCut, [this] { m_timeline->addCutAtPlayhead(); }},
        {deleteSelection, [this] { m_timeline->removeSelection(); }},
        {zoomIn, [this] { m_timeline->zoomIn(); }},
        {zoomOut, [this] { m_timeline->zoomOut(); }},
        {zoomToFit, [this] { m_timeline->zoomToFit(); }},
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

void EditorView::goToNeighbour(EditorCommands::Neighbour which) {
    const Marker* marker = EditorCommands::neighbour(m_context.state, shownFrame(), which);
    if (!marker)
        return;
    const double time = marker->startTime;
    m_context.state.selectedMarkerID = marker->id;
    m_playback.seek(time);
}

void EditorView::playFasterStill() {
    if (m_context.state.isPlaying)
        m_playback.setSpeed(m_playback.speed() < 1 ? 1 : m_playback.speed() * 2);
    else
        m_playback.play();
}

}
