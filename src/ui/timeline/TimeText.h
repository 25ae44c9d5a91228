// Times of the clip in words.
#pragma once

#include <QString>

namespace pointloom {

/// "1:05", from an hour on "1:02:05". Rounds down to the whole second.
QString clockText(double seconds);

/// With hundredths: "1:05.20".
QString preciseClockText(double seconds);

}
