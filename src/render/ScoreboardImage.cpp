#include "render/ScoreboardImage.h"

#include "render/ScoreboardTemplate.h"

#include <algorithm>
#include <cmath>
#include <QPainter>

namespace pointloom {

namespace {

double paintableScale(double scale, const QSizeF& size) {
    constexpr double largestScale = 16;
    constexpr double longestSide = 16384; // pixels; QPainter's coordinates end at 32767
    constexpr double mostPixels = 64e6;
    const double bySide = longestSide / std::max(size.width(), size.height());
    const double byArea = std::sqrt(mostPixels / (size.width() * size.height()));
    return std::min({scale, largestScale, bySide, byArea});
}

int pixels(double length) {
    constexpr double rounding = 1e-9; // 270 x 1.1 is slightly more than 297
    return std::max(1, static_cast<int>(std::ceil(length - rounding)));
}

}

QImage renderScoreboardImage(TemplateID templateID, const SportScoreState& score, const MatchConfig& config,
                             const QImage& logo, double scale) {
    if (!(scale > 0))
        return {};
    const ScoreboardTemplate& scoreboard = TemplateRegistry::templateFor(templateID);
    const auto numSets = static_cast<std::int64_t>(setsOf(score).size());
    const QSizeF size = scoreboardImageSize(scoreboard, numSets, config);
    const double painted = paintableScale(scale, size);

    QImage image(pixels(size.width() * painted), pixels(size.height() * painted),
                 QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return {};
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.scale(painted, painted);
    scoreboard.draw(painter, {score, config, size, logo}, {canvasMargin, canvasMargin});
    return image;
}

QSizeF scoreboardImageSize(const ScoreboardTemplate& scoreboard, std::int64_t numSets,
                           const MatchConfig& config) {
    const QSizeF canvas = scoreboard.canvasSize(numSets, config);
    const QSizeF size = scoreboard.boardSize(numSets, config);
    const auto grown = [](double canvasLength, double boardLength) {
        return canvasMargin + boardLength > canvasLength ? boardLength + 2 * canvasMargin : canvasLength;
    };
    return {grown(canvas.width(), size.width()), grown(canvas.height(), size.height())};
}

}
