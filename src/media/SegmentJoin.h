// Joins files that were encoded on their own into one, packet by packet, without decoding anything.
#pragma once

#include "media/MediaWriter.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <QString>
#include <vector>

namespace pointloom::media {

struct SegmentFile {
    QString path;
    std::int64_t offset = 0; // ticks of the joined file, added to the segment's times
};

struct JoinRequest {
    QString outputPath;
    bool isQuickTime = false; // else MP4
    Rational timeBase{1, 90000};
    std::vector<SegmentFile> segments; // in the order of their times
    std::optional<QString> soundPath;
    FileTexts texts;
    // Called before a segment is opened, with its place in the list, from 0; what it throws ends the joining.
    std::function<void(std::size_t)> beforeSegment = {};
};

/// The comment in a file; empty for none. Throws MediaError.
QString readComment(const QString& path);

/// Creates the file. All segments must have been encoded alike, and each begin with a key frame; their
/// packets are copied with times as if one encoder had made them. `onProgress` is called with the
/// number of bytes copied and of all bytes. Throws MediaError, which names the segment, and what `onProgress`
/// throws.
void joinSegments(const JoinRequest& request,
                  const std::function<void(std::int64_t, std::int64_t)>& onProgress);

}
