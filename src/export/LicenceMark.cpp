#include "export/Compositor.h"
#include "render/TemplateRenderer.h"

#include <QPainter>
#include <QPainterPath>

namespace pointloom::Compositor {

namespace {

// All lengths are fractions of the canvas's shorter side.
constexpr double pillHeight = 0.044;
constexpr double bottomMargin = 0.026;
constexpr double textSize = 0.0235;
constexpr double ballRadius = 0.0085;
constexpr double sidePadding = 0.020;
constexpr double gap = 0.011; // between the ball and the text

const QColor pillColor(12, 14, 18, 120);
constexpr Rgba textColor{1, 1, 1, 0.88};
const QColor ballColor(200, 240, 49, 235); // the accent: the ball

QString markText() {
    return QStringLiteral("Made with Pointloom");
}

struct Geometry {
    QRectF pill;
    QPointF ball;
    double radius;
    double textLeft;
    TextFont font;
};

Geometry geometryOn(QSizeF canvas) {
    const double unit = std::min(canvas.width(), canvas.height());
    const TextFont font{FontFace::bold, textSize * unit};
    const double radius = ballRadius * unit;
    const double width = ctTextWidth(markText(), font) + 2 * radius + (gap + 2 * sidePadding) * unit;
    const double height = pillHeight * unit;
    const QRectF pill((canvas.width() - width) / 2, canvas.height() - height - bottomMargin * unit, width,
                      height);
    const QPointF ball(pill.left() + sidePadding * unit + radius, pill.center().y());
    return {pill, ball, radius, ball.x() + radius + gap * unit, font};
}

}

QRectF licenceMarkRectangle(QSizeF canvas) {
    return geometryOn(canvas).pill.adjusted(-1, -1, 1, 1);
}

void drawLicenceMark(QPainter& painter, QSizeF canvas) {
    const Geometry mark = geometryOn(canvas);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(pillColor);
    painter.drawRoundedRect(mark.pill, mark.pill.height() / 2, mark.pill.height() / 2);
    painter.setBrush(ballColor);
    painter.drawEllipse(mark.ball, mark.radius, mark.radius);
    painter.restore();
    drawLeftText(painter, markText(), mark.font, textColor, {mark.textLeft, mark.pill.center().y()});
}

}
