// One kind of footage: the recipe of a clip and the expectations of its export.
#pragma once

#include "support/TestClips.h"

#include <array>
#include <span>
#include <string>

namespace pointloom::test {

/// Names as FFmpeg spells them.
struct SourceColor {
    std::string primaries = "bt709";
    std::string transfer = "bt709";
    std::string matrix = "bt709"; // of the samples; "gbr" for R'G'B'
    std::string range = "tv";     // "tv" is limited, "pc" full
    bool isTagged = true;         // the file says so

    bool isHdr() const { return transfer == "smpte2084" || transfer == "arib-std-b67"; }
};

struct Source {
    std::string name{};  // of the test
    std::string title{}; // in the table
    std::string file = "clip.mp4";
    int frames = 30;              // of the pattern
    std::string rate = "25";      // of the pattern, frames a second
    std::string pictureFilters{}; // after the pattern, before its colours are converted
    std::string layout = "yuv420p";
    SourceColor color{};
    std::string pictures = "-c:v libx264 -qp 0 -preset ultrafast";
    std::string pictureOffset{}; // seconds by which the pictures come later than the sound

    std::string sound = "-c:a aac"; // empty: none
    int soundRate = 48000;          // Hz
    std::string speakers = "stereo";
    double soundLength = 0; // seconds; 0: as long as the pictures
    double soundOffset = 0; // seconds by which the sound begins late

    std::string inputs{};     // further ones, numbered from 2
    std::string container{};  // options of the file as a whole
    std::string secondPass{}; // options of a copy; " | " marks the place of its input
    Turn turn = upright;
    double trimmedFrames = 0;   // what the export leaves out at the start, of a constant rate
    bool isInterlaced = false;  // frames hold two pictures of the pattern each
    bool inEveryFormat = false; // beside H.264
    bool inOtherSizes = false;  // beside the original one
};

/// All of them.
std::span<const Source> sources();

/// The one of that name.
const Source& sourceNamed(const std::string& name);

/// Seconds from the start of the clip.
double trimStart(const Source& source);

/// Makes the clip; returns its path.
QString make(const Source& source, const ClipFolder& folder);

}
