#include "ui/timeline/TimelinePainting.h"

#include "ui/common/TimeCode.h"
#include "ui/style/Theme.h"
#include "ui/timeline/ThumbnailStrip.h"
#include "ui/timeline/WaveformStore.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <span>

namespace pointloom::TimelinePainting {

namespace {

constexpr double corner = 4; // points
constexpr double ballSize = 5;
constexpr double labelOffset = 4; // points from a tick to its label
constexpr double headWidth = 11;  // points, of the playhead's grip
constexpr double headHeight = 9;

/// `color` with a share of `other`, 0 to 1, mixed in.
QColor mixed(const QColor& color, const QColor& other, float share) {
    const auto mix = [&](float from, float to) { return from + (to - from) * share; };
    return QColor::fromRgbF(mix(color.redF(), other.redF()), mix(color.greenF(), other.greenF()),
                            mix(color.blueF(), other.blueF()));
}

QColor faded(QColor color, float alpha) {
    color.setAlphaF(alpha);
    return color;
}

/// The nearest edge of a device pixel.
double onPixel(double position, double devicePixelRatio) {
    return std::round(position * devicePixelRatio) / devicePixelRatio;
}

/// A line one point thick, or as many whole pixels as fit into a point, centred on `x`.
void paintVerticalLine(QPainter& painter, double x, double top, double bottom, const QColor& color,
                       double devicePixelRatio) {
    const double thickness = std::max(1.0, std::floor(devicePixelRatio)) / devicePixelRatio;
    painter.fillRect(QRectF(onPixel(x - thickness / 2, devicePixelRatio), top, thickness, bottom - top),
                     color);
}

double labelDistance(const TimelineScene& scene, const QFontMetricsF& metrics) {
    constexpr double labelGap = 22; // points
    return metrics.horizontalAdvance(shortTime(std::max(scene.scale.duration(), 600.0))) + labelGap;
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
        const double space = scene.scale.x(scene.scale.duration()) + TimeScale::margin - x - labelOffset;
        if (!isLabelled || metrics.horizontalAdvance(tick.label) > space)
            continue;
        painter.setPen(tick.isWholeSecond ? colors.text : colors.quietText);
        painter.drawText(QRectF(x + labelOffset, row.top(), distance, row.height() - 2),
                         Qt::AlignVCenter | Qt::AlignLeft, tick.label);
    }
    painter.fillRect(QRectF(row.left(), base - 1, row.width(), 1), colors.line);
    painter.restore();
}

// Points at the sound of a rally's end from below.
void paintRallyEnds(QPainter& painter, const TimelineScene& scene, std::span<const double> ends,
                    const QRectF& row) {
    constexpr double width = 7; // points
    constexpr double height = 5;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(tokens().accent);
    const auto first = std::ranges::lower_bound(ends, scene.scale.time(row.left() - width));
    for (auto end = first; end != ends.end() && scene.scale.x(*end) < row.right() + width; ++end) {
        const QPointF tip(scene.scale.x(*end), row.bottom() - height);
        painter.drawPolygon(
            QPolygonF{tip, tip + QPointF(width / 2, height), tip + QPointF(-width / 2, height)});
    }
}

void paintWaveform(QPainter& painter, const TimelineScene& scene, const WaveformStore& sound,
                   const Look& look) {
    const WaveformPyramid& peaks = sound.peaks();
    const QRectF row = scene.clipPartOf(scene.rows.waveform);
    if (row.isEmpty())
        return;
    const ColorTokens& colors = tokens();
    painter.fillRect(row, mixed(colors.surface, colors.raised, 0.5F));
    // One bar per device pixel would take four times as long at twice the scale and look the same.
    const double bar = std::max(1.0, 1.0 / look.devicePixelRatio);
    const double middle = row.center().y();
    const double half = row.height() / 2 - 2;
    std::vector<QRectF> bars;
    std::vector<QRectF> loudBars;
    bars.reserve(static_cast<std::size_t>(row.width() / bar) + 1);
    // Where a bar is longer than a pause, nearly every one would have a moment.
    constexpr double longestBar = 4; // seconds
    const bool showsMoments = bar <= longestBar * scene.scale.pointsPerSecond();
    auto moment =
        std::ranges::upper_bound(sound.moments(), scene.scale.time(row.left()), {}, &media::LoudMoment::end);
    const double end = static_cast<double>(peaks.size()) / WaveformPyramid::peaksPerSecond;
    // Relative to the loudest peak, with quiet ones raised: a camera far from the court records quietly.
    constexpr double quietestFull = 20; // of 255; a quieter clip is drawn as silent
    constexpr double lift = 0.7;
    const double full = std::max<double>(peaks.loudest(), quietestFull);
    for (double x = std::floor(row.left()); x < row.right(); x += bar) {
        const double time = std::max(0.0, scene.scale.time(x));
        if (time >= end)
            break;
        const double level = std::pow(peaks.loudest(time, scene.scale.time(x + bar)) / full, lift);
        const double height = std::max(0.5, level * half);
        while (moment != sound.moments().end() && moment->end <= time)
            ++moment;
        const bool isLoud =
            showsMoments && moment != sound.moments().end() && moment->start < scene.scale.time(x + bar);
        (isLoud ? loudBars : bars).emplace_back(x, middle - height, bar, 2 * height);
    }
    painter.save();
    painter.setClipRect(row);
    painter.setPen(Qt::NoPen);
    painter.setBrush(mixed(colors.quietText, colors.surface, 0.35F));
    painter.drawRects(bars.data(), static_cast<int>(bars.size()));
    painter.setBrush(mixed(colors.accent, colors.surface, 0.25F));
    painter.drawRects(loudBars.data(), static_cast<int>(loudBars.size()));
    // A line above them, for eyes to which both colours are the same.
    constexpr double lineHeight = 2; // points
    for (QRectF& loud : loudBars)
        loud = QRectF(loud.left(), row.top(), loud.width(), lineHeight);
    painter.drawRects(loudBars.data(), static_cast<int>(loudBars.size()));
    if (showsMoments)
        paintRallyEnds(painter, scene, sound.rallyEnds(), row);
    painter.restore();
}

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

void paintFlags(QPainter& painter, const TimelineScene& scene, const Look& look) {
    const auto visible = scene.flags.between(scene.scale, 0, scene.scale.width());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(look.font);

    // The selected flag is on top; flags that it would cover in part are ticks.
    const Flag* selected = scene.selectedMarker ? scene.flags.find(*scene.selectedMarker) : nullptr;
    const QRectF onTop = selected && selected->id != scene.movingMarker ? scene.boxOf(*selected) : QRectF();
    const auto isTick = [&](const Flag& flag) {
        return flag.place.detail == FlagDetail::tick || scene.boxOf(flag).intersects(onTop);
    };
    const auto isElsewhere = [&](const Flag& flag) {
        return flag.id == scene.selectedMarker || flag.id == scene.movingMarker;
    };
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
    // Above the flags that would hide them; those that stand alone have a pole too.
    constexpr double mergeDistance = 2; // points
    constexpr double poleDistance = 12;
    double lastTick = -std::numeric_limits<double>::infinity();
    for (const Flag& flag : visible) {
        const double x = scene.scale.x(flag.time);
        if (isElsewhere(flag) || !isTick(flag) || x - lastTick < mergeDistance)
            continue;
        const bool hasPole = x - lastTick >= poleDistance;
        lastTick = x;
        paintVerticalLine(painter, x, scene.rows.flags.bottom() - scene.tickHeight(),
                          scene.rows.flags.bottom(), isHovered(flag) ? tokens().accent : tokens().quietText,
                          look.devicePixelRatio);
        if (hasPole)
            paintVerticalLine(painter, x, scene.rows.flags.bottom(), scene.rows.clip().bottom(),
                              colorsOf(false, false).pole, look.devicePixelRatio);
    }
    for (const Flag& flag : visible) {
        if (flag.id == scene.selectedMarker && flag.id != scene.movingMarker)
            paint(flag, true);
    }
    painter.restore();
}

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

QRectF visiblePart(const QRectF& box, const TimelineScene& scene) {
    return box.intersected(QRectF(-4, box.top(), scene.scale.width() + 8, box.height()));
}

// What a cut is: as much as its plate holds, and all of it beside a selected one.
void paintCutWords(QPainter& painter, const TimelineScene& scene, const QRectF& plate, const CutWords& words,
                   bool isSelected, const QFontMetricsF& metrics) {
    constexpr double padding = 6; // points
    const auto widthOf = [&](const QString& text) {
        return std::ceil(metrics.horizontalAdvance(text)) + 2 * padding;
    };
    const auto fits = [&](const QString& text) { return widthOf(text) <= plate.width(); };
    const QString& text = isSelected || fits(words.full) ? words.full : words.brief;
    QRectF label = plate;
    if (!fits(text)) {
        if (!isSelected)
            return;
        constexpr double gap = 3; // points
        label.setWidth(widthOf(text));
        label.moveLeft(plate.right() + gap);
        if (label.right() > scene.scale.width())
            label.moveRight(plate.left() - gap);
        painter.setPen(Qt::NoPen);
        painter.setBrush(tokens().raised);
        painter.drawRoundedRect(label, corner, corner);
    }
    painter.setPen(isSelected ? tokens().accent : tokens().text);
    painter.drawText(label, Qt::AlignCenter, text);
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

    // Framed where the export keeps it; hatched where it does not, over what is dimmed.
    const QRectF clip = scene.rows.clip();
    const QRectF film(box.left(), clip.top(), box.width(), clip.height());
    if (scene.leavesCutsOut)
        painter.fillRect(film, QBrush(faded(ink, 0.5F), Qt::BDiagPattern));
    else
        painter.fillRect(film, faded(ink, 0.14F));
    for (const double edge : {box.left(), box.right()})
        paintVerticalLine(painter, edge, clip.top(), clip.bottom(), faded(ink, 0.8F), look.devicePixelRatio);

    const QRectF plate = box.adjusted(0.5, 2.5, -0.5, -2.5);
    painter.setPen(QPen(ink, isSelected ? 1.5 : 1, scene.leavesCutsOut ? Qt::SolidLine : Qt::DashLine));
    painter.setBrush(mixed(colors.raised, colors.window, 0.2F));
    painter.drawRoundedRect(plate, corner, corner);
    paintCutWords(painter, scene, plate, words, isSelected, QFontMetricsF(look.font));
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
    double from = clipStart;
    for (const TimeSpan& part : scene.parts) {
        dim(from, scene.scale.x(part.start));
        from = scene.scale.x(part.end);
    }
    dim(from, clipEnd);
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
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.raised);
    for (const TimeSpan& part : scene.parts) {
        const double left = scene.scale.x(part.start);
        const QRectF kept =
            visiblePart(QRectF(left, lane.top(), scene.scale.x(part.end) - left, lane.height()), scene);
        if (kept.isEmpty())
            continue;
        painter.drawRect(kept.adjusted(0, 3, 0, -3));
        for (const double edge : {kept.top() + 2, kept.bottom() - 3})
            painter.fillRect(QRectF(kept.left(), edge, kept.width(), 1),
                             mixed(colors.line, colors.quietText, 0.4F));
    }
    painter.restore();
}

