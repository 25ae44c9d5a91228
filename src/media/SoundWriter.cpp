#include "media/SoundWriter.h"

#include "media/AudioEncoder.h"

namespace pointloom::media {

struct SoundWriter::State {
    OutputFile file;
    AudioEncoder encoder;

    State(const QString& path, const QString& comment)
        : file(path, "mp4")
        , encoder(file) {
        file.setComment(comment);
        file.writeHeader({1, audioSampleRate});
    }
};

SoundWriter::SoundWriter(const QString& path, const QString& comment)
    : m_state(std::make_unique<State>(path, comment)) {}
SoundWriter::~SoundWriter() = default;

void SoundWriter::write(const AudioFrame& frame) {
    (void)m_state->encoder.write(frame);
}

void SoundWriter::finish() {
    m_state->encoder.finish();
    m_state->file.finish();
}

}
