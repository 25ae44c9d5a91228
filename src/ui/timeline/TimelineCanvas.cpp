#include "ui/timeline/TimelineCanvas.h"

#include "media/MediaInfo.h"
#include "ui/style/Theme.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <QEvent>
#include <QFontMetricsF>
#include <QUrl>

namespace pointloom {

namespace {

constexpr double usualFrameRate = 30;
constexpr double revealDistance = 60; // points from the edge
constexpr double jump = 1;            // seconds: a playhead that moves further was put there

}

TimelineCanvas::TimelineCanvas(const UiContext& context, const QString& cacheRoot, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_thumbnails(cacheRoot)
    , m_waveform(cacheRoot) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAttribute(Qt::WA_OpaquePaintEvent);
    connect(&m_thumbnails, &ThumbnailStore::changed, this, &TimelineCanvas::refresh);
    connect(&m_waveform, &WaveformStore::changed, this, &TimelineCanvas::layOut);
    connect(&Theme::shared(), &Theme::changed, this, &TimelineCanvas::showFont);
    showFont();
    bind();
}

TimelineCanvas::~TimelineCanvas() = default;

void TimelineCanvas::bind() {
    AppState& state = m_context.state;
    m_bindings.watch(state.videoDuration, [this] { takeDuration(); });
    m_bindings.watch(state.videoURL, [this] { takeClip(); });
    m_bindings.watchAll([this] { refresh(); }, state.videoWidth, state.videoHeight);
    m_bindings.watch(state.markers, [this] { takeMarkers(); });
    m_bindings.watchAll([this] { takeRanges(); }, state.trimStart, state.trimEnd, state.cuts);
    m_bindings.watchAll([this] { takeSelection(); }, state.selectedMarkerID, state.selectedCutID);
    m_bindings.watch(state.currentTime, [this] { takePlayhead(); });
    m_bindings.watch(state.language, [this] {
        setAccessibleName(m_context.text(L10nKey::timelineName));
        refresh();
    });
}

void TimelineCanvas::takeClip() {
    const auto url = m_context.state.videoURL.value();
    const QString path = url ? url->toLocalFile() : QString();
    m_frameRateReader.reset();
    m_wantedThumbnails.clear();
    takeFrameRate(usualFrameRate);
    m_scene.scale.fit();
    if (path.isEmpty()) {
        m_thumbnails.close();
        m_waveform.close();
    } else {
        m_thumbnails.open(path);
        m_waveform.open(path);
        const auto read = [this, path](IdleWorker::Link link) {
            try {
                const auto info = media::readMediaInfo(path);
                if (info.video)
                    link.post([this, rate = info.video->frameRate.value()] { takeFrameRate(rate); });
            } catch (const std::exception&) {
                // Who loads the video says what is wrong with it.
            }
        };
        m_frameRateReader.emplace(read, QThread::NormalPriority);
    }
    changeView();
}

void TimelineCanvas::takeFrameRate(double frameRate) {
    m_scene.frameRate = std::isfinite(frameRate) && frameRate > 0 ? frameRate : usualFrameRate;
    takeDuration();
}

void TimelineCanvas::takeDuration() {
    m_scene.scale.setClip(m_context.state.videoDuration, m_scene.frameRate);
    changeView();
}

void TimelineCanvas::takeMarkers() {
    m_scene.flags.setMarkers(m_context.state.markers.value());
    m_scene.flags.arrange(m_scene.scale, m_scene.rows.flagLanes);
    refresh();
}

void TimelineCanvas::takeRanges() {
    m_scene.trim = m_preview.trim.value_or(trimOf(m_context.state));
    m_scene.cuts = m_context.state.cuts.value();
    if (m_preview.cut) {
        const auto same = std::ranges::find(m_scene.cuts, m_preview.cut->id, &CutZone::id);
        if (same == m_scene.cuts.end())
            m_scene.cuts.push_back(*m_preview.cut);
        else
            *same = *m_preview.cut;
    }
    refresh();
}

void TimelineCanvas::takeSelection() {
    AppState& state = m_context.state;
    const auto marker = state.selectedMarkerID.value();
    const bool isNew = marker && marker != m_scene.selectedMarker;
    m_scene.selectedMarker = marker;
    m_scene.selectedCut = state.selectedCutID.value();
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
    if (m_scene.scale.shows(now) || m_press)
        return;
    // A view that was scrolled away from the playhead while it runs stays where it is.
    const bool wasPut = !m_context.state.isPlaying || std::abs(now - before) > jump;
    if (wasPut) {
        m_scene.scale.reveal(now, revealDistance);
    } else if (wasShown) {
        m_scene.scale.scrollTo(m_scene.scale.offset() + m_scene.scale.x(now) - revealDistance);
    } else {
        return;
    }
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
    constexpr int comfortable = 120; // points for the pictures and the sound
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

}
