// Tests whether an encoder works on this machine, and gives FFmpeg's version.
#pragma once

#include "media/MediaWriter.h"

#include <optional>
#include <QString>

namespace pointloom::media {

/// The reason why this machine cannot encode with these settings, for the user; empty when it can. Encodes a
/// few black frames, which may take about a second, since drivers are loaded for it.
std::optional<QString> encoderFault(const VideoSettings& settings);

/// Version of the FFmpeg in use, such as "5.1.6-0+deb12u1".
QString ffmpegVersion();

/// The libraries that determine the bits of an encoding, with their versions: FFmpeg, x264 and x265.
QString encodingLibraries();

}
