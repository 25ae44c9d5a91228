// Times as the editor writes them.
#pragma once

#include <QString>

namespace pointloom {

/// "00:01:05.20": hours, minutes, seconds and hundredths, cut off rather than rounded, so that it never
/// names a moment that has not come. Negative times and those that are not a number count as zero.
QString timeCode(double seconds);

/// As short as it goes: "0:15", "12:40", "1:12:40"; with hundredths "0:15.20".
QString shortTime(double seconds, bool hundredths = false);

}
