#include "export/Compositor.h"

#include "render/DevicePixels.h"
#include "render/OverlayPlacement.h"
#include "render/PictureFile.h"
#include "render/ScoreboardTemplate.h"

#include <QPainter>

namespace pointloom::Compositor {

namespace {

constexpr double watermarkMargin = 20; // pixels from both edges of its corner
constexpr double watermarkSide = 0.12; // of the canvas's shorter side

// How the scoreboard stands on the canvas, in template units of `scale` pixels each.
struct BoardPlace {
    const ScoreboardTemplate& board;
    double scale;
    QPointF origin;
    QSizeF size;
};

BoardPlace placeBoard(const Canvas& canvas, const OverlayDescription& overlay, const SportScoreState& score) {
    const ScoreboardTemplate& board = TemplateRegistry::templateFor(overlay.templateID);
    const double scale = OverlayPlacement::exportScale(canvas.size.width(), canvas.nativeVideoSize.width(),
                                                       overlay.scoreboardUserScale);
    const auto setCount = static_cast<std::int64_t>(setsOf(score).size());
    const QPointF origin = OverlayPlacement::exportOrigin(canvas.size, overlay.scoreboardPosition,
                                                          board.canvasSize(setCount, overlay.config), scale);
    return {board, scale, origin, board.boardSize(setCount, overlay.config)};
}

}

Pictures Pictures::load(const OverlayDescription& overlay) {
    Pictures pictures;
    if (overlay.config.logoURL && overlay.config.logoURL->isLocalFile())
        pictures.logo = loadPictureFile(overlay.config.logoURL->toLocalFile());
    if (overlay.watermarkPath)
        pictures.watermark = loadPictureFile(*overlay.watermarkPath);
    return pictures;
}

void drawOverlay(QPainter& painter, const Canvas& canvas, const OverlayDescription& overlay,
                 const Pictures& pictures, const SportScoreState& score) {
    drawWatermark(painter, pictures.watermark, overlay.watermarkCorner, canvas.size);
    if (!overlay.isLicensed)
        drawLicenceMark(painter, canvas.size);
    drawScoreboard(painter, canvas, overlay, pictures.logo, score);
}

QRectF watermarkRectangle(QSize watermark, WatermarkCorner corner, QSizeF canvas) {
    const double box = watermarkSide * std::min(canvas.width(), canvas.height());
    const double aspect = static_cast<double>(watermark.width()) / watermark.height();
    const double width = std::min(box * aspect, box);
    const double height = width / aspect;
    const double right = canvas.width() - width - watermarkMargin;
    const double bottom = canvas.height() - height - watermarkMargin;
    const bool isLeft = corner == WatermarkCorner::topLeft || corner == WatermarkCorner::bottomLeft;
    const bool isTop = corner == WatermarkCorner::topLeft || corner == WatermarkCorner::topRight;
    return {isLeft ? watermarkMargin : right, isTop ? watermarkMargin : bottom, width, height};
}

void drawWatermark(QPainter& painter, const QImage& watermark, WatermarkCorner corner, QSizeF canvas) {
    if (watermark.isNull())
        return;
    drawImage(painter, watermark, watermarkRectangle(watermark.size(), corner, canvas));
}

void drawScoreboard(QPainter& painter, const Canvas& canvas, const OverlayDescription& overlay,
                    const QImage& logo, const SportScoreState& score) {
    const BoardPlace place = placeBoard(canvas, overlay, score);
    painter.save();
    painter.scale(place.scale, place.scale);
    place.board.draw(painter, {score, overlay.config, canvas.size / place.scale, logo}, place.origin);
    painter.restore();
}

QRectF scoreboardRectangle(const Canvas& canvas, const OverlayDescription& overlay,
                           const SportScoreState& score) {
    constexpr double shadowReach = 40; // template units around the board that its shadow can darken
    const BoardPlace place = placeBoard(canvas, overlay, score);
    const QRectF reached =
        QRectF(place.origin, place.size).adjusted(-shadowReach, -shadowReach, shadowReach, shadowReach);
    return {reached.topLeft() * place.scale, reached.size() * place.scale};
}

}
