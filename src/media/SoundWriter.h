// Encodes the sound of an export alone, to be joined with pictures later.
#pragma once

#include "media/AudioReader.h"

#include <memory>
#include <QString>

namespace pointloom::media {

class SoundWriter {
public:
    /// Creates the file, replacing what is there. `comment` is kept in it. Throws MediaError.
    SoundWriter(const QString& path, const QString& comment);
    ~SoundWriter(); // an unfinished file is closed and left to its owner to remove

    SoundWriter(const SoundWriter&) = delete;
    SoundWriter& operator=(const SoundWriter&) = delete;

    /// Appends sound as MediaWriter does; what the encoder refuses is left out. Throws MediaError.
    void write(const AudioFrame& frame);

    /// Throws MediaError.
    void finish();

private:
    struct State;
    std::unique_ptr<State> m_state;
};

}
