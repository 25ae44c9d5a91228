// Thrown when a file cannot be read or written.
#pragma once

#include <cerrno>
#include <QString>
#include <stdexcept>

namespace pointloom {

/// `what()` is fit for a user: the file and the system's reason.
class FileError : public std::runtime_error {
public:
    /// "PATH: FAULT: REASON"
    FileError(const QString& path, const char* fault, const QString& reason);

    /// The same with the system's reason for `error`, an errno value.
    FileError(const QString& path, const char* fault, int error = errno);

    const QString& reason() const { return m_reason; } // alone: "No space left on device"
    int error() const { return m_error; }              // an errno value; 0 when there is none

private:
    QString m_reason;
    int m_error = 0;
};

}
