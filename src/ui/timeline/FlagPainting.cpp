#include "ui/style/Theme.h"
#include "ui/timeline/PaintingTools.h"
#include "ui/timeline/TimelinePainting.h"

#include <limits>
#include <ranges>

namespace pointloom::TimelinePainting {

namespace {

constexpr double corner = 4; // points
constexpr double ballSize = 5;

struct FlagColors {
    QColor fill;
    QColor edge;
    QColor text;
    QColor ball;
    QColor pole;
};

FlagColors colorsOf(bool isSelected, bool isHovered) {
    const ColorTokens& colors = tokens();
    if (isSelected)
        return {colors.accent, colors.accent, colors.onAccent, colors.onAccent, colors.accent};
    return {isHovered ? mixed(colors.raised, colors.text, 0.12F) : colors.raised,
            isHovered ? colors.quietText : mixed(colors.line, colors.quietText, 0.25F), colors.text,
            colors.accent, faded(colors.quietText, 0.55F)};
}

void paintBox(QPainter& painter, const QRectF& box, const QString& text, Side servingSide,
              const FlagColors& colors, double devicePixelRatio) {
    const QRectF whole(onPixel(box.left(), devicePixelRatio) + 0.5, box.top() + 0.5, box.width() - 1,
                       box.height() - 1);
    painter.setPen(QPen(colors.edge, 1));
    painter.setBrush(colors.fill);
    painter.drawRoundedRect(whole, corner, corner);

    const bool ballIsLeft = servingSide == Side::first;
    const double ballX =
        ballIsLeft ? box.left() + FlagRow::padding : box.right() - FlagRow::padding - ballSize;
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.ball);
    painter.drawEllipse(QRectF(ballX, box.center().y() - ballSize / 2, ballSize, ballSize));
    painter.setPen(colors.text);
    const QRectF words = box.adjusted(FlagRow::padding + (ballIsLeft ? FlagRow::ballWidth : 0), 0, 0, 0);
    painter.drawText(words, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, text);
}

void paintFlag(QPainter& painter, const TimelineScene& scene, const Flag& flag, QRectF box, double x,
               FlagDetail detail, const FlagColors& colors, const Look& look) {
    paintVerticalLine(painter, x, box.top() + corner, scene.rows.clip().bottom(), colors.pole,
                      look.devicePixelRatio);
    if (detail != FlagDetail::tick)
        paintBox(painter, box, detail == FlagDetail::full ? flag.words.full : flag.words.brief,
                 flag.servingSide, colors, look.devicePixelRatio);
}

template <class Flags>
void paintTicks(QPainter& painter, const TimelineScene& scene, Flags&& flags, const Look& look) {
    // Ticks that stand closer than this merge; painting them all would only make a block.
    constexpr double closestTicks = 2; // points
    double last = -std::numeric_limits<double>::infinity();
    const double bottom = scene.rows.flags.bottom();
    for (const Flag& flag : flags) {
        const double x = scene.scale.x(flag.time);
        if (x - last < closestTicks)
            continue;
        last = x;
        paintVerticalLine(painter, x, bottom - scene.rows.laneHeight * 0.55, bottom,
                          faded(tokens().quietText, 0.8F), look.devicePixelRatio);
    }
}

}

void paintFlags(QPainter& painter, const TimelineScene& scene, const Look& look) {
    const auto visible = scene.flags.between(scene.scale, 0, scene.scale.width());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(look.font);

    // The selected flag lies on top: a part of another's text beside it would only mislead.
    const Flag* selected = scene.selectedMarker ? scene.flags.find(*scene.selectedMarker) : nullptr;
    const QRectF onTop = selected && selected->id != scene.movingMarker ? scene.boxOf(*selected) : QRectF();
    const auto isTick = [&](const Flag& flag) {
        return flag.place.detail == FlagDetail::tick || scene.boxOf(flag).intersects(onTop);
    };
    const auto isElsewhere = [&](const Flag& flag) {
        return flag.id == scene.selectedMarker || flag.id == scene.movingMarker;
    };
    paintTicks(painter, scene, visible | std::views::filter([&](const Flag& flag) {
                                   return isTick(flag) && !isElsewhere(flag);
                               }),
               look);
    const auto isHovered = [&](const Flag& flag) {
        return scene.hover == TimelineHit{TimelineHit::Kind::marker, flag.id};
    };
    const auto paint = [&](const Flag& flag, bool isSelected) {
        paintFlag(painter, scene, flag, scene.boxOf(flag), scene.scale.x(flag.time), scene.detailOf(flag),
                  colorsOf(isSelected, isHovered(flag)), look);
    };
    for (const Flag& flag : visible) {
        if (!isTick(flag) && !isElsewhere(flag))
            paint(flag, false);
    }
    for (const Flag& flag : visible) {
        if (flag.id == scene.selectedMarker && flag.id != scene.movingMarker)
            paint(flag, true);
    }
    painter.restore();
}

void paintMovingFlag(QPainter& painter, const TimelineScene& scene, const Flag& flag, double time,
                     const Look& look) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(look.font);
    const double x = scene.scale.x(time);
    QRectF box = scene.boxOf(flag);
    box.setWidth(flag.widths.full);
    box.moveLeft(x + box.width() > scene.scale.width() && x >= box.width() ? x - box.width() : x);
    paintFlag(painter, scene, flag, box, x, FlagDetail::full, colorsOf(true, false), look);
    painter.restore();
}

}
