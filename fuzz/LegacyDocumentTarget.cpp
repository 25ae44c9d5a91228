// Any bytes as a project document of the older form, which is only read. Brought to the current form it is
// the same after writing and reading again.
#include "FuzzTarget.h"
#include "persistence/DocumentFile.h"
#include "persistence/ProjectFile.h"
#include "json/JsonDocument.h"

using namespace pointloom;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const auto legacy = json::decode<LegacyProjectFile>(json::parse(fuzz::bytesOf(data, size)));
        const ProjectFile project = ProjectFile::migrating(legacy);
        fuzz::require(project.markers.size() == legacy.markers.size(), "no marker is lost");
        const QByteArray written = json::prettySorted(json::encode(project));
        fuzz::require(ProjectFile::decode(written, QStringLiteral("match.plp")) == project,
                      "a document reads as it was written");
    } catch (const json::DecodingError& error) {
        fuzz::requireReadable(error.what());
    }
    return 0;
}
