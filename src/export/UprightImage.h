// Decoded frames as upright images.
#pragma once

#include "media/FrameConverter.h"

#include <QImage>

namespace pointloom {

/// The stored frame turned as players show it.
QImage uprightImage(const media::RgbaImage& stored, media::Orientation orientation);

/// The same for a frame, scaled to `size` pixels on the way. Throws MediaError.
QImage uprightImage(const media::VideoFrame& frame, media::Orientation orientation, QSize size);

}
