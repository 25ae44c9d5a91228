// The matrix by which MP4 and MOV files say how a picture is turned.
#pragma once

#include "media/FFmpeg.h"

#include <QSize>

namespace pointloom::media {

/// Turns by other angles count as the nearest quarter turn.
Orientation readOrientation(const AVStream& stream);

/// Shows a stored picture of `size` in this orientation, with its corner at the origin.
void writeOrientation(AVStream& stream, Orientation orientation, QSize size);

}
