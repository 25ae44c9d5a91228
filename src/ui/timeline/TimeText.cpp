#include "ui/timeline/TimeText.h"

#include <algorithm>
#include <cmath>

namespace pointloom {

namespace {

constexpr double longestTime = 1e9; // seconds; what lies beyond is no time of a clip

qint64 wholeHundredths(double seconds) {
    const double kept = std::isfinite(seconds) ? std::clamp(seconds, 0.0, longestTime) : 0;
    return std::llround(std::floor(kept * 100 + 1e-4)); // a frame's time may come a hair below its hundredth
}

}

QString clockText(double seconds) {
    const qint64 whole = wholeHundredths(seconds) / 100;
    const auto twoDigits = [](qint64 number) { return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0')); };
    if (whole < 3600)
        return QStringLiteral("%1:%2").arg(whole / 60).arg(twoDigits(whole % 60));
    return QStringLiteral("%1:%2:%3").arg(whole / 3600).arg(twoDigits(whole / 60 % 60), twoDigits(whole % 60));
}

QString preciseClockText(double seconds) {
    const qint64 hundredths = wholeHundredths(seconds) % 100;
    return clockText(seconds) + QStringLiteral(".%1").arg(hundredths, 2, 10, QLatin1Char('0'));
}

}
