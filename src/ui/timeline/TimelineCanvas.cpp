#include "ui/timeline/TimelineCanvas.h"

#include "media/Recording.h"
#include "ui/style/Controls.h"
#include "ui/style/Theme.h"
#include "ui/timeline/ThumbnailStrip.h"
#include "ui/timeline/TimelineAccessible.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <QFileInfo>
#include <QFontMetricsF>
#include <QPainter>
#include <QPaintEvent>
#include <QUrl>

namespace pointloom {

namespace {

constexpr double usualFrameRate = 30;
constexpr double usualAspectRatio = 16.0 / 9;
constexpr double longestStep = 1; // seconds that the playhead moves by itself

}

TimelineCanvas::TimelineCanvas(const UiContext& context, const QString& cacheRoot, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_thumbnails(cacheRoot)
    , m_waveform(cacheRoot)
    , m_drag(context, m_scene) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAttribute(Qt::WA_OpaquePaintEvent);
    connect(&m_thumbnails, &ThumbnailStore::changed, this, &TimelineCanvas::refresh);
    connect(&m_waveform, &WaveformStore::changed, this, &TimelineCanvas::layOut);
    connect(&Theme::shared(), &Theme::changed, this, &TimelineCanvas::showFont);
    connect(&m_drag, &TimelineDrag::previewChanged, this, &TimelineCanvas::takeDrag);
    connect(&m_drag, &TimelineDrag::seekRequested, this, &TimelineCanvas::seekRequested);
    connect(&m_drag, &TimelineDrag::scrubbingChanged, this, &TimelineCanvas::scrubbingChanged);
    connect(&m_drag, &TimelineDrag::scrollRequested, this,
            [this](double points) { scrollTo(m_scene.scale.offset() + points); });
    makeTimelineAccessible();
    showFont();
    bind();
}

void TimelineCanvas::bind() {
    AppState& state = m_context.state;
    m_bindings.watch(state.videoDuration, [this] { takeDuration(); });
    m_bindings.watch(state.videoURL, [this] { takeClip(); });
    m_bindings.watchAll([this] { takeShape(); }, state.videoWidth, state.videoHeight);
    m_bindings.watch(state.markers, [this] { takeMarkers(); });
    m_bindings.watchAll([this] { takeRanges(); }, state.trimStart, state.trimEnd, state.cuts, state.parts);
    m_bindings.watch(state.cuts, [this] { tellItemsChanged(*this); });
    m_bindings.watchAll([this] { takeSelection(); }, state.selectedMarkerID, state.selectedCutID);
    m_bindings.watch(state.currentTime, [this] { takePlayhead(); });
    m_bindings.watch(state.isPlaying, [this] {
        if (m_context.state.isPlaying)
            setCurrent({TimelineHit::Kind::time, {}}); // it is what moves now
    });
    m_bindings.watch(state.language, [this] {
        setAccessibleName(m_context.text(L10nKey::timelineName));
        setAccessibleDescription(m_context.text(L10nKey::timelineKeys));
        refresh();
    });
}

void TimelineCanvas::takeClip() {
    const auto recording = m_context.state.recording();
    m_frameRateReading.cancel();
    m_wantedThumbnails.clear();
    m_scene.seams.clear();
    m_scene.scale.fit();
    if (!recording) {
        m_thumbnails.close();
        m_waveform.close();
    } else {
        m_thumbnails.open(*recording);
        m_waveform.open(*recording);
        m_frameRateReading.start([recording = *recording] { return readFacts(recording); },
                                 [this](const ClipFacts& facts) {
                                     m_scene.seams = facts.seams;
                                     takeFrameRate(facts.frameRate);
                                 });
    }
    takeFrameRate(usualFrameRate);
}

TimelineCanvas::ClipFacts TimelineCanvas::readFacts(const media::Recording& recording) {
    ClipFacts facts{usualFrameRate, {}};
    try {
        if (const auto info = media::readMediaInfo(recording.first()); info.video)
            facts.frameRate = info.video->frameRate.value();
        const media::RecordingLayout layout = media::layoutOf(recording);
        for (std::size_t file = 1; file < layout.files.size(); ++file)
            facts.seams.push_back({layout.beginOf(file), QFileInfo(layout.files[file].path).fileName()});
    } catch (const std::exception&) {
        // the import reports the error
    }
    return facts;
}

void TimelineCanvas::takeFrameRate(double frameRate) {
    m_scene.frameRate = std::isfinite(frameRate) && frameRate > 0 ? frameRate : usualFrameRate;
    takeDuration();
}

void TimelineCanvas::takeDuration() {
    m_scene.scale.setClip(m_context.state.videoDuration, m_scene.frameRate);
    m_thumbnails.keep(thumbnailsOfClip(m_context.state.videoDuration));
    takeParts();
    changeView();
    tellItemsChanged(*this);
}

void TimelineCanvas::takeShape() {
    const double width = m_context.state.videoWidth;
    const double height = m_context.state.videoHeight;
    m_scene.aspectRatio = width > 0 && height > 0 ? width / height : usualAspectRatio;
    refresh();
}

void TimelineCanvas::takeMarkers() {
    m_scene.flags.setMarkers(m_context.state.markers.value());
    m_scene.flags.arrange(m_scene.scale, m_scene.rows.flagLanes);
    takeParts();
    refresh();
    tellItemsChanged(*this);
}

void TimelineCanvas::takeRanges() {
    const DragPreview preview = m_drag.preview().value_or(DragPreview());
    m_scene.trim = preview.trim.value_or(m_context.state.trim());
    m_scene.cuts = m_context.state.cuts.value();
    if (preview.cut) {
        const auto same = std::ranges::find(m_scene.cuts, preview.cut->id, &CutZone::id);
        if (same == m_scene.cuts.end())
            m_scene.cuts.push_back(*preview.cut);
        else
            *same = *preview.cut;
    }
    takeParts();
    refresh();
}

// Those of the session, or those that the drag would leave.
void TimelineCanvas::takeParts() {
    const PartChoice choice = m_context.state.parts;
    auto markers = m_context.state.markers.value();
    if (const auto& preview = m_drag.preview(); preview && preview->marker) {
        if (const auto moved = std::ranges::find(markers, *preview->marker, &Marker::id);
            moved != markers.end())
            moved->startTime = preview->moment;
    }
    m_scene.leavesCutsOut = choice.withoutCuts;
    m_scene.parts = choice.keptParts({m_scene.trim.start, m_scene.trimEnd()}, markers, m_scene.cuts);
}

void TimelineCanvas::takeDrag() {
    const auto& preview = m_drag.preview();
    m_scene.movingMarker = preview ? preview->marker : std::nullopt;
    if (preview && !preview->isEdit())
        update();
    else
        takeRanges();
}

void TimelineCanvas::takeSelection() {
    AppState& state = m_context.state;
    const auto marker = state.selectedMarkerID.value();
    const bool isNew = marker && marker != m_scene.selectedMarker;
    m_scene.selectedMarker = marker;
    m_scene.selectedCut = state.selectedCutID.value();
    dropCurrentUnlessSelected();
    refresh();
    if (!isNew)
        return;
    if (const Flag* flag = m_scene.flags.find(*marker); flag && !m_scene.scale.shows(flag->time)) {
        m_scene.scale.reveal(flag->time, revealDistance);
        changeView();
    }
    state.selectedCutID = std::nullopt; // one thing is selected at a time, so that Delete means one thing
}

void TimelineCanvas::takePlayhead() {
    const double before = m_scene.playhead;
    const double now = m_context.state.currentTime;
    const bool wasShown = m_scene.scale.shows(before);
    update(TimelinePainting::playheadArea(m_scene).toAlignedRect());
    m_scene.playhead = now;
    update(TimelinePainting::playheadArea(m_scene).toAlignedRect());
    if (hasFocus() && !m_context.state.isPlaying && m_current.kind == TimelineHit::Kind::time)
        tellItemMoved(*this, m_current);
    if (m_scene.scale.shows(now) || m_drag.isPressed())
        return;
    // A view that was scrolled away from the moving playhead stays in its place.
    const bool wasPut = !m_context.state.isPlaying || std::abs(now - before) > longestStep;
    if (wasPut)
        m_scene.scale.reveal(now, revealDistance);
    else if (wasShown)
        m_scene.scale.scrollTo(m_scene.scale.offset() + m_scene.scale.x(now) - revealDistance);
    else
        return;
    changeView();
}

void TimelineCanvas::zoomBy(double factor) {
    const double playhead = m_scene.scale.x(m_scene.playhead);
    const bool isShown = m_scene.scale.shows(m_scene.playhead);
    m_scene.scale.zoomBy(factor, isShown ? playhead : width() / 2.0);
    changeView();
}

void TimelineCanvas::fit() {
    m_scene.scale.fit();
    changeView();
}

void TimelineCanvas::scrollTo(double offset) {
    if (offset == m_scene.scale.offset())
        return;
    m_scene.scale.scrollTo(offset);
    changeView();
}

void TimelineCanvas::changeView() {
    m_scene.flags.arrange(m_scene.scale, m_scene.rows.flagLanes);
    refresh();
    Q_EMIT viewChanged();
}

void TimelineCanvas::refresh() {
    m_isLayerStale = true;
    update();
}

void TimelineCanvas::layOut() {
    m_scene.rows = layOutRows(width(), height(), QFontMetricsF(look().font).height(), m_waveform.hasSound());
    m_scene.scale.setWidth(width());
    changeView();
}

void TimelineCanvas::showFont() {
    m_scene.flags.setFont(look().font);
    updateGeometry();
    layOut();
}

TimelinePainting::Look TimelineCanvas::look() const {
    return {quietFont(font()), devicePixelRatioF()};
}

QSize TimelineCanvas::sizeHint() const {
    constexpr int comfortable = 120; // points for thumbnails and waveform
    return {640, minimumSizeHint().height() + comfortable};
}

QSize TimelineCanvas::minimumSizeHint() const {
    return {240, static_cast<int>(std::ceil(smallestTimelineHeight(QFontMetricsF(look().font).height())))};
}

void TimelineCanvas::resizeEvent(QResizeEvent*) {
    layOut();
}

void TimelineCanvas::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange)
        showFont();
    QWidget::changeEvent(event);
}

