#include "media/OpenedMedia.h"

#include "media/VideoTrack.h"

namespace pointloom::media {

OpenedMedia openMedia(InputFile& file, int decoderThreads) {
    AVFormatContext& context = *file.context();
    OpenedMedia media;
    media.info.audioTracks = static_cast<int>(findAudioTracks(context).size());
    const std::optional<int> stream = findVideoTrack(context);
    media.info.duration = timelineDuration(context, stream);
    if (!stream) {
        if (media.info.audioTracks == 0) {
            requireDecoders(context);
            throw NoVideoTrackError("the file holds no picture and no sound that can be decoded");
        }
        return media;
    }

    media.videoStream = *stream;
    media.info.video = describeVideoTrack(context, *stream);
    file.keepOnly(*stream);
    media.decoder.emplace(&context, *stream, decoderThreads);
    media.firstPicture = media.decoder->next(packetsToFirstPicture);
    if (!media.firstPicture && media.decoder->isAtEnd())
        throw MediaError("no picture could be decoded", MediaFault::damaged);
    if (media.firstPicture) {
        completeTags(*media.firstPicture, *context.streams[*stream]);
        describeByPicture(*media.info.video, *media.firstPicture);
    }
    return media;
}

}
