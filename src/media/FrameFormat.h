// How the samples of a picture are laid out and what their numbers mean.
#pragma once

namespace pointloom::media {

enum class Matrix { bt601, bt709, bt2020 }; // BT.2020 with non-constant luminance
enum class Range { limited, full };         // 16..235 of 255, or 0..255
enum class Transfer { sdr, pq, hlg };       // BT.1886; SMPTE ST 2084; BT.2100 HLG
enum class Primaries { bt601_525, bt601_625, bt709, bt2020, displayP3 };
enum class ChromaLocation { left, center, topLeft }; // of the first chroma sample
enum class Subsampling { s420, s422, s444 };

/// What the sample values stand for; never "unspecified": what a file leaves out is filled in as players do.
struct ColorDescription {
    Matrix matrix = Matrix::bt709;
    Range range = Range::limited;
    Transfer transfer = Transfer::sdr;
    Primaries primaries = Primaries::bt709;
    ChromaLocation chromaLocation = ChromaLocation::left;

    bool operator==(const ColorDescription&) const = default;
};

/// Planar Y'CbCr without alpha: three planes, one byte a sample at 8 bits, two (little-endian) above.
struct FrameFormat {
    Subsampling subsampling = Subsampling::s420;
    int bitDepth = 8; // 8, 10 or 12
    ColorDescription color;

    bool operator==(const FrameFormat&) const = default;

    /// Chroma samples stand for 1 << shift luma samples in that direction.
    int chromaShiftX() const { return subsampling == Subsampling::s444 ? 0 : 1; }
    int chromaShiftY() const { return subsampling == Subsampling::s420 ? 1 : 0; }
};

/// How a stored picture must be shown: first mirrored left to right, then turned clockwise.
struct Orientation {
    bool mirrored = false;
    int quarterTurns = 0; // clockwise, 0..3

    bool swapsSides() const { return quarterTurns % 2 != 0; }
    bool isIdentity() const { return !mirrored && quarterTurns == 0; }

    bool operator==(const Orientation&) const = default;
};

struct Rational {
    int numerator = 0;
    int denominator = 1;

    double value() const { return static_cast<double>(numerator) / denominator; }

    bool operator==(const Rational&) const = default;
};

}
