#include "ui/style/Theme.h"
#include "ui/timeline/PaintingTools.h"
#include "ui/timeline/TimelinePainting.h"

#include <algorithm>
#include <QFontMetricsF>

namespace pointloom::TimelinePainting {

namespace {

constexpr double trimCorner = 4; // points

void paintHandle(QPainter& painter, const QRectF& handle, bool isHovered, const Look& look) {
    const ColorTokens& colors = tokens();
    const QRectF box(onPixel(handle.left(), look.devicePixelRatio), handle.top() + 1, handle.width(),
                     handle.height() - 2);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isHovered ? colors.accent : colors.text);
    painter.drawRoundedRect(box, 3, 3);
    paintVerticalLine(painter, box.center().x(), box.top() + 5, box.bottom() - 5,
                      isHovered ? colors.onAccent : mixed(colors.window, colors.text, 0.3F),
                      look.devicePixelRatio);
}

/// Slanted lines that stand still on the clip while it scrolls.
void paintHatch(QPainter& painter, const QRectF& box, const TimelineScene& scene, const QColor& color) {
    constexpr double distance = 7; // points
    painter.save();
    painter.setClipRect(box, Qt::IntersectClip);
    painter.setPen(QPen(color, 1));
    const double origin = std::fmod(scene.scale.x(0), distance);
    const double first = origin + std::floor((box.left() - box.height() - origin) / distance) * distance;
    for (double x = first; x < box.right(); x += distance)
        painter.drawLine(QPointF(x, box.bottom()), QPointF(x + box.height(), box.top()));
    painter.restore();
}

QRectF visiblePart(const QRectF& box, const TimelineScene& scene) {
    return box.intersected(QRectF(-4, box.top(), scene.scale.width() + 8, box.height()));
}

void paintCut(QPainter& painter, const TimelineScene& scene, const CutZone& cut, const CutWords& words,
              const Look& look) {
    const ColorTokens& colors = tokens();
    constexpr double narrowest = 3; // points
    QRectF box = scene.boxOf(cut);
    box.setWidth(std::max(box.width(), narrowest));
    box = visiblePart(box, scene);
    if (box.isEmpty())
        return;
    const bool isSelected = cut.id == scene.selectedCut;
    const bool isHovered = scene.hover.id == cut.id;
    const QColor ink = isSelected ? colors.accent : (isHovered ? colors.text : colors.quietText);

    const QRectF clip = scene.rows.clip();
    const QRectF onClip(box.left(), clip.top(), box.width(), clip.height());
    painter.fillRect(onClip, faded(colors.window, 0.45F));
    paintHatch(painter, onClip, scene, faded(ink, 0.4F));

    const QRectF plate = box.adjusted(0.5, 2.5, -0.5, -2.5);
    painter.setPen(Qt::NoPen);
    painter.setBrush(mixed(colors.raised, colors.window, 0.2F));
    painter.drawRoundedRect(plate, trimCorner, trimCorner);
    paintHatch(painter, plate, scene, faded(ink, 0.45F));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(ink, isSelected ? 1.5 : 1));
    painter.drawRoundedRect(plate, trimCorner, trimCorner);

    const QFontMetricsF metrics(look.font);
    constexpr double padding = 6; // points
    for (const QString& text : {words.full, words.brief}) {
        const double width = std::ceil(metrics.horizontalAdvance(text)) + 2 * padding;
        if (width + 12 > plate.width())
            continue;
        const QRectF label(plate.center().x() - width / 2, plate.top() + 1, width, plate.height() - 2);
        painter.fillRect(label, mixed(colors.raised, colors.window, 0.2F));
        painter.setPen(isSelected ? colors.accent : colors.text);
        painter.drawText(label, Qt::AlignCenter, text);
        break;
    }
}

}

void paintTrim(QPainter& painter, const TimelineScene& scene, const Look& look) {
    const ColorTokens& colors = tokens();
    const QRectF& lane = scene.rows.trim;
    const QRectF clip = scene.rows.clip();
    const double start = scene.scale.x(scene.trim.start);
    const double end = scene.scale.x(scene.trimEnd());
    const double clipStart = scene.scale.x(0);
    const double clipEnd = scene.scale.x(scene.scale.duration());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);

    const auto dim = [&](double from, double to) {
        const QRectF outside = visiblePart(QRectF(from, clip.top(), to - from, clip.height()), scene);
        if (to > from)
            painter.fillRect(outside, faded(colors.window, 0.72F));
    };
    dim(clipStart, start);
    dim(end, clipEnd);
    const bool isTrimmed = start > clipStart || end < clipEnd;
    if (isTrimmed) {
        for (const double edge : {start, end})
            paintVerticalLine(painter, edge, clip.top(), clip.bottom(), colors.text, look.devicePixelRatio);
    }

    const QRectF whole =
        visiblePart(QRectF(clipStart, lane.top(), clipEnd - clipStart, lane.height()), scene);
    painter.fillRect(
        QRectF(whole.left(), onPixel(lane.center().y(), look.devicePixelRatio), whole.width(), 1),
        colors.line);
    const QRectF kept = visiblePart(QRectF(start, lane.top(), end - start, lane.height()), scene);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.raised);
    painter.drawRect(kept.adjusted(0, 3, 0, -3));
    for (const double edge : {kept.top() + 2, kept.bottom() - 3})
        painter.fillRect(QRectF(kept.left(), edge, kept.width(), 1),
                         mixed(colors.line, colors.quietText, 0.4F));

    painter.restore();
}

void paintTrimHandles(QPainter& painter, const TimelineScene& scene, const Look& look) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    paintHandle(painter, scene.trimStartHandle(), scene.hover.kind == TimelineHit::Kind::trimStart, look);
    paintHandle(painter, scene.trimEndHandle(), scene.hover.kind == TimelineHit::Kind::trimEnd, look);
    painter.restore();
}

void paintCuts(QPainter& painter, const TimelineScene& scene, const CutWords& words, const Look& look) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(look.font);
    for (const CutZone& cut : scene.cuts) {
        if (cut.id != scene.selectedCut)
            paintCut(painter, scene, cut, words, look);
    }
    for (const CutZone& cut : scene.cuts) {
        if (cut.id == scene.selectedCut)
            paintCut(painter, scene, cut, words, look);
    }
    painter.restore();
}

}
