// What is thrown when the player cannot be started or a picture cannot be drawn.
#pragma once

#include <stdexcept>

namespace pointloom::playback {

/// `what()` is fit for a person.
class PlaybackError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}
