// Reads any bytes as a project document. What can be read is the same after writing and reading again.
#include "FuzzTarget.h"
#include "MemoryFile.h"
#include "persistence/DocumentError.h"
#include "persistence/ProjectFile.h"
#include "json/JsonDocument.h"

#include <cstdlib>

using namespace pointloom;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::MemoryFile file;
    file.replace({data, static_cast<qsizetype>(size)});
    ProjectFile project;
    try {
        project = ProjectFile::load(file.path());
    } catch (const DocumentError&) {
        return 0;
    }
    file.replace(json::prettySorted(json::encode(project)));
    if (ProjectFile::load(file.path()) != project)
        std::abort();
    return 0;
}
