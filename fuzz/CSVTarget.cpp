// Any bytes as a table of score markers: sorted markers, a report that no line was one, or an error.
#include "FuzzTarget.h"
#include "persistence/CSVParser.h"
#include "persistence/DocumentFile.h"

#include <algorithm>
#include <cmath>

using namespace pointloom;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        std::int64_t linesReported = 0;
        const std::vector<Marker> markers =
            CSVParser::decodeMarkers(fuzz::bytesOf(data, size), QStringLiteral("/folder/scores.csv"),
                                     [&](const CSVParseError& error) { linesReported = error.lineCount; });
        fuzz::require(std::ranges::is_sorted(markers, {}, &Marker::startTime), "markers are sorted by time");
        fuzz::require(
            std::ranges::all_of(markers, [](const Marker& m) { return std::isfinite(m.startTime); }),
            "times are finite");
        fuzz::require(linesReported == 0 || markers.empty(), "lines are reported only when none is a marker");
    } catch (const DocumentError& error) {
        fuzz::requireReadable(error.what(), "scores.csv: ");
    }
    return 0;
}
