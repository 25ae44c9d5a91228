// A look at the top-level boxes of a file, to tell in words why it cannot be a movie.
#pragma once

#include <QString>

namespace pointloom::media {

struct BoxScan {
    bool looksLikeMovie = false; // begins with a box that MP4 and MOV files begin with
    bool hasIndex = false;       // a movie box ("moov") is there, even if cut off
    bool damaged = false;        // a box has a size that cannot be, or a track no number
};

/// Reads only the headers of the boxes (ISO/IEC 14496-12, 4.2) and the numbers of the tracks. A file that
/// cannot be opened looks like no movie.
BoxScan scanBoxes(const QString& path);

}