void paintSeams(QPainter& painter, const TimelineScene& scene, const Look& look) {
    const QRectF clip = scene.rows.clip();
    for (const Seam& seam : scene.seams) {
        const double x = scene.scale.x(seam.time);
        paintVerticalLine(painter, x - 1, clip.top(), clip.bottom(), tokens().window, look.devicePixelRatio);
        paintVerticalLine(painter, x, clip.top(), clip.bottom(), tokens().quietText, look.devicePixelRatio);
    }
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
    for (const bool isSelected : {false, true}) { // the selected one on top
        for (const CutZone& cut : scene.cuts) {
            if ((cut.id == scene.selectedCut) == isSelected)
                paintCut(painter, scene, cut, words, look);
        }
    }
    painter.restore();
}

}

void paintRows(QPainter& painter, const TimelineScene& scene, ThumbnailStore& thumbnails,
               const WaveformStore& sound, const CutWords& words, const Look& look) {
    paintRuler(painter, scene, look);
    paintThumbnails(painter, scene, thumbnails);
    paintWaveform(painter, scene, sound, look);
    paintSeams(painter, scene, look);
    paintTrim(painter, scene, look);
    paintCuts(painter, scene, words, look);
    paintFlags(painter, scene, look);
    paintTrimHandles(painter, scene, look);
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
    // A dark edge makes it visible on bright thumbnails.
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

void paintOrigin(QPainter& painter, const TimelineScene& scene, double time, const Look& look) {
    paintVerticalLine(painter, scene.scale.x(time), scene.rows.ruler.bottom(), scene.rows.trim.bottom(),
                      faded(tokens().accent, 0.55F), look.devicePixelRatio);
}

void paintRing(QPainter& painter, const QRectF& area) {
    constexpr double distance = 3; // points from the item
    const QRectF ring = area.adjusted(-distance, -distance, distance, distance);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    for (const auto& [color, width] : {std::pair(tokens().window, 5.0), std::pair(tokens().text, 2.0)}) {
        painter.setPen(QPen(color, width));
        painter.drawRoundedRect(ring, corner + distance, corner + distance);
    }
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
    const auto line = [&](double at, const QColor& color) {
        paintVerticalLine(painter, at, scene.rows.ruler.bottom(), scene.rows.trim.bottom(), color,
                          look.devicePixelRatio);
    };
    if (isOnTarget) {
        line(x - 1.5, colors.accent);
        line(x + 1.5, colors.accent);
    } else {
        line(x, faded(colors.text, 0.5F));
    }
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
