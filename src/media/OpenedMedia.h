// Chooses the tracks of an open file, describes them and decodes the first frame.
#pragma once

#include "media/InputFile.h"
#include "media/MediaInfo.h"
#include "media/TrackDecoder.h"

#include <optional>
#include <vector>

namespace pointloom::media {

struct OpenedMedia {
    MediaInfo info;
    int videoStream = -1;                // index; -1 without video
    std::optional<TrackDecoder> decoder; // of the video track
    AVFramePtr firstFrame;               // tags completed; null when none came within the limit on packets
};

/// Leaves `file` set to read its video track alone. Throws MediaError when the file has neither video nor
/// sound, and when no frame of its video track can be decoded.
OpenedMedia openMedia(InputFile& file, int decoderThreads);

/// The first video track that has frames, is no cover and can be decoded; one with a single frame only
/// when there is no other.
std::optional<int> findVideoTrack(const AVFormatContext& context);

/// Audio tracks that can be decoded, in the file's order.
std::vector<int> findAudioTracks(const AVFormatContext& context);

/// Throws MediaError when no decoder is known for one of the video tracks.
void requireDecoders(const AVFormatContext& context);

/// Ticks of `VideoTrackInfo::timeBase` in one tick of the stream's own clock. Above 1 where that counts less
/// than 600 ticks a second: with a tick as long as a frame no range could start between two frames.
std::int64_t clockRefinement(const AVStream& stream);

/// The stream's clock, refined.
Rational frameClock(const AVStream& stream);

/// `ticks` of the stream's own clock in the refined one, limited to what 64 bits hold.
std::int64_t refinedTicks(std::int64_t ticks, std::int64_t refinement);

/// Adds to a decoded frame all that its track says: missing colour tags, HDR metadata, plain names for old
/// layouts. Throws MediaError when memory is short.
void completeTags(AVFrame& frame, const AVStream& stream);

}
