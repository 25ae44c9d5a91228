#include "ui/editor/ScoreboardImageView.h"

#include "render/DevicePixels.h"
#include "render/ScoreboardTemplate.h"

#include <QPainter>

namespace pointloom {

void ScoreboardImageView::setBoard(std::optional<Board> board) {
    if (board == m_board)
        return;
    m_board = std::move(board);
    m_picture = {};
}

QSizeF ScoreboardImageView::canvasSize() const {
    if (!m_board)
        return {};
    return TemplateRegistry::templateFor(m_board->templateID)
        .canvasSize(static_cast<std::int64_t>(setsOf(m_board->score).size()), m_board->config);
}

QSizeF ScoreboardImageView::boardSize() const {
    if (!m_board)
        return {};
    return TemplateRegistry::templateFor(m_board->templateID)
        .boardSize(static_cast<std::int64_t>(setsOf(m_board->score).size()), m_board->config);
}

void ScoreboardImageView::paint(QPainter& painter, const QRectF& videoRect, QPointF origin, double scale) {
    if (!m_board || !(scale > 0))
        return;
    const DevicePixels pixels(painter);
    const QTransform& toPixels = pixels.fromPainter();
    const Place place{toPixels.mapRect(videoRect), toPixels.map(origin), scale * deviceScale(toPixels)};
    if (m_picture.isNull() || place != m_place)
        draw(place);
    painter.drawImage(m_pictureOrigin, m_picture);
}

void ScoreboardImageView::draw(const Place& place) {
    constexpr double shadowReach = 40; // template units around the board that its shadow can darken
    const double reach = shadowReach * place.scale;
    const QRectF touched =
        QRectF(place.origin, boardSize() * place.scale).adjusted(-reach, -reach, reach, reach) &
        place.videoRect;
    const QRect area = touched.toAlignedRect() & place.videoRect.toRect();
    m_place = place;
    m_pictureOrigin = area.topLeft();
    m_picture = QImage(area.size(), QImage::Format_ARGB32_Premultiplied);
    if (m_picture.isNull())
        return;
    m_picture.fill(Qt::transparent);
    QPainter painter(&m_picture);
    painter.translate(-area.topLeft()); // whole pixels: the drawing is the same as on a full frame
    painter.scale(place.scale, place.scale);
    TemplateRegistry::templateFor(m_board->templateID)
        .draw(painter, {m_board->score, m_board->config, place.videoRect.size() / place.scale, m_board->logo},
              place.origin / place.scale);
}

}
