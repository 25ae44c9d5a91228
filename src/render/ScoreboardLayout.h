// Measures of a two-row scoreboard and the colours of one row.
#pragma once

#include "model/MatchConfig.h"

#include <cstdint>
#include <QColor>

namespace pointloom {

/// Components in 0..1, not premultiplied.
struct Rgba {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    bool operator==(const Rgba&) const = default;

    QColor color() const {
        return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue),
                                static_cast<float>(alpha));
    }
};

/// Colour of the dot beside the serving side.
constexpr Rgba serveDotColor{0.98, 0.8, 0.08, 1};

struct RowColors {
    Rgba bg; // name column and every second set
    Rgba text;
    Rgba accent; // first, third, fifth set
    Rgba gameCell;
    Rgba gameText;
    Rgba serveDot = serveDotColor;
};

/// Measures of most row templates, in template units.
constexpr double usualRowH = 38;
constexpr double usualSetW = 28;
constexpr double usualGameW = 46;

/// All measures in template units.
struct ScoreboardLayout {
    double rowH;
    double setW;
    double gameW;
    double nameW; // grows with the longer of the two names, counted in characters
    BoardOrder order = BoardOrder::setsFirst;
    BoardLogo logo = BoardLogo::left; // leaves space for it
    BoardFont font = BoardFont::sans;

    ScoreboardLayout(double rowHeight, double setWidth, double gameWidth, const MatchConfig& config);

    double totalW(std::int64_t numSets) const { return nameW + static_cast<double>(numSets) * setW + gameW; }
    double totalW() const { return totalW(3); }
    double totalH() const { return 2 * rowH + 1; } // a gap of 1 between the rows
};

/// Singles in sports that have no doubles, whatever a document says.
MatchFormat drawnFormat(const MatchConfig& config);

/// Characters as a reader counts them: a flag or a letter with its accents is one.
qsizetype characterCount(const QString& text);

}
