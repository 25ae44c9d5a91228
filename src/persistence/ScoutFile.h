// DataVolley scout files: the ends of rallies with their scores.
#pragma once

#include "model/ScoreState.h"
#include "persistence/DelimitedText.h"

#include <array>

namespace pointloom {

struct ScoutedRally {
    double time = 0;      // seconds of the video; without these, since the first rally, by the clock
    PointGameScore score; // of its set, the home team first
    std::int64_t set = 1; // its number
    bool endsSet = false;
    Side nextServer = Side::first; // without a scouted service the winner
    qint64 line = 0;
};

struct ScoutedService {
    double time = 0; // as of a rally
    Side server = Side::first;
    qint64 line = 0;
};

struct ScoutFile {
    std::array<QString, 2> teams;               // home, away; empty when the file does not name them
    std::optional<ScoutedService> firstService; // of the match, when its time is known
    std::vector<ScoutedRally> rallies;          // each later than the one before
    std::vector<SetScore> sets;                 // the last score of each
    std::vector<LineFault> leftOut;

    static bool isScoutFile(QStringView text);

    /// The Windows code page that the file names; 0 without one.
    static int codePage(const QByteArray& bytes);

    /// Scores are taken as they stand.
    static ScoutFile parse(QStringView text);
};

}
