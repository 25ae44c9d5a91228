// The flags of all markers: what they say and where they stand.
#pragma once

#include "model/Marker.h"
#include "ui/common/MarkerText.h"
#include "ui/timeline/FlagLayout.h"
#include "ui/timeline/TimeScale.h"

#include <optional>
#include <QFont>
#include <QHash>
#include <span>
#include <vector>

namespace pointloom {

struct Flag {
    QUuid id;
    double time = 0; // seconds
    SportScoreState score;
    ShortScore words;
    Side servingSide = Side::first;
    FlagWidths widths;
    FlagPlace place;
};

class FlagRow {
public:
    /// `markers` in order of time.
    void setMarkers(std::span<const Marker> markers);
    void setFont(const QFont& font);

    /// Finds places for the zoom of `scale`. Scrolling needs no new places.
    void arrange(const TimeScale& scale, int lanes);

    const std::vector<Flag>& flags() const { return m_flags; }
    const Flag* find(const QUuid& id) const;

    /// The flags of which something may be seen between two positions of the scale.
    std::span<const Flag> between(const TimeScale& scale, double from, double to) const;

    static constexpr double padding = 6;   // points at both ends of a flag
    static constexpr double ballWidth = 9; // points for the ball on the side that serves, with its distance

private:
    Flag makeFlag(const Marker& marker);
    void measure(Flag& flag);
    double textWidth(const QString& text);

    std::vector<Flag> m_flags;
    QFont m_font;
    QHash<QString, double> m_textWidths; // of few different scores, many times each
};

}
