// Chooses the video track of an open file and describes it.
#pragma once

#include "media/FFmpeg.h"
#include "media/MediaInfo.h"

#include <optional>
#include <vector>

namespace pointloom::media {

/// The first video track that has pictures, is no cover and can be decoded; one with a single picture only
/// when there is no other.
std::optional<int> findVideoTrack(const AVFormatContext& context);

/// Throws MediaError when no decoder is known for one of the video tracks.
void requireDecoders(const AVFormatContext& context);

/// Ticks of `VideoTrackInfo::timeBase` in one tick of the stream's own clock. Above 1 where that counts less
/// than 600 ticks a second: with a tick as long as a frame no range could start between two frames.
std::int64_t clockRefinement(const AVStream& stream);

/// The stream's clock, refined.
Rational pictureClock(const AVStream& stream);

/// `ticks` of the stream's own clock in the refined one; as far as that goes.
std::int64_t refinedTicks(std::int64_t ticks, std::int64_t refinement);

/// What the container says of the track.
VideoTrackInfo describeVideoTrack(AVFormatContext& context, int streamIndex);

/// Corrects `track` by its first decoded picture, which knows best.
void describeByPicture(VideoTrackInfo& track, const AVFrame& picture);

/// Makes a decoded picture say all that its track says: no gap in its colour tags, its HDR metadata, no old
/// layout names.
void completeTags(AVFrame& picture, const AVStream& stream);

/// Audio tracks that can be decoded, in the file's order.
std::vector<int> findAudioTracks(const AVFormatContext& context);

/// Seconds from time zero of the presentation timeline to its end: as the container says, and not before the
/// video track ends (a container that gives no duration has the first frame's time taken off).
double timelineDuration(const AVFormatContext& context, std::optional<int> videoStream);

/// Packets that are decoded, at most, to find the first good picture.
constexpr std::int64_t packetsToFirstPicture = 500;

}
