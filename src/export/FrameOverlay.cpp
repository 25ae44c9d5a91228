#include "export/FrameOverlay.h"

#include "model/ScoringEngine.h"

#include <QPainter>
#include <QTransform>

namespace pointloom {

namespace {

struct PlacedPicture {
    QImage picture;
    QPoint position;
};

// A picture at a place of the upright frame, turned to lie over the same spot of the stored frame.
PlacedPicture turnToStored(const PlacedPicture& upright, QSize uprightSize,
                           const media::Orientation& orientation) {
    if (orientation.isIdentity())
        return upright;
    const QRect from(upright.position, upright.picture.size());
    const QRect whole(QPoint(0, 0), uprightSize);
    const int fromRight = whole.right() - from.right();
    const int fromBottom = whole.bottom() - from.bottom();
    const QPoint unturned[] = {
        from.topLeft(),
        {from.top(), fromRight},
        {fromRight, fromBottom},
        {fromBottom, from.left()},
    };
    PlacedPicture stored;
    stored.picture = upright.picture.transformed(QTransform().rotate(-90.0 * orientation.quarterTurns));
    stored.position = unturned[orientation.quarterTurns];
    if (orientation.mirrored) {
        const int storedWidth = orientation.swapsSides() ? uprightSize.height() : uprightSize.width();
        stored.picture = stored.picture.mirrored(true, false);
        stored.position.setX(storedWidth - stored.position.x() - stored.picture.width());
    }
    return stored;
}

}

FrameOverlay::FrameOverlay(const OverlayDescription& overlay, const PictureLayout& layout,
                           const media::FrameFormat& format)
    : m_overlay(overlay)
    , m_layout(layout)
    , m_format(format)
    , m_canvas{layout.canvas, layout.nativeVideoSize}
    , m_pictures(Compositor::Pictures::load(overlay)) {
    if (const QImage& watermark = m_pictures.watermark; !watermark.isNull()) {
        const auto place =
            Compositor::watermarkRectangle(watermark.size(), overlay.watermarkCorner, m_canvas.size);
        m_marks.push_back(makeLayer(place, [&](QPainter& painter) {
            Compositor::drawWatermark(painter, watermark, overlay.watermarkCorner, m_canvas.size);
        }));
    }
    if (!overlay.isLicensed) {
        m_marks.push_back(makeLayer(Compositor::licenceMarkRectangle(m_canvas.size), [&](QPainter& painter) {
            Compositor::drawLicenceMark(painter, m_canvas.size);
        }));
    }
}

void FrameOverlay::drawInto(const media::VideoFrame& frame, double time) {
    const Marker* marker = ScoringEngine::markerAtTime(m_overlay.markers, time);
    showScore(marker ? marker->score : m_overlay.initialScore);
    for (const PlanarLayer& mark : m_marks)
        mark.blendInto(frame);
    m_scoreboard->blendInto(frame);
}

void FrameOverlay::showScore(const SportScoreState& score) {
    const bool isShown = m_shownScore && (m_shownScore == &score || *m_shownScore == score);
    m_shownScore = &score;
    if (isShown)
        return;
    const QRectF place = Compositor::scoreboardRectangle(m_canvas, m_overlay, score);
    m_scoreboard = makeLayer(place, [&](QPainter& painter) {
        Compositor::drawScoreboard(painter, m_canvas, m_overlay, m_pictures.logo, score);
    });
}

PlanarLayer FrameOverlay::makeLayer(QRectF canvasRectangle, const Draw& draw) const {
    const QSize uprightSize = m_layout.uprightFrameSize();
    const double scaleX = uprightSize.width() / m_canvas.size.width();
    const double scaleY = uprightSize.height() / m_canvas.size.height();
    const QRectF scaled(canvasRectangle.x() * scaleX, canvasRectangle.y() * scaleY,
                        canvasRectangle.width() * scaleX, canvasRectangle.height() * scaleY);
    const QRectF visible = scaled & QRectF(QPointF(0, 0), uprightSize);
    const QRect place = visible.toAlignedRect() & QRect(QPoint(0, 0), uprightSize);
    if (place.isEmpty())
        return {QImage(), QPoint(), m_layout.frameSize, m_format};
    QImage picture(place.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    {
        QPainter painter(&picture);
        painter.translate(-place.topLeft()); // whole pixels: the drawing is the same as on a full frame
        painter.scale(scaleX, scaleY);
        draw(painter);
    }
    const PlacedPicture stored = turnToStored({picture, place.topLeft()}, uprightSize, m_layout.orientation);
    return {stored.picture, stored.position, m_layout.frameSize, m_format};
}

}
