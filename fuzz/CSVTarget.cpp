// Reads any bytes as a table of score markers, which come out sorted or not at all.
#include "FuzzTarget.h"
#include "MemoryFile.h"
#include "persistence/CSVParser.h"
#include "persistence/DocumentError.h"

#include <algorithm>
#include <cstdlib>

using namespace pointloom;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::MemoryFile file;
    file.replace({data, static_cast<qsizetype>(size)});
    try {
        const std::vector<Marker> markers = CSVParser::readMarkersFile(file.path());
        if (!std::is_sorted(markers.begin(), markers.end(), [](const Marker& left, const Marker& right) {
                return left.startTime < right.startTime;
            }))
            std::abort();
    } catch (const DocumentError&) {
    }
    return 0;
}
