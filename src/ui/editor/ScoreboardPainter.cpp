#include "ui/editor/ScoreboardPainter.h"

#include "render/DevicePixels.h"
#include "render/ScoreboardTemplate.h"

#include <QPainter>

namespace pointloom {

void ScoreboardPainter::setScoreboard(std::optional<Scoreboard> scoreboard) {
    if (scoreboard == m_scoreboard)
        return;
    m_scoreboard = std::move(scoreboard);
    m_image = {};
}

QSizeF ScoreboardPainter::canvasSize() const {
    if (!m_scoreboard)
        return {};
    return TemplateRegistry::templateFor(m_scoreboard->templateID)
        .canvasSize(static_cast<std::int64_t>(setsOf(m_scoreboard->score).size()), m_scoreboard->config);
}

QSizeF ScoreboardPainter::boardSize() const {
    if (!m_scoreboard)
        return {};
    return TemplateRegistry::templateFor(m_scoreboard->templateID)
        .boardSize(static_cast<std::int64_t>(setsOf(m_scoreboard->score).size()), m_scoreboard->config);
}

void ScoreboardPainter::paint(QPainter& painter, const QRectF& videoRect, QPointF origin, double scale) {
    if (!m_scoreboard || !(scale > 0))
        return;
    const DevicePixels pixels(painter);
    const QTransform& toPixels = pixels.fromPainter();
    const Place place{toPixels.mapRect(videoRect), toPixels.map(origin), scale * deviceScale(toPixels)};
    if (m_image.isNull() || place != m_place)
        draw(place);
    painter.drawImage(m_imageOrigin, m_image);
}

void ScoreboardPainter::draw(const Place& place) {
    constexpr double shadowReach = 40; // template units around the scoreboard that its shadow can darken
    const double reach = shadowReach * place.scale;
    const QRectF touched =
        QRectF(place.origin, boardSize() * place.scale).adjusted(-reach, -reach, reach, reach) &
        place.videoRect;
    const QRect area = touched.toAlignedRect() & place.videoRect.toRect();
    m_place = place;
    m_imageOrigin = area.topLeft();
    m_image = QImage(area.size(), QImage::Format_ARGB32_Premultiplied);
    if (m_image.isNull())
        return;
    m_image.fill(Qt::transparent);
    QPainter painter(&m_image);
    painter.translate(-area.topLeft()); // whole pixels: the drawing is the same as on a full frame
    painter.scale(place.scale, place.scale);
    TemplateRegistry::templateFor(m_scoreboard->templateID)
        .draw(painter,
              {m_scoreboard->score, m_scoreboard->config, place.videoRect.size() / place.scale,
               m_scoreboard->logo},
              place.origin / place.scale);
}

}
