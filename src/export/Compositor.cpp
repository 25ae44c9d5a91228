#include "export/Compositor.h"

#include "model/ScoringEngine.h"
#include "render/DevicePixels.h"
#include "render/OverlayPlacement.h"
#include "render/PictureFile.h"
#include "render/ScoreboardTemplate.h"
#include "render/TemplateRenderer.h"

#include <QPainter>

namespace pointloom {

OverlayPart watermarkPart(const QImage& image, WatermarkCorner corner, QSizeF canvas) {
    constexpr double margin = 20;        // pixels from both edges of its corner
    constexpr double largestSide = 0.12; // of the canvas's shorter side
    const double box = largestSide * std::min(canvas.width(), canvas.height());
    const double aspect = static_cast<double>(image.width()) / image.height();
    const double width = std::min(box * aspect, box);
    const double height = width / aspect;
    const QRectF place(isLeft(corner) ? margin : canvas.width() - width - margin,
                       isTop(corner) ? margin : canvas.height() - height - margin, width, height);
    return {place, [image, place](QPainter& painter) { drawImage(painter, image, place); }};
}

OverlayPart licenceMarkPart(QSizeF canvas) {
    // All lengths are fractions of the canvas's shorter side.
    constexpr double pillHeight = 0.044;
    constexpr double bottomMargin = 0.026;
    constexpr double textSize = 0.0235;
    constexpr double ballRadius = 0.0085;
    constexpr double sidePadding = 0.020;
    constexpr double gap = 0.011; // between the ball and the text
    const QString text = QStringLiteral("Made with Pointloom");

    const double unit = std::min(canvas.width(), canvas.height());
    const TextFont font{FontFace::bold, textSize * unit};
    const double radius = ballRadius * unit;
    const double width = ctTextWidth(text, font) + 2 * radius + (gap + 2 * sidePadding) * unit;
    const double height = pillHeight * unit;
    const QRectF pill((canvas.width() - width) / 2, canvas.height() - height - bottomMargin * unit, width,
                      height);
    const QPointF ball(pill.left() + sidePadding * unit + radius, pill.center().y());
    const QPointF textPlace(ball.x() + radius + gap * unit, pill.center().y());
    return {pill.adjusted(-1, -1, 1, 1), [=](QPainter& painter) {
                painter.save();
                painter.setRenderHint(QPainter::Antialiasing);
                painter.setPen(Qt::NoPen);
                painter.setBrush(QColor(12, 14, 18, 120));
                painter.drawRoundedRect(pill, height / 2, height / 2);
                painter.setBrush(QColor(200, 240, 49, 235)); // the accent
                painter.drawEllipse(ball, radius, radius);
                painter.restore();
                drawLeftText(painter, text, font, {1, 1, 1, 0.88}, textPlace);
            }};
}

Compositor::Compositor(const ExportJob& job, const Canvas& canvas)
    : m_overlay(job.overlay)
    , m_canvas(canvas)
    , m_scale(scale()) {
    if (const auto& logo = m_overlay.config.logoURL; logo && logo->isLocalFile())
        m_logo = loadPictureFile(logo->toLocalFile());
    if (m_overlay.watermarkPath) {
        if (const QImage image = loadPictureFile(*m_overlay.watermarkPath); !image.isNull())
            m_marks.push_back(watermarkPart(image, job.settings.watermarkCorner, canvas.size));
    }
    if (!m_overlay.isLicensed)
        m_marks.push_back(licenceMarkPart(canvas.size));
}

// A filled canvas has space for the widest scoreboard of all scores.
double Compositor::scale() const {
    const double scale = OverlayPlacement::exportScale(
        m_canvas.size.width(), m_canvas.nativeVideoSize.width(), m_overlay.scoreboardUserScale);
    if (!m_canvas.isFilled)
        return scale;
    auto setCount = static_cast<std::int64_t>(setsOf(m_overlay.initialScore).size());
    for (const Marker& marker : m_overlay.markers)
        setCount = std::max(setCount, static_cast<std::int64_t>(setsOf(marker.score).size()));
    const ScoreboardTemplate& scoreboard = TemplateRegistry::templateFor(m_overlay.templateID);
    return OverlayPlacement::fittingScale(m_canvas.size, scoreboard.boardSize(setCount, m_overlay.config),
                                          scale);
}

OverlayPart Compositor::scoreboard(const SportScoreState& score) const {
    constexpr double shadowReach = 40; // template units around the scoreboard that its shadow can darken
    const ScoreboardTemplate& scoreboard = TemplateRegistry::templateFor(m_overlay.templateID);
    const double scale = m_scale;
    const auto setCount = static_cast<std::int64_t>(setsOf(score).size());
    const QSizeF board = scoreboard.boardSize(setCount, m_overlay.config);
    QPointF origin = OverlayPlacement::exportOrigin(m_canvas.size, m_overlay.scoreboardPosition,
                                                    scoreboard.canvasSize(setCount, m_overlay.config), scale);
    if (m_canvas.isFilled)
        origin = OverlayPlacement::originInside(m_canvas.size, origin, board, scale);
    const QRectF reached =
        QRectF(origin, board).adjusted(-shadowReach, -shadowReach, shadowReach, shadowReach);
    return {{reached.topLeft() * scale, reached.size() * scale},
            [this, &scoreboard, &score, scale, origin](QPainter& painter) {
                painter.save();
                painter.scale(scale, scale);
                scoreboard.draw(painter, {score, m_overlay.config, m_canvas.size / scale, m_logo}, origin);
                painter.restore();
            }};
}

void Compositor::draw(QPainter& painter, const SportScoreState& score) const {
    for (const OverlayPart& mark : m_marks)
        mark.draw(painter);
    scoreboard(score).draw(painter);
}

const SportScoreState* ScoreCursor::changedAt(double time) {
    const Marker* marker = ScoringEngine::markerAtTime(m_overlay.markers, time);
    const SportScoreState& score = marker ? marker->score : m_overlay.initialScore;
    const bool isShown = m_shown && (m_shown == &score || *m_shown == score);
    m_shown = &score;
    return isShown ? nullptr : &score;
}

}
