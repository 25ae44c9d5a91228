// Starts libmpv with everything switched off that reaches beyond the one file it is told to play.
#pragma once

#include <memory>

struct mpv_handle;

namespace pointloom::playback {

struct MpvDeleter {
    void operator()(mpv_handle* handle) const;
};

/// Ends the player when it goes; every render context must be gone by then.
using MpvHandle = std::unique_ptr<mpv_handle, MpvDeleter>;

enum class Sound {
    Device, // the desktop's; silently nowhere when there is none
    None,   // keeps the clock of a sound device without being one
};

/// A started, idle, paused player. Sets LC_NUMERIC to "C" for the whole process, as libmpv refuses to
/// run without: call it on the main thread. Throws PlaybackError.
MpvHandle startMpv(Sound sound);

}
