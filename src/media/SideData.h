// Orientation and HDR metadata between files, frames and encoders, as FFmpeg keeps them beside the packets.
#pragma once

#include "media/FFmpeg.h"

#include <QSize>
#include <string>

namespace pointloom::media {

/// The orientation by the track's display matrix; other angles count as the nearest quarter turn.
Orientation readOrientation(const AVStream& stream);

/// Writes the display matrix that shows a stored frame of `size` in this orientation, its corner at the
/// origin. Throws MediaError when memory is short.
void writeOrientation(AVStream& stream, Orientation orientation, QSize size);

HdrMetadata readHdrMetadata(const AVFrame& frame);

/// Adds the container's metadata that a frame lacks. Throws MediaError when memory is short.
void completeHdrMetadata(AVFrame& frame, const AVStream& stream);

/// Writes the metadata into the container. Throws MediaError when memory is short.
void writeHdrMetadata(AVStream& stream, const HdrMetadata& metadata);

/// Parameters by which x265 writes the metadata into its stream, each after a colon; empty for none.
std::string x265HdrParameters(const HdrMetadata& metadata);

/// Removes metadata that is measured or graded for each frame alone (HDR10+, Dolby Vision), since it
/// describes frames without an overlay; from frames that are not HDR the static metadata too.
void dropStaleMetadata(AVFrame& frame);

}
