// The sound of an export: that of its parts, joined with short fades.
#pragma once

#include "export/ExportTimeline.h"
#include "media/AudioReader.h"

namespace pointloom {

class ExportSound {
public:
    /// `timeBase` is the clock of the parts' frames. Empty when the file has no sound that can be decoded.
    /// Throws MediaError.
    static std::optional<ExportSound> open(const media::Recording& recording,
                                           const std::vector<ExportPart>& parts, media::Rational timeBase);

    /// The next samples, counted from the start of the new file. Samples may be missing before them where the
    /// sound of a part ends early. Empty at the end. Throws MediaError.
    std::optional<media::AudioFrame> read();

private:
    struct Part {
        double start = 0; // seconds of the source
        std::optional<double> end;
        std::int64_t firstSample = 0; // of the new file
    };

    ExportSound(media::Recording recording, std::vector<Part> parts, media::AudioReader reader)
        : m_recording(std::move(recording))
        , m_parts(std::move(parts))
        , m_reader(std::move(reader)) {}

    std::optional<std::int64_t> endOf(std::size_t part) const;
    void place(media::AudioFrame& run) const;

    media::Recording m_recording;
    std::vector<Part> m_parts;
    std::size_t m_current = 0;
    std::optional<media::AudioReader> m_reader; // of the current part
};

}
