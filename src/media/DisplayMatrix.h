// The matrix by which MP4 and MOV files say how a picture is turned.
#pragma once

#include "media/FFmpeg.h"

#include <array>
#include <QSize>

namespace pointloom::media {

/// Nine numbers as FFmpeg keeps them: row by row, 16.16 fixed point, the third column 2.30.
using DisplayMatrix = std::array<std::int32_t, 9>;

/// Turns by other angles count as the nearest quarter turn.
Orientation orientationOf(const DisplayMatrix& matrix);

/// The matrix that shows a stored picture of `size` in this orientation, with its corner at the origin.
DisplayMatrix matrixFor(Orientation orientation, QSize size);

Orientation readOrientation(const AVStream& stream);
void writeOrientation(AVStream& stream, Orientation orientation, QSize size);

}
