// How the timeline's canvas is put together from its rows.
#include "ui/style/Theme.h"
#include "ui/timeline/PaintingTools.h"
#include "ui/timeline/ThumbnailGrid.h"
#include "ui/timeline/TimelineCanvas.h"

#include <QPaintEvent>

namespace pointloom {

void TimelineCanvas::paintEvent(QPaintEvent* event) {
    if (m_isLayerStale || m_layer.size() != size() * devicePixelRatioF())
        paintLayer();
    QPainter painter(this);
    const double ratio = m_layer.devicePixelRatio();
    const QRectF part = event->rect();
    painter.drawPixmap(part, m_layer, QRectF(part.topLeft() * ratio, part.size() * ratio));
    if (m_scene.scale.duration() > 0) {
        if (m_preview.marker) {
            if (const Flag* flag = m_scene.flags.find(m_preview.marker->first))
                TimelinePainting::paintMovingFlag(painter, m_scene, *flag, m_preview.marker->second, look());
        }
        TimelinePainting::paintPlayhead(painter, m_scene, look());
        if (m_preview.bubble)
            TimelinePainting::paintBubble(painter, m_scene, *m_preview.bubble, m_preview.isOnTarget, look());
    }
    if (m_showsFocus) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(tokens().accent, 2));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), Radius::field, Radius::field);
    }
}

void TimelineCanvas::paintLayer() {
    const double ratio = devicePixelRatioF();
    if (m_layer.size() != size() * ratio) {
        m_layer = QPixmap(size() * ratio);
        m_layer.setDevicePixelRatio(ratio);
    }
    m_layer.fill(tokens().surface);
    QPainter painter(&m_layer);
    paintRows(painter);
    m_isLayerStale = false;
    wantThumbnails();
}

void TimelineCanvas::paintRows(QPainter& painter) {
    using namespace TimelinePainting;
    const Look how = look();
    painter.setFont(how.font);
    if (m_scene.scale.duration() <= 0) {
        painter.setPen(tokens().quietText);
        painter.drawText(rect(), Qt::AlignCenter, m_context.text(L10nKey::timelineNoVideo));
        return;
    }
    paintRuler(painter, m_scene, how);
    paintThumbnails(painter, m_scene, m_thumbnails, pictureAspect());
    paintWaveform(painter, m_scene, m_waveform, how);
    paintTrim(painter, m_scene, how);
    paintCuts(painter, m_scene,
              {m_context.text(L10nKey::timelineCut), m_context.text(L10nKey::timelineCutIsNote)}, how);
    paintFlags(painter, m_scene, how);
    paintTrimHandles(painter, m_scene, how);
}

/// What is visible first, then what comes into view by scrolling.
void TimelineCanvas::wantThumbnails() {
    std::vector<std::int64_t> wanted;
    if (!m_scene.rows.thumbnails.isEmpty() && m_scene.scale.duration() > 0) {
        const double pictureWidth = TimelinePainting::thumbnailWidth(m_scene, pictureAspect());
        const double view = m_scene.scale.width();
        for (const auto& [from, to] :
             {std::pair(0.0, view), std::pair(view, view * 1.5), std::pair(-view / 2, 0.0)}) {
            for (const ThumbnailTile& tile : thumbnailTiles(m_scene.scale, pictureWidth, from, to))
                wanted.push_back(tile.slot);
        }
    }
    if (wanted == m_wantedThumbnails)
        return;
    m_wantedThumbnails = wanted;
    m_thumbnails.want(wanted);
}

double TimelineCanvas::pictureAspect() const {
    const int pictureWidth = m_context.state.videoWidth;
    const int pictureHeight = m_context.state.videoHeight;
    constexpr double usual = 16.0 / 9;
    return pictureWidth > 0 && pictureHeight > 0 ? static_cast<double>(pictureWidth) / pictureHeight : usual;
}

}
