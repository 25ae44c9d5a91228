// Times of the video as text.
#pragma once

#include <optional>
#include <QString>

namespace pointloom {

/// "00:01:05.20": hours, minutes, seconds and hundredths, rounded down, so that the time
/// shown is never later than the frame. Negative times and those that are not a number count as zero.
QString timeCode(double seconds);

/// As short as it goes: "0:15", "12:40", "1:12:40"; with hundredths "0:15.20".
QString shortTime(double seconds, bool hundredths = false);

/// The seconds of a time as users type it: "1:10:23", "70:23", "4223.5", a comma in place of the point. Empty
/// for anything else, also for minutes or seconds from 60 after a colon.
std::optional<double> typedTime(const QString& text);

}
