// Turns decoded sound of any rate, sample format and channel layout into stereo at `audioSampleRate`.
#pragma once

#include "media/FFmpegHandles.h"

#include <array>
#include <vector>

namespace pointloom::media {

using StereoSamples = std::array<std::vector<float>, 2>; // left, right; of one length

class StereoResampler {
public:
    /// For sound like that of `frame`. One channel goes to both sides at its own level; more than two are
    /// mixed so that no sum can exceed full level. Throws MediaError when such sound cannot be converted.
    explicit StereoResampler(const AVFrame& frame);
    ~StereoResampler();
    StereoResampler(const StereoResampler&) = delete;
    StereoResampler& operator=(const StereoResampler&) = delete;

    /// Whether `frame` is of the kind that this was made for.
    bool takes(const AVFrame& frame) const;

    /// What is ready after `frame`; null gets the rest.
    StereoSamples convert(const AVFrame* frame);

private:
    ResamplerPtr m_resampler;
    AVChannelLayout m_layout{};
    int m_format;
    int m_rate; // Hz
    bool m_isMono;
};

}
