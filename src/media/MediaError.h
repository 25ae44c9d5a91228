// What is thrown when a file cannot be opened, decoded or written.
#pragma once

#include <stdexcept>
#include <string>

namespace pointloom::media {

/// The kinds of trouble that people meet, for whoever tells them in their own language.
enum class MediaFault {
    other, // the message alone says what
    missing,
    notAFile,
    empty,
    noPermission,
    notAVideo, // of the two containers that are read
    damaged,
    cutShort,
    noPicture,
    nothingInRange, // no picture lies in the stretch of time that was asked for
    unsupportedCodec,
    replaced, // by another program, while it was used
    diskFull,
};

/// `what()` is fit for a person: it says what could not be done and why, without the file's name.
class MediaError : public std::runtime_error {
public:
    explicit MediaError(const std::string& message, MediaFault fault = MediaFault::other)
        : std::runtime_error(message)
        , m_fault(fault) {}

    MediaFault fault() const { return m_fault; }

private:
    MediaFault m_fault;
};

/// The file can be read but holds no picture that moves.
class NoVideoTrackError : public MediaError {
public:
    explicit NoVideoTrackError(const std::string& message)
        : MediaError(message, MediaFault::noPicture) {}
};

}
