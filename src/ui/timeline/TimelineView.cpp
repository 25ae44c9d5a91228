#include "ui/timeline/TimelineView.h"

#include "session/PointEdits.h"
#include "ui/common/PartsBox.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"
#include "ui/timeline/CutStep.h"
#include "ui/timeline/TimelineCanvas.h"
#include "ui/timeline/TimelineToolTip.h"

#include <algorithm>
#include <QHBoxLayout>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>

namespace pointloom {

namespace {

constexpr double zoomStep = 1.5;

// Not the one that is shown: its frame is a little beside it.
std::optional<double> endOfRally(const std::vector<double>& ends, double playhead,
                                 TimelineView::Direction direction) {
    constexpr double moment = 0.25; // seconds
    if (direction == TimelineView::Direction::forward) {
        const auto next = std::ranges::upper_bound(ends, playhead + moment);
        return next == ends.end() ? std::nullopt : std::optional(*next);
    }
    const auto after = std::ranges::lower_bound(ends, playhead - moment);
    return after == ends.begin() ? std::nullopt : std::optional(*std::prev(after));
}

}

TimelineView::TimelineView(const UiContext& context, QWidget* parent, const QString& cacheRoot)
    : QWidget(parent)
    , m_context(context)
    , m_canvas(new TimelineCanvas(context, cacheRoot, this))
    , m_scrollBar(new QScrollBar(Qt::Horizontal, this))
    , m_trimStart(addButton(QStringLiteral("trim-start"), &TimelineView::trimStartAtPlayhead))
    , m_trimEnd(addButton(QStringLiteral("trim-end"), &TimelineView::trimEndAtPlayhead))
    , m_addCut(addButton(QStringLiteral("cut"), &TimelineView::cutAtPlayhead))
    , m_parts(addButton(QStringLiteral("parts"), &TimelineView::chooseParts))
    , m_zoomOut(addButton(QStringLiteral("zoom-out"), &TimelineView::zoomOut))
    , m_zoomIn(addButton(QStringLiteral("zoom-in"), &TimelineView::zoomIn))
    , m_fit(addButton(QStringLiteral("fit"), &TimelineView::zoomToFit)) {
    setProperty("background", QStringLiteral("surface"));
    setAttribute(Qt::WA_StyledBackground);
    auto* controls = new QHBoxLayout; // owned by the column below
    controls->setContentsMargins(Space::s, 2, Space::s, 2);
    controls->setSpacing(2);
    m_parts->setObjectName(QStringLiteral("parts"));
    m_parts->setCheckable(true);
    for (QToolButton* button : {m_trimStart, m_trimEnd, m_addCut, m_parts})
        controls->addWidget(button);
    controls->addSpacing(Space::s);
    controls->addWidget(m_scrollBar, 1);
    controls->addSpacing(Space::s);
    for (QToolButton* button : {m_zoomOut, m_zoomIn, m_fit})
        controls->addWidget(button);
    auto* column = Controls::layout<QVBoxLayout>(this, {0, 0, 0, 0}, 0);
    column->addWidget(m_canvas, 1);
    column->addLayout(controls);

    connect(m_canvas, &TimelineCanvas::seekRequested, this, &TimelineView::seekRequested);
    connect(m_canvas, &TimelineCanvas::scrubbingChanged, this, &TimelineView::scrubbingChanged);
    connect(m_canvas, &TimelineCanvas::commandRequested, this, &TimelineView::commandRequested);
    connect(m_canvas, &TimelineCanvas::viewChanged, this, &TimelineView::showView);
    connect(m_scrollBar, &QScrollBar::valueChanged, m_canvas,
            [this](int offset) { m_canvas->scrollTo(offset); });
    m_scrollBar->setFocusPolicy(Qt::NoFocus);
    QSizePolicy place = m_scrollBar->sizePolicy();
    place.setRetainSizeWhenHidden(true);
    m_scrollBar->setSizePolicy(place);
    setFocusProxy(m_canvas);
    m_bindings.watchAll([this] { showTexts(); }, context.state.language, context.state.parts,
                        context.keys.chosen());
    showView();
}

QToolButton* TimelineView::addButton(const QString& icon, void (TimelineView::*action)()) {
    QToolButton* button = Controls::iconButton(icon, this);
    button->setIconSize(QSize(18, 18));
    connect(button, &QToolButton::clicked, this, action);
    return button;
}

void TimelineView::showView() {
    const TimeScale& scale = m_canvas->scene().scale;
    const QSignalBlocker quiet(m_scrollBar);
    m_scrollBar->setRange(0, static_cast<int>(scale.largestOffset()));
    m_scrollBar->setPageStep(std::max(1, static_cast<int>(scale.width())));
    m_scrollBar->setSingleStep(std::max(1, static_cast<int>(scale.width() / 10)));
    m_scrollBar->setValue(static_cast<int>(scale.offset()));
    m_scrollBar->setVisible(scale.largestOffset() > 0);
    const bool hasClip = scale.duration() > 0;
    for (QToolButton* button : {m_trimStart, m_trimEnd, m_addCut, m_parts, m_zoomIn})
        button->setEnabled(hasClip);
    for (QToolButton* button : {m_zoomOut, m_fit})
        button->setEnabled(hasClip && !scale.isFitted());
}

void TimelineView::showTexts() {
    const auto name = [this](QToolButton* button, L10nKey text, Command command) {
        button->setAccessibleName(m_context.text(text));
        button->setToolTip(m_context.textWithKey(text, command));
    };
    name(m_trimStart, L10nKey::timelineTrimStart, Command::trimStart);
    name(m_trimEnd, L10nKey::timelineTrimEnd, Command::trimEnd);
    name(m_addCut, L10nKey::timelineAddCut, Command::addCut);
    m_addCut->setToolTip(plainToolTip({m_addCut->toolTip(), fateOfCuts(m_context)}));
    Controls::setName(m_parts, m_context.text(L10nKey::partsHeading));
    m_parts->setChecked(m_context.state.parts.value().isMade());
    name(m_zoomOut, L10nKey::timelineZoomOut, Command::zoomOut);
    name(m_zoomIn, L10nKey::timelineZoomIn, Command::zoomIn);
    name(m_fit, L10nKey::timelineFit, Command::zoomToFit);
}

void TimelineView::trimStartAtPlayhead() {
    trimAtPlayhead([](TrimTimes& trim, double playhead, double duration, double frame) {
        trim.start = std::clamp(playhead, 0.0, duration - frame);
        if (trim.end && *trim.end < trim.start + frame)
            trim.end = std::nullopt;
    });
}

void TimelineView::trimEndAtPlayhead() {
    trimAtPlayhead([](TrimTimes& trim, double playhead, double duration, double frame) {
        const double end = std::max(playhead, frame);
        trim.end = end > duration - frame / 2 ? std::nullopt : std::optional(end);
        if (trim.start > end - frame)
            trim.start = 0;
    });
}

// A clip of one frame has nothing to trim.
template <class Change>
void TimelineView::trimAtPlayhead(Change change) {
    const TimelineScene& scene = m_canvas->scene();
    const double duration = scene.scale.duration();
    const double frame = 1 / scene.frameRate;
    if (duration <= frame)
        return;
    TrimTimes trim = m_context.state.trim();
    change(trim, m_context.state.currentTime.value(), duration, frame);
    m_context.state.setTrim(trim, &m_context.undo);
}

void TimelineView::cutAtPlayhead() {
    const TimelineScene& scene = m_canvas->scene();
    const double duration = scene.scale.duration();
    if (duration <= 0)
        return;
    constexpr double shareOfView = 0.1;
    const double frame = std::min(1 / scene.frameRate, duration);
    const double visible = std::min(duration, scene.scale.width() / scene.scale.pointsPerSecond());
    const double length = std::max(frame, nearestFrame(visible * shareOfView, scene.frameRate));
    AppState& state = m_context.state;
    const double playhead = std::clamp(state.currentTime.value(), 0.0, duration);
    const CutStep step = cutStepAt(state.cuts.value(), playhead, length, frame, duration);
    if (step.kind == CutStep::Kind::added)
        state.addCut(step.cut, &m_context.undo);
    else
        state.updateCut(step.cut, &m_context.undo);
    state.selectedMarkerID = std::nullopt;
    state.selectedCutID = step.cut.id;
    const auto keys = m_context.keys.shown(Command::addCut);
    if (step.kind == CutStep::Kind::ended || keys.isEmpty())
        m_canvas->tellAboutCut(step.cut, fateOfCuts(m_context));
    else
        m_canvas->tellAboutCut(step.cut, format(m_context.text(L10nKey::timelineCutEndsWith),
                                                keyLabel(keys.first(), state.language)));
}

void TimelineView::goToRallyEnd(Direction direction) {
    const auto end = endOfRally(m_canvas->sound().rallyEnds(), m_context.state.currentTime, direction);
    if (end)
        Q_EMIT seekRequested(*end, true);
    else
        m_canvas->tellAtPlayhead(m_context.text(L10nKey::timelineNoRallyEnd));
}

// In a surface over the timeline, which shows what it does.
void TimelineView::chooseParts() {
    m_parts->setChecked(m_context.state.parts.value().isMade()); // a click alone chooses nothing
    QFrame* surface = Controls::card(this);
    surface->setWindowFlags(Qt::Popup);
    surface->setAttribute(Qt::WA_DeleteOnClose);
    auto* heading = Controls::label(Controls::TextRole::section, surface);
    heading->setText(m_context.text(L10nKey::partsHeading));
    auto* column = Controls::layout<QVBoxLayout>(surface, {Space::l, Space::m, Space::l, Space::m}, Space::m);
    column->addWidget(heading);
    auto* box = new PartsBox(m_context, surface);
    column->addWidget(box);
    column->setSizeConstraint(QLayout::SetFixedSize);
    surface->adjustSize();
    surface->move(mapToGlobal(QPoint(m_parts->x(), -surface->height() - Space::xs)));
    surface->show();
    box->setFocus(Qt::PopupFocusReason);
}

void TimelineView::removeSelection() {
    AppState& state = m_context.state;
    if (const auto cut = state.selectedCutID.value())
        state.removeCut(*cut, &m_context.undo);
    else if (const auto marker = state.selectedMarkerID.value())
        PointEdits::removeMarker(state, *marker, &m_context.undo);
}

void TimelineView::zoomIn() {
    m_canvas->zoomBy(zoomStep);
}

void TimelineView::zoomOut() {
    m_canvas->zoomBy(1 / zoomStep);
}

void TimelineView::zoomToFit() {
    m_canvas->fit();
}

}
