// Lists of points: when each was won, and by which side.
#pragma once

#include "model/ScoreState.h"
#include "persistence/DelimitedText.h"

namespace pointloom {

struct WonPoint {
    double time = 0; // seconds
    Side winner = Side::first;
    std::optional<QString> label;
    qint64 line = 0;
};

struct PointList {
    std::vector<WonPoint> points;   // sorted by time, of the same time in the order of the text
    std::vector<LineFault> leftOut; // a heading is none
};

/// Lines of time, `1` or `2`, and an optional label. Lines that begin with `#` and a heading are no points.
PointList parsePointList(QStringView text, QChar separator);

}
