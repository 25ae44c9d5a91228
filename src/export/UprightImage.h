// Decoded pictures as people see them.
#pragma once

#include "media/FrameConverter.h"

#include <QImage>

namespace pointloom {

/// The stored picture turned as players show it.
QImage uprightImage(const media::RgbaImage& stored, media::Orientation orientation);

/// The same of a frame, scaled to `size` pixels on the way. Throws MediaError.
QImage uprightImage(const media::VideoFrame& frame, media::Orientation orientation, QSize size);

}
