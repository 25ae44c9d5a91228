#include "render/TemplateRenderer.h"

#include "render/DevicePixels.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <QCache>
#include <QGlyphRun>
#include <QPainter>
#include <QRawFont>
#include <QTextLayout>
#include <utility>
#include <vector>

namespace pointloom {

namespace {

constexpr double logoSlotWidth = 44;   // the name starts where it ends
constexpr double rightSlotWidth = 41;  // of a logo after the names
constexpr double nameWithoutSlot = 20; // where the name starts then, after the serve dot
constexpr double nameBeforeLogo = 36;  // what the name leaves free then

/// One shaped line of text, kept as outlines so that it can be drawn sharp at any size. Widths and heights
/// are in ems (multiples of the font size), y downward, with the origin at the start of the baseline.
struct TextLine {
    static constexpr int unitsPerEm = 256; // of the outlines: much finer ones would be flattened needlessly

    struct ColoredGlyph { // such as a flag
        QImage image;
        QRectF rect;
    };

    QPainterPath outlines; // in units, to be filled with the winding rule
    std::vector<ColoredGlyph> coloredGlyphs;
    double width = 0;   // typographic: the sum of the advances
    double ascent = 0;  // of the face, above the baseline
    double descent = 0; // of the face, below the baseline, positive
};

// Outlines are taken unhinted, so this sets only how finely positions are rounded (1/64 of a pixel).
constexpr int shapingSize = TextLine::unitsPerEm;

/// A character that has no outline, as the font's own bitmap; a null image for a space.
TextLine::ColoredGlyph coloredGlyph(const QRawFont& font, quint32 glyph) {
    constexpr int bitmapSize = 128; // the size at which Noto Color Emoji's bitmaps are not rescaled
    constexpr int margin = bitmapSize / 2;
    constexpr QPoint origin(margin, margin + bitmapSize);
    QRawFont bitmapFont = font;
    bitmapFont.setPixelSize(bitmapSize);
    QGlyphRun run;
    run.setRawFont(bitmapFont);
    run.setGlyphIndexes({glyph});
    run.setPositions({QPointF(0, 0)});
    QImage canvas(bitmapSize * 2 + margin * 2, bitmapSize * 2, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    {
        QPainter painter(&canvas);
        painter.setPen(Qt::white);
        painter.drawGlyphRun(origin, run);
    }

    QRect inked;
    for (int y = 0; y < canvas.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(canvas.constScanLine(y));
        for (int x = 0; x < canvas.width(); ++x) {
            if (qAlpha(row[x]) != 0)
                inked |= QRect(x, y, 1, 1);
        }
    }
    if (inked.isEmpty())
        return {};
    const QRectF placed = QRectF(inked).translated(-QPointF(origin));
    return {canvas.copy(inked), QRectF(placed.topLeft() / bitmapSize, placed.size() / bitmapSize)};
}

void addRun(TextLine& line, const QGlyphRun& run, QPointF baselineStart) {
    const QRawFont font = run.rawFont();
    const QList<quint32> glyphs = run.glyphIndexes();
    const QList<QPointF> positions = run.positions();
    for (qsizetype i = 0; i < glyphs.size(); ++i) {
        const QPointF position = positions[i] - baselineStart;
        const QPainterPath outline = font.pathForGlyph(glyphs[i]);
        if (!outline.isEmpty()) {
            line.outlines.addPath(outline.translated(position));
        } else if (TextLine::ColoredGlyph colored = coloredGlyph(font, glyphs[i]); !colored.image.isNull()) {
            colored.rect.translate(position / shapingSize);
            line.coloredGlyphs.push_back(std::move(colored));
        }
    }
}

constexpr char32_t regionalIndicatorA = 0x1F1E6; // Unicode, UTS #51: two of them are a flag
constexpr char32_t regionalIndicatorZ = 0x1F1FF;

bool isRegionalIndicator(char32_t character) {
    return character >= regionalIndicatorA && character <= regionalIndicatorZ;
}

QList<quint32> glyphsOf(const QString& text) {
    QTextLayout layout(text, Fonts::shapingFont(FontFace::regular, shapingSize));
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    QList<quint32> glyphs;
    for (const QGlyphRun& run : layout.glyphRuns())
        glyphs += run.glyphIndexes();
    return glyphs;
}

QString flagOf(char32_t first, char32_t second) {
    const char32_t letters[] = {first, second};
    return QString::fromUcs4(letters, 2);
}

// The font has one glyph, a question mark, for all pairs of letters that are no country. AA never is one.
bool isDrawableFlag(char32_t first, char32_t second) {
    static const QList<quint32> noFlag = glyphsOf(flagOf(regionalIndicatorA, regionalIndicatorA));
    return Fonts::hasFlags() && glyphsOf(flagOf(first, second)) != noFlag;
}

/// The text with the letters of the country in place of flags that cannot be drawn.
QString withDrawableFlags(const QString& text) {
    const auto characters = text.toUcs4();
    if (std::ranges::none_of(characters, isRegionalIndicator))
        return text;
    QString result;
    for (qsizetype i = 0; i < characters.size(); ++i) {
        const char32_t character = characters[i];
        if (!isRegionalIndicator(character)) {
            result += QChar::fromUcs4(character);
        } else if (i + 1 < characters.size() && isRegionalIndicator(characters[i + 1]) &&
                   isDrawableFlag(character, characters[i + 1])) {
            result += flagOf(character, characters[++i]);
        } else {
            result += QChar(u'A' + static_cast<char16_t>(character - regionalIndicatorA));
        }
    }
    return result;
}

/// The text with line breaks and other controls as spaces, and flags that cannot be drawn as letters.
QString drawableText(QString text) {
    constexpr qsizetype longest = 4096; // UTF-16 units; more would reach far outside any frame
    text.truncate(longest);
    for (QChar& character : text) {
        if (character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
            character == QChar::ParagraphSeparator)
            character = u' ';
    }
    return withDrawableFlags(text);
}

TextLine shape(QString text, const TextFont& look) {
    text = drawableText(std::move(text));
    const QFont font = Fonts::shapingFont(look.face, shapingSize, look.family);
    QTextLayout layout(text, font);
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute); // right-to-left names start at the left edge too
    option.setWrapMode(QTextOption::NoWrap);
    option.setUseDesignMetrics(true);
    option.setFlags(QTextOption::IncludeTrailingSpaces);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine shaped = layout.createLine();
    TextLine line;
    line.outlines.setFillRule(Qt::WindingFill);
    if (shaped.isValid()) {
        constexpr double wideEnough = 1 << 23;
        shaped.setLineWidth(wideEnough);
        shaped.setPosition({0, 0});
        line.width = shaped.naturalTextWidth() / shapingSize;
    }
    layout.endLayout();

    // The face's own bounds, not the run's: a flag or a foreign script must not move a name up or down.
    const QRawFont raw = QRawFont::fromFont(font);
    line.ascent = raw.ascent() / shapingSize;
    line.descent = raw.descent() / shapingSize;
    if (shaped.isValid()) {
        for (const QGlyphRun& run : layout.glyphRuns())
            addRun(line, run, {0, shaped.ascent()});
    }
    // Centred on the capitals, so that a flag is level with a name.
    const double middle = -raw.capHeight() / shapingSize / 2;
    for (TextLine::ColoredGlyph& glyph : line.coloredGlyphs)
        glyph.rect.moveCenter({glyph.rect.center().x(), middle});
    return line;
}

/// Shapes a text of any script. Each thread keeps its latest lines, since a scoreboard shows the same few
/// again and again.
std::shared_ptr<const TextLine> shapedLine(const QString& text, const TextFont& font) {
    using Kept = std::shared_ptr<const TextLine>;
    constexpr int mostLines = 128;
    thread_local QCache<std::pair<QString, int>, Kept> lines(mostLines);
    constexpr int faces = 2;
    const std::pair key{text, static_cast<int>(font.face) + faces * static_cast<int>(font.family)};
    if (const Kept* found = lines.object(key))
        return *found;
    auto line = std::make_shared<const TextLine>(shape(text, font));
    auto entry = std::make_unique<Kept>(line);
    lines.insert(key, entry.release()); // the cache owns it
    return line;
}

/// Draws a shaped line with its start at `x` and its middle at `centerY`.
void drawLine(QPainter& painter, const TextLine& line, double size, const Rgba& color, double x,
              double centerY) {
    if (!(size > 0) || !std::isfinite(size))
        return;
    const bool growsDownward = painter.combinedTransform().m22() >= 0;
    const double up = growsDownward ? -1 : 1;
    const double baseline = centerY - up * (line.ascent - line.descent) / 2 * size;
    painter.save();
    painter.translate(x, baseline);
    painter.scale(size, -up * size);
    const double opacity = painter.opacity();
    painter.setOpacity(opacity * color.alpha);
    for (const TextLine::ColoredGlyph& glyph : line.coloredGlyphs)
        drawImage(painter, glyph.image, glyph.rect);
    painter.setOpacity(opacity);
    constexpr double unit = 1.0 / TextLine::unitsPerEm;
    painter.scale(unit, unit);
    fillShape(painter, line.outlines, color.color());
    painter.restore();
}

void drawServeDot(QPainter& painter, QPointF rowOrigin, double rowHeight, const Rgba& color) {
    const double radius = 0.14 * rowHeight;
    QPainterPath dot;
    dot.addEllipse(rowOrigin + QPointF(10, rowHeight / 2), radius, radius);
    fillShape(painter, dot, color.color());
}

void drawSet(QPainter& painter, const SetScore& set, Side side, QPointF center,
             const ScoreboardLayout& layout, const Rgba& color) {
    const TextFont scoreFont{FontFace::bold, 0.46 * layout.rowH, layout.font};
    const QString games = QString::number(ofSide(set, side));
    drawCenteredText(painter, games, scoreFont, color, center);
    if (!showsTiebreakMark(set, side))
        return;
    const TextFont tiebreakFont{FontFace::bold, scoreFont.size * 0.48, layout.font};
    const double raised = center.y() - layout.rowH / 2 + 0.26 * layout.rowH;
    drawLeftText(painter, QStringLiteral("(%1)").arg(*set.tiebreak), tiebreakFont, color,
                 {center.x() + ctTextWidth(games, scoreFont) / 2 + 1, raised});
}

}

QPainterPath cgRoundRect(const QRectF& rect, double radius) {
    const double r = std::max(0.0, std::min({radius, rect.width() / 2, rect.height() / 2}));
    const double side = 2 * r;
    QPainterPath path(QPointF(rect.left() + r, rect.top()));
    path.lineTo(rect.right() - r, rect.top());
    path.arcTo(rect.right() - side, rect.top(), side, side, 90, -90);
    path.lineTo(rect.right(), rect.bottom() - r);
    path.arcTo(rect.right() - side, rect.bottom() - side, side, side, 0, -90);
    path.lineTo(rect.left() + r, rect.bottom());
    path.arcTo(rect.left(), rect.bottom() - side, side, side, 270, -90);
    path.lineTo(rect.left(), rect.top() + r);
    path.arcTo(rect.left(), rect.top(), side, side, 180, -90);
    path.closeSubpath();
    return path;
}

void drawScoreboardRow(QPainter& painter, const ScoreboardLayout& layout, QPointF origin, const QString& name,
                       std::span<const SetScore> sets, Side side, const QString& game, bool serving,
                       const RowColors& colors, const QPainterPath& outline) {
    const double x = origin.x();
    const double y = origin.y();
    const double setsW = static_cast<double>(sets.size()) * layout.setW;
    const bool isGameFirst = layout.order == BoardOrder::pointsFirst;
    const double firstSet = x + layout.nameW + (isGameFirst ? layout.gameW : 0);
    const double gameColumn = x + layout.nameW + (isGameFirst ? 0 : setsW);
    const double middle = y + layout.rowH / 2;
    const QRectF nameColumn(x, y, layout.nameW, layout.rowH);

    fillCell(painter, nameColumn, colors.bg, outline);
    for (std::size_t i = 0; i < sets.size(); ++i) {
        const QRectF cell(firstSet + static_cast<double>(i) * layout.setW, y, layout.setW, layout.rowH);
        fillCell(painter, cell, i % 2 == 0 ? colors.accent : colors.bg, outline);
    }
    fillCell(painter, {gameColumn, y, layout.gameW, layout.rowH}, colors.gameCell, outline);
    if (serving)
        drawServeDot(painter, origin, layout.rowH, colors.serveDot);

    for (std::size_t i = 0; i < sets.size(); ++i) {
        const QPointF center(firstSet + (static_cast<double>(i) + 0.5) * layout.setW, middle);
        drawSet(painter, sets[i], side, center, layout, colors.text);
    }
    drawCenteredText(painter, game, {FontFace::bold, 0.46 * layout.rowH, layout.font}, colors.gameText,
                     {gameColumn + layout.gameW / 2, middle});
    const bool isLogoAfter = layout.logo == BoardLogo::right;
    drawClippedText(painter, name, {FontFace::regular, 0.38 * layout.rowH, layout.font}, colors.text,
                    nameColumn.adjusted(0, 0, isLogoAfter ? -nameBeforeLogo : 0, 0),
                    x + (isLogoAfter ? nameWithoutSlot : logoSlotWidth));
}

bool showsTiebreakMark(const SetScore& set, Side side) {
    const auto [smaller, larger] = std::minmax(set.team1, set.team2);
    if (!set.tiebreak || larger < 7 || larger - 1 != smaller)
        return false;
    const Side winner = set.team2 < set.team1 ? Side::first : Side::second;
    return side != winner;
}

void drawCenteredText(QPainter& painter, const QString& text, const TextFont& font, const Rgba& color,
                      QPointF center) {
    const auto line = shapedLine(text, font);
    drawLine(painter, *line, font.size, color, center.x() - line->width * font.size / 2, center.y());
}

double ctTextWidth(const QString& text, const TextFont& font) {
    return shapedLine(text, font)->width * font.size;
}

void drawLeftText(QPainter& painter, const QString& text, const TextFont& font, const Rgba& color,
                  QPointF origin) {
    drawLine(painter, *shapedLine(text, font), font.size, color, origin.x(), origin.y());
}

void drawClippedText(QPainter& painter, const QString& text, const TextFont& font, const Rgba& color,
                     const QRectF& clipRect, double leftEdge) {
    painter.save();
    painter.setClipRect(alignedToPixels(painter, clipRect), Qt::IntersectClip);
    drawLeftText(painter, text, font, color, {leftEdge, clipRect.center().y()});
    painter.restore();
}

void drawLogoInScoreboard(QPainter& painter, const QImage& logo, QPointF origin, double scoreboardHeight) {
    const double side = std::min(scoreboardHeight - 8, 30.0);
    drawImage(
        painter, logo,
        {origin.x() + (logoSlotWidth - side) / 2, origin.y() + (scoreboardHeight - side) / 2, side, side});
}

void drawLogoAfterNames(QPainter& painter, const QImage& logo, QPointF origin,
                        const ScoreboardLayout& layout) {
    drawLogoInScoreboard(painter, logo, origin + QPointF(layout.nameW - rightSlotWidth, 0), layout.totalH());
}

void fillCell(QPainter& painter, const QRectF& rect, const Rgba& color, const QPainterPath& outline) {
    if (color.alpha <= 0)
        return;
    if (!outline.isEmpty()) {
        QPainterPath cell;
        cell.addRect(alignedToPixels(painter, rect));
        fillShape(painter, cell.intersected(outline), color.color());
        return;
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(alignedToPixels(painter, rect), color.color());
    painter.restore();
}

void fillShape(QPainter& painter, const QPainterPath& path, const QBrush& brush) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(path, brush);
    painter.restore();
}

}
