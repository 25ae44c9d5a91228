#include "persistence/DocumentError.h"

#include "json/JsonError.h"

#include <QFileInfo>

namespace pointloom {

namespace {

std::string shownName(const QString& path) {
    const QString name = QFileInfo(path).fileName();
    constexpr std::size_t longestFileName = 255; // bytes, of most file systems
    return json::printable((name.isEmpty() ? path : name).toStdString(), longestFileName);
}

}

DocumentError::DocumentError(const QString& path, const QString& reason)
    : std::runtime_error(shownName(path) + ": " + reason.toStdString()) {}

}