void TimelineCanvas::paintEvent(QPaintEvent* event) {
    if (m_isLayerStale || m_layer.size() != size() * devicePixelRatioF())
        paintLayer();
    QPainter painter(this);
    const double ratio = m_layer.devicePixelRatio();
    const QRectF part = event->rect();
    painter.drawPixmap(part, m_layer, QRectF(part.topLeft() * ratio, part.size() * ratio));
    if (m_scene.scale.duration() > 0)
        paintWhatMoves(painter);
    if (m_showsFocus && hasFocus())
        paintFocus(painter);
}

// A ring around the timeline and one around the item that the keys work on.
void TimelineCanvas::paintFocus(QPainter& painter) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(tokens().accent, 2));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), Radius::field, Radius::field);
    if (m_scene.scale.duration() > 0 && !m_drag.isDragging())
        TimelinePainting::paintRing(painter, areaOf(m_scene, m_current));
}

void TimelineCanvas::paintWhatMoves(QPainter& painter) {
    const auto& preview = m_drag.preview();
    const Flag* moving = preview && preview->marker ? m_scene.flags.find(*preview->marker) : nullptr;
    if (moving)
        TimelinePainting::paintMovingFlag(painter, m_scene, *moving, preview->moment, look());
    if (preview && preview->isEdit())
        TimelinePainting::paintOrigin(painter, m_scene, m_drag.origin(), look());
    TimelinePainting::paintPlayhead(painter, m_scene, look());
    if (preview && preview->isEdit())
        TimelinePainting::paintBubble(painter, m_scene, preview->moment, preview->isOnTarget, look());
}

void TimelineCanvas::paintLayer() {
    const double ratio = devicePixelRatioF();
    if (m_layer.size() != size() * ratio) {
        m_layer = QPixmap(size() * ratio);
        m_layer.setDevicePixelRatio(ratio);
    }
    m_layer.fill(tokens().surface);
    QPainter painter(&m_layer);
    painter.setFont(look().font);
    if (m_scene.scale.duration() > 0) {
        const L10nKey cut = m_scene.leavesCutsOut ? L10nKey::timelineCutGoes : L10nKey::timelineCutStays;
        TimelinePainting::paintRows(painter, m_scene, m_thumbnails, m_waveform,
                                    {m_context.text(L10nKey::timelineCut), m_context.text(cut)}, look());
    } else {
        painter.setPen(tokens().quietText);
        painter.drawText(rect(), Qt::AlignCenter, m_context.text(L10nKey::timelineNoVideo));
    }
    m_isLayerStale = false;
    const auto wanted = wantedThumbnails(m_scene);
    if (wanted != std::exchange(m_wantedThumbnails, wanted))
        m_thumbnails.want(wanted);
}

}
