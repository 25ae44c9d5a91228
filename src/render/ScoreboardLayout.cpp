#include "render/ScoreboardLayout.h"

#include <algorithm>
#include <QTextBoundaryFinder>

namespace pointloom {

namespace {

double nameWidth(double rowHeight, const MatchConfig& config) {
    constexpr double smallest = 120;
    constexpr double perCharacter = 0.26; // of the row's height
    constexpr double besideTheName = 54;
    const qsizetype longer = std::max(characterCount(config.team1.flagDisplayName(drawnFormat(config))),
                                      characterCount(config.team2.flagDisplayName(drawnFormat(config))));
    return std::max(smallest, static_cast<double>(longer) * (rowHeight * perCharacter) + besideTheName);
}

}

ScoreboardLayout::ScoreboardLayout(double rowHeight, double setWidth, double gameWidth,
                                   const MatchConfig& config)
    : rowH(rowHeight)
    , setW(setWidth)
    , gameW(gameWidth)
    , nameW(nameWidth(rowHeight, config)) {}

MatchFormat drawnFormat(const MatchConfig& config) {
    return supportsDoubles(config.sport) ? config.format : MatchFormat::singles;
}

qsizetype characterCount(const QString& text) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (finder.toNextBoundary() != -1)
        ++count;
    return count;
}

}
