#include "export/FrameOverlay.h"

#include <QCryptographicHash>
#include <QPainter>
#include <QTransform>

namespace pointloom {

// An image at a place of the upright frame, turned to lie over the same spot of the stored frame.
FrameOverlay::PlacedImage FrameOverlay::turnToStored(const PlacedImage& upright, QSize uprightSize,
                                                     const media::Orientation& orientation) {
    if (orientation.isIdentity())
        return upright;
    const QRect from(upright.position, upright.image.size());
    const QRect whole(QPoint(0, 0), uprightSize);
    const int fromRight = whole.right() - from.right();
    const int fromBottom = whole.bottom() - from.bottom();
    const QPoint unturned[] = {
        from.topLeft(),
        {from.top(), fromRight},
        {fromRight, fromBottom},
        {fromBottom, from.left()},
    };
    PlacedImage stored;
    stored.image = upright.image.transformed(QTransform().rotate(-90.0 * orientation.quarterTurns));
    stored.position = unturned[orientation.quarterTurns];
    if (orientation.mirrored) {
        const int storedWidth = orientation.swapsSides() ? uprightSize.height() : uprightSize.width();
        stored.image = stored.image.mirrored(true, false);
        stored.position.setX(storedWidth - stored.position.x() - stored.image.width());
    }
    return stored;
}

FrameOverlay::FrameOverlay(const ExportJob& job, const PictureLayout& layout,
                           const media::FrameFormat& format)
    : m_layout(layout)
    , m_format(format)
    , m_compositor(job, {layout.canvas, layout.nativeVideoSize, layout.isFilled()})
    , m_score(job.overlay) {
    for (const OverlayPart& mark : m_compositor.marks())
        m_marks.push_back(makeLayer(mark));
}

void FrameOverlay::drawInto(const media::VideoFrame& frame, double time) {
    if (const SportScoreState* score = m_score.changedAt(time))
        m_scoreboard = makeLayer(m_compositor.scoreboard(*score));
    for (const PlanarLayer& mark : m_marks)
        mark.blendInto(frame);
    m_scoreboard->blendInto(frame);
}

FrameOverlay::PlacedImage FrameOverlay::draw(const OverlayPart& part) const {
    const QSize uprightSize = m_layout.uprightFrameSize();
    const double scaleX = uprightSize.width() / m_layout.canvas.width();
    const double scaleY = uprightSize.height() / m_layout.canvas.height();
    const QRectF scaled(part.rectangle.x() * scaleX, part.rectangle.y() * scaleY,
                        part.rectangle.width() * scaleX, part.rectangle.height() * scaleY);
    const QRectF visible = scaled & QRectF(QPointF(0, 0), uprightSize);
    const QRect place = visible.toAlignedRect() & QRect(QPoint(0, 0), uprightSize);
    if (place.isEmpty())
        return {};
    QImage image(place.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.translate(-place.topLeft()); // whole pixels: the drawing is the same as on a full frame
        painter.scale(scaleX, scaleY);
        part.draw(painter);
    }
    return turnToStored({image, place.topLeft()}, uprightSize, m_layout.orientation);
}

PlanarLayer FrameOverlay::makeLayer(const OverlayPart& part) const {
    const PlacedImage stored = draw(part);
    return {stored.image, stored.position, m_layout.frameSize, m_format};
}

QByteArray FrameOverlay::marksDigest() const {
    QByteArray digests;
    for (const OverlayPart& mark : m_compositor.marks())
        digests += digestOf(draw(mark));
    return digests;
}

QByteArray FrameOverlay::scoreboardDigest(const SportScoreState& score) const {
    return digestOf(draw(m_compositor.scoreboard(score)));
}

QByteArray FrameOverlay::digestOf(const PlacedImage& placed) {
    const QImage& image = placed.image;
    QCryptographicHash hash(QCryptographicHash::Blake2b_256);
    for (const int number : {placed.position.x(), placed.position.y(), image.width(), image.height()})
        hash.addData(QByteArray::number(number) + ' ');
    for (int y = 0; y < image.height(); ++y)
        hash.addData(QByteArrayView(image.constScanLine(y), image.width() * qsizetype{4}));
    return hash.result();
}

}
