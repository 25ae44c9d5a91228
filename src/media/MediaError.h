// Errors of opening, decoding and writing media files.
#pragma once

#include <stdexcept>
#include <string>

namespace pointloom::media {

/// Kinds of faults, for translated messages.
enum class MediaFault {
    other, // described by the message alone
    missing,
    notAFile,
    empty,
    noPermission,
    notAVideo, // neither MP4 nor MOV
    damaged,
    cutShort,
    noPicture,
    nothingInRange, // no frame in the requested range of time
    unsupportedCodec,
    replaced, // by another program, while it was used
    diskFull,
};

/// `what()` is for the user: what could not be done and why, without the file's name.
class MediaError : public std::runtime_error {
public:
    explicit MediaError(const std::string& message, MediaFault fault = MediaFault::other)
        : std::runtime_error(message)
        , m_fault(fault) {}

    MediaFault fault() const { return m_fault; }

private:
    MediaFault m_fault;
};

/// The file can be read but has no video track.
class NoVideoTrackError : public MediaError {
public:
    explicit NoVideoTrackError(const std::string& message)
        : MediaError(message, MediaFault::noPicture) {}
};

}
