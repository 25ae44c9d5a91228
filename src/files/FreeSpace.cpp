#include "files/FreeSpace.h"

#include <filesystem>
#include <QFile>

namespace pointloom {

// Not QStorageInfo, which knows no disk that is missing in the table of mounts, as inside another root.
std::optional<std::int64_t> freeBytes(const QString& folder) {
    std::error_code error;
    const auto space = std::filesystem::space(QFile::encodeName(folder).toStdString(), error);
    if (error || space.capacity == 0)
        return std::nullopt;
    return static_cast<std::int64_t>(space.available);
}

}
