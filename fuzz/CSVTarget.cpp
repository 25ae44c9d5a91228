// Any bytes as a file of markers: sorted markers that follow the lines of the file, faults of lines that it
// has, or an error.
#include "FuzzTarget.h"
#include "persistence/MarkerFile.h"

#include <algorithm>
#include <cmath>

using namespace pointloom;

namespace {

void tryFor(const QByteArray& bytes, SportID sport, const char* name) {
    MatchConfig config;
    config.sport = sport;
    config.numberOfSets = 3;
    try {
        const MarkerFile file = MarkerFile::decode(
            bytes, QStringLiteral("/folder/") + QString::fromUtf8(name), MatchStart::of(config));
        const auto time = [](const MarkerOfLine& row) { return row.marker.startTime; };
        fuzz::require(std::ranges::is_sorted(file.markers, {}, time), "markers are sorted by time");
        fuzz::require(
            std::ranges::all_of(file.markers, [&](const auto& row) { return std::isfinite(time(row)); }),
            "times are finite");
        const auto lines = bytes.count('\n') + bytes.count('\r') + 1; // each line ends in one of these bytes
        const auto isOfFile = [&](qint64 line) { return line >= 1 && line <= lines; };
        fuzz::require(std::ranges::all_of(file.markers, isOfFile, &MarkerOfLine::line),
                      "markers name their lines");
        fuzz::require(std::ranges::all_of(file.leftOut, isOfFile, &LineFault::line),
                      "faults name their lines");
        fuzz::require(file.firstPoint.isNull() == file.markers.empty(), "the first point is known");
    } catch (const DocumentError& error) {
        fuzz::requireReadable(error.what(), std::string(name) + ": ");
    }
}

}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes = fuzz::bytesOf(data, size);
    tryFor(bytes, size % 2 == 0 ? SportID::tennis : SportID::pickleball, "scores.csv");
    tryFor(bytes, SportID::volleyball, "match.dvw");
    return 0;
}
