// Any bytes as a project document of either form, and as a board. What can be read is the same after writing
// and reading again.
#include "FuzzTarget.h"
#include "persistence/BoardFile.h"
#include "persistence/DocumentFile.h"
#include "persistence/ProjectFile.h"
#include "json/JsonDocument.h"

using namespace pointloom;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString path = QStringLiteral("/folder/match.plp");
    try {
        const ProjectFile project = ProjectFile::decode(fuzz::bytesOf(data, size), path);
        const QByteArray written = json::prettySorted(json::encode(project));
        fuzz::require(ProjectFile::decode(written, path) == project, "a document reads as it was written");
    } catch (const DocumentError& error) {
        fuzz::requireReadable(error.what(), "match.plp: ");
    }
    const QString boardPath = QStringLiteral("/folder/club.json");
    try {
        const BoardFile board = BoardFile::decode(fuzz::bytesOf(data, size), boardPath);
        const QByteArray written = json::prettySorted(json::encode(board));
        fuzz::require(BoardFile::decode(written, boardPath) == board, "a board reads as it was written");
    } catch (const DocumentError& error) {
        fuzz::requireReadable(error.what(), "club.json: ");
    }
    return 0;
}
