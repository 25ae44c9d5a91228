// FFmpeg on this machine: whether an encoder works, and its version.
#pragma once

#include "media/MediaWriter.h"

#include <optional>
#include <QString>

namespace pointloom::media {

/// Why this machine cannot encode with these settings, in words; empty when it can. Encodes a few black
/// pictures, which may take a second or so: drivers are loaded for it.
std::optional<QString> encoderFault(const VideoSettings& settings);

/// Version of the FFmpeg in use, such as "5.1.6-0+deb12u1".
QString ffmpegVersion();

}
