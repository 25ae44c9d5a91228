// Markers, scores and sides in words.
#pragma once

#include "model/Marker.h"
#include "model/ScoreText.h"
#include "ui/common/UiContext.h"

namespace pointloom {

/// The name that the user gave to the side; "Team 1" or "Team 2" while it has none.
QString sideName(const UiContext& context, Side side);

/// "6–4  2–1": `setTexts` in one line.
QString setsText(const SportScoreState& score);

/// A score in as few characters as it can be read in.
struct ShortScore {
    QString full;  // "6-4 2-1 30-15": the sets that have begun, then the game
    QString brief; // the game alone, or the last set when no point has been played in it

    bool operator==(const ShortScore&) const = default;
};

ShortScore shortScore(const SportScoreState& score);

/// What a marker is in the count: "Point: Dravnik", "Game, set: Moreau", "Entered by hand"; empty when it
/// repeats the score before it.
QString countText(const UiContext& context, const CountedMatch& match, std::size_t marker);

/// Sets, game and serve in one line, for screen readers.
QString scoreAsSpoken(const UiContext& context, const SportScoreState& score);

/// Time and label, sets, game and serve, each on a line, and that it was entered by hand; plain text in
/// markup that shows it as it is.
QString markerAsToolTip(const UiContext& context, const Marker& marker, bool isEntered = false);

/// The same in one line, as above.
QString markerAsSpoken(const UiContext& context, const Marker& marker, bool isEntered = false);

}
