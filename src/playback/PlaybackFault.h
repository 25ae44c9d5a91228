// Why a file cannot be played.
#pragma once

#include "media/MediaError.h"

#include <optional>
#include <QString>

namespace pointloom::playback {

struct PlaybackFault {
    media::MediaFault kind = media::MediaFault::other;
    QString reason; // the end of a sentence whose subject is the file
};

/// What speaks against opening the file, as far as that shows without reading it. Anything but a regular
/// file could keep the player waiting for ever.
std::optional<PlaybackFault> faultOfFile(const QString& path);

/// What libmpv's error code means for the file that it was to open.
PlaybackFault faultOfPlayer(int error);

}
