#include "ui/common/TimeCode.h"
#include "ui/style/Theme.h"
#include "ui/timeline/PaintingTools.h"
#include "ui/timeline/RulerTicks.h"
#include "ui/timeline/TimelinePainting.h"

#include <algorithm>
#include <QFontMetricsF>
#include <QPainterPath>

namespace pointloom::TimelinePainting {

namespace {

constexpr double labelOffset = 4; // points from a tick to its label
constexpr double headWidth = 11;  // points, of the playhead's grip
constexpr double headHeight = 9;

double labelDistance(const TimelineScene& scene, const QFontMetricsF& metrics) {
    constexpr double air = 22; // points between two labels
    return metrics.horizontalAdvance(shortTime(std::max(scene.scale.duration(), 600.0))) + air;
}

}

void paintRuler(QPainter& painter, const TimelineScene& scene, const Look& look) {
    const QRectF& row = scene.rows.ruler;
    const ColorTokens& colors = tokens();
    const double base = row.bottom();
    painter.save();
    painter.setFont(look.font);
    const QFontMetricsF metrics(look.font);
    const double distance = labelDistance(scene, metrics);
    const RulerRange range{.from = std::max(0.0, scene.scale.time(-distance)),
                           .to = std::min(scene.scale.duration(), scene.scale.time(scene.scale.width())),
                           .pointsPerSecond = scene.scale.pointsPerSecond(),
                           .frameRate = scene.frameRate,
                           .labelDistance = distance};
    for (const RulerTick& tick : rulerTicks(range)) {
        if (tick.time > scene.scale.duration())
            break;
        const double x = scene.scale.x(tick.time);
        const bool isLabelled = !tick.label.isEmpty();
        const double height = isLabelled ? row.height() * 0.55 : row.height() * 0.22;
        paintVerticalLine(painter, x, base - height, base,
                          mixed(colors.line, colors.quietText, isLabelled ? 0.6F : 0.2F),
                          look.devicePixelRatio);
        const double room = scene.scale.x(scene.scale.duration()) + TimeScale::margin - x - labelOffset;
        if (!isLabelled || metrics.horizontalAdvance(tick.label) > room)
            continue;
        painter.setPen(tick.isWholeSecond ? colors.quietText : mixed(colors.quietText, colors.window, 0.25F));
        painter.drawText(QRectF(x + labelOffset, row.top(), distance, row.height() - 2),
                         Qt::AlignVCenter | Qt::AlignLeft, tick.label);
    }
    painter.fillRect(QRectF(row.left(), base - 1, row.width(), 1), colors.line);
    painter.restore();
}

QRectF playheadArea(const TimelineScene& scene) {
    const double x = scene.scale.x(scene.playhead);
    return QRectF(x - headWidth, 0, 2 * headWidth, scene.rows.trim.bottom() + 1);
}

void paintPlayhead(QPainter& painter, const TimelineScene& scene, const Look& look) {
    constexpr double thickness = 1.5; // points
    const double x = onPixel(scene.scale.x(scene.playhead), look.devicePixelRatio);
    const QRectF& ruler = scene.rows.ruler;
    const ColorTokens& colors = tokens();
    const double top = ruler.bottom() - headHeight - 1;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    // A dark edge sets it off from bright pictures.
    painter.fillRect(
        QRectF(x - thickness, ruler.bottom(), 2 * thickness, scene.rows.trim.bottom() - ruler.bottom()),
        faded(colors.window, 0.45F));
    painter.fillRect(QRectF(x - thickness / 2, ruler.bottom() - 2, thickness,
                            scene.rows.trim.bottom() - ruler.bottom() + 2),
                     colors.accent);
    QPainterPath head;
    head.moveTo(x - headWidth / 2, top);
    head.lineTo(x + headWidth / 2, top);
    head.lineTo(x + headWidth / 2, top + headHeight * 0.5);
    head.lineTo(x, top + headHeight + 1);
    head.lineTo(x - headWidth / 2, top + headHeight * 0.5);
    head.closeSubpath();
    painter.setPen(QPen(colors.accent, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(colors.accent);
    painter.drawPath(head);
    painter.restore();
}

void paintBubble(QPainter& painter, const TimelineScene& scene, double time, bool isOnTarget,
                 const Look& look) {
    constexpr double padding = 7; // points
    const ColorTokens& colors = tokens();
    const double x = scene.scale.x(time);
    const QString text = shortTime(time, true);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(look.font);
    paintVerticalLine(painter, x, scene.rows.ruler.bottom(), scene.rows.trim.bottom(),
                      isOnTarget ? colors.accent : faded(colors.text, 0.5F), look.devicePixelRatio);
    const double width = std::ceil(QFontMetricsF(look.font).horizontalAdvance(text)) + 2 * padding;
    const double left = std::clamp(x - width / 2, 1.0, std::max(1.0, scene.scale.width() - width - 1));
    const QRectF box(std::round(left), scene.rows.ruler.top() + 1, width, scene.rows.ruler.height() - 3);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isOnTarget ? colors.accent : colors.text);
    painter.drawRoundedRect(box, 4, 4);
    painter.setPen(isOnTarget ? colors.onAccent : colors.window);
    painter.drawText(box, Qt::AlignCenter, text);
    painter.restore();
}

}
