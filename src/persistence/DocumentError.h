// What is thrown when a document cannot be read or written.
#pragma once

#include <QString>
#include <stdexcept>

namespace pointloom {

/// `what()` names the file and the reason on one line: `match.plp: markers[3].startTime: expected a number`.
class DocumentError : public std::runtime_error {
public:
    /// `path` of the document, of which the message shows the file's name; `reason` without a full stop.
    DocumentError(const QString& path, const QString& reason);
};

}
