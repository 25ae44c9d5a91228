// One audio track of a file, decoded and laid out on the timeline of an exported range.
#pragma once

#include "media/InputFile.h"
#include "media/StereoResampler.h"
#include "media/TrackDecoder.h"

#include <deque>
#include <optional>

namespace pointloom::media {

class AudioTrack {
public:
    /// Opens the file once more, for this track alone, so that tracks stored far apart need no memory.
    /// Sample 0 will be what sounds at `start`, seconds of the source's timeline. Throws MediaError.
    AudioTrack(const QString& path, int streamIndex, double start);

    /// Adds the track's sound to `count` samples of both channels, the first of which is sample `position`.
    /// Positions must not go back. Returns how many of them lie before the track's end.
    int mixInto(float* left, float* right, std::int64_t position, int count);

private:
    struct Piece {
        std::int64_t position = 0;
        StereoSamples samples;

        std::int64_t end() const { return position + static_cast<std::int64_t>(samples[0].size()); }
    };

    bool decodeMore();
    void place(const AVFrame& frame);
    double placeOf(const AVFrame& frame) const;
    void beginRun(const AVFrame& frame, double position);
    void endRun();
    void append(StereoSamples samples);

    InputFile m_file;
    double m_start; // seconds
    double m_secondsPerTick;
    TrackDecoder m_decoder;
    std::deque<Piece> m_pieces; // decoded, not yet consumed

    // A run is sound without a break: its place is settled once, then samples are counted.
    std::optional<StereoResampler> m_resampler;
    double m_runPosition = 0;       // samples of the output
    std::int64_t m_runConsumed = 0; // samples at the source's rate
    std::int64_t m_runProduced = 0; // samples of the output
    int m_runRate = 0;              // Hz
};

}
