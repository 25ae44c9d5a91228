#include "render/TextLine.h"

#include <QCache>
#include <QGlyphRun>
#include <QPainter>
#include <QRawFont>
#include <QTextLayout>
#include <utility>

namespace pointloom {

namespace {

// Outlines are taken unhinted, so this sets only how finely positions are rounded (1/64 of a pixel).
constexpr int shapingSize = TextLine::unitsPerEm;

TextLine shape(QString text, FontFace face);
QString drawableText(QString text);
QString withCountryLetters(const QString& text);
void addRun(TextLine& line, const QGlyphRun& run, QPointF baselineStart);
TextLine::Picture pictureOf(const QRawFont& font, quint32 glyph);

}

std::shared_ptr<const TextLine> shapedLine(const QString& text, FontFace face) {
    using Remembered = std::shared_ptr<const TextLine>;
    constexpr int most = 128;
    thread_local QCache<std::pair<QString, int>, Remembered> lines(most);
    const std::pair key{text, static_cast<int>(face)};
    if (const Remembered* found = lines.object(key))
        return *found;
    auto line = std::make_shared<const TextLine>(shape(text, face));
    auto kept = std::make_unique<Remembered>(line);
    lines.insert(key, kept.release()); // the cache owns it
    return line;
}

namespace {

TextLine shape(QString text, FontFace face) {
    text = drawableText(std::move(text));
    const QFont font = Fonts::shapingFont(face, shapingSize);
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
    // Centred on the capitals, as a flag stands beside a name.
    const double middle = -raw.capHeight() / shapingSize / 2;
    for (TextLine::Picture& picture : line.pictures)
        picture.rect.moveCenter({picture.rect.center().x(), middle});
    return line;
}

QString drawableText(QString text) {
    text.truncate(longestTextLine);
    for (QChar& character : text) {
        if (character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
            character == QChar::ParagraphSeparator)
            character = u' ';
    }
    return Fonts::hasFlags() ? text : withCountryLetters(text);
}

QString withCountryLetters(const QString& text) {
    constexpr char32_t regionalIndicatorA = 0x1F1E6; // Unicode, UTS #51
    constexpr char32_t regionalIndicatorZ = 0x1F1FF;
    QString readable;
    for (const char32_t character : text.toUcs4()) {
        const bool isIndicator = character >= regionalIndicatorA && character <= regionalIndicatorZ;
        readable += QChar::fromUcs4(isIndicator ? U'A' + (character - regionalIndicatorA) : character);
    }
    return readable;
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
        } else if (TextLine::Picture picture = pictureOf(font, glyphs[i]); !picture.image.isNull()) {
            picture.rect.translate(position / shapingSize);
            line.pictures.push_back(std::move(picture));
        }
    }
}

/// A character that has no outline, as the font's own bitmap; a null image for a blank.
TextLine::Picture pictureOf(const QRawFont& font, quint32 glyph) {
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

}

}
