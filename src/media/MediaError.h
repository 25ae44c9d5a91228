// What is thrown when a file cannot be opened, decoded or written.
#pragma once

#include <stdexcept>

namespace pointloom::media {

/// `what()` is fit for a person: it says what could not be done and why, without the file's name.
class MediaError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The file can be read but holds no picture that moves.
class NoVideoTrackError : public MediaError {
public:
    using MediaError::MediaError;
};

}
