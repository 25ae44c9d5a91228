// A track of timed text (3GPP TS 26.245) in MP4 and QuickTime files, to be switched on in the player.
#pragma once

#include "media/FFmpeg.h"
#include "media/MediaWriter.h"

namespace pointloom::media {

constexpr int captionTicks = 1000; // a second

/// Fills in a new stream of the file. Throws MediaError.
void describeTextTrack(AVStream& track);

/// The packet of a caption, with times in `captionTicks`. Throws MediaError.
void fillPacket(AVPacket& packet, const Caption& caption);

/// FFmpeg marks the only text track of a file as enabled, so that players show it unasked. Clears that in a
/// file that is complete. Throws MediaError.
void switchOffTextTracks(const QString& path);

}
