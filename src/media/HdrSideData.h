// HDR metadata between files and encoders.
#pragma once

#include "media/FFmpeg.h"
#include "media/HdrMetadata.h"

#include <string>

namespace pointloom::media {

HdrMetadata readHdrMetadata(const AVFrame& picture);

/// Gives a picture what it does not say itself and its container does. Throws MediaError when memory is
/// short.
void completeHdrMetadata(AVFrame& picture, const AVStream& stream);

/// Has the container say it. Throws MediaError when memory is short.
void writeHdrMetadata(AVStream& stream, const HdrMetadata& metadata);

/// Parameters by which x265 writes it into its pictures, each behind a colon; empty for none.
std::string x265HdrParameters(const HdrMetadata& metadata);

/// Takes away what is measured or graded for each picture alone (HDR10+, Dolby Vision): it describes pictures
/// without an overlay. In pictures that are not HDR, what HdrMetadata holds goes too.
void dropStaleMetadata(AVFrame& picture);

}
