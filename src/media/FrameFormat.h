// The layout of a frame's samples and the meaning of their numbers.
#pragma once

#include <array>
#include <optional>

namespace pointloom::media {

enum class Matrix { bt601, bt709, bt2020 }; // BT.2020 with non-constant luminance
enum class Range { limited, full };         // 16..235 of 255, or 0..255
enum class Transfer { sdr, pq, hlg };       // BT.1886; SMPTE ST 2084; BT.2100 HLG
enum class Primaries { bt601_525, bt601_625, bt709, bt2020, displayP3 };
enum class ChromaLocation { left, center, topLeft }; // of the first chroma sample
enum class Subsampling { s420, s422, s444 };

/// The meaning of sample values; never "unspecified": tags that a file lacks are filled in as players do.
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

    /// A chroma sample covers 1 << shift luma samples in that direction.
    int chromaShiftX() const { return subsampling == Subsampling::s444 ? 0 : 1; }
    int chromaShiftY() const { return subsampling == Subsampling::s420 ? 1 : 0; }
};

/// Turns a stored frame upright: first mirrored left to right, then turned clockwise.
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

/// CIE 1931 coordinates in units of 0.00002.
struct Chromaticity {
    int x = 0;
    int y = 0;

    bool operator==(const Chromaticity&) const = default;
};

/// SMPTE ST 2086.
struct MasteringDisplay {
    std::array<Chromaticity, 3> primaries; // red, green, blue
    Chromaticity white;
    int darkest = 0;   // 0.0001 cd/m2
    int brightest = 0; // 0.0001 cd/m2

    bool operator==(const MasteringDisplay&) const = default;
};

/// CTA-861.3, cd/m2; 0 when unknown.
struct ContentLight {
    int brightestPixel = 0;   // MaxCLL
    int brightestAverage = 0; // MaxFALL

    bool operator==(const ContentLight&) const = default;
};

/// An HDR master's own description: the display it was graded on and how bright its frames become.
struct HdrMetadata {
    std::optional<MasteringDisplay> display;
    std::optional<ContentLight> light;

    bool operator==(const HdrMetadata&) const = default;
};

}
