// Markers from tables as matches are logged in a spreadsheet. Tennis scores only.
#pragma once

#include "model/Marker.h"
#include "persistence/DelimitedText.h"

#include <functional>
#include <QStringView>

namespace pointloom {

/// The text has lines, but none of them is a marker.
struct CSVParseError {
    std::int64_t lineCount = 0; // lines that were neither empty, comments nor headers

    QString description() const;
};

/// A marker and the number of its line in the file.
struct MarkerOfLine {
    Marker marker;
    qint64 line = 0;
};

namespace CSVParser {

struct Table {
    std::vector<MarkerOfLine> markers; // sorted by time, of the same time in the order of the text
    std::vector<LineFault> leftOut;    // a heading in words of its own is none
    std::int64_t lineCount = 0;        // as in CSVParseError
};

/// One marker for each valid row. Columns by position: startTime, label, servingTeam, game_team1, game_team2,
/// then the games of both teams for each set. A comma always separates: there is no quoting. With another
/// separator fields may be quoted, and times be written with a decimal comma or with colons.
Table parseTable(QStringView text, QChar separator = u',');

using ErrorReport = std::function<void(const CSVParseError&)>;

/// `parseTable` with commas; `reportError` is called when it has lines but no marker.
std::vector<Marker> parseMarkers(QStringView csv, const ErrorReport& reportError = {});

/// A file to start from: a header and five markers, lines separated by LF, no line break at the end.
QString sampleText();

}

}
