// What each encoder is told before it is opened.
#pragma once

#include "media/FFmpegHandles.h"
#include "media/MediaWriter.h"

namespace pointloom::media {

/// FFmpeg's name of the encoder; null when that kind has none for the codec.
const char* encoderName(EncoderKind kind, VideoCodec codec);

/// What the container calls the codec; for ProRes that tells the profile too.
unsigned codecTag(const VideoSettings& settings);

/// Nothing but what was asked for: rate and quality stay the encoder's own, except in hardware, whose
/// defaults are made for live streams.
void chooseOptions(AVCodecContext& context, const VideoSettings& settings, Options& options);

}
