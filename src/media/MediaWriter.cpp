#include "media/MediaWriter.h"

#include "media/AudioEncoder.h"
#include "media/VideoEncoder.h"

namespace pointloom::media {

struct MediaWriter::State {
    OutputFile file;
    VideoEncoder video;
    std::optional<AudioEncoder> audio;

    State(const QString& path, const VideoSettings& settings, bool withAudio,
          const std::vector<Chapter>& chapters, const QString& comment)
        : file(path, settings.codec == VideoCodec::prores ? "mov" : "mp4")
        , video(file, settings) {
        if (withAudio)
            addAudio();
        for (const Chapter& chapter : chapters)
            file.addChapter(chapter);
        if (!comment.isEmpty())
            file.setComment(comment);
        file.writeHeader(settings.timeBase);
    }

    void addAudio() {
        try {
            audio.emplace(file);
        } catch (const MediaError&) {
            audio.reset(); // better a silent film than none
        }
    }
};

MediaWriter::MediaWriter(std::unique_ptr<State> state)
    : m_state(std::move(state)) {}
MediaWriter::MediaWriter(MediaWriter&&) noexcept = default;
MediaWriter& MediaWriter::operator=(MediaWriter&&) noexcept = default;
MediaWriter::~MediaWriter() = default;

MediaWriter MediaWriter::create(const QString& path, const VideoSettings& video, bool withAudio,
                                const std::vector<Chapter>& chapters, const QString& comment) {
    return MediaWriter(std::make_unique<State>(path, video, withAudio, chapters, comment));
}

bool MediaWriter::hasAudio() const {
    return m_state->audio.has_value();
}

void MediaWriter::writeVideo(const VideoFrame& frame) {
    m_state->video.write(frame);
}

bool MediaWriter::writeAudio(const AudioFrame& frame) {
    return m_state->audio && m_state->audio->write(frame);
}

void MediaWriter::finish() {
    m_state->video.finish();
    if (m_state->audio)
        m_state->audio->finish();
    m_state->file.finish();
}

}
