// The flags of all markers: their texts and their layout.
#pragma once

#include "model/Marker.h"
#include "ui/common/MarkerText.h"
#include "ui/timeline/TimeScale.h"

#include <QFont>
#include <QHash>
#include <span>
#include <vector>

namespace pointloom {

enum class FlagDetail { tick, brief, full };

/// The widths of a flag with either text, points.
struct FlagWidths {
    double brief = 0;
    double full = 0;
};

struct FlagPlace {
    int lane = 0;
    FlagDetail detail = FlagDetail::tick;
    bool leansLeft = false; // ends at its position instead of beginning there
};

/// Places flags so that none covers another. A flag begins at its position (points, in rising order, from any
/// origin) in the first free lane, with the longest text that leaves enough space for the flags after it.
/// Some become ticks where space is missing, and where flags crowd all of them. No flag goes beyond `end`:
/// one that would leans to the left where that is free.
std::vector<FlagPlace> layOutFlags(std::span<const double> positions, std::span<const FlagWidths> widths,
                                   int lanes, double end);

struct Flag {
    QUuid id;
    double time = 0; // seconds
    SportScoreState score;
    ShortScore words;
    Side servingSide = Side::first;
    FlagWidths widths = {};
    FlagPlace place = {};
};

class FlagRow {
public:
    static constexpr double padding = 6;   // points at both ends of a flag
    static constexpr double ballWidth = 9; // points of the serving side's ball and its distance from the text

    /// `markers` are in order of time.
    void setMarkers(std::span<const Marker> markers);
    void setFont(const QFont& font);

    /// Places the flags for the zoom of `scale`. Scrolling changes no place.
    void arrange(const TimeScale& scale, int lanes);

    const std::vector<Flag>& flags() const { return m_flags; }
    const Flag* find(const QUuid& id) const;

    /// The flags that may be visible between two positions of the scale.
    std::span<const Flag> between(const TimeScale& scale, double from, double to) const;

private:
    Flag makeFlag(const Marker& marker);
    void measure(Flag& flag);
    double textWidth(const QString& text);

    std::vector<Flag> m_flags;
    QFont m_font;
    QHash<QString, double> m_textWidths; // many markers have the same texts
};

}
