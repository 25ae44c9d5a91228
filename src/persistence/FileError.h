// What is thrown when a file of the program's own cannot be read or written.
#pragma once

#include <cerrno>
#include <QString>
#include <stdexcept>

namespace pointloom {

/// `what()` is fit for a person: the file and the system's reason.
class FileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;

    /// "PATH: FAULT: REASON"
    FileError(const QString& path, const char* fault, const QString& reason);

    /// The same with the system's reason for `error`, an errno value.
    FileError(const QString& path, const char* fault, int error = errno);
};

}
