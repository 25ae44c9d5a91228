// Puts a picture into its place inside of a larger black frame.
#pragma once

#include "media/FrameConverter.h"

namespace pointloom::media {

/// `target.picture` inside of the frame, its edges on whole chroma samples, at least two pixels each way.
QRect alignedPicture(const PictureTarget& target);

/// `picture` itself when it fills a frame of `size`, else a black frame with the picture at `place`.
VideoFrame placePicture(VideoFrame picture, QSize size, QRect place, const FrameFormat& format);

}
