// One shaped line of text, kept as outlines so that it can be drawn sharp at any size.
#pragma once

#include "render/Fonts.h"

#include <memory>
#include <QImage>
#include <QPainterPath>
#include <QRectF>
#include <QString>
#include <vector>

namespace pointloom {

/// Widths and heights are in ems (multiples of the font size), y downward, with the origin at the start of
/// the baseline.
struct TextLine {
    static constexpr int unitsPerEm = 256; // of the outlines: much finer ones would be flattened needlessly

    struct Picture { // a coloured character, such as a flag
        QImage image;
        QRectF rect;
    };

    QPainterPath outlines; // in units, to be filled with the winding rule
    std::vector<Picture> pictures;
    double width = 0;   // typographic: the sum of the advances
    double ascent = 0;  // of the face, above the baseline
    double descent = 0; // of the face, below the baseline, positive
};

/// The longest text that is shaped; what exceeds it stands far outside any picture.
constexpr qsizetype longestTextLine = 4096; // UTF-16 units

/// Shapes a text of any script. Line breaks count as blanks. Lines are remembered on each thread, since a
/// scoreboard shows the same few over and over.
std::shared_ptr<const TextLine> shapedLine(const QString& text, FontFace face);

}
