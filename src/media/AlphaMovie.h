// Writes images with transparency into a QuickTime movie.
#pragma once

#include "media/FrameFormat.h"

#include <cstdint>
#include <memory>
#include <QSize>
#include <QString>
#include <span>

namespace pointloom::media {

/// ProRes 4444 (ap4h) of 10 bits with 16 bits of alpha, BT.709; no sound. Alpha is straight: colours are not
/// multiplied by it.
class AlphaMovie {
public:
    /// Creates or replaces the file. Timestamps count ticks of `timeBase`; `frameRate` is the
    /// nominal one. Throws MediaError.
    static AlphaMovie create(const QString& path, QSize size, Rational timeBase, Rational frameRate);

    ~AlphaMovie(); // an unfinished file is closed and left to its owner to remove

    /// Sets the image that is written from now on: rows of red, green, blue, alpha, a byte each, without
    /// gaps. Encodes it once, however often it is written. Throws MediaError.
    void setImage(std::span<const std::uint8_t> rgba);

    /// Appends the image. Timestamps rise strictly; `duration` is 1 or more. Throws MediaError.
    void write(std::int64_t timestamp, std::int64_t duration);

    /// Writes the index. Throws MediaError.
    void finish();

private:
    struct State;
    explicit AlphaMovie(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

}
